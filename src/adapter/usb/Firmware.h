#pragma once

#include "adapter/firmware/IntelHex.h"
#include "adapter/usb/Device.h"

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace ztm::usb {

/// Data for the adapter's RAM, in ascending order of addresses, all below the address that
/// controls the CPU.
using Firmware = std::vector<HexBlock>;

/// Reads the Intel HEX file at `path`, whose last separator may be a backslash. Nothing, and in
/// `whyNot` the reason, when `path` is null or no ordinary, readable, sound file, or when its
/// data does not fit into the RAM.
std::optional<Firmware> ReadFirmware(const char *path, std::string &whyNot);

/// Holds the CPU of an open device in reset, writes the firmware to its RAM and lets the CPU run.
/// Each transfer takes `timeOut` at most. 0, or a libusb error code, after which the CPU is as
/// the failed transfer left it. A device that leaves the bus as its CPU starts is no error.
int Download(Device &device, const Firmware &firmware, std::chrono::milliseconds timeOut);

} // namespace ztm::usb
