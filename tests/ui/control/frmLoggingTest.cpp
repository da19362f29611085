#include "ui/control/frmLogging.h"
#include "ui/kit/Text.h"

#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "support/TemporaryFile.h"
#include "support/UiTest.h"

#include <QCheckBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <cmath>

namespace ztm::test {
namespace {

using testing::IsEmpty;
using testing::StartsWith;

class LoggingTest : public UiTest {
protected:
    void Open(std::string_view variant = ZTM7720) {
        if (LoadedForms().empty()) {
            StartSessionOf(variant);
            // Only the test's own ticks: the timer would go on behind a file dialog.
            Find<QTimer>("tmrMain").stop();
            ClickTab("Control");
            Settle();
        }
        Click("cmdLogData");
        Settle();
    }

    ShownFileDialog StartLogTo(const std::string &path) {
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
        const double now = SecondsSinceMidnight();
        clock.Advance(std::ceil(now) + fraction - now);
    }

    /// The file behind its first line.
    std::string LogBytes() {
        const std::string bytes = BytesOf(path);
        EXPECT_TRUE(
            BytesMatch(bytes.substr(0, bytes.find('\n') + 1), "Started At: [ -~]+[0-9]\r\n"));
        return bytes.substr(bytes.find('\n') + 1);
    }

    static bool IsIdle() {
        return TextOf("cmdLogData") == "Log Data To File..." && !Find("cmdLogData").font().bold() &&
               !LoggingActive && LogStartTime == 0;
    }

    static bool IsLogging() {
        return TextOf("cmdLogData") == "Click to stop..." && Find("cmdLogData").font().bold() &&
               LoggingActive && LoadedForm<frmLogging>() == nullptr;
    }

