#pragma once

#include "adapter/usb/Device.h"
#include "adapter/usb/Firmware.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace ztm::usb {

/// Longest waits for the adapter.
struct Bounds {
    std::chrono::milliseconds request{500};   ///< for one request
    LoadBounds load{};                        ///< for the firmware load
    std::chrono::milliseconds comeBack{5000}; ///< from the end of the load to the adapter's return
    std::chrono::milliseconds look{250};      ///< between two checks for the returned adapter
};

/// The USB adapter: everything behind the two functions of link/USBFunctions.h, as described in
/// docs/adapters.md. Every call is bounded in time. Not thread-safe.
class UsbAdapter {
public:
    explicit UsbAdapter(const Bounds &bounds = {}) : bounds(bounds) {}

    /// Opens the adapter for this process alone, first loading the firmware in the Intel HEX file
    /// at `path` into one that waits for it. Closes what an earlier call opened. Returns 0 on
    /// success; otherwise negative, with the reason in a line on standard error and nothing left
    /// open. Nothing is sent unless the file is valid.
    int16_t LoadFirmWare(const char *path);

    /// Sends one request and returns 0 if it completed with a full reply. Otherwise returns
    /// non-zero and writes nothing to `buffer`. Nothing is sent if no adapter is open or the fields
    /// do not fit into a transfer. An adapter that is gone is closed and stays closed until the
    /// next LoadFirmWare. Allocates no memory of its own.
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
