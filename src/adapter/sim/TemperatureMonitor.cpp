#include "adapter/sim/TemperatureMonitor.h"

#include "adapter/sim/Encodings.h"

#include <algorithm>

namespace ztm::sim {
namespace {

// Configuration1
constexpr uint8_t monitoringBit = 0x01;
constexpr uint8_t averagingBit = 0x02;
constexpr uint8_t thermTimerBit = 0x04;

constexpr double averagingShare = 1.0 / 8;
constexpr int limitHysteresisSteps = stepsPerCelsius;
constexpr int longestWindowCode = 5;
constexpr int shortestWindowTicks = Physics::ticksPerSecond / 4;
constexpr int fullOnTime = 255;

// Status2
constexpr uint8_t thermPercentBit = 0x10;
constexpr uint8_t thermLatchBit = 0x08;

constexpr int LowNibble(uint8_t value) {
    return value & 0x0F;
}

int WindowTicks(uint8_t configuration4) {
    return shortestWindowTicks << std::min((configuration4 >> 4) & 0x07, longestWindowCode);
}

} // namespace

/// Registers and bits of a channel. The bits are those of Status1, Status2 and Configuration4.
struct TemperatureMonitor::Row {
    RegisterAddress reading, highLimit, lowLimit, thermLimit, offset;
    uint8_t highBit, lowBit, diodeBit, thermBit, thermEventBit;
};

// clang-format off
const std::array<TemperatureMonitor::Row, TemperatureMonitor::channelCount>
TemperatureMonitor::rows = {{
    {LocalTemperature, LocalHighLimit, LocalLowLimit, LocalThermLimit, LocalOffset,
     0x80, 0x40, 0x00, 0x80, 0x01},
    {Remote1Temperature, Remote1HighLimit, Remote1LowLimit, Remote1ThermLimit, Remote1Offset,
     0x20, 0x10, 0x08, 0x40, 0x02},
    {Remote2Temperature, Remote2HighLimit, Remote2LowLimit, Remote2ThermLimit, Remote2Offset,
     0x04, 0x02, 0x01, 0x20, 0x04},
}};
// clang-format on

void LimitWatch::Take(int excess, int hysteresis, int queue) {
    if (isExceeded) {
        isExceeded = excess > -hysteresis;
        inARow = 0;
    } else {
        inARow = excess > 0 ? inARow + 1 : 0;
        isExceeded = inARow >= std::max(queue, 1);
    }
}

/// At the fastest rate every tick converts.
int TemperatureMonitor::ConversionTicks(uint8_t rate) {
    return 1 << (fastestRateCode - std::min(LowNibble(rate), fastestRateCode));
}

void TemperatureMonitor::Tick(RegisterFile &registers, const Physics &bench) {
    if (registers.IsSet(Configuration1, monitoringBit) &&
        ++ticksSinceConversion >= ConversionTicks(registers.Read(ConversionRate))) {
        ticksSinceConversion = 0;
        Convert(registers, bench);
    }
    const bool isThermAsserted = IsThermAsserted(registers);
    RunThermTimer(registers, isThermAsserted);
    CollectCauses(registers, isThermAsserted);
}

bool TemperatureMonitor::IsAnyOverThermLimit() const {
    return std::any_of(channels.begin(), channels.end(),
                       [](const Channel &channel) { return channel.therm.IsExceeded(); });
}

void TemperatureMonitor::Convert(RegisterFile &registers, const Physics &bench) {
    for (size_t i = 0; i < channelCount; ++i) {
        if (registers.Has(rows[i].reading)) {
            const int steps = Sample(i, registers, bench);
            registers.SetPair(rows[i].reading, EncodeTemperature(steps));
            CompareLimits(i, steps, registers);
        }
    }
}

/// A new reading of the channel, in steps. Averaging restarts after a diode fault.
int TemperatureMonitor::Sample(size_t channel, const RegisterFile &registers,
                               const Physics &bench) {
    Channel &state = channels[channel];
    const DiodeFault fault = channel == 0 ? DiodeFault::None : bench.settings.diodes[channel - 1];
    state.hasDiodeFault = fault != DiodeFault::None;
    if (state.hasDiodeFault) {
        state.hasSample = false;
        return fault == DiodeFault::Open ? maxTemperatureSteps : 0;
    }
    const double celsius =
        channel == 0 ? bench.SensedBoardCelsius() : bench.SensedRemoteCelsius(channel - 1);
    const bool averages = state.hasSample && registers.IsSet(Configuration1, averagingBit);
    state.celsius += (celsius - state.celsius) * (averages ? averagingShare : 1);
    state.hasSample = true;
    const auto offset = static_cast<int8_t>(registers.Read(rows[channel].offset));
    return TemperatureSteps(state.celsius + offset);
}

void TemperatureMonitor::CompareLimits(size_t channel, int steps, const RegisterFile &registers) {
    const Row &row = rows[channel];
    Channel &state = channels[channel];
    const int queue = LowNibble(registers.Read(FaultQueue));
    state.high.Take(steps - StepsOfLimit(registers.Read(row.highLimit)), limitHysteresisSteps,
                    queue);
    state.low.Take(StepsOfLimit(registers.Read(row.lowLimit)) - steps, limitHysteresisSteps, queue);
    state.therm.Take(steps - StepsOfLimit(registers.Read(row.thermLimit)),
                     LowNibble(registers.Read(ThermHysteresis)) * stepsPerCelsius, 1);
}

bool TemperatureMonitor::IsThermAsserted(const RegisterFile &registers) const {
    for (size_t i = 0; i < channelCount; ++i) {
        if (channels[i].therm.IsExceeded() &&
            registers.IsSet(Configuration4, rows[i].thermEventBit)) {
            return true;
        }
    }
    return false;
}

void TemperatureMonitor::RunThermTimer(RegisterFile &registers, bool isAsserted) {
    if (!registers.IsSet(Configuration1, thermTimerBit)) {
        windowTicks = 0;
        assertedTicks = 0;
        registers.Set(ThermPercentOnTime, 0);
        return;
    }
    ++windowTicks;
    assertedTicks += isAsserted ? 1 : 0;
    if (windowTicks >= WindowTicks(registers.Read(Configuration4))) {
        const int onTime = (fullOnTime * assertedTicks + windowTicks / 2) / windowTicks;
        registers.Set(ThermPercentOnTime, static_cast<uint8_t>(onTime));
        windowTicks = 0;
        assertedTicks = 0;
    }
}

void TemperatureMonitor::CollectCauses(const RegisterFile &registers, bool isThermAsserted) {
    const auto bit = [](bool isSet, uint8_t mask) { return isSet ? mask : 0; };
    int first = 0;
    int second = bit(isThermAsserted, thermLatchBit | thermAssertedBit) |
                 bit(registers.Read(ThermPercentOnTime) > registers.Read(ThermPercentLimit),
                     thermPercentBit);
    for (size_t i = 0; i < channelCount; ++i) {
        const Channel &channel = channels[i];
        first |= bit(channel.high.IsExceeded(), rows[i].highBit) |
                 bit(channel.low.IsExceeded(), rows[i].lowBit) |
                 bit(channel.hasDiodeFault, rows[i].diodeBit);
        second |= bit(channel.therm.IsExceeded(), rows[i].thermBit);
    }
    status1 = static_cast<uint8_t>(first);
    status2 = static_cast<uint8_t>(second);
}

} // namespace ztm::sim
