#include "adapter/sim/Chip.h"

#include <utility>

namespace ztm::sim {
namespace {

// Configuration1
constexpr uint8_t lockBit = 0x40;
constexpr uint8_t alertOffBit = 0x08;

constexpr uint8_t resetBit = 0x01; // of Configuration2
constexpr uint8_t alertBit = 0x01; // of Status3

constexpr bool IsLockable(uint8_t address) {
    return address >= LocalHighLimit && address <= ThermHysteresis;
}

/// The bits of Status2 that can raise an alert and are not masked by `mask2`: %T and TA are in the
/// same places in both, TS is two places higher in the mask.
constexpr int UnmaskedInStatus2(uint8_t mask2) {
    return (~mask2 & 0x18) | (~mask2 >> 2 & 0x01);
}

} // namespace

Chip::Chip(Variant variant, const Physics &bench) : registers(variant) {
    Begin(bench);
}

/// Puts everything but the registers into the power-on state.
void Chip::Begin(const Physics &bench) {
    monitor = {};
    fans = {FanControl(0), FanControl(1)};
    causes = {};
    latched = {};
    heldHigh.fill(std::nullopt);
    Tick(bench);
}

void Chip::Tick(const Physics &bench) {
    monitor.Tick(registers, bench);
    int fanCauses = 0;
    for (FanControl &fan : fans) {
        fan.Tick(registers, bench, monitor);
        fanCauses |= fan.Status3Causes();
    }
    causes = {monitor.Status1Causes(), monitor.Status2Causes(), static_cast<uint8_t>(fanCauses)};
    for (size_t i = 0; i < statusCount; ++i) {
        latched[i] = static_cast<uint8_t>(latched[i] | causes[i]);
    }
    // This bit shows the present state and is not latched.
    constexpr int now = TemperatureMonitor::thermAssertedBit;
    latched[1] = static_cast<uint8_t>((latched[1] & ~now) | (causes[1] & now));
}

uint8_t Chip::Read(uint8_t address) {
    if (address >= Status1 && address <= Status3) {
        return ReadStatus(address - size_t{Status1});
    }
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

uint8_t Chip::ReadStatus(size_t number) {
    constexpr size_t statusOfAlert = 2;
    const uint8_t alert = number == statusOfAlert && IsAlert() ? alertBit : uint8_t{0};
    const uint8_t shown = std::exchange(latched[number], causes[number]);
    return static_cast<uint8_t>(shown | alert);
}

bool Chip::IsAlert() const {
    const int unmasked = (latched[0] & ~registers.Read(Mask1)) |
                         (latched[1] & UnmaskedInStatus2(registers.Read(Mask2))) |
                         (latched[2] & ~registers.Read(Mask3));
    return unmasked != 0 && !registers.IsSet(Configuration1, alertOffBit);
}

void Chip::Write(uint8_t address, uint8_t data, const Physics &bench) {
    const bool isLocked = registers.IsSet(Configuration1, lockBit);
    if (address == Configuration2 && (data & resetBit)) {
        registers.Reset();
        Begin(bench);
    } else if (isLocked && address == Configuration1) {
        registers.Write(address, static_cast<uint8_t>(data | lockBit));
    } else if (!isLocked || !IsLockable(address)) {
        registers.Write(address, data);
    }
}

} // namespace ztm::sim
