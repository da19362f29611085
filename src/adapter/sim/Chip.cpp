#include "adapter/sim/Chip.h"

#include <utility>

namespace ztm::sim {
namespace {

constexpr uint8_t monitoringBit = 0x01; // of Configuration1
constexpr uint8_t resetBit = 0x01;      // of Configuration2

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
