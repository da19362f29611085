// The shipped program in a process of its own, on the real libusb and a virtual USB adapter with
// the simulated chip, from the wizard to its end.

#include "adapter/sim/SimulatedBoard.h"
#include "adapter/usb/UsbAdapter.h"
#include "app/ShippedProgram.h"
#include "support/VirtualAdapter.h"

#include <gmock/gmock.h>

namespace ztm::test {
namespace {

const char firmware[] = ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex";

constexpr uint8_t ramRequest = 0xA0;
constexpr uint8_t handshakeRequest = 0xDF;
constexpr uint8_t registerRequest = 0xDE;

const std::string running = IdText(usb::runningAdapter);
const std::string loading = IdText(usb::loadingAdapter);

class UsbProgram : public ShippedProgram {
protected:
    UsbProgram() { board.LoadFirmWare(firmware); }

    Ending Run() { return ShippedProgram::Run(ZTM_PROGRAM); }

    VirtualUsb bus;
    sim::SimulatedBoard board;
    VirtualAdapter device{bus, [this](auto... fields) { return board.VendorIORequest(fields...); }};
};

TEST_F(UsbProgram, WorksOnTheChipFromTheWizardToARegisterWrite) {
    for (const bool isLoaded : {true, false}) {
        isLoaded ? device.PlugRunning() : device.PlugLoading();
        device.ForgetTransfers();
        EXPECT_EQ(Run(), wholeSession) << errors;
        EXPECT_EQ(errors, "");
        EXPECT_TRUE(bus.IsClosedByAll());
        uint8_t value = 0;
        EXPECT_EQ(board.VendorIORequest(registerRequest, 0x50, 0x0B, 1, 1, &value), 0);
        EXPECT_EQ(value, 66);
        board.VendorIORequest(registerRequest, 0x50, 0x000B, 0, 0, nullptr);
        EXPECT_EQ(device.Transfers().back().request, handshakeRequest);
    }
}

TEST_F(UsbProgram, FindsNothingAndSaysWhyWithoutAnAdapterOfItsOwn) {
    EXPECT_EQ(Run(), nothingFound);
    EXPECT_EQ(errors,
              "ztm-eval: no USB adapter " + running + " or " + loading + " is plugged in\n");

    device.PlugRunning();
    usb::UsbAdapter other;
    ASSERT_EQ(other.LoadFirmWare(firmware), 0);
    EXPECT_EQ(Run(), nothingFound);
    EXPECT_EQ(errors, "ztm-eval: the USB adapter " + running + " is in use by another program\n");
    EXPECT_EQ(device.TransferCount(), 0);
    EXPECT_EQ(other.VendorIORequest(handshakeRequest, 0, 0, 0, 0, nullptr), 0);
}

/// The stated end of a session that loses its adapter during this transfer.
Ending EndingOfACut(const Transfer &transfer, bool afterRegisters) {
    if (transfer.request == ramRequest) {
        return nothingFound;
    }
    if (transfer.request == handshakeRequest && afterRegisters) {
        return wholeSession; // the last one, which may fail silently
    }
    return failure;
}

/// The sweep over all transfers is cut into parts that can run at the same time.
constexpr size_t sweepParts = 6;

class UsbProgramSweep : public UsbProgram, public testing::WithParamInterface<size_t> {};

TEST_P(UsbProgramSweep, EndsTheStatedWayWhereverItIsUnplugged) {
    for (size_t index = GetParam();; index += sweepParts) {
        bool registersUsed = false;
        std::optional<Ending> stated;
        device.SetFault([&](size_t number, const Transfer &transfer) -> std::optional<Answer> {
            if (number == index) {
                stated = EndingOfACut(transfer, registersUsed);
                return Answer{.then = Answer::Then::LeavesInFlight};
            }
            registersUsed = registersUsed || transfer.request == registerRequest;
            return std::nullopt;
        });
        device.ForgetTransfers();
        device.PlugLoading();
        const Ending ending = Run();
        if (!stated) { // the session was shorter
            EXPECT_EQ(ending, wholeSession);
            EXPECT_GT(index, 20);
            return;
        }
        EXPECT_EQ(ending, *stated) << "unplugged at transfer " << index << ": " << errors;
    }
}

INSTANTIATE_TEST_SUITE_P(Part, UsbProgramSweep, testing::Range(size_t{0}, sweepParts));

} // namespace
} // namespace ztm::test
