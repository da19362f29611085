// The program on the simulated board from its start to its exit code, with the board's window
// beside it.

#include "app/BoardWindow.h"
#include "app/ProgramRun.h"

#include <gtest/gtest.h>

namespace ztm::test {
namespace {

TEST(SimulatorProgram, EndsInOrderAndByAFailureWhateverBecomesOfTheBoard) {
    const char *failure = "Communication Failure - Check USB connections;";
    const char *nothing = "Sorry, no ZTM7710/20s were found. Please check all connections and try "
                          "again;ended;";
    const struct {
        const char *done;
        int exitCode;
        const char *said;
    } runs[] = {
        {"BoardWindow; CancelCMD", 0, "ended;"},
        {"NextCMD; later close InitForm; NextCMD", 0, "ended;"},
        {"NextCMD; NextCMD; FinishCMD; BoardWindow; close frmMain", 0, "ended;"},
        {"close BoardWindow; NextCMD; NextCMD; FinishCMD; tab Register Access; txtReadAddr=3D; "
         "cmdRead; ?lblDecVal; close frmMain",
         0, "52;ended;"},
        {"NextCMD; NextCMD; FinishCMD; tab Register Access; cmdRead; chkPluggedIn; cmdRead",
         EXIT_FAILURE, failure},
        {"NextCMD; NextCMD; FinishCMD; tab Visual Display; cmdEasySetup; ticks 1; chkPluggedIn; "
         "ticks 1",
         EXIT_FAILURE, failure},
        {"chkRefuseFirmware; NextCMD; NextCMD; ?SearchResultsLBL; CancelCMD", 0, nothing},
        {"chkPluggedIn; NextCMD; NextCMD; ?SearchResultsLBL; CancelCMD", 0, nothing},
        {"signal 15", 0, "ended;"},
        {"NextCMD; USBCheck; later signal 2; NextCMD", 0, "ended;"}, // behind a message
        {"cmbAddress=0x51; NextCMD; later signal 1; NextCMD", 0, "ended;"},
        {"NextCMD; NextCMD; FinishCMD; tab Control; cmdHeaters; later signal 15; cmdSaveRegs", 0,
         "ended;"},
        {"signal 15; signal 2", 128 + 2, ""},
        {"signal 1; signal 1", 0, "ended;"}, // as when a terminal is closed
        {"signal 13; signal 25; CancelCMD", 0, "ended;"},
        {"cmbVariant=ZTM7710; cmbAddress=0x51; NextCMD; NextCMD; ?SearchResultsLIST; CancelCMD", 0,
         "An ZTM7710 was found at:51h, on the USB port ;ended;"},
    };
    for (const auto &[done, exitCode, said] : runs) {
        const Outcome run = RunProgramWith(
            [steps = done] { Do(steps); },
            []() -> std::unique_ptr<QWidget> { return std::make_unique<BoardWindow>(); });
        EXPECT_EQ(run.exitCode, exitCode) << done;
        EXPECT_EQ(run.said, said) << done;
    }
}

} // namespace
} // namespace ztm::test
