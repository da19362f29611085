// A session that visits everything, with the adapter unplugged at one of its requests: each of
// them ends the program in the same way. Every run is a process of its own.

#include "app/ProgramRun.h"
#include "common/Clock.h"
#include "support/AdapterDouble.h"
#include "support/Driver.h"
#include "support/TemporaryFile.h"

#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>

#include <sys/wait.h>

/// Tells a fault that a sanitizer found from the program's own end by a failure.
extern "C" const char *__asan_default_options() {
    return "exitcode=99";
}

namespace ztm::test {
namespace {

constexpr int16_t handshakeRequest = 0xDF;
constexpr int16_t failed = -1;

void Ticks(int count) {
    for (; count > 0; --count) {
        Wait(0.05);
        Tick();
    }
}

/// Opens a window by its button, clicks those of its controls, and closes it if it is still open.
void Visit(const char *button, const char *window, const std::vector<const char *> &controls) {
    Click(button);
    Settle();
    for (const char *control : controls) {
        QTest::mouseClick(Find(window).findChild<QWidget *>(control), Qt::LeftButton);
        Ticks(1);
    }
    for (QWidget *open : QApplication::topLevelWidgets()) {
        if (open->objectName() == window && open->isVisible()) {
            open->close();
        }
    }
}

void UseRegisters() {
    ClickTab("Register Access");
    Click("cmdRead");
    Click("lblBit(3)");
    Type("txtDec", "5");
    Click("cmdWrite");
    Click("chkContRead");
    Ticks(12);
}

void WatchDisplays() {
    ClickTab("Visual Display");
    Click("cmdEasySetup");
    Adapter().registers[0x51] = 0x01; // an alert, so that the other status registers are read
    Ticks(7);
    Click("optMeasure(1)");
    Press("Limits(0)", Qt::Key_Up);
    Click("optMeasure(5)");
}

void UseDialogs() {
    ClickTab("Control");
    Visit("cmdConParam", "frmConfig", {"optAuto", "cmdOK"});
    Visit("cmdSetLookups", "frmLookup", {"cmdTestData", "cmdOK"});
    Visit("cmdAuto", "frmAutoControl", {"optLinear", "cmdOK"});
    Visit("cmdConParam", "frmConfig", {"optManual", "cmdOK"});
    Visit("cmdThermTemp", "frmThermTemp", {"cmdOK"});
    Visit("cmdThermTimer", "frmThermTimer", {"cmdOK"});
    Visit("cmdManual", "frmManual", {"sldFan(0)", "sldFan(1)"});
    Visit("cmdHeaters", "frmHeaters", {"chkSWControl(0)", "cmdApply"});
    Ticks(20);
}

void UseFiles(const TemporaryFolder &folder) {
    const auto answer = [&](const char *button, const char *file) {
        AnswerFileDialogOf([button] { Click(button); }, QString::fromStdString(folder.Path(file)));
    };
    Click("cmdLogData");
    Settle();
    for (const char *channel : {"chkLog(0)", "chkLog(3)", "chkLog(5)"}) {
        Click(channel);
    }
    AnswerFileDialogOf(
        [] { QTest::mouseClick(Find("frmLogging").findChild<QWidget *>("cmdOK"), Qt::LeftButton); },
        QString::fromStdString(folder.Path("log")));
    Ticks(7);
    answer("cmdSaveRegs", "setup.sav");
    Adapter().registers[0x0B] = 0x12;
    answer("cmdRecallRegs", "setup.sav");
    Ticks(7);
}

/// How a run ended.
struct Outcome {
    int exitCode = -1; ///< −1 when it was killed by a signal
    std::string messages;
};

/// The session with that one of its register and heater requests failing, and everything behind
/// it; with none when `failing` is 0. Tells on the pipe what happened.
int Session(int failing, const TemporaryFolder &folder, int pipe) {
    int requests = 0;
    const auto tell = [pipe](const std::string &text) {
        if (write(pipe, text.data(), text.size()) < 0) {
            std::abort();
        }
    };
    QTimer messages;
    return RunWith([&] {
        Adapter().script = [&](const Call &call) {
            requests += call.request != handshakeRequest;
            return failing != 0 && requests >= failing ? failed : int16_t{0};
        };
        QObject::connect(&messages, &QTimer::timeout, [&] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            if (box != nullptr && box->icon() == QMessageBox::Critical) {
                tell(box->text().toStdString() + "; request " + std::to_string(requests));
                QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
            }
        });
        messages.start(0);
        StartSession();
        Find<QTimer>("tmrMain").stop(); // only the session's own ticks
        UseRegisters();
        WatchDisplays();
        UseDialogs();
        UseFiles(folder);
        CloseByCloseBox("frmMain");
        tell(std::to_string(requests));
    });
}

Outcome RunSession(int failing, const TemporaryFolder &folder) {
    std::array<int, 2> ends{};
    EXPECT_EQ(pipe(ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        _exit(Session(failing, folder, ends[1]));
    }
    close(ends[1]);
    Outcome run;
    std::array<char, 256> piece{};
    for (ssize_t count = 0; (count = read(ends[0], piece.data(), piece.size())) > 0;) {
        run.messages.append(piece.data(), static_cast<size_t>(count));
    }
    close(ends[0]);
    int status = 0;
    waitpid(child, &status, 0);
    run.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

/// Every so many requests fail, from the given one on; several such tests run side by side.
constexpr int shares = 6;
class FaultTest : public testing::TestWithParam<int> {};

TEST_P(FaultTest, EveryFailedRequestEndsTheProgramAlike) {
    const TemporaryFolder folder;
    const Outcome whole = RunSession(0, folder);
    ASSERT_EQ(whole.exitCode, EXIT_SUCCESS) << whole.messages;
    const int requests = std::stoi(whole.messages);
    ASSERT_GT(requests, 200);
    const char *log = "Started At: [^\r\n]+\r\n\tLocal\tFan1\tTHERM%\r\n"
                      "([ -][0-9.]+\t[-0-9.]+\xB0"
                      "C\t[0-9]+RPM\t[0-9.]+%\r\n)*";
    for (int failing = GetParam(); failing <= requests; failing += shares) {
        std::filesystem::remove(folder.Path("log"));
        const Outcome run = RunSession(failing, folder);
        ASSERT_EQ(run.exitCode, EXIT_FAILURE) << "request " << failing;
        ASSERT_EQ(run.messages, "Communication Failure - Check USB connections; request " +
                                    std::to_string(failing));
        const std::string bytes = BytesOf(folder.Path("log"));
        ASSERT_TRUE(bytes.empty() || BytesMatch(bytes, log)) << "request " << failing;
    }
}

INSTANTIATE_TEST_SUITE_P(Share, FaultTest, testing::Range(1, shares + 1));

} // namespace
} // namespace ztm::test