    TemporaryFolder folder;
    std::string path = folder.Path("log");
};

TEST_F(LoggingTest, OpensOnTheSettingsOfEitherVariant) {
    LogSelected = {true, false, false, true, false, false};
    Open();
    EXPECT_EQ(Find("frmLogging").windowTitle(), "Logging");
    EXPECT_EQ(TextOf("txtLogInt"), "100");
    EXPECT_EQ(TextOf("txtNumLogs"), "10000");
    const char *captions[] = {"Local", "Remote1", "Remote2", "Fan1", "Fan2", "THERM%"};
    for (int channel = 0; channel < ChannelCount; ++channel) {
        EXPECT_EQ(TextOf(IndexedName("chkLog", channel)), captions[channel]);
        EXPECT_TRUE(Find(IndexedName("chkLog", channel)).isVisible());
    }
    DeleteAllForms();

    ResetCore();
    Open(ZTM7710);
    int last = 600 - 360;
    const std::pair<int, const char *> shown[] = {
        {0, "Local"}, {1, "Remote"}, {3, "Fan Speed"}, {5, "THERM%"}};
    for (const auto &[channel, caption] : shown) {
        auto &box = Find(IndexedName("chkLog", channel));
        EXPECT_EQ(TextOf(IndexedName("chkLog", channel)), caption);
        last += 360;
        EXPECT_EQ(box.y(), last * box.logicalDpiX() / 1440);
    }
    EXPECT_FALSE(Find("chkLog(2)").isVisible() || Find("chkLog(4)").isVisible());
}

TEST_F(LoggingTest, EveryByteOfALogOverMidnight) {
    Open();
    for (const char *box : {"chkLog(0)", "chkLog(1)", "chkLog(3)", "chkLog(5)"}) {
        Click(box);
    }
    Measurements = {25.38F, -0.25F, 99, 2000, 99, 45.098038F};
    const auto dialog = StartLogTo(path);
    EXPECT_TRUE(dialog.saves);
    EXPECT_THAT(dialog.filters, testing::ElementsAre("Text Files (*.xls)"));
    EXPECT_EQ(dialog.folder, QCoreApplication::applicationDirPath());
    ASSERT_TRUE(IsLogging());
    EXPECT_EQ(TextOf("lblLogEntries"), "0");
    clock.Advance(86400 - 0.36 - SecondsSinceMidnight());
    Tick();
    Measurements[0] = -10.5F;
    TickFor(0.48);
    EXPECT_EQ(LogBytes(), "\tLocal\tRemote1\tFan1\tTHERM%\r\n"
                          "-.36\t25.38\xB0"
                          "C\t-.25\xB0"
                          "C\t2000RPM\t45.09804%\r\n"
                          "-.24\t-10.5\xB0"
                          "C\t-.25\xB0"
                          "C\t2000RPM\t45.09804%\r\n"
                          "-.12\t-10.5\xB0"
                          "C\t-.25\xB0"
                          "C\t2000RPM\t45.09804%\r\n"
                          " 0\t-10.5\xB0"
                          "C\t-.25\xB0"
                          "C\t2000RPM\t45.09804%\r\n"
                          " .12\t-10.5\xB0"
                          "C\t-.25\xB0"
                          "C\t2000RPM\t45.09804%\r\n");
    EXPECT_EQ(TextOf("lblLogEntries"), "5");
    EXPECT_EQ(Find<QProgressBar>("prgbarLog").value(), 5);
    EXPECT_EQ(Find<QProgressBar>("prgbarLog").maximum(), 10000);
    Click("cmdLogData");
    EXPECT_TRUE(IsIdle());
    TickFor(1);
    EXPECT_EQ(TextOf("lblLogEntries"), "5") << "nothing is written after the stop";
}

TEST_F(LoggingTest, StopsAtTheLimitAndStartsAfresh) {
    Open();
    Type("txtNumLogs", "3");
    StartLogTo(path);
    AdvanceTo(0);
    TickFor(0.24);
    EXPECT_TRUE(IsLogging()) << "two entries";
    TickFor(0.06);
    EXPECT_TRUE(IsIdle());
    EXPECT_EQ(TextOf("lblLogEntries"), "3");
    EXPECT_EQ(Find<QProgressBar>("prgbarLog").value(), 3);
    EXPECT_EQ(Find<QProgressBar>("prgbarLog").maximum(), 3);
    EXPECT_EQ(LogBytes(), "\t\r\n .06\t\r\n .18\t\r\n .3\t\r\n");

    Open();
    EXPECT_EQ(TextOf("txtNumLogs"), "3") << "remembered";
    Click("chkLog(5)");
    Type("txtNumLogs", "none");
    Type("txtLogInt", "");
    EXPECT_TRUE(StartLogTo(path).askedToReplace);
    EXPECT_EQ(LogInterval, 100);
    EXPECT_EQ(MaxLogEntries, 0);
    EXPECT_EQ(TextOf("lblLogEntries"), "0");
    EXPECT_EQ(Find<QProgressBar>("prgbarLog").value(), 0);
    AdvanceTo(0.54);
    TickFor(0.6);
    EXPECT_EQ(LogBytes(),
              "\tTHERM%\r\n-.4\t0%\r\n-.28\t0%\r\n-.16\t0%\r\n-.04\t0%\r\n .08\t0%\r\n");
    EXPECT_EQ(Find<QProgressBar>("prgbarLog").value(), 0) << "not used without a limit";
    Click("cmdLogData");
    Open();
    EXPECT_TRUE(Find<QCheckBox>("chkLog(5)").isChecked());
    EXPECT_EQ(TextOf("txtLogInt"), "100");
    EXPECT_EQ(TextOf("txtNumLogs"), "0");
}

TEST_F(LoggingTest, CancellingChangesNothing) {
    Open();
    Click("chkLog(0)");
    Type("txtLogInt", "50");
    StartLogTo("");
    EXPECT_TRUE(Find("frmLogging").isVisible());
    EXPECT_TRUE(IsIdle());
    Click("cmdCancel");
    EXPECT_EQ(LoadedForm<frmLogging>(), nullptr);
    EXPECT_FALSE(LogSelected[0]);
    EXPECT_EQ(LogInterval, 100);
    Open();
    EXPECT_FALSE(Find<QCheckBox>("chkLog(0)").isChecked());
}

TEST_F(LoggingTest, NumbersOutOfRangeAreRefused) {
    Open();
    const struct {
        const char *box;
        const char *text;
        const char *message;
    } cases[] = {
        {"txtLogInt", "-1", "The logging interval in ms must be 0 to 2147483647"},
        {"txtLogInt", "2147483648", "The logging interval in ms must be 0 to 2147483647"},
        {"txtNumLogs", "-5", "The number of log entries must be 0 to 2147483647"},
        {"txtNumLogs", "1e99", "The number of log entries must be 0 to 2147483647"},
    };
    for (const auto &[box, text, message] : cases) {
        const QString before = TextOf(box);
        Type(box, text);
        const auto shown = AnswerMessageOf([] { Click("cmdOK"); });
        EXPECT_EQ(shown.text, message) << text;
        EXPECT_EQ(shown.title, "Logging");
        EXPECT_TRUE(Find("frmLogging").isVisible() && IsIdle());
        Type(box, before);
    }
    EXPECT_EQ(LogInterval, 100);
    EXPECT_EQ(MaxLogEntries, 10000);
    Type("txtLogInt", "2147483647");
    Type("txtNumLogs", "2147483647");
    StartLogTo(path);
    EXPECT_EQ(LogInterval, 2147483647);
    EXPECT_EQ(MaxLogEntries, 2147483647);
}

TEST_F(LoggingTest, AFileThatCannotBeWrittenLeavesTheDialogOpen) {
    Open();
    Click("chkLog(0)");
    const std::string full = folder.Path("full");
    ASSERT_EQ(symlink("/dev/full", full.c_str()), 0);
    StartLogTo(full);
    EXPECT_TRUE(Find("frmLogging").isVisible());
    EXPECT_TRUE(Find("lblProblem").isVisible());
    EXPECT_EQ(TextOf("lblProblem"),
              QString::fromStdString(full) + " could not be written: No space left on device");
    EXPECT_TRUE(IsIdle());
    EXPECT_FALSE(LogSelected[0]);
    StartLogTo(path);
    EXPECT_TRUE(IsLogging());
}

TEST_F(LoggingTest, AFullDiskStopsTheLogInOrder) {
    Open();
    StartLogTo(path);
    TickFor(0.24);
    EXPECT_EQ(TextOf("lblLogEntries"), "2");
    const std::string before = BytesOf(path);
    {
        const FileSizeLimit limit(before.size() + 2);
        TickFor(0.15);
    }
    EXPECT_TRUE(IsIdle());
    EXPECT_EQ(TextOf("lblLogEntries"), "2") << "what is in the file";
    EXPECT_EQ(BytesOf(path), before);
    EXPECT_THAT(TextOf("lblLogProblem").toStdString(), StartsWith("The log was stopped: "));
    EXPECT_TRUE(Find("lblLogProblem").isVisible());
    Open();
    StartLogTo(path);
    EXPECT_FALSE(Find("lblLogProblem").isVisible());
}

TEST_F(LoggingTest, ASnapshotDuringALogLeavesTheLogAlone) {
    Open();
    StartLogTo(path);
    AdvanceTo(0);
    TickFor(0.24);
    const std::string snapshot = folder.Path("setup.sav");
    const auto saved =
        AnswerFileDialogOf([] { Click("cmdSaveRegs"); }, QString::fromStdString(snapshot));
    EXPECT_TRUE(saved.saves);
    EXPECT_THAT(saved.filters, testing::ElementsAre("Text Files (*.sav)"));
    EXPECT_EQ(saved.folder, QCoreApplication::applicationDirPath());
    EXPECT_THAT(BytesOf(snapshot), StartsWith("ZTM7720 Evaluation Software\r\n"));
    AdvanceTo(0);
    TickFor(0.24);
    EXPECT_TRUE(IsLogging());
    EXPECT_EQ(LogBytes(), "\t\r\n .06\t\r\n .18\t\r\n 1.06\t\r\n 1.18\t\r\n");
}

TEST_F(LoggingTest, TheSnapshotButtonsAskForTheFile) {
    StartSessionOf(ZTM7720);
    ClickTab("Control");
    for (const char *button : {"cmdSaveRegs", "cmdRecallRegs"}) {
        const auto shown = AnswerFileDialogOf([button] { Click(button); }, "");
        EXPECT_EQ(shown.saves, QLatin1String(button) == "cmdSaveRegs");
    }
    EXPECT_THAT(Adapter().calls, IsEmpty()) << "cancelled";
    const std::string file = folder.Put("setup", "x01, 0x85\r\n0x3C, 0x22\r\n\r\n");
    AnswerFileDialogOf([] { Click("cmdRecallRegs"); }, QString::fromStdString(file));
    EXPECT_THAT(Adapter().calls,
                testing::ElementsAre(Write(0x01, 0x85), Read(0x01), Write(0x3C, 0x22)));
}

} // namespace
} // namespace ztm::test
