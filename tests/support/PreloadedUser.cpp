// A user for a program that is started as it ships: preloaded into its process, acts in its windows
// from the wizard to the last window, tells on standard output what it meets, and answers messages.
// The program's waits pass at once meanwhile, and a sanitized program is searched for leaks at its
// end.

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTabWidget>
#include <QTest>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <ctime>
#include <sys/syscall.h>
#include <unistd.h>

// The clock of the program's waits: a sleep takes no time and moves it on.

namespace {

constexpr long nanosecondsPerSecond = 1'000'000'000;
std::atomic<long> sleptNanoseconds = 0;

} // namespace

extern "C" {

int nanosleep(const timespec *duration, timespec * /*remaining*/) {
    sleptNanoseconds += duration->tv_sec * nanosecondsPerSecond + duration->tv_nsec;
    return 0;
}

int clock_gettime(clockid_t clock, timespec *now) noexcept {
    const long result = syscall(SYS_clock_gettime, clock, now);
    if (clock == CLOCK_BOOTTIME) {
        const long nanoseconds = now->tv_nsec + sleptNanoseconds;
        now->tv_sec += nanoseconds / nanosecondsPerSecond;
        now->tv_nsec = nanoseconds % nanosecondsPerSecond;
    }
    return static_cast<int>(result);
}

/// There in a sanitized program; ends the process with an exit code of its own when it finds a
/// leak.
__attribute__((weak)) void __lsan_do_leak_check();

/// The font library keeps what it hands out where the search for leaks does not look.
const char *__lsan_default_suppressions() {
    return "leak:libfontconfig\n";
}
const char *__lsan_default_options() {
    return "print_suppressions=0";
}

/// The end of the program that runs nothing any more.
void _Exit(int exitCode) noexcept {
    if (__lsan_do_leak_check) {
        __lsan_do_leak_check();
    }
    _exit(exitCode);
}
}

namespace {

constexpr int wantedTicks = 3;
constexpr int longestWaitMs = 10'000;

template <class Control = QPushButton>
Control &Find(const char *name) {
    for (QWidget *widget : QApplication::allWidgets()) {
        auto *control = qobject_cast<Control *>(widget);
        if (control && control->objectName() == QLatin1String(name)) {
            return *control;
        }
    }
    std::printf("there is no %s\n", name);
    std::abort();
}

void Click(const char *button) {
    QTest::mouseClick(&Find(button), Qt::LeftButton);
}

void Type(const char *box, const char *text) {
    auto &field = Find<QLineEdit>(box);
    field.selectAll();
    QTest::keyClicks(&field, QLatin1String(text));
}

/// Lets the monitor run for a few ticks; what waits after one is handled before the next.
void WatchTicks() {
    int ticks = 0;
    int handled = 0;
    auto *timer = Find<QWidget>("frmMain").findChild<QTimer *>(QStringLiteral("tmrMain"));
    QObject context;
    QObject::connect(timer, &QTimer::timeout, &context, [&] {
        if (ticks++ != handled) {
            std::puts("input waits");
        }
        QMetaObject::invokeMethod(
            &context, [&] { ++handled; }, Qt::QueuedConnection);
    });
    if (!QTest::qWaitFor([&ticks] { return ticks >= wantedTicks; }, longestWaitMs)) {
        std::puts("no ticks");
    }
}

/// In the program that comes with a choice of the bus: chooses the first one, and the address 0x2C.
bool ChooseBus() {
    const auto windows = QApplication::topLevelWidgets();
    if (std::none_of(windows.begin(), windows.end(), [](const QWidget *window) {
            return window->objectName() == QLatin1String("BusWindow");
        })) {
        return true;
    }
    auto &addresses = Find<QComboBox>("cmbAddress");
    Find<QComboBox>("cmbBus").setCurrentIndex(0);
    addresses.setCurrentIndex(addresses.findData(0x2C));
    if (!Find("cmdUse").isEnabled()) {
        std::printf("%s\n", qPrintable(Find<QLabel>("lblState").text()));
        Click("cmdQuit");
        return false;
    }
    Click("cmdUse");
    return true;
}

/// The wizard, Easy Setup with some ticks, a register read and a register write, the close box.
void UseTheProgram() {
    if (!ChooseBus()) {
        return;
    }
    Click("NextCMD");
    Click("NextCMD");
    if (!Find("FinishCMD").isEnabled()) {
        std::puts("nothing found");
        Click("CancelCMD");
        return;
    }
    Click("FinishCMD");
    auto &tabs = Find<QTabWidget>("SSTab1");
    tabs.setCurrentIndex(2); // Visual Display
    Click("cmdEasySetup");
    WatchTicks();
    tabs.setCurrentIndex(1); // Register Access
    Type("txtReadAddr", "b");
    Click("cmdRead");
    Type("txtDec", "66");
    Click("cmdWrite");
    std::puts("register written");
    Find<QWidget>("frmMain").close();
    std::puts("closed");
}

void AnswerMessages() {
    auto *timer = new QTimer(qApp);
    QObject::connect(timer, &QTimer::timeout, [] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            std::printf("message: %s\n", qPrintable(box->text()));
            QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        }
    });
    timer->start(1);
}

void StartUser() {
    QTimer::singleShot(0, [] {
        AnswerMessages();
        UseTheProgram();
    });
}

Q_COREAPP_STARTUP_FUNCTION(StartUser)

} // namespace
