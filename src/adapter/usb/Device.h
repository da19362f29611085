#pragma once

#include "adapter/usb/UsbIds.h"

#include <libusb.h>

#include <chrono>
#include <cstdint>
#include <memory>

namespace ztm::usb {

struct CloseContext {
    void operator()(libusb_context *context) const { libusb_exit(context); }
};
/// A session with libusb. What was opened in it must be closed before it.
using Context = std::unique_ptr<libusb_context, CloseContext>;

/// A new session, which knows the devices that are there now; null when libusb cannot start.
Context NewContext();

/// Which way the data of a control transfer goes.
enum class Direction : uint8_t { ToDevice = LIBUSB_ENDPOINT_OUT, FromDevice = LIBUSB_ENDPOINT_IN };

/// A vendor request to the device: the fields of the set-up packet that the requests differ in.
struct VendorRequest {
    Direction direction;
    uint8_t request;
    uint16_t value;
    uint16_t index;
    uint16_t length;
};

/// A USB device whose interface 0 this object holds claimed, or none. Closed at the end of its
/// life, of which the context must see the end.
class Device {
public:
    /// Opens the first device of that id and claims its interface; closes what was open. 0, or a
    /// libusb error code with nothing left open: LIBUSB_ERROR_NO_DEVICE when there is none,
    /// LIBUSB_ERROR_ACCESS without permission, LIBUSB_ERROR_BUSY when another program holds it.
    int Open(libusb_context *context, UsbId id);
    void Close();
    bool IsOpen() const { return handle != nullptr; }

    /// Sends a request with `length` bytes of data from or into `data` and waits for its end, at
    /// most `timeOut`. The number of bytes that went over, or a libusb error code. The device
    /// must be open; one that is gone is closed.
    int Transfer(const VendorRequest &request, uint8_t *data, std::chrono::milliseconds timeOut);

private:
    struct CloseHandle {
        void operator()(libusb_device_handle *handle) const;
    };
    std::unique_ptr<libusb_device_handle, CloseHandle> handle;
};

} // namespace ztm::usb
