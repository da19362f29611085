// Holds the USB library, as it ships, to the contract: with an adapter that has to be loaded and
// with one that already runs.

#include "adapter/AdapterContract.h"
#include "adapter/sim/SimulatedBoard.h"
#include "link/USBFunctions.h"
#include "support/VirtualAdapter.h"

namespace ztm::test {
namespace {

const std::string firmware = ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex";

/// An adapter with the simulated chip, on a bus that outlives the library's use of it: it is there
/// before the library's first call.
class Bench {
public:
    void PlugIn(bool running) {
        bus.Unplug();
        board = std::make_unique<sim::SimulatedBoard>();
        board->LoadFirmWare(firmware.c_str());
        device = std::make_unique<VirtualAdapter>(
            bus, [this](auto... fields) { return board->VendorIORequest(fields...); });
        running ? device->PlugRunning() : device->PlugLoading();
    }
    void Unplug() { bus.Unplug(); }

private:
    VirtualUsb bus;
    std::unique_ptr<sim::SimulatedBoard> board;
    std::unique_ptr<VirtualAdapter> device;
};

Bench &TheBench() {
    static Bench bench;
    return bench;
}

AdapterUnderTest UsbLibrary(bool running) {
    return {
        .loadFirmWare = LoadFirmWare,
        .vendorIORequest = VendorIORequest,
        .firmware = firmware,
        .plugIn = [running] { TheBench().PlugIn(running); },
        .unplug = [] { TheBench().Unplug(); },
    };
}

} // namespace

INSTANTIATE_TEST_SUITE_P(UsbLoading, AdapterContract, testing::Values(UsbLibrary(false)));
INSTANTIATE_TEST_SUITE_P(UsbRunning, AdapterContract, testing::Values(UsbLibrary(true)));

} // namespace ztm::test
