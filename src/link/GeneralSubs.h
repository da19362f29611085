#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace ztm {

/// A fan speed in RPM from the 16-bit count of a register pair: high byte at `msbAddress`, low
/// byte one below, read first. RPM = 4915200 / count to the nearest whole number, halves to
/// even; a count of 0 is 0 RPM.
int32_t ReadRPM(int32_t msbAddress);

/// Writes a fan speed into a register pair, high byte first; 0 RPM is the count 0xFFFF. A
/// speed whose count does not fit 16 bits (1 to 75 RPM), and a negative one, writes nothing.
void WriteRPM(int32_t msbAddress, int32_t rpm);

/// Bit 2 (0x04) of Configuration2, read from the chip.
bool IsConfig2Bit2Set();

/// What can drive a fan (Fan Behaviour, bits 1 to 0 for fan 1 and 3 to 2 for fan 2). The code is
/// the position.
inline constexpr std::array<std::string_view, 4> ControlSources{"Local", "Remote1", "Remote2",
                                                                "Full Speed"};

/// The 2-bit code of a control source: "Local" 0, "Remote1" 1, "Remote2" 2, "Full Speed" 3, any
/// other text 0.
int32_t ControlSourceCode(std::string_view text);

} // namespace ztm
