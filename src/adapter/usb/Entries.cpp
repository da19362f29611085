#include "adapter/usb/UsbAdapter.h"
#include "link/USBFunctions.h"

#include <exception>

namespace {

/// The only adapter of the process; nothing is opened before the first LoadFirmWare.
ztm::usb::UsbAdapter &Adapter() {
    static ztm::usb::UsbAdapter adapter;
    return adapter;
}

} // namespace

extern "C" {

/// An exception must not leave a C function; here only a lack of memory can cause one.
__attribute__((visibility("default"))) int16_t LoadFirmWare(const char *path) {
    try {
        return Adapter().LoadFirmWare(path);
    } catch (const std::exception &) {
        return -1;
    }
}

__attribute__((visibility("default"))) int16_t VendorIORequest(int16_t request, int32_t value,
                                                               int32_t index, int16_t direction,
                                                               int16_t length, uint8_t *buffer) {
    return Adapter().VendorIORequest(request, value, index, direction, length, buffer);
}
}
