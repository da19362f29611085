#pragma once

#include "link/Registers.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace ztm {

/// The fields of fan control, each with its list of choices. A list text stands for a code and must
/// match exactly; an unknown text gives 0. A register with a field for each fan holds that of fan 1
/// in its lower half.

/// Whether the lookup table or the user sets the fan speeds.
inline constexpr RegisterField ControlTypeField{Configuration1, SoftwareTableBit};

/// Whether the eight points form one table.
inline constexpr RegisterField TableLayoutField{Configuration2, EightPointBit};

/// Whether the speed changes linearly between the points, or in steps.
inline constexpr RegisterField TransitionField{Configuration2, LinearBit};

/// How often the speed is corrected. The code is the position.
inline constexpr std::array<std::string_view, 8> FanResponses{
    "1.25 updates/sec", "2.5 updates/sec", "5 updates/sec",  "10 updates/sec",
    "20 updates/sec",   "40 updates/sec",  "80 updates/sec", "160 updates/sec"};
inline constexpr std::array<RegisterField, 2> FanResponseFields{
    {{FanResponse, 0x07}, {FanResponse, 0x70}}};

/// How fast the speed may change. The code is the position.
inline constexpr std::array<std::string_view, 8> RampRates{
    "No Limit",      "5 counts/sec",  "10 counts/sec", "15 counts/sec",
    "20 counts/sec", "25 counts/sec", "30 counts/sec", "35 counts/sec"};
inline constexpr std::array<RegisterField, 2> RampRateFields{
    {{EnhanceAcoustics, 0x07}, {EnhanceAcoustics, 0x70}}};

/// The number of poles is the code itself.
inline constexpr std::array<std::string_view, 4> FanPoles{"2", "4", "6", "8"};
inline constexpr std::array<RegisterField, 2> FanPolesFields{
    {{Configuration3, 0x0F}, {Configuration3, 0xF0}}};

int32_t SetFanResponse(std::string_view response);
int32_t SetRampRate(std::string_view rampRate);

/// The number in a poles text; 0 if it has none.
int32_t PolesCode(std::string_view text);

/// The text of a poles code: the nearest item (halves to the even position), or the number itself
/// if the list has none (0, and 9 to 15).
std::string_view PolesText(int32_t code);

} // namespace ztm
