// Holds the simulated library, as it ships, to the contract.

#include "adapter/AdapterContract.h"
#include "adapter/sim/BoardControl.h"
#include "link/USBFunctions.h"

namespace ztm::test {
namespace {

void SetPluggedIn(bool isPluggedIn) {
    sim::BoardSettings settings;
    settings.isPluggedIn = isPluggedIn;
    ArrangeSimulatedBoard(&settings);
}

const AdapterUnderTest simulated = {
    .name = "simulated",
    .loadFirmWare = LoadFirmWare,
    .vendorIORequest = VendorIORequest,
    .firmware = ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex",
    .plugIn =
        [] {
            SetPluggedIn(false);
            SetPluggedIn(true);
        },
    .unplug = [] { SetPluggedIn(false); },
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, AdapterContract, testing::Values(simulated));

} // namespace ztm::test
