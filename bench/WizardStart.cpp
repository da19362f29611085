// From the start of the process to the first paint of the search wizard: starts itself again
// and again and prints the median.

#include "ui/InitForm.h"

#include <QApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

constexpr int runs = 21;

double Milliseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

/// Ends the process when the wizard has been painted.
class FirstPaint final : public QObject {
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Paint && watched->objectName() == "InitForm") {
            std::_Exit(EXIT_SUCCESS);
        }
        return false;
    }
};

int ShowWizard(char *name) {
    int one = 1;
    char *arguments[] = {name, nullptr};
    const QApplication application(one, arguments);
    FirstPaint firstPaint;
    qApp->installEventFilter(&firstPaint);
    ztm::ShowForm<ztm::InitForm>();
    return QApplication::exec();
}

double StartOnce(char *name) {
    char child[] = "child";
    char *arguments[] = {name, child, nullptr};
    const double start = Milliseconds();
    pid_t process = 0;
    int status = 0;
    if (posix_spawn(&process, "/proc/self/exe", nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(process, &status, 0) != process || status != 0) {
        std::fprintf(stderr, "the wizard did not start\n");
        std::exit(EXIT_FAILURE);
    }
    return Milliseconds() - start;
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    if (argumentCount > 1 && std::string_view(arguments[1]) == "child") {
        return ShowWizard(arguments[0]);
    }
    std::vector<double> times(runs);
    std::generate(times.begin(), times.end(), [&] { return StartOnce(arguments[0]); });
    std::sort(times.begin(), times.end());
    std::printf("process start to wizard painted: median %.0f ms, slowest %.0f ms of %d\n",
                times[runs / 2], times.back(), runs);
}
