#include "adapter/usb/Firmware.h"

#include "adapter/firmware/FirmwareFile.h"

#include <algorithm>
#include <array>

namespace ztm::usb {
namespace {

constexpr uint8_t ramRequest = 0xA0;
constexpr uint16_t cpuControl = 0xE600;
constexpr size_t longestPiece = 64;

constexpr uint8_t holdCpu = 1;
constexpr uint8_t runCpu = 0;

bool FitsIntoRam(const HexBlock &block) {
    return uint64_t{block.address} + block.data.size() <= cpuControl;
}

int WriteRam(Device &device, size_t address, const uint8_t *data, size_t length,
             std::chrono::milliseconds timeOut) {
    std::array<uint8_t, longestPiece> piece{};
    std::copy_n(data, length, piece.begin());
    const VendorRequest request{Direction::ToDevice, ramRequest, static_cast<uint16_t>(address), 0,
                                static_cast<uint16_t>(length)};
    const int sent = device.Transfer(request, piece.data(), timeOut);
    if (sent < 0) {
        return sent;
    }
    return sent == request.length ? 0 : LIBUSB_ERROR_IO;
}

int WriteBlock(Device &device, const HexBlock &block, std::chrono::milliseconds timeOut) {
    for (size_t at = 0; at < block.data.size(); at += longestPiece) {
        const size_t length = std::min(longestPiece, block.data.size() - at);
        if (const int error =
                WriteRam(device, block.address + at, block.data.data() + at, length, timeOut)) {
            return error;
        }
    }
    return 0;
}

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

int Download(Device &device, const Firmware &firmware, std::chrono::milliseconds timeOut) {
    if (const int error = WriteRam(device, cpuControl, &holdCpu, 1, timeOut)) {
        return error;
    }
    for (const HexBlock &block : firmware) {
        if (const int error = WriteBlock(device, block, timeOut)) {
            return error;
        }
    }
    // The firmware may take the device off the bus before this transfer is answered.
    const int started = WriteRam(device, cpuControl, &runCpu, 1, timeOut);
    return started == LIBUSB_ERROR_PIPE ? started : 0;
}

} // namespace ztm::usb
