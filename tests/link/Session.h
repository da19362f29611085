#pragma once

#include "link/LinkState.h"
#include "regmap/RegMapStuff.h"
#include "support/AdapterDouble.h"

namespace ztm::test {

/// The start of a run, with a chip of that variant at the first address of the USB medium.
inline void StartSession(std::string_view variant = ZTM7720) {
    ResetCore();
    CommsMedium = MediumUSB;
    USBDeviceAddress = 0x50;
    DeviceName = variant;
    BuildRegisterMap();
}

} // namespace ztm::test
