#pragma once

#include <cstdint>

/// Puts 0x before the digits of a build option.
#define ZTM_HEX_OF(digits) 0x##digits
#define ZTM_HEX(digits) ZTM_HEX_OF(digits)

namespace ztm::usb {

/// The vendor and product id of a kind of device.
struct UsbId {
    uint16_t vendor;
    uint16_t product;
};

/// An adapter that runs its firmware, and one that waits for it. Set by build options.
inline constexpr UsbId runningAdapter{ZTM_HEX(ZTM_USB_VENDOR), ZTM_HEX(ZTM_USB_PRODUCT)};
inline constexpr UsbId loadingAdapter{ZTM_HEX(ZTM_USB_VENDOR), ZTM_HEX(ZTM_USB_LOADER_PRODUCT)};

} // namespace ztm::usb
