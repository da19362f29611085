// A session in the real windows on the simulator that ships with the program.

#include "link/USBComms.h"
#include "regmap/RegMapStuff.h"
#include "support/TemporaryFile.h"
#include "support/WindowDriver.h"
#include "ui/session/InitForm.h"

#include <QLineEdit>

#include <gmock/gmock.h>

namespace ztm::test {
namespace {

class SimulatedSession : public testing::Test {
protected:
    SimulatedSession() {
        ShowForm<InitForm>();
        SearchInWizard();
        Click("FinishCMD");
    }
    ~SimulatedSession() override { DeleteAllForms(); }

    /// Puts a number into a box and clicks a button; what is shown then.
    static int ShownAfter(const char *box, const QString &number, const char *button) {
        Find<QLineEdit>(box).setText(number);
        Click(button);
        return TextOf("lblDecVal").toInt();
    }
};

TEST_F(SimulatedSession, EveryRegisterIsReadAndWrittenInTheMainWindow) {
    ClickTab("Register Access");
    std::vector<int32_t> wrong;
    for (const RegisterEntry &entry : RegisterMap) {
        const int32_t address = entry.Address;
        const bool isMeasured = address >= 0x40 && address <= 0x51;
        if (entry.Name.empty() || address == 0x02) {
            continue; // an empty slot; the register with the reset bit
        }
        const int before = ShownAfter("txtReadAddr", QString::number(address, 16), "cmdRead");
        if (!isMeasured) {
            const int after = ShownAfter("txtDec", "165", "cmdWrite");
            const bool isIdentification = address >= 0x3D && address <= 0x3F;
            if (before != entry.Default || after != (isIdentification ? before : 165)) {
                wrong.push_back(address);
            }
        }
    }
    EXPECT_THAT(wrong, testing::IsEmpty());
}

/// What the chip holds in the registers that a snapshot can restore.
std::vector<int32_t> ChipSetup() {
    std::vector<int32_t> values;
    for (int32_t address = 0; address < 0x3D; ++address) {
        values.push_back(ReadRegister(address));
    }
    return values;
}

/// Writes another value to every register, without the lock bit of 0x01 and the reset bit of 0x02.
void ChangeChip(int32_t pattern) {
    for (const RegisterEntry &entry : RegisterMap) {
        if (entry.Address < 0x3D && !entry.Name.empty()) {
            const int32_t forbidden = entry.Address == 0x01 ? 0x40 : entry.Address == 0x02;
            WriteRegister(entry.Address, (entry.Address * 7 + pattern) % 256 & ~forbidden);
        }
    }
}

TEST_F(SimulatedSession, ASetupComesBackFromItsSnapshot) {
    const TemporaryFolder folder;
    const QString path = QString::fromStdString(folder.Path("setup.sav"));
    ClickTab("Control");
    ChangeChip(0x31);
    const auto saved = ChipSetup();
    AnswerFileDialogOf([] { Click("cmdSaveRegs"); }, path);
    EXPECT_EQ(ChipSetup(), saved);
    const auto changeAll = [] { ChangeChip(0x52); };
    const auto reset = [] { WriteRegister(0x02, 0x01); };
    for (const std::function<void()> &change : {std::function<void()>(changeAll), {reset}}) {
        change();
        EXPECT_NE(ChipSetup(), saved);
        AnswerFileDialogOf([] { Click("cmdRecallRegs"); }, path);
        EXPECT_EQ(ChipSetup(), saved);
    }
}

} // namespace
} // namespace ztm::test
