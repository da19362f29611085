// ztm-eval-i2c on a virtual bus with the simulated chip: its own window, and the program as it
// ships from that window to its end.

#include "app/BusWindow.h"
#include "app/ProgramRun.h"
#include "app/ShippedProgram.h"
#include "support/SimulatedChip.h"

#include <QApplication>
#include <QTimer>

#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>

namespace ztm::test {
namespace {

using namespace std::chrono_literals;

/// Made in the program's process, before its first window.
VirtualI2c &BusOfTheRun() {
    static VirtualI2c bus;
    return bus;
}

void PlugIn() {
    static SimulatedChip chip;
    BusOfTheRun().Plug([](size_t, const ByteTransfer &transfer) { return chip.Answer(transfer); });
}

std::unique_ptr<QWidget> NewWindowOnABus() {
    PlugIn();
    return NewBusWindow();
}

/// A step of the user or of the bus.
void Take(const QString &step) {
    if (step == "tmrRefresh") {
        for (const QWidget *window : QApplication::topLevelWidgets()) {
            if (auto *timer = window->findChild<QTimer *>(step)) {
                QMetaObject::invokeMethod(timer, "timeout");
            }
        }
    } else if (step == "unplug") {
        BusOfTheRun().Unplug();
    } else if (step == "plug") {
        PlugIn();
    } else if (step == "take" || step == "give") {
        BusOfTheRun().Bind(SimulatedChip::address, step == "take" ? "fanwatch" : "");
    } else {
        Do(step);
    }
}

TEST(BusWindow, AsksForBusAndAddressAndShowsHowTheyFareUntilTheProgramEnds) {
    const std::string nothingYet = "In use, with no chip yet: the address can be changed.;";
    const std::string found = "An ZTM7720 was found at:50h, on the USB port ;";
    const std::string identified = "In use: a chip has identified itself.;";
    const QString choose = "cmbBus=i2c-7 - Workbench bus; cmbAddress=0x2C  (8-bit 0x58)";
    const struct {
        QString done;
        std::string said;
    } runs[] = {
        {"?cmbBus; ?cmbAddress; cmdQuit", ";;ended;"},
        {"close BusWindow", "ended;"},
        {"signal 15", "ended;"},
        {"?lblState; cmbBus=i2c-7 - Workbench bus; ?lblState; cmbAddress=0x2C  (8-bit 0x58); "
         "?lblState; ?lblTransfers; cmdQuit",
         "Choose the bus.;Choose the address.;Ready. Nothing has been sent.;0, of which 0 "
         "failed;ended;"},
        {choose + "; cmdUse; close BusWindow; NextCMD; NextCMD; ?SearchResultsLIST; CancelCMD",
         found + "ended;"},
        {choose + "; cmbAddress=0x64  (8-bit 0xC8); cmdUse; NextCMD; NextCMD; tmrRefresh; "
                  "?lblLastError; "
                  "?lblState; BackCMD; cmbAddress=0x2C  (8-bit 0x58); NextCMD; "
                  "?SearchResultsLIST; FinishCMD; tmrRefresh; ?lblState; close frmMain",
         "no acknowledgement;" + nothingYet + found + identified + "ended;"},
        {choose + "; cmbAddress=0x50  (8-bit 0xA0); later close MessageBox; cmdUse; ?lblState; "
                  "later cmdAccept; cmdUse; later close MessageBox; "
                  "cmbAddress=0x37  (8-bit 0x6E); ?lblState; ?cmbAddress; CancelCMD",
         "Ready. Nothing has been sent.;" + nothingYet + "0x50  (8-bit 0xA0);ended;"},
        {"unplug; tmrRefresh; ?lblState; plug; tmrRefresh; ?lblState; " + choose +
             "; take; tmrRefresh; ?lblState; give; tmrRefresh; ?lblState; cmdQuit",
         "The kernel lists no I2C bus, because a module is not loaded: sudo modprobe i2c-dev;"
         "Choose the bus.;i2c-7, address 0x2C, belongs to the kernel driver \"fanwatch\". Take it "
         "away: echo 7-002c | sudo tee /sys/bus/i2c/drivers/fanwatch/unbind;Ready. Nothing has "
         "been sent.;ended;"},
    };
    for (const auto &[done, said] : runs) {
        const Outcome run = RunProgramWith(
            [steps = done.split("; ")] { std::for_each(steps.begin(), steps.end(), Take); },
            NewWindowOnABus, Opening::CompanionAlone);
        EXPECT_EQ(run.exitCode, EXIT_SUCCESS) << done.toStdString();
        EXPECT_EQ(run.said, said) << done.toStdString();
    }
}

/// The program as it ships. The chip's answer to each transfer can be replaced.
class I2cProgram : public ShippedProgram {
protected:
    using Fault = std::function<void(size_t number, BusAnswer &answer)>;

