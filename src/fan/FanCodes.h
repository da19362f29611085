#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace ztm {

/// The fan control fields that are chosen from lists. A list text stands for a register code,
/// compared exactly; a text that no item equals gives 0.

/// Fan Response, bits 2 to 0 (fan 1) and 6 to 4 (fan 2): how often the speed is corrected. The
/// code is the position.
inline constexpr std::array<std::string_view, 8> FanResponses{
    "1.25 updates/sec", "2.5 updates/sec", "5 updates/sec",  "10 updates/sec",
    "20 updates/sec",   "40 updates/sec",  "80 updates/sec", "160 updates/sec"};

/// Enhance Acoustics, same bits: how fast the speed may change. The code is the position.
inline constexpr std::array<std::string_view, 8> RampRates{
    "No Limit",      "5 counts/sec",  "10 counts/sec", "15 counts/sec",
    "20 counts/sec", "25 counts/sec", "30 counts/sec", "35 counts/sec"};

/// The control sources of the variant with one remote channel, whose codes have a gap.
struct ControlSource33 {
    std::string_view Text;
    int32_t Code;
};
inline constexpr std::array<ControlSource33, 3> ControlSources33{
    {{"Local", 0}, {"Remote", 1}, {"Full Speed", 3}}};

/// Configuration3, bits 3 to 0 (fan 1) and 7 to 4 (fan 2): the number of poles itself.
inline constexpr std::array<std::string_view, 4> FanPoles{"2", "4", "6", "8"};

int32_t SetFanResponse(std::string_view response);
int32_t SetRampRate(std::string_view rampRate);
int32_t ControlSource33Code(std::string_view text);

/// The position in `ControlSources33` of a source code; both remote channels are its "Remote".
size_t ControlSource33Item(int32_t code);

/// The text of a poles field: the nearest item, halves to the even position, and the number
/// itself where the list has none (0, and 9 to 15).
std::string_view PolesText(int32_t field);

} // namespace ztm
