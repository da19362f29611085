#pragma once

#include "adapter/usb/UsbIds.h"

#include <libusb.h>

#include <chrono>

namespace ztm::usb {

/// Detects the arrival of a device with the given id, from its construction on. The context must
/// outlive it.
class ArrivalWatch {
public:
    ArrivalWatch(libusb_context *context, UsbId id);
    ~ArrivalWatch();
    ArrivalWatch(const ArrivalWatch &) = delete;
    ArrivalWatch &operator=(const ArrivalWatch &) = delete;

    /// Returns when a device has arrived that no earlier call reported, at the latest after
    /// `longest`. Without hotplug support, always after `longest`.
    void Wait(std::chrono::milliseconds longest);

private:
    static int LIBUSB_CALL OnArrival(libusb_context *context, libusb_device *device,
                                     libusb_hotplug_event event, void *watch);

    libusb_context *context;
    libusb_hotplug_callback_handle callback = 0;
    bool registered;
    int arrived = 0; ///< an int, as libusb takes it
};

} // namespace ztm::usb
