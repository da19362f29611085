#include "support/DialogTest.h"

#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "support/TemporaryFile.h"

#include <QProgressBar>
#include <QPushButton>

#include <cmath>

namespace ztm::test {
namespace {

using testing::StartsWith;

class LoggingTest : public DialogTest {
protected:
    LoggingTest() : DialogTest("cmdLogData", "") { Open(ZTM7720); }

    static ShownFileDialog StartLogTo(const std::string &path) {
        const auto shown = AnswerFileDialogOf([] { Click("cmdOK"); }, QString::fromStdString(path));
        Settle();
        return shown;
    }

    /// Lets the monitor tick for that long.
    void TickFor(double seconds) {
        for (double passed = 0; passed < seconds - 0.001; passed += 0.06) {
            clock.Advance(0.06);
            Tick();
        }
    }

    /// Moves on to the next time of day with that fraction of a second.
    void AdvanceTo(double fraction) {
        const double now = RunningSeconds();
        clock.Advance(std::ceil(now) + fraction - now);
    }

    /// The file behind its first line.
    std::string LogBytes() {
        const std::string bytes = BytesOf(path);
        EXPECT_TRUE(
            BytesMatch(bytes.substr(0, bytes.find('\n') + 1), "Started At: [ -~]+[0-9]\r\n"));
        return bytes.substr(bytes.find('\n') + 1);
    }

    /// Whether a log runs, the entries so far and the progress bar.
    static std::string State() {
        const auto &button = Find<QPushButton>("cmdLogData");
        const auto &bar = Find<QProgressBar>("prgbarLog");
        EXPECT_EQ(button.text(), LoggingActive ? "Click to stop..." : "Log Data To File...");
        EXPECT_EQ(button.font().bold(), LoggingActive);
        EXPECT_TRUE(LoggingActive || LogStartTime == 0);
        return QString("%1, %2, %3 of %4")
            .arg(LoggingActive ? "logs" : "idle", TextOf("lblLogEntries"))
            .arg(bar.value())
            .arg(bar.maximum())
            .toStdString();
    }

