#pragma once

#include "link/Registers.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace ztm {

/// The fields of the THERM functions.

/// The registers of the THERM limits of Local, Remote1 and Remote2.
inline constexpr std::array<int32_t, 3> ThermLimits{LocalThermLimit, Remote1ThermLimit,
                                                    Remote2ThermLimit};

/// Set: THERM does not bring the fans to full speed.
inline constexpr RegisterField BoostDisableField{Configuration2, 0x02};

/// In degrees.
inline constexpr RegisterField ThermHysteresisField{ThermHysteresis, 0x0F};

inline constexpr RegisterField EnableThermTimerField{Configuration1, 0x04};

/// Pin 8 takes an external reference.
inline constexpr RegisterField ThermReferenceField{Configuration4, 0x80};

/// Whether Local, Remote1 and Remote2 cause THERM events.
inline constexpr std::array<RegisterField, 3> ThermEventFields{
    {{Configuration4, 0x01}, {Configuration4, 0x02}, {Configuration4, 0x04}}};

/// The time window of the THERM percentage. The code is the position; two codes are unused.
inline constexpr RegisterField ThermWindowField{Configuration4, 0x70};
inline constexpr std::array<std::string_view, 6> ThermWindows{".25 sec", ".5 sec", "1 sec",
                                                              "2 sec",   "4 sec",  "8 sec"};

} // namespace ztm
