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
/// A libusb session. Everything opened in it must be closed before it.
using Context = std::unique_ptr<libusb_context, CloseContext>;

/// A new session that knows the devices present now; null if libusb cannot start.
Context NewContext();

/// The data direction of a control transfer.
enum class Direction : uint8_t { ToDevice = LIBUSB_ENDPOINT_OUT, FromDevice = LIBUSB_ENDPOINT_IN };

/// A vendor request to the device: the setup packet fields that differ between requests.
struct VendorRequest {
    Direction direction;
    uint8_t request;
    uint16_t value;
    uint16_t index;
    uint16_t length;
};

/// A USB device with its interface 0 claimed, or none. Closed on destruction; the context must
/// outlive it.
class Device {
public:
    /// Opens the first device with that id and claims its interface; closes the previous one.
    /// Returns 0, or a libusb error code with nothing left open: LIBUSB_ERROR_NO_DEVICE if there is
    /// none, LIBUSB_ERROR_ACCESS without permission, LIBUSB_ERROR_BUSY if another program uses it.
    int Open(libusb_context *context, UsbId id);
    void Close();
    bool IsOpen() const { return handle != nullptr; }

    /// Sends a request with `length` bytes from or into `data` and waits for its end, at most
    /// `timeOut`. Returns the number of bytes transferred, or a libusb error code. The device must
    /// be open; it is closed if it is gone.
    int Transfer(const VendorRequest &request, uint8_t *data, std::chrono::milliseconds timeOut);

private:
    struct CloseHandle {
        void operator()(libusb_device_handle *handle) const;
    };
    std::unique_ptr<libusb_device_handle, CloseHandle> handle;
};

} // namespace ztm::usb
