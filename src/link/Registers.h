#pragma once

#include <bit>
#include <cstdint>

namespace ztm {

/// Chip registers, and bits in them, that the program itself uses. The whole register map is in
/// regmap/.
inline constexpr int32_t Configuration1 = 0x01;
inline constexpr int32_t MonitorBit = 0x01;       ///< of Configuration1: MON/SB
inline constexpr int32_t LockBit = 0x40;          ///< of Configuration1: LCK
inline constexpr int32_t SoftwareTableBit = 0x80; ///< of Configuration1: TBL/SW

inline constexpr int32_t Configuration2 = 0x02;
inline constexpr int32_t ResetBit = 0x01;      ///< of Configuration2: RST
inline constexpr int32_t LinearBit = 0x04;     ///< of Configuration2, without a label
inline constexpr int32_t EightPointBit = 0x08; ///< of Configuration2, without a label

inline constexpr int32_t Configuration3 = 0x03; ///< fan poles
inline constexpr int32_t Configuration4 = 0x04;
inline constexpr int32_t FanBehaviour = 0x07;
inline constexpr int32_t EnhanceAcoustics = 0x3B;
inline constexpr int32_t FanResponse = 0x3C;

inline constexpr int32_t LocalThermLimit = 0x0D; ///< degrees + 64, like the next two
inline constexpr int32_t Remote1ThermLimit = 0x10;
inline constexpr int32_t Remote2ThermLimit = 0x13;
inline constexpr int32_t ThermPercentLimit = 0x19; ///< 255 is 100 %
inline constexpr int32_t ThermHysteresis = 0x1A;   ///< degrees in bits 3 to 0

inline constexpr int32_t DeviceId = 0x3D;

/// A field of a register: one or more adjacent bits that hold a code.
struct RegisterField {
    int32_t Register;
    int32_t Bits;

    /// The code of this field in a register value.
    constexpr int32_t In(int32_t value) const { return (value & Bits) >> Shift(); }

    /// The register value with `code` in this field; code bits that do not fit are dropped.
    constexpr int32_t With(int32_t value, int32_t code) const {
        return (value & ~Bits) | (code << Shift() & Bits);
    }

private:
    constexpr int Shift() const { return std::countr_zero(static_cast<uint32_t>(Bits)); }
};

} // namespace ztm
