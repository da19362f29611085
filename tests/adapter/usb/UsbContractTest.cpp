// Holds the USB library, as it ships, to the contract: with an adapter that has to be loaded and
// with one that already runs.

#include "adapter/AdapterContract.h"
#include "adapter/sim/SimulatedBoard.h"
#include "link/USBFunctions.h"
#include "support/VirtualAdapter.h"

namespace ztm::test {
namespace {

const std::string firmware = ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex";

/// Is there before the library's first call, and so outlives it.
VirtualUsb &Bus() {
    static VirtualUsb bus;
    return bus;
}

/// An adapter with the simulated chip.
void PlugIn(bool running) {
    Bus().Unplug();
    static std::unique_ptr<sim::SimulatedBoard> board;
    static std::unique_ptr<VirtualAdapter> device;
    board = std::make_unique<sim::SimulatedBoard>();
    board->LoadFirmWare(firmware.c_str());
    device = std::make_unique<VirtualAdapter>(
        Bus(), [](auto... fields) { return board->VendorIORequest(fields...); });
    running ? device->PlugRunning() : device->PlugLoading();
}

AdapterUnderTest UsbLibrary(bool running) {
    return {
        .loadFirmWare = LoadFirmWare,
        .vendorIORequest = VendorIORequest,
        .firmware = firmware,
        .plugIn = [running] { PlugIn(running); },
        .unplug = [] { Bus().Unplug(); },
    };
}

} // namespace

INSTANTIATE_TEST_SUITE_P(UsbLoading, AdapterContract, testing::Values(UsbLibrary(false)));
INSTANTIATE_TEST_SUITE_P(UsbRunning, AdapterContract, testing::Values(UsbLibrary(true)));

} // namespace ztm::test
