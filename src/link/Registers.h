#pragma once

#include <cstdint>

namespace ztm {

/// Registers of the chip that the program itself works with, and bits in them. The whole
/// register map is in regmap/.
inline constexpr int32_t Configuration1 = 0x01;
inline constexpr int32_t MonitorBit = 0x01;       ///< of Configuration1: MON/SB
inline constexpr int32_t SoftwareTableBit = 0x80; ///< of Configuration1: TBL/SW

inline constexpr int32_t Configuration2 = 0x02;
inline constexpr int32_t EightPointBit = 0x08; ///< of Configuration2, without a label

inline constexpr int32_t DeviceId = 0x3D;

} // namespace ztm
