#pragma once

#include "adapter/usb/UsbIds.h"

#include <libusb.h>

#include <chrono>

namespace ztm::usb {

/// Notices that a device of the given id is plugged in, from its construction on. The context
/// must live longer.
class ArrivalWatch {
public:
    ArrivalWatch(libusb_context *context, UsbId id);
    ~ArrivalWatch();
    ArrivalWatch(const ArrivalWatch &) = delete;
    ArrivalWatch &operator=(const ArrivalWatch &) = delete;

    /// Returns when a device has arrived that no earlier call has told of, and after `longest`
    /// at the latest. Where the system tells of no arrivals, always after `longest`.
    void Wait(std::chrono::milliseconds longest);

private:
    static int LIBUSB_CALL OnArrival(libusb_context *context, libusb_device *device,
                                     libusb_hotplug_event event, void *watch);

    libusb_context *context;
    libusb_hotplug_callback_handle callback = 0;
    bool registered;
    int arrived = 0; ///< libusb's kind of flag
};

} // namespace ztm::usb
