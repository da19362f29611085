#pragma once

#include <array>
#include <cstdint>

namespace ztm {

/// The largest duty of a heater in percent.
inline constexpr int FullDuty = 100;

/// One heater of the evaluation board: its duty and its software ramp.
struct HeaterSettings {
    int32_t Pwm = 0;              ///< duty in percent: last set, or last reported
    bool SoftwareControl = false; ///< the software ramp runs
    int32_t LowPct = 20;          ///< lower end of the ramp in percent
    int32_t HighPct = 80;         ///< upper end of the ramp in percent
    int16_t IncrementPct = 2;     ///< duty change per ramp step in percent
    int16_t IntervalMs = 500;     ///< time between ramp steps in milliseconds
    bool StartPending = false;    ///< just switched on: the first step goes to LowPct
    bool RampUp = false;          ///< the ramp is rising
};

/// Index 0 is heater 1, index 1 heater 2.
extern std::array<HeaterSettings, 2> Heaters;

/// Resets both records to their defaults.
void ResetHeaters();

} // namespace ztm
