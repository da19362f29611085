#pragma once

#include "link/Registers.h"

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace ztm {

/// What can drive a fan: the lists for both variants with their codes in Fan Behaviour.

struct ControlSource {
    std::string_view Text;
    int32_t Code;
};

inline constexpr std::array<ControlSource, 4> ControlSources{
    {{"Local", 0}, {"Remote1", 1}, {"Remote2", 2}, {"Full Speed", 3}}};

/// With one remote channel; the code of the other one is left out.
inline constexpr std::array<ControlSource, 3> OneRemoteControlSources{
    {{"Local", 0}, {"Remote", 1}, {"Full Speed", 3}}};

/// The source of fan 1 and of fan 2.
inline constexpr std::array<RegisterField, 2> ControlSourceFields{
    {{FanBehaviour, 0x03}, {FanBehaviour, 0x0C}}};

/// The code of a list's text, compared exactly; 0 for a text that is not in the list.
int32_t CodeOf(std::span<const ControlSource> sources, std::string_view text);

/// CodeOf in `ControlSources`.
int32_t ControlSourceCode(std::string_view text);

/// The position of a code from 0 to 3 in a list; a code that the list lacks counts as the source
/// before it, so both remote channels are "Remote".
size_t PositionOf(std::span<const ControlSource> sources, int32_t code);

} // namespace ztm