    TemporaryFolder folder;
    std::string path = folder.Path("log.xls");
};

TEST_F(LoggingTest, EveryByteOfALogOverMidnight) {
    Do("chkLog(0); chkLog(1); chkLog(3); chkLog(5)");
    Measurements = {25.38F, -0.25F, 99, 2000, 99, 45.098038F};
    const auto dialog = StartLogTo(path);
    EXPECT_TRUE(dialog.saves);
    EXPECT_THAT(dialog.filters, testing::ElementsAre("Text Files (*.xls)"));
    EXPECT_EQ(State(), "logs, 0, 0 of 10000");
    EXPECT_EQ(LoadedForms().size(), 1U);
    clock.Advance(86400 - 0.24 - RunningSeconds());
    Tick();
    Measurements[0] = -10.5F;
    TickFor(0.36);
    const std::string rest = "\xB0"
                             "C\t-.25\xB0"
                             "C\t2000RPM\t45.09804%\r\n";
    EXPECT_EQ(LogBytes(), "\tLocal\tRemote1\tFan1\tTHERM%\r\n-.24\t25.38" + rest + "-.12\t-10.5" +
                              rest + " 0\t-10.5" + rest + " .12\t-10.5" + rest);
    EXPECT_EQ(State(), "logs, 4, 4 of 10000");
    Click("cmdLogData");
    TickFor(1);
    EXPECT_EQ(State(), "idle, 4, 4 of 10000") << "nothing is written after the stop";
}

TEST_F(LoggingTest, StopsAtTheLimitAndStartsAfresh) {
    Do("txtNumLogs=3");
    StartLogTo(path);
    AdvanceTo(0);
    TickFor(0.24);
    EXPECT_EQ(State(), "logs, 2, 2 of 3");
    TickFor(0.06);
    EXPECT_EQ(State(), "idle, 3, 3 of 3");
    EXPECT_EQ(LogBytes(), "\t\r\n .06\t\r\n .18\t\r\n .3\t\r\n");

    EXPECT_EQ(Do("cmdLogData; ?; chkLog(5); txtNumLogs=none; txtLogInt=", "txtNumLogs txtLogInt"),
              "3|100")
        << "remembered";
    EXPECT_TRUE(StartLogTo(path).askedToReplace);
    EXPECT_EQ(State(), "logs, 0, 0 of 3");
    AdvanceTo(0.54);
    TickFor(0.6);
    EXPECT_EQ(LogBytes(),
              "\tTHERM%\r\n-.4\t0%\r\n-.28\t0%\r\n-.16\t0%\r\n-.04\t0%\r\n .08\t0%\r\n");
    EXPECT_EQ(State(), "logs, 5, 0 of 3") << "the bar is not used without a limit";
    EXPECT_EQ(Do("cmdLogData; cmdLogData; ?", "chkLog(4) chkLog(5) txtNumLogs txtLogInt"),
              "0|1|0|100");
}

TEST_F(LoggingTest, NumbersOutOfRangeAreRefused) {
    const struct {
        const char *box, *text, *what;
    } cases[] = {{"txtLogInt", "-1", "The logging interval in ms"},
                 {"txtLogInt", "2147483648", "The logging interval in ms"},
                 {"txtNumLogs", "-5", "The number of log entries"},
                 {"txtNumLogs", "1e99", "The number of log entries"}};
    for (const auto &[box, text, what] : cases) {
        Type(box, text);
        const auto shown = AnswerMessageOf([] { Click("cmdOK"); });
        EXPECT_EQ(shown.text, QString(what) + " must be 0 to 2147483647") << text;
        EXPECT_EQ(shown.title, "Logging");
        EXPECT_EQ(State(), "idle, 0, 0 of 100");
        Type(box, "2147483647");
    }
    StartLogTo(path);
    EXPECT_EQ(State(), "logs, 0, 0 of 2147483647");
    EXPECT_EQ(LogInterval, 2147483647);
}

TEST_F(LoggingTest, WithoutAFileThatCanBeWrittenNothingChanges) {
    Do("chkLog(0); txtLogInt=50");
    StartLogTo("");
    EXPECT_EQ(Shown("lblProblem"), "hidden") << "cancelled";
    const std::string full = folder.Path("full.xls");
    ASSERT_EQ(symlink("/dev/full", full.c_str()), 0);
    StartLogTo(full);
    EXPECT_EQ(Shown("lblProblem"), full + " could not be written: No space left on device");
    EXPECT_EQ(State(), "idle, 0, 0 of 100");
    EXPECT_FALSE(LogSelected[0]);
    EXPECT_EQ(LogInterval, 100);
    StartLogTo(path);
    EXPECT_EQ(State(), "logs, 0, 0 of 10000");
    EXPECT_EQ(LogInterval, 50);
}

TEST_F(LoggingTest, AFullDiskOrALostFileStopsTheLogInOrder) {
    StartLogTo(path);
    TickFor(0.24);
    EXPECT_EQ(State(), "logs, 2, 2 of 10000");
    const std::string before = BytesOf(path);
    {
        const FileSizeLimit limit(before.size() + 2);
        TickFor(0.15);
    }
    EXPECT_EQ(State(), "idle, 2, 2 of 10000") << "what is in the file";
    EXPECT_EQ(BytesOf(path), before);
    EXPECT_THAT(Shown("lblLogProblem"), StartsWith("The log was stopped: "));
    Click("cmdLogData");
    StartLogTo(path);
    EXPECT_EQ(Shown("lblLogProblem"), "hidden");
    std::filesystem::remove(path);
    TickFor(1.2);
    EXPECT_EQ(State(), "idle, 8, 8 of 10000")
        << "what went into the lost file before the next look";
    EXPECT_EQ(Shown("lblLogProblem"), "The log was stopped: No such file or directory");
}

TEST_F(LoggingTest, ASnapshotDuringALogLeavesTheLogAlone) {
    StartLogTo(path);
    AdvanceTo(0);
    TickFor(0.24);
    const std::string snapshot = folder.Path("setup.sav");
    const auto saved =
        AnswerFileDialogOf([] { Click("cmdSaveRegs"); }, QString::fromStdString(snapshot));
    EXPECT_TRUE(saved.saves);
    EXPECT_THAT(saved.filters, testing::ElementsAre("Text Files (*.sav)"));
    EXPECT_THAT(BytesOf(snapshot), StartsWith("ZTM7720 Evaluation Software\r\n"));
    AdvanceTo(0);
    TickFor(0.24);
    EXPECT_EQ(LogBytes(), "\t\r\n .06\t\r\n .18\t\r\n 1.06\t\r\n 1.18\t\r\n");
}

TEST_F(LoggingTest, TheLineBelowTheButtonsSaysWhatBecameOfASetup) {
    const std::string file = folder.Put("setup", "x01, 0x85\r\n0x3C, 0x22\r\n\r\n");
    const auto result = [&](const char *button, const std::string &name) {
        const auto shown =
            AnswerFileDialogOf([button] { Click(button); }, QString::fromStdString(name));
        EXPECT_EQ(shown.saves, QLatin1String(button) == "cmdSaveRegs");
        return Shown("lblFileResult");
    };
    for (const char *button : {"cmdSaveRegs", "cmdRecallRegs"}) {
        EXPECT_EQ(result(button, ""), "");
    }
    EXPECT_EQ(Asked(), "") << "cancelled";
    EXPECT_EQ(result("cmdRecallRegs", file), "2 registers written");
    EXPECT_EQ(Asked(), "01=85 01? 3C=22");
    EXPECT_EQ(result("cmdRecallRegs", folder.Put("other", "words")), "no setup in this file");
    EXPECT_EQ(result("cmdRecallRegs", folder.Put("cut", "x02, 0x04\n0x03, 0x01\n")),
              "1 register written; the file does not end like a saved setup");
    EXPECT_THAT(result("cmdSaveRegs", file), testing::EndsWith(" registers saved"));
    const FileSizeLimit limit(5);
    EXPECT_EQ(result("cmdSaveRegs", file), "File too large");
}

TEST_F(LoggingTest, ASlowRecallLeavesTheWindowAliveAndEndsWithIt) {
    Adapter().script = [this](const Call &) {
        clock.Advance(0.03);
        return int16_t{0};
    };
    const QString file = QString::fromStdString(
        folder.Put("setup", "x0C, 0x01\n0x0D, 0x02\n0x0E, 0x03\n0x0F, 0x04\n0x10, 0x05\n\n"));
    const auto recall = [&] { AnswerFileDialogOf([] { Click("cmdRecallRegs"); }, file); };
    recall();
    EXPECT_EQ(Asked(), "0C=01 0D=02");
    EXPECT_EQ(Shown("cmdSaveRegs cmdRecallRegs lblFileResult"), "off|off|2 of 5 registers written");
    EXPECT_EQ(Find("cmdRecallRegs").toolTip(), "A setup is being written to the chip");
    Settle();
    Settle();
    EXPECT_EQ(Asked(), "0E=03 0F=04 10=05");
    EXPECT_EQ(Shown("cmdSaveRegs cmdRecallRegs lblFileResult"), "on|on|5 registers written");
    recall();
    CloseByCloseBox("frmMain");
    Settle();
    EXPECT_EQ(Asked(), "0C=01 0D=02 unknown") << "but for the handshake";
}

} // namespace
} // namespace ztm::test
