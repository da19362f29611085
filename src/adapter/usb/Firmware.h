#pragma once

#include "adapter/firmware/IntelHex.h"
#include "adapter/usb/Device.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace ztm::usb {

/// Data for the adapter's RAM, in ascending address order, all below the address that controls the
/// CPU.
using Firmware = std::vector<HexBlock>;

/// Reads the Intel HEX file at `path`, whose last separator may be a backslash. Returns nothing,
/// with the reason in `whyNot`, if `path` is null or not a regular, readable, valid file, or if its
/// data does not fit into the RAM.
std::optional<Firmware> ReadFirmware(const char *path, std::string &whyNot);

/// How long a load may take.
struct LoadBounds {
    std::chrono::milliseconds transfer{1000}; ///< for one transfer
    std::chrono::milliseconds whole{30'000};  ///< for all of them
};

/// Holds the CPU of an open device in reset, writes the firmware to its RAM and starts the CPU,
/// within the bounds. Returns 0, or a libusb error code; the CPU then stays as
/// the failed transfer left it. A device that leaves the bus when its CPU starts is no error.
int Download(Device &device, const Firmware &firmware, const LoadBounds &bounds);

} // namespace ztm::usb
