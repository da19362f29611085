// A register read through the program's register operations, the shipped USB library and libusb,
// compared with a control transfer given directly to libusb. Both use the same virtual device.
// Fails if the former is too slow.

#include "Measure.h"
#include "adapter/usb/Device.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "link/USBFunctions.h"
#include "support/TemporaryFile.h"
#include "support/VirtualAdapter.h"

#include <cstdio>
#include <cstdlib>

namespace {

using namespace ztm;

constexpr int reads = 6000;
constexpr int32_t limitRegister = 0x0B;
constexpr auto timeOut = std::chrono::milliseconds(500);

/// Measures a read; ends the program if the read returned a wrong value.
template <class Read>
void Take(bench::Times &times, const Read &read) {
    int value = 0;
    times.Take([&] { value = read(); });
    if (value != limitRegister + 1) {
        std::fprintf(stderr, "a read went wrong\n");
        std::exit(EXIT_FAILURE);
    }
}

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
    CommsMedium = MediumUSB;
    USBDeviceAddress = 0x50;

    const auto readDirectly = [direct] {
        uint8_t value = 0;
        libusb_control_transfer(direct, 0xC0, 0xDE, 0x50, limitRegister, &value, 1,
                                static_cast<unsigned>(timeOut.count()));
        return int{value};
    };
    bench::Times directTimes(CLOCK_MONOTONIC);
    bench::Times times(CLOCK_MONOTONIC);
    for (int read = 0; read < reads; ++read) {
        Take(directTimes, readDirectly);
        Take(times, [] { return ReadRegister(limitRegister); });
    }
    libusb_close(direct);

    bench::Table table;
    bench::Table::Heading("register read over USB, on a virtual bus");
    bench::Table::Figure("control transfer handed to libusb, median", directTimes.Median(), "us");
    bench::Table::Figure("register read, median", times.Median(), "us");
    table.AtMost("register read to control transfer, median", times.Median() / directTimes.Median(),
                 1.05, "x");
    return table.ExitCode();
}
