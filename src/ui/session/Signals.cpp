#include "ui/session/Signals.h"

#include "common/Clock.h"
#include "ui/session/InitForm.h"
#include "ui/session/frmMain.h"

#include <QApplication>
#include <QSocketNotifier>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <sys/eventfd.h>
#include <unistd.h>

namespace ztm {
namespace {

constexpr int killedBySignal = 128; // plus its number: the exit code that shells give

/// A terminal that is closed tells of it twice, by its shell and by its kernel.
constexpr double oneHangUpSeconds = 0.1;

constexpr std::chrono::milliseconds untilALoopIsLeft{1};

int wakeUp = -1; // an eventfd that the event loop watches
std::atomic<double> firstSignalAt{0};
static_assert(std::atomic<double>::is_always_lock_free);

/// Comes between any two instructions of the program, so it calls only what is safe there.
void OnSignal(int signal) {
    const int interrupted = errno;
    const double now = EvenSeconds();
    double first = 0;
    if (firstSignalAt.compare_exchange_strong(first, now)) {
        const uint64_t one = 1;
        [[maybe_unused]] const auto written = write(wakeUp, &one, sizeof one);
    } else if (signal != SIGHUP || now - first > oneHangUpSeconds) {
        _exit(killedBySignal + signal);
    }
    errno = interrupted;
}

/// Popups and modal windows first: the loops that they run further down the stack have to be left
/// before the windows under them go.
void CloseProgram() {
    QWidget *inTheWay = QApplication::activePopupWidget();
    if (inTheWay == nullptr) {
        inTheWay = QApplication::activeModalWidget();
    }
    if (inTheWay != nullptr) {
        inTheWay->close();
    } else if (QThread::currentThread()->loopLevel() <= 1) {
        Form *window = LoadedForm<InitForm>();
        if (window == nullptr) {
            window = LoadedForm<frmMain>();
        }
        if (window != nullptr) {
            window->close();
        } else {
            QCoreApplication::exit(EXIT_SUCCESS); // a companion is alone
        }
        return;
    }
    QTimer::singleShot(untilALoopIsLeft, qApp, CloseProgram);
}

} // namespace

void TakeSignals() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    wakeUp = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    auto *notifier = new QSocketNotifier(wakeUp, QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [notifier] {
        notifier->setEnabled(false);
        CloseProgram();
    });
    struct sigaction action {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigfillset(&action.sa_mask);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction before {};
        sigaction(signal, nullptr, &before);
        if (signal != SIGHUP || before.sa_handler != SIG_IGN) {
            sigaction(signal, &action, nullptr);
        }
    }
}

} // namespace ztm
