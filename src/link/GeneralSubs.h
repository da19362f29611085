#pragma once

#include <cstdint>

namespace ztm {

// Register accesses shared by several modules: fan speeds in register pairs, and one bit.

/// The fan speed in RPM of a 16-bit tach count: 4915200 / count, rounded to the nearest whole
/// number, halves to even; a count of 0 gives 0 RPM.
int32_t RpmOfCount(int32_t count);

/// A fan speed in RPM from the 16-bit count of a register pair: high byte at `msbAddress`, low byte
/// one below, read first.
int32_t ReadRPM(int32_t msbAddress);

/// Writes a fan speed to a register pair, high byte first; 0 RPM is the count 0xFFFF. Writes
/// nothing for a negative speed or if the count does not fit 16 bits (1 to 75 RPM).
void WriteRPM(int32_t msbAddress, int32_t rpm);

/// Bit 2 (0x04) of Configuration2, read from the chip.
bool IsConfig2Bit2Set();

} // namespace ztm
