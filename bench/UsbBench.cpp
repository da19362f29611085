// A register read through the program's register operations, the shipped USB library and libusb,
// compared with a control transfer given directly to libusb. Both use the same virtual device.
// Fails if the former is too slow.

#include "RegisterReads.h"
#include "adapter/usb/Device.h"
#include "link/USBFunctions.h"
#include "support/TemporaryFile.h"
#include "support/VirtualAdapter.h"

#include <cstdio>
#include <cstdlib>

namespace {

using namespace ztm;

constexpr auto timeOut = std::chrono::milliseconds(500);

} // namespace

int main() {
    // Created before the library's adapter, so that they outlive it.
    static test::VirtualUsb bus;
    static test::VirtualAdapter adapter(bus);
    adapter.PlugRunning();
    const test::TemporaryFolder folder;
    const usb::Context context = usb::NewContext();
    libusb_device_handle *direct = libusb_open_device_with_vid_pid(
        context.get(), usb::runningAdapter.vendor, usb::runningAdapter.product);
    if (!direct || LoadFirmWare(folder.Put("firmware.hex", ":00000001FF\n").c_str()) != 0) {
        std::fprintf(stderr, "the virtual adapter cannot be opened\n");
        return EXIT_FAILURE;
    }
    const auto readDirectly = [direct] {
        uint8_t value = 0;
        libusb_control_transfer(direct, 0xC0, 0xDE, 0x50, bench::comparedRegister, &value, 1,
                                static_cast<unsigned>(timeOut.count()));
        return int{value};
    };
    const int exitCode =
        bench::CompareReads("register read over USB, on a virtual bus",
                            "control transfer handed to libusb, median", readDirectly);
    libusb_close(direct);
    return exitCode;
}
