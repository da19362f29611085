#pragma once

#include "adapter/usb/Device.h"
#include "adapter/usb/Firmware.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace ztm::usb {

/// How long the adapter is waited for.
struct Bounds {
    std::chrono::milliseconds request{500};       ///< for one request
    std::chrono::milliseconds loadTransfer{1000}; ///< for one transfer of the firmware load
    std::chrono::milliseconds comeBack{5000}; ///< from the end of the load to the adapter's return
    std::chrono::milliseconds look{250};      ///< between two looks for the returned adapter
};

/// The USB adapter: everything behind the two entries of link/USBFunctions.h, as
/// docs/adapter-protocol.md describes it. Every call is bounded in time. Not for use by several
/// threads at once.
class UsbAdapter {
public:
    explicit UsbAdapter(const Bounds &bounds = {}) : bounds(bounds) {}

    /// Opens the adapter, after loading the firmware in the Intel HEX file at `path` into one that
    /// waits for it, and keeps it for this process alone. Closes what an earlier call opened.
    /// 0 when that worked; negative, with a line that gives the reason on standard error and
    /// nothing left open, when not. Nothing is sent unless the file is sound.
    int16_t LoadFirmWare(const char *path);

    /// Sends one request and returns 0 when it completed with a full reply. Anything but 0, with
    /// nothing written to `buffer`, when it did not, when no adapter is open, or when the fields
    /// do not fit into a transfer; nothing is then sent. An adapter that is gone is closed and
    /// stays so until the next LoadFirmWare. Allocates no memory of its own.
    int16_t VendorIORequest(int16_t request, int32_t value, int32_t index, int16_t direction,
                            int16_t length, uint8_t *buffer);

private:
    std::string Start(const Firmware &firmware);
    std::string StartWithFirmware(const Firmware &firmware);
    int OpenOnArrival(class ArrivalWatch &watch, Context &opened);

    Bounds bounds;
    Context context;
    Device device; // closed before its context
};

} // namespace ztm::usb
