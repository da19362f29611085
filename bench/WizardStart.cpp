// The time from the start of the process to the first paint of the search wizard: starts itself
// repeatedly and measures it.

#include "Measure.h"
#include "ui/session/InitForm.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char **environ;

namespace {

constexpr int runs = 21;

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

void StartOnce(char *name) {
    char child[] = "child";
    char *arguments[] = {name, child, nullptr};
    pid_t process = 0;
    int status = 0;
    if (posix_spawn(&process, "/proc/self/exe", nullptr, nullptr, arguments, environ) != 0 ||
        waitpid(process, &status, 0) != process || status != 0) {
        std::fprintf(stderr, "the wizard did not start\n");
        std::exit(EXIT_FAILURE);
    }
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    if (argumentCount > 1 && std::string_view(arguments[1]) == "child") {
        return ShowWizard(arguments[0]);
    }
    ztm::bench::Times times(CLOCK_MONOTONIC);
    for (int run = 0; run < runs; ++run) {
        times.Take([&] { StartOnce(arguments[0]); });
    }
    ztm::bench::Table::Heading("start of the process to the search wizard painted, offscreen");
    ztm::bench::Table::Figure("median", times.Median() / 1000, "ms");
    ztm::bench::Table::Figure("slowest of 21", times.Quantile(1) / 1000, "ms");
}
