#include "support/AdapterDouble.h"

#include "common/Clock.h"
#include "link/USBFunctions.h"
#include "monitor/Channels.h"
#include "support/CoreState.h"

#include <algorithm>

namespace ztm::test {
namespace {

AdapterDouble current;

int16_t Answer(const Call &call, uint8_t *buffer) {
    if (current.script) {
        if (const int16_t result = current.script(call); result != 0) {
            return result;
        }
    }
    if (call.request == 0xDB) {
        for (const auto &[heater, duty] :
             {std::pair{size_t{0}, call.value}, {size_t{1}, call.index}}) {
            if (duty != 255) {
                current.heaterReply[heater] = static_cast<uint8_t>(duty);
            }
        }
    } else if (call.request == 0xDA) {
        std::copy(current.heaterReply.begin(), current.heaterReply.end(), buffer);
    } else if (call.request == 0xDE && call.direction == 1) {
        const auto address = static_cast<uint8_t>(call.index);
        *buffer = call.value == current.answersAt ? current.registers[address] : uint8_t{0};
    } else if (call.request == 0xDE && call.value == current.answersAt) {
        current.registers[static_cast<uint8_t>(call.index)] = static_cast<uint8_t>(call.index >> 8);
    }
    return 0;
}

} // namespace

std::ostream &operator<<(std::ostream &out, const Call &call) {
    return out << std::hex << "{request 0x" << call.request << ", value 0x" << call.value
               << ", index 0x" << call.index << std::dec << ", direction " << call.direction
               << ", length " << call.length << "}";
}

Call Read(int32_t address, int32_t device) {
    return {0xDE, device, address, 1, 1};
}

Call Write(int32_t address, int32_t data, int32_t device) {
    return {0xDE, device, data * 256 + address, 0, 0};
}

std::vector<Call> AdapterDouble::Writes() const {
    std::vector<Call> writes;
    std::copy_if(calls.begin(), calls.end(), std::back_inserter(writes),
                 [](const Call &call) { return call.request == 0xDE && call.direction == 0; });
    return writes;
}

AdapterDouble &Adapter() {
    return current;
}

AdapterDouble &ResetAdapter() {
    return current = AdapterDouble{};
}

void ResetCore() {
    ResetAdapter();
    ResetCoreState();
}

void SetMeasurements(const std::array<float, 6> &values) {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        ReadMeasurement(channel);
    }
    Measurements = values;
}

} // namespace ztm::test

int16_t LoadFirmWare(const char *path) {
    ztm::test::Adapter().firmwarePaths.emplace_back(path);
    return ztm::test::Adapter().firmwareResult;
}

int16_t VendorIORequest(int16_t request, int32_t value, int32_t index, int16_t direction,
                        int16_t length, uint8_t *buffer) {
    const ztm::test::Call call{request, value, index, direction, length};
    ztm::test::Adapter().calls.push_back(call);
    ztm::test::Adapter().times.push_back(ztm::RunningSeconds());
    return ztm::test::Answer(call, buffer);
}
