#include "adapter/usb/ArrivalWatch.h"

#include <sys/time.h>
#include <thread>

namespace ztm::usb {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

ArrivalWatch::ArrivalWatch(libusb_context *context, UsbId id) : context(context) {
    registered =
        libusb_has_capability(LIBUSB_CAP_HAS_HOTPLUG) &&
        libusb_hotplug_register_callback(context, LIBUSB_HOTPLUG_EVENT_DEVICE_ARRIVED,
                                         LIBUSB_HOTPLUG_NO_FLAGS, id.vendor, id.product,
                                         LIBUSB_HOTPLUG_MATCH_ANY, OnArrival, this, &callback) == 0;
}

ArrivalWatch::~ArrivalWatch() {
    if (registered) {
        libusb_hotplug_deregister_callback(context, callback);
    }
}

int ArrivalWatch::OnArrival(libusb_context * /*context*/, libusb_device * /*device*/,
                            libusb_hotplug_event /*event*/, void *watch) {
    static_cast<ArrivalWatch *>(watch)->arrived = 1;
    return 0; // stay registered
}

void ArrivalWatch::Wait(std::chrono::milliseconds longest) {
    const auto end = Clock::now() + longest;
    int error = registered ? 0 : LIBUSB_ERROR_NOT_SUPPORTED;
    while (!arrived && error == 0 && Clock::now() < end) {
        // Other events, such as a device leaving, also end this call.
        const auto left = std::chrono::ceil<microseconds>(end - Clock::now()).count();
        timeval remaining{left > 0 ? left / 1'000'000 : 0, left > 0 ? left % 1'000'000 : 0};
        error = libusb_handle_events_timeout_completed(context, &remaining, &arrived);
    }
    if (error != 0) {
        std::this_thread::sleep_until(end);
    }
    arrived = 0;
}

} // namespace ztm::usb
