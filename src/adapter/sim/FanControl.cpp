#include "adapter/sim/FanControl.h"

#include "adapter/sim/Encodings.h"
#include "adapter/sim/LookupTable.h"

#include <algorithm>
#include <cmath>

namespace ztm::sim {
namespace {

constexpr uint8_t automaticBit = 0x80;    // of Configuration1
constexpr uint8_t boostDisableBit = 0x02; // of Configuration2

constexpr FanDrive stopped = {};
constexpr FanDrive fullSpeed = {.rpm = 0, .share = 1};

constexpr size_t fullSpeedSource = 3;
constexpr int boardPoles = 4;

constexpr int tachTicks = Physics::ticksPerSecond / 4;
constexpr int longestSpinUpTicks = 2 * Physics::ticksPerSecond;
constexpr int longestQuietTicks = Physics::ticksPerSecond;
constexpr int longestSlowTicks = 5 * Physics::ticksPerSecond;

constexpr double spunUpRpm = 600;
constexpr double quietRpm = 200;
constexpr double slowShare = 0.75;

// Response: the update interval is the slowest one halved with each code; below one tick several
// updates are done at once.
constexpr int slowestUpdateTicks = 32;
constexpr double updateShare = 0.25;
constexpr double rpmPerCount = 40;
constexpr double countsPerSecondAndCode = 5;

constexpr int ThreeBits(uint8_t value, int shift) {
    return value >> shift & 0x07;
}

} // namespace

/// Registers and bits of a fan; shifts say where its fields begin.
struct FanControl::Row {
    RegisterAddress tach, manualSpeed;
    int nibbleShift; ///< in Configuration3, EnhanceAcoustics and FanResponse
    int sourceShift; ///< in FanBehaviour
    uint8_t stallBit, slowBit;
};

const FanControl::Row FanControl::rows[] = {
    {Tach1, LookupSpeed1, 0, 0, 0x80, 0x40},
    {Tach2, LookupSpeed2, 4, 2, 0x20, 0x10},
};

void FanControl::Tick(RegisterFile &registers, const Physics &bench,
                      const TemperatureMonitor &monitor) {
    if (!registers.Has(rows[fan].tach)) {
        return;
    }
    MeasureTach(registers, bench);
    const FanDrive wanted = Wanted(registers, monitor);
    ChangePhase(wanted != stopped);
    if (phase == Phase::Turning && wanted.rpm > 0) {
        MoveDemand(registers, wanted.rpm);
    } else {
        demandRpm.reset();
    }
    WatchSpeed();
    drive = phase == Phase::Standing     ? stopped
            : phase == Phase::SpinningUp ? fullSpeed
            : demandRpm ? FanDrive{.rpm = *demandRpm * Poles(registers) / boardPoles}
                        : wanted;
}

uint8_t FanControl::Status3Causes() const {
    const int stalled = isStalled ? rows[fan].stallBit : 0;
    const int slow = slowTicks >= longestSlowTicks ? rows[fan].slowBit : 0;
    return static_cast<uint8_t>(stalled | slow);
}

void FanControl::MeasureTach(RegisterFile &registers, const Physics &bench) {
    if (--ticksToTach >= 0) {
        return;
    }
    ticksToTach = tachTicks - 1;
    const int poles = Poles(registers);
    const double trueRpm = bench.SensedFanRpm(fan);
    tachRpm = poles == 0 ? 0 : trueRpm * boardPoles / poles;
    registers.SetPair(rows[fan].tach, EncodeTach(tachRpm));
}

int FanControl::Poles(const RegisterFile &registers) const {
    return registers.Read(Configuration3) >> rows[fan].nibbleShift & 0x0F;
}

FanDrive FanControl::Wanted(const RegisterFile &registers, const TemperatureMonitor &monitor) {
    if (monitor.IsAnyOverThermLimit() && !registers.IsSet(Configuration2, boostDisableBit)) {
        return fullSpeed;
    }
    if (!registers.IsSet(Configuration1, automaticBit)) {
        tableCelsius.reset();
        const RegisterPair speed = registers.ReadPair(rows[fan].manualSpeed);
        const bool isSet = (speed.low & speed.high) != 0xFF;
        return isSet ? FanDrive{.rpm = DecodeTach(speed)} : undirectedDrive;
    }
    size_t source = registers.Read(FanBehaviour) >> rows[fan].sourceShift & 0x03;
    if (source == fullSpeedSource) {
        return fullSpeed;
    }
    if (!registers.Has(Remote2Temperature)) {
        source = std::min<size_t>(source, 1);
    }
    return monitor.HasDiodeFault(source) ? fullSpeed : WantedByTable(registers, source);
}

FanDrive FanControl::WantedByTable(const RegisterFile &registers, size_t channel) {
    const auto reading = static_cast<uint8_t>(LocalTemperature + 2 * channel);
    const double celsius = DecodeTemperature(registers.ReadPair(reading));
    const double hysteresisCelsius = registers.Read(LookupHysteresis);
    tableCelsius = std::clamp(tableCelsius.value_or(celsius), celsius, celsius + hysteresisCelsius);
    return {.rpm = LookUpRpm(registers, fan, *tableCelsius)};
}

void FanControl::ChangePhase(bool isToTurn) {
    if (!isToTurn) {
        phase = Phase::Standing;
        isStalled = false;
    } else if (phase == Phase::Standing) {
        phase = tachRpm < spunUpRpm ? Phase::SpinningUp : Phase::Turning;
        spinUpTicks = 0;
        quietTicks = 0;
    } else if (phase == Phase::SpinningUp) {
        ++spinUpTicks;
        isStalled = isStalled || spinUpTicks > longestSpinUpTicks;
        if (tachRpm >= spunUpRpm) {
            phase = Phase::Turning;
            isStalled = false;
            quietTicks = 0;
        }
    } else {
        quietTicks = tachRpm < quietRpm ? quietTicks + 1 : 0;
        if (quietTicks > longestQuietTicks) {
            isStalled = true;
            phase = Phase::SpinningUp;
            spinUpTicks = 0;
        }
    }
}

void FanControl::MoveDemand(const RegisterFile &registers, double wantedRpm) {
    const int code = ThreeBits(registers.Read(FanResponse), rows[fan].nibbleShift);
    const int rampCode = ThreeBits(registers.Read(EnhanceAcoustics), rows[fan].nibbleShift);
    if (!demandRpm) {
        demandRpm = tachRpm;
    }
    const int interval = std::max(slowestUpdateTicks >> code, 1);
    if (++ticksSinceUpdate < interval) {
        return;
    }
    ticksSinceUpdate = 0;
    const int updates = std::max((1 << code) / slowestUpdateTicks, 1);
    const double change = (wantedRpm - *demandRpm) * (1 - std::pow(1 - updateShare, updates));
    const double limit = rampCode == 0 ? std::abs(change)
                                       : rampCode * countsPerSecondAndCode * rpmPerCount *
                                             interval * Physics::tickSeconds;
    *demandRpm += std::clamp(change, -limit, limit);
}

void FanControl::WatchSpeed() {
    const bool isSlow = demandRpm && tachRpm < slowShare * *demandRpm;
    slowTicks = isSlow ? std::min(slowTicks + 1, longestSlowTicks) : 0;
}

} // namespace ztm::sim
