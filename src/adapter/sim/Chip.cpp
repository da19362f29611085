#include "adapter/sim/Chip.h"

#include <utility>

namespace ztm::sim {
namespace {

constexpr uint8_t monitoringBit = 0x01; // of Configuration1
constexpr uint8_t resetBit = 0x01;      // of Configuration2

/// The limits of a temperature and its bits in Status1 and Mask1.
struct Limits {
    RegisterAddress temperature;
    RegisterAddress high;
    RegisterAddress low;
    uint8_t highBit;
    uint8_t lowBit;
};
constexpr Limits limits[] = {
    {LocalTemperature, LocalHighLimit, LocalLowLimit, 0x80, 0x40},
    {Remote1Temperature, Remote1HighLimit, Remote1LowLimit, 0x20, 0x10},
    {Remote2Temperature, Remote2HighLimit, Remote2LowLimit, 0x04, 0x02},
};
constexpr uint8_t alertBit = 0x01; // of Status3

} // namespace

void Chip::Measure(const Bench &bench) {
    SetPair(Tach1, EncodeTach(bench.FanRpm(0)));
    SetPair(Tach2, EncodeTach(bench.FanRpm(1)));
    if (!(registers.Read(Configuration1) & monitoringBit)) {
        return;
    }
    SetPair(LocalTemperature, EncodeTemperature(bench.LocalCelsius()));
    SetPair(Remote1Temperature, EncodeTemperature(bench.RemoteCelsius(0)));
    SetPair(Remote2Temperature, EncodeTemperature(bench.RemoteCelsius(1)));
    CompareLimits();
}

/// Compares whole degrees, as temperatures and limits both hold them, offset by the same 64.
void Chip::CompareLimits() {
    uint8_t status = 0;
    for (const Limits &each : limits) {
        const uint8_t degrees = registers.Read(static_cast<uint8_t>(each.temperature + 1));
        const uint8_t highBit = degrees > registers.Read(each.high) ? each.highBit : uint8_t{0};
        const uint8_t lowBit = degrees < registers.Read(each.low) ? each.lowBit : uint8_t{0};
        status = static_cast<uint8_t>(status | highBit | lowBit);
    }
    registers.Set(Status1, status);
    registers.Set(Status3, (status & ~registers.Read(Mask1)) != 0 ? alertBit : uint8_t{0});
}

uint8_t Chip::Read(uint8_t address) {
    for (size_t pair = 0; pair < measuredPairs.size(); ++pair) {
        const uint8_t low = measuredPairs[pair];
        const auto high = static_cast<uint8_t>(low + 1);
        if (address == low) {
            heldHigh[pair] = registers.Read(high);
        } else if (address == high && heldHigh[pair]) {
            return *std::exchange(heldHigh[pair], std::nullopt);
        }
    }
    return registers.Read(address);
}

void Chip::Write(uint8_t address, uint8_t data) {
    if (address == Configuration2 && (data & resetBit)) {
        registers.Reset();
        heldHigh.fill(std::nullopt);
        return;
    }
    registers.Write(address, data);
}

void Chip::SetPair(uint8_t lowAddress, RegisterPair pair) {
    registers.Set(lowAddress, pair.low);
    registers.Set(static_cast<uint8_t>(lowAddress + 1), pair.high);
}

} // namespace ztm::sim
