#include "adapter/usb/Device.h"

#include <span>

namespace ztm::usb {
namespace {

constexpr int interfaceNumber = 0;

/// The connected devices.
class DeviceList {
public:
    explicit DeviceList(libusb_context *context)
        : count(libusb_get_device_list(context, &devices)) {}
    ~DeviceList() {
        if (count >= 0) {
            libusb_free_device_list(devices, 1);
        }
    }
    DeviceList(const DeviceList &) = delete;
    DeviceList &operator=(const DeviceList &) = delete;

    /// The first device with that id; null if there is none.
    libusb_device *Find(UsbId id) const {
        const std::span all(devices, count > 0 ? static_cast<size_t>(count) : 0);
        for (libusb_device *device : all) {
            libusb_device_descriptor descriptor{};
            if (libusb_get_device_descriptor(device, &descriptor) == 0 &&
                descriptor.idVendor == id.vendor && descriptor.idProduct == id.product) {
                return device;
            }
        }
        return nullptr;
    }

private:
    libusb_device **devices = nullptr;
    ssize_t count;
};

} // namespace

Context NewContext() {
    libusb_context *context = nullptr;
    return Context(libusb_init(&context) == 0 ? context : nullptr);
}

/// Releasing an interface that was never claimed is harmless.
void Device::CloseHandle::operator()(libusb_device_handle *handle) const {
    libusb_release_interface(handle, interfaceNumber);
    libusb_close(handle);
}

int Device::Open(libusb_context *context, UsbId id) {
    Close();
    const DeviceList list(context);
    libusb_device *found = list.Find(id);
    if (!found) {
        return LIBUSB_ERROR_NO_DEVICE;
    }
    libusb_device_handle *opened = nullptr;
    if (const int error = libusb_open(found, &opened)) {
        return error;
    }
    handle.reset(opened);
    const int error = libusb_claim_interface(opened, interfaceNumber);
    if (error) {
        Close();
    }
    return error;
}

void Device::Close() {
    handle.reset();
}

int Device::Transfer(const VendorRequest &request, uint8_t *data,
                     std::chrono::milliseconds timeOut) {
    const auto type = static_cast<uint8_t>(static_cast<uint8_t>(request.direction) |
                                           LIBUSB_REQUEST_TYPE_VENDOR | LIBUSB_RECIPIENT_DEVICE);
    const int result =
        libusb_control_transfer(handle.get(), type, request.request, request.value, request.index,
                                data, request.length, static_cast<unsigned>(timeOut.count()));
    if (result == LIBUSB_ERROR_NO_DEVICE) {
        Close();
    }
    return result;
}

} // namespace ztm::usb
