#include "support/VirtualAdapter.h"

#include <cstdio>

namespace ztm::test {
namespace {

constexpr uint8_t vendorRequestFromDevice = 0xC0;
constexpr uint8_t vendorRequestToDevice = 0x40;
constexpr uint8_t ramRequest = 0xA0;
constexpr uint16_t cpuControl = 0xE600;
constexpr size_t longestPiece = 64;

const Answer refused{.error = stall};

} // namespace

std::string IdText(UsbId id) {
    char text[sizeof "0000:0000"];
    std::snprintf(text, sizeof text, "%04x:%04x", id.vendor, id.product);
    return text;
}

int16_t VirtualAdapter::PlainBoard(int16_t /*request*/, int32_t /*value*/, int32_t index,
                                   int16_t direction, int16_t length, uint8_t *buffer) {
    for (int16_t at = 0; direction == 1 && at < length; ++at) {
        buffer[at] = static_cast<uint8_t>(index + 1);
    }
    return 0;
}

void VirtualAdapter::PlugRunning() {
    runs = true;
    bus.Plug(usb::runningAdapter, [this](const Transfer &setup) { return Take(setup); });
}

void VirtualAdapter::PlugLoading() {
    runs = cpuHeld = false;
    bus.Plug(usb::loadingAdapter, [this](const Transfer &setup) { return Take(setup); });
}

void VirtualAdapter::SetFault(Fault newFault) {
    const std::lock_guard guard(lock);
    fault = std::move(newFault);
}

std::vector<Transfer> VirtualAdapter::Transfers() {
    const std::lock_guard guard(lock);
    return transfers;
}

void VirtualAdapter::ForgetTransfers() {
    const std::lock_guard guard(lock);
    transfers.clear();
}

Answer VirtualAdapter::Take(const Transfer &setup) {
    const std::lock_guard guard(lock);
    const size_t number = transfers.size();
    transfers.push_back(setup);
    const std::optional<Answer> replaced = fault ? fault(number, setup) : std::nullopt;
    const Answer answer = replaced ? *replaced : runs ? AskBoard(setup) : WriteRam(setup);
    runs = runs || answer.comesBackAs;
    return answer;
}

/// While the firmware is waited for: the hardware alone, which knows one request.
Answer VirtualAdapter::WriteRam(const Transfer &setup) {
    if (setup.type != vendorRequestToDevice || setup.request != ramRequest || setup.index != 0 ||
        setup.data.empty() || setup.data.size() > longestPiece) {
        return refused;
    }
    if (setup.value != cpuControl) {
        return cpuHeld ? Answer{} : refused;
    }
    cpuHeld = setup.data.front() == 1;
    return cpuHeld
               ? Answer{}
               : Answer{.then = Answer::Then::LeavesAfterwards, .comesBackAs = usb::runningAdapter};
}

Answer VirtualAdapter::AskBoard(const Transfer &setup) {
    const bool hasReply = setup.type == vendorRequestFromDevice;
    if (!hasReply && setup.type != vendorRequestToDevice) {
        return refused;
    }
    std::vector<uint8_t> reply(hasReply ? setup.length : 0);
    const auto length = static_cast<int16_t>(setup.length);
    return board(setup.request, setup.value, setup.index, hasReply ? 1 : 0, length, reply.data()) ==
                   0
               ? Answer{.reply = reply}
               : refused;
}

} // namespace ztm::test
