// A session in the real windows on the simulator that ships with the program.

#include "link/USBComms.h"
#include "regmap/RegMapStuff.h"
#include "support/Driver.h"
#include "support/TemporaryFile.h"
#include "ui/instruments/ToggleIndicator.h"
#include "ui/session/InitForm.h"

#include <QLineEdit>

#include <gmock/gmock.h>

namespace ztm::test {
namespace {

using testing::IsEmpty;

class SimulatedSession : public testing::Test {
protected:
    SimulatedSession() {
        ShowForm<InitForm>();
        SearchInWizard();
        Click("FinishCMD");
        ClickTab("Register Access");
    }
    ~SimulatedSession() override { DeleteAllForms(); }

    static int ShownAt(int32_t address) {
        Find<QLineEdit>("txtReadAddr").setText(QString::number(address, 16));
        Click("cmdRead");
        return TextOf("lblDecVal").toInt();
    }

    static int ShownAfterWriting(int value) {
        Find<QLineEdit>("txtDec").setText(QString::number(value));
        Click("cmdWrite");
        return TextOf("lblDecVal").toInt();
    }
};

/// Measured, and so never written and not bound to a default.
bool IsMeasured(int32_t address) {
    return address >= 0x40 && address <= 0x51;
}

TEST_F(SimulatedSession, EveryRegisterIsReadAndWrittenInTheMainWindow) {
    EXPECT_FALSE(Find<ToggleIndicator>("Shape1").IsAlarm());
    constexpr int32_t identification[] = {0x3D, 0x3E, 0x3F};
    std::vector<int32_t> wrong;
    for (const RegisterEntry &entry : RegisterMap) {
        if (entry.Name.empty() || entry.Address == 0x02) {
            continue; // an empty slot; the register with the reset bit
        }
        const bool fixed =
            std::count(std::begin(identification), std::end(identification), entry.Address) > 0;
        const int before = ShownAt(entry.Address);
        if (IsMeasured(entry.Address)) {
            continue;
        }
        const int after = ShownAfterWriting(0xA5);
        if (before != entry.Default || after != (fixed ? before : 0xA5)) {
            wrong.push_back(entry.Address);
        }
    }
    EXPECT_THAT(wrong, IsEmpty());

    ShownAt(0x02);
    ShownAfterWriting(0x01);
    EXPECT_EQ(ShownAt(0x0B), 0x8B) << "after the reset bit";
}

/// What the chip holds in the registers that a snapshot can restore.
std::vector<int32_t> ChipSetup() {
    std::vector<int32_t> values;
    for (int32_t address = 0; address < 0x3D; ++address) {
        values.push_back(ReadRegister(address));
    }
    return values;
}

TEST_F(SimulatedSession, ASetupComesBackFromItsSnapshot) {
    constexpr int32_t resetBit = 0x01;
    constexpr int32_t lockBit = 0x40;
    const auto change = [](int32_t pattern) {
        for (const RegisterEntry &entry : RegisterMap) {
            if (entry.Address < 0x3D && !entry.Name.empty()) {
                const int32_t value = (entry.Address * 7 + pattern) % 256;
                WriteRegister(entry.Address, entry.Address == 0x01   ? value & ~lockBit
                                             : entry.Address == 0x02 ? value & ~resetBit
                                                                     : value);
            }
        }
    };
    const TemporaryFolder folder;
    const QString path = QString::fromStdString(folder.Path("setup.sav"));
    ClickTab("Control");
    change(0x31);
    const auto saved = ChipSetup();
    AnswerFileDialogOf([] { Click("cmdSaveRegs"); }, path);
    EXPECT_EQ(ChipSetup(), saved);
    change(0x52);
    EXPECT_NE(ChipSetup(), saved);
    AnswerFileDialogOf([] { Click("cmdRecallRegs"); }, path);
    EXPECT_EQ(ChipSetup(), saved) << "after everything was changed";
    WriteRegister(0x02, resetBit);
    EXPECT_NE(ChipSetup(), saved);
    AnswerFileDialogOf([] { Click("cmdRecallRegs"); }, path);
    EXPECT_EQ(ChipSetup(), saved) << "after a reset";
}

TEST_F(SimulatedSession, TheBoardIsAlive) {
    const int celsius = ShownAt(0x41) - 64;
    EXPECT_GT(celsius, 15);
    EXPECT_LT(celsius, 60);
    const int low = ShownAt(0x4A);
    const int count = ShownAt(0x4B) * 256 + low;
    EXPECT_GT(4915200 / count, 500);
    EXPECT_LT(4915200 / count, 10000);
}

} // namespace
} // namespace ztm::test
