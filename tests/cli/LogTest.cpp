#include "cli/LogRecorder.h"
#include "common/Clock.h"
#include "link/Session.h"
#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"
#include "support/TemporaryFile.h"
#include "support/UiTest.h"
#include "ui/kit/Text.h"

namespace ztm::test {
namespace {

/// The registers are other ones at each moment.
void LetTheChipChange() {
    Adapter().script = [](const Call &) {
        const auto now = static_cast<int>(RunningSeconds() * 1000);
        for (int address = 0x40; address < 0x50; ++address) {
            Adapter().registers[static_cast<size_t>(address)] =
                static_cast<uint8_t>(now / (address - 0x3F));
        }
        return int16_t{0};
    };
}

class LogTest : public UiTest {
protected:
    /// The lines behind the first one, which says when it was.
    static std::string LinesOf(const std::string &path) {
        const std::string bytes = BytesOf(path);
        return bytes.substr(bytes.find('\n') + 1);
    }

    static void MoveTo(double seconds) { Wait(seconds - RunningSeconds()); }

    TemporaryFolder folder;
};

TEST_F(LogTest, TheCommandWritesWhatTheWindowWrites) {
    const LogSettings settings{{true, true, false, true, true, true}, 100, 50};
    constexpr double moment = 36100.4;
    StartSessionOf(ZTM7720);
    Find<QTimer>("tmrMain").stop(); // it ticks when the test says so
    LetTheChipChange();
    MonitoringEnabled = true;
    MoveTo(moment);
    for (int channel = 0; channel < ChannelCount; ++channel) {
        Tick();
    }
    ClickTab("Control");
    Click("cmdLogData");
    for (const int channel : {0, 1, 3, 4, 5}) {
        Click(IndexedName("chkLog", channel));
    }
    Type("txtNumLogs", "50");
    const std::string byWindow = folder.Path("window.xls");
    AnswerFileDialogOf([] { Click("cmdOK"); }, QString::fromStdString(byWindow));
    while (LoggingActive) {
        Tick();
        Wait(0.03);
    }
    DeleteAllForms();

    const ClockDouble again;
    test::StartSession();
    LetTheChipChange();
    MoveTo(moment);
    const std::string byCommand = folder.Path("command.xls");
    cli::RecordLog(byCommand, settings);
    EXPECT_EQ(LinesOf(byCommand), LinesOf(byWindow));
    EXPECT_GT(LinesOf(byCommand).size(), 50U * 30);
}

} // namespace
} // namespace ztm::test