    Ending Run(const Fault &fault) {
        bus.ForgetTransfers();
        bus.Plug([this, &fault](size_t number, const ByteTransfer &transfer) {
            BusAnswer answer = chip.Answer(transfer);
            fault(number, answer);
            return answer;
        });
        const Ending ending = ShippedProgram::Run(ZTM_PROGRAM);
        EXPECT_TRUE(bus.IsClosedByAll());
        return ending;
    }

    SimulatedChip chip;
    VirtualI2c bus;
};

TEST_F(I2cProgram, WorksOnTheChipFromTheWindowToARegisterWrite) {
    EXPECT_EQ(Run([](auto &&...) {}), wholeSession) << errors;
    EXPECT_EQ(errors, "");
    EXPECT_EQ(bus.UnwantedRequests(), 0);
    const auto transfers = bus.Transfers();
    EXPECT_THAT(transfers, testing::Each(testing::Field(&ByteTransfer::address, 0x2C)));
    EXPECT_THAT(transfers, testing::Contains(ByteTransfer{0x2C, false, 0x0B, 66}));
}

/// Each answer takes longer than several ticks are apart.
TEST_F(I2cProgram, StaysUsableOnABusThatHasBecomeSlow) {
    EXPECT_EQ(
        Run([](size_t number, BusAnswer &answer) { answer.delay = number < 6 ? 0ms : 150ms; }),
        wholeSession)
        << errors;
}

TEST_F(I2cProgram, EndsWhenAKernelDriverTakesTheAddressAndSendsNothingMore) {
    constexpr size_t last = 10;
    EXPECT_EQ(Run([this](size_t number, BusAnswer & /*answer*/) {
                  if (number == last) {
                      bus.Bind(SimulatedChip::address, "fanwatch");
                  }
              }),
              failure);
    EXPECT_EQ(bus.Transfers().size(), last + 1);
    EXPECT_THAT(errors, testing::HasSubstr("the kernel driver \"fanwatch\""));
    EXPECT_THAT(Run([](auto &&...) {}).said, testing::StartsWith("i2c-7, address 0x2C, belongs"));
}

/// The sweep over all transfers is cut into parts that can run at the same time.
constexpr size_t sweepParts = 4;

class I2cProgramSweep : public I2cProgram, public testing::WithParamInterface<size_t> {};

TEST_P(I2cProgramSweep, EndsTheStatedWayWhereverTheBusLeaves) {
    for (size_t index = GetParam();; index += sweepParts) {
        std::atomic<bool> hasLeft = false;
        const Ending ending = Run([&](size_t number, BusAnswer &answer) {
            answer.leaves = number == index;
            hasLeft = hasLeft || answer.leaves;
        });
        if (!hasLeft) { // the session was shorter
            EXPECT_EQ(ending, wholeSession);
            EXPECT_GT(index, 20);
            return;
        }
        EXPECT_EQ(ending, index == 0 ? nothingFound : failure)
            << "left at transfer " << index << ": " << errors;
        EXPECT_EQ(errors, "ztm-eval-i2c: i2c-7 is not there any more.\n");
    }
}

INSTANTIATE_TEST_SUITE_P(Part, I2cProgramSweep, testing::Range(size_t{0}, sweepParts));

} // namespace
} // namespace ztm::test
