// Holds the library for I2C buses, as it ships, to the contract, on a virtual bus with the
// simulated chip.

#include "adapter/AdapterContract.h"
#include "adapter/i2c/BusControl.h"
#include "adapter/sim/SimulatedBoard.h"
#include "link/USBFunctions.h"
#include "support/SimulatedChip.h"

namespace ztm::test {
namespace {

/// Is there before the library's first call, and so outlives it.
VirtualI2c &Bus() {
    static VirtualI2c bus;
    return bus;
}

void PlugIn() {
    static std::unique_ptr<SimulatedChip> chip;
    Bus().Unplug();
    chip = std::make_unique<SimulatedChip>();
    Bus().Plug(
        [](size_t /*number*/, const ByteTransfer &transfer) { return chip->Answer(transfer); });
    const i2c::BusChoice nothing;
    const i2c::BusChoice choice{VirtualI2c::number, SimulatedChip::address};
    ChooseI2cBus(&nothing); // ends the session before
    ChooseI2cBus(&choice);
}

const AdapterUnderTest i2cLibrary = {
    .name = "I2C",
    .loadFirmWare = LoadFirmWare,
    .vendorIORequest = VendorIORequest,
    .firmware = ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex",
    .hasHeaters = false,
    .plugIn = PlugIn,
    .unplug = [] { Bus().Unplug(); },
};

} // namespace

INSTANTIATE_TEST_SUITE_P(I2c, AdapterContract, testing::Values(i2cLibrary));

} // namespace ztm::test
