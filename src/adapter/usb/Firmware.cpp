#include "adapter/usb/Firmware.h"

#include "adapter/firmware/FirmwareFile.h"

#include <algorithm>
#include <array>

namespace ztm::usb {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr uint8_t ramRequest = 0xA0;
constexpr uint16_t cpuControl = 0xE600;
constexpr size_t longestPiece = 64;

constexpr uint8_t holdCpu = 1;
constexpr uint8_t runCpu = 0;

bool FitsIntoRam(const HexBlock &block) {
    return uint64_t{block.address} + block.data.size() <= cpuControl;
}

/// The RAM of an open device, from now on and within the bounds.
class Ram {
public:
    Ram(Device &device, const LoadBounds &bounds)
        : device(device), longestTransfer(bounds.transfer), end(Clock::now() + bounds.whole) {}

    /// The longest time that the next transfer may take; zero if none is left.
    milliseconds Patience() const {
        return std::clamp(std::chrono::ceil<milliseconds>(end - Clock::now()), milliseconds(0),
                          longestTransfer);
    }

    int Write(size_t address, const uint8_t *data, size_t length) {
        std::array<uint8_t, longestPiece> piece{};
        std::copy_n(data, length, piece.begin());
        const VendorRequest request{Direction::ToDevice, ramRequest, static_cast<uint16_t>(address),
                                    0, static_cast<uint16_t>(length)};
        const milliseconds patience = Patience();
        if (patience == milliseconds(0)) { // would stand for a transfer without a bound
            return LIBUSB_ERROR_TIMEOUT;
        }
        const int sent = device.Transfer(request, piece.data(), patience);
        if (sent < 0) {
            return sent;
        }
        return sent == request.length ? 0 : LIBUSB_ERROR_IO;
    }

    int Write(const HexBlock &block) {
        for (size_t at = 0; at < block.data.size(); at += longestPiece) {
            const size_t length = std::min(longestPiece, block.data.size() - at);
            if (const int error = Write(block.address + at, block.data.data() + at, length)) {
                return error;
            }
        }
        return 0;
    }

private:
    Device &device;
    const milliseconds longestTransfer;
    const Clock::time_point end;
};

} // namespace

std::optional<Firmware> ReadFirmware(const char *path, std::string &whyNot) {
    const std::string name = NativePath(path ? path : "");
    auto firmware = ReadFirmwareFile(name, whyNot);
    if (firmware) {
        if (std::all_of(firmware->begin(), firmware->end(), FitsIntoRam)) {
            return firmware;
        }
        whyNot = "the data does not fit into the adapter's RAM";
    }
    whyNot = "the firmware file \"" + name + "\": " + whyNot;
    return std::nullopt;
}

int Download(Device &device, const Firmware &firmware, const LoadBounds &bounds) {
    Ram ram(device, bounds);
    if (const int error = ram.Write(cpuControl, &holdCpu, 1)) {
        return error;
    }
    for (const HexBlock &block : firmware) {
        if (const int error = ram.Write(block)) {
            return error;
        }
    }
    if (ram.Patience() == milliseconds(0)) {
        return LIBUSB_ERROR_TIMEOUT;
    }
    // The firmware may take the device off the bus before this transfer is answered.
    const int started = ram.Write(cpuControl, &runCpu, 1);
    return started == LIBUSB_ERROR_PIPE ? started : 0;
}

} // namespace ztm::usb
