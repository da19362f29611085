// A session that visits everything, with the adapter unplugged at one of its requests: each of
// them ends the program in the same way.

#include "app/ProgramRun.h"
#include "support/AdapterDouble.h"
#include "support/TemporaryFile.h"
#include "support/WindowDriver.h"

#include <QTimer>

#include <gmock/gmock.h>

namespace ztm::test {
namespace {

void UseTheDisplays() {
    Do("tab Register Access; cmdRead; lblBit(3); txtDec=5; cmdWrite; chkContRead; ticks 12; "
       "tab Visual Display; cmdEasySetup");
    Adapter().registers[0x51] = 0x01; // an alert, so that the other status registers are read
    Do("ticks 7; optMeasure(1); Limits(0)+Up; optMeasure(5)");
}

void UseTheDialogs() {
    Do("tab Control; cmdConParam; optAuto; cmdOK; ticks 1; "
       "cmdSetLookups; cmdTestData; cmdOK; ticks 1; cmdAuto; optLinear; cmdOK; ticks 1; "
       "cmdConParam; optManual; ticks 1; cmdOK; cmdThermTemp; cmdOK; cmdThermTimer; cmdOK; "
       "ticks 1; cmdManual; sldFan(0); ticks 1; sldFan(1); ticks 1; close frmManual; "
       "cmdHeaters; chkSWControl(0); cmdApply; close frmHeaters; ticks 20");
}

void UseFiles(const TemporaryFolder &folder) {
    const auto answer = [&](const char *button, const char *file) {
        AnswerFileDialogOf([button] { Do(button); }, QString::fromStdString(folder.Path(file)));
    };
    Do("cmdLogData; chkLog(0); chkLog(3); chkLog(5)");
    answer("cmdOK", "log");
    Do("ticks 7");
    answer("cmdSaveRegs", "setup.sav");
    Adapter().registers[0x0B] = 0x12;
    answer("cmdRecallRegs", "setup.sav");
    Do("ticks 7");
}

/// The session with that one of its register and heater requests failing, and everything behind
/// it; with none when `failing` is 0. Says which one fails, or how many there were.
Outcome RunSession(int failing, const TemporaryFolder &folder) {
    int requests = 0;
    return RunProgramWith([&] {
        Adapter().registers[0x3D] = 0x34;
        Adapter().script = [&](const Call &call) {
            requests += call != Handshake;
            const bool fails = failing != 0 && requests >= failing;
            if (fails && call != Handshake) {
                Say("request " + std::to_string(requests));
            }
            return static_cast<int16_t>(fails ? -1 : 0);
        };
        Do("NextCMD; NextCMD; FinishCMD");
        Find<QTimer>("tmrMain").stop(); // only the session's own ticks
        UseTheDisplays();
        UseTheDialogs();
        UseFiles(folder);
        CloseByCloseBox("frmMain");
        Say(std::to_string(requests));
    });
}

/// Every so many requests fail, from the given one on; several such tests run side by side.
constexpr int shares = 6;
class FaultTest : public testing::TestWithParam<int> {};

TEST_P(FaultTest, EveryFailedRequestEndsTheProgramAlike) {
    const TemporaryFolder folder;
    const Outcome whole = RunSession(0, folder);
    ASSERT_EQ(whole.exitCode, EXIT_SUCCESS) << whole.said;
    const int requests = std::stoi(whole.said);
    ASSERT_GT(requests, 200);
    ASSERT_EQ(whole.said, std::to_string(requests) + ";ended;");
    const char *log = "Started At: [^\r\n]+\r\n\tLocal\tFan1\tTHERM%\r\n"
                      "([ -][0-9.]+\t[-0-9.]+\xB0"
                      "C\t[0-9]+RPM\t[0-9.]+%\r\n)*";
    for (int failing = GetParam(); failing <= requests; failing += shares) {
        std::filesystem::remove(folder.Path("log.xls"));
        const Outcome run = RunSession(failing, folder);
        ASSERT_EQ(run.exitCode, EXIT_FAILURE) << "request " << failing;
        ASSERT_EQ(run.said, "request " + std::to_string(failing) +
                                ";Communication Failure - Check USB connections;");
        const std::string bytes = BytesOf(folder.Path("log.xls"));
        ASSERT_TRUE(bytes.empty() || BytesMatch(bytes, log)) << "request " << failing;
    }
}

INSTANTIATE_TEST_SUITE_P(Share, FaultTest, testing::Range(1, shares + 1));

} // namespace
} // namespace ztm::test
