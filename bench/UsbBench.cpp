// A register read through the program's register operations, the shipped USB library and libusb,
// beside a control transfer that is handed to libusb directly. Both ask the same virtual device.

#include "adapter/usb/Device.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "link/USBFunctions.h"
#include "support/TemporaryFile.h"
#include "support/VirtualAdapter.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>

namespace {

using namespace ztm;

constexpr int warmUpReads = 200;
constexpr int measuredReads = 6000;
constexpr double largestRatio = 1.05;
constexpr int32_t limitRegister = 0x0B;
constexpr auto timeOut = std::chrono::milliseconds(500);

double Microseconds() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

/// What it took, or the end of the program when the read was not right.
template <class Read>
double Time(const Read &read) {
    const double start = Microseconds();
    const int value = read();
    const double took = Microseconds() - start;
    if (value != limitRegister + 1) {
        std::fprintf(stderr, "a read went wrong\n");
        std::exit(EXIT_FAILURE);
    }
    return took;
}

double Median(std::vector<double> &times) {
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

} // namespace

int main() {
    // There before the library's adapter, so that they outlive it.
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
    std::vector<double> directTimes;
    std::vector<double> times;
    for (int read = 0; read < warmUpReads + measuredReads; ++read) {
        const double directTook = Time(readDirectly);
        const double took = Time([] { return ReadRegister(limitRegister); });
        if (read >= warmUpReads) {
            directTimes.push_back(directTook);
            times.push_back(took);
        }
    }
    libusb_close(direct);

    const double ratio = Median(times) / Median(directTimes);
    std::printf("register read over USB: median %.1f us, control transfer %.1f us: %.3f x "
                "(at most %.2f) %s\n",
                Median(times), Median(directTimes), ratio, largestRatio,
                ratio <= largestRatio ? "ok" : "MISSED");
}
