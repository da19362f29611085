#pragma once

#include "link/LinkState.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <iterator>
#include <optional>
#include <string_view>

namespace ztm {

/// The chip variants whose register maps differ.
enum class ChipVariant { ZTM7720, ZTM7710 };

/// The variant with that device name; none for an empty or unknown name.
constexpr std::optional<ChipVariant> VariantNamed(std::string_view deviceName) {
    if (deviceName == ZTM7720) {
        return ChipVariant::ZTM7720;
    }
    if (deviceName == ZTM7710) {
        return ChipVariant::ZTM7710;
    }
    return std::nullopt;
}

/// Which variants have a register. The larger chip has them all.
enum class Presence { BothVariants, OnlyZTM7720 };

/// What an access to a register does.
enum class RegisterAccess {
    ReadWrite,
    ReadOnly,     ///< a write has no effect
    ReadingClears ///< the same, and a read clears bits
};

/// One register of the chip family. The columns after `Present` hold the smaller variant's texts,
/// which default to the larger one's.
struct RegisterRow {
    int32_t Address;            ///< 0x00 to 0x51, ascending down the table
    std::string_view Name;      ///< unique within a variant
    std::string_view BitLabels; ///< eight labels separated by ":", bit 7 first; "-" is no label
    int16_t Default;            ///< 0 to 255
    RegisterAccess Access = RegisterAccess::ReadWrite;
    Presence Present = Presence::BothVariants;
    std::string_view ZTM7710BitLabels = BitLabels;
    std::string_view ZTM7710Name = Name;

    constexpr bool IsIn(ChipVariant variant) const {
        return variant == ChipVariant::ZTM7720 || Present == Presence::BothVariants;
    }
    constexpr std::string_view NameIn(ChipVariant variant) const {
        return variant == ChipVariant::ZTM7710 ? ZTM7710Name : Name;
    }
    constexpr std::string_view BitLabelsIn(ChipVariant variant) const {
        return variant == ChipVariant::ZTM7710 ? ZTM7710BitLabels : BitLabels;
    }
};

// Labels of registers that hold a number: the positions of its bits. In a register pair the low
// byte is at the lower address.
inline constexpr std::string_view ByteLabels = "7:6:5:4:3:2:1:0";
inline constexpr std::string_view CountHighLabels = "15:14:13:12:11:10:9:8";
inline constexpr std::string_view TemperatureHighLabels = "12:11:10:9:8:7:6:5";
inline constexpr std::string_view TemperatureLowLabels = "4:3:2:1:0:-:-:-";

inline constexpr RegisterRow RegisterTable[] = {
    {0x00, "#Bytes/BlockRead", ByteLabels, 0x20},
    {0x01, "Configuration1", "TBL/SW:LCK:SDA:SCL:ALRT:TMR:AVG:MON/SB", 0x01},
    {0x02, "Configuration2", "-:-:-:LUT:-:-:BD:RST", 0x84},
    {0x03, "Configuration3", "#FP2:#FP2:#FP2:#FP2:#FP1:#FP1:#FP1:#FP1", 0x44,
     RegisterAccess::ReadWrite, Presence::BothVariants, "#FP1:#FP1:#FP1:#FP1:-:-:-:-"},
    {0x04, "Configuration4", "FF/RF:%T2:%T1:%T0:XOR:R2TM:R1TM:LTM", 0x00, RegisterAccess::ReadWrite,
     Presence::BothVariants, "FF/RF:-:%T1:%T0:XOR:-:R1TM:LTM"},
    {0x05, "Conversion Rate", "-:-:-:-:CNV3:CNV2:CNV1:CNV0", 0x0A},
    {0x06, "Fault Queue", "-:-:-:-:FQ3:FQ2:FQ1:FQ0", 0x01},
    {0x07, "Fan Behaviour", "-:-:-:-:D2B:D2B:D1B:D1B", 0x09, RegisterAccess::ReadWrite,
     Presence::BothVariants, "-:-:-:-:-:-:D1B:D1B", "Fan Behavior"},
    {0x08, "Mask1", "LH:LL:R1H:R1L:R1D:R2H:R2L:R2D", 0x52, RegisterAccess::ReadWrite,
     Presence::BothVariants, "LH:LL:R1H:R1L:R1D:-:-:-"},
    {0x09, "Mask2", "-:-:-:%T:TA:TS:-:-", 0x10},
    {0x0A, "Mask3", "F1S:F1A:F2S:F2A:-:-:-:-", 0x00, RegisterAccess::ReadWrite,
     Presence::BothVariants, "F1S:F1A:-:-:-:-:-:-"},
    {0x0B, "Local High Limit", ByteLabels, 0x8B},
    {0x0C, "Local Low Limit", ByteLabels, 0x54},
    {0x0D, "Local Therm Limit", ByteLabels, 0x95},
    {0x0E, "Remote1 High Limit", ByteLabels, 0x8B},
    {0x0F, "Remote1 Low Limit", ByteLabels, 0x54},
    {0x10, "Remote1 Therm Limit", ByteLabels, 0x95},
    {0x11, "Remote2 High Limit", ByteLabels, 0x8B, RegisterAccess::ReadWrite,
     Presence::OnlyZTM7720},
    {0x12, "Remote2 Low Limit", ByteLabels, 0x54, RegisterAccess::ReadWrite, Presence::OnlyZTM7720},
    {0x13, "Remote2 Therm Limit", ByteLabels, 0x95, RegisterAccess::ReadWrite,
     Presence::OnlyZTM7720},
    {0x16, "Local Offset", ByteLabels, 0x00},
    {0x17, "Remote1 Offset", ByteLabels, 0x00},
    {0x18, "Remote2 Offset", ByteLabels, 0x00, RegisterAccess::ReadWrite, Presence::OnlyZTM7720},
    {0x19, "Therm % Limit", ByteLabels, 0xFF},
    {0x1A, "Therm Hysteresis", "-:-:-:-:HYS:HYS:HYS:HYS", 0x05},
    {0x22, "T1", ByteLabels, 0xFF},
    {0x23, "T2", ByteLabels, 0xFF},
    {0x24, "T3", ByteLabels, 0xFF},
    {0x25, "T4", ByteLabels, 0xFF},
    {0x26, "T5", ByteLabels, 0xFF},
    {0x27, "T6", ByteLabels, 0xFF},
    {0x28, "T7", ByteLabels, 0xFF},
    {0x29, "T8", ByteLabels, 0xFF},
    {0x2A, "RPM1", ByteLabels, 0xFF},
    {0x2B, "RPM1(MSB)", CountHighLabels, 0xFF},
    {0x2C, "RPM2", ByteLabels, 0xFF},
    {0x2D, "RPM2(MSB)", CountHighLabels, 0xFF},
    {0x2E, "RPM3", ByteLabels, 0xFF},
    {0x2F, "RPM3(MSB)", CountHighLabels, 0xFF},
    {0x30, "RPM4", ByteLabels, 0xFF},
    {0x31, "RPM4(MSB)", CountHighLabels, 0xFF},
    {0x32, "RPM5", ByteLabels, 0xFF},
    {0x33, "RPM5(MSB)", CountHighLabels, 0xFF},
    {0x34, "RPM6", ByteLabels, 0xFF},
    {0x35, "RPM6(MSB)", CountHighLabels, 0xFF},
    {0x36, "RPM7", ByteLabels, 0xFF},
    {0x37, "RPM7(MSB)", CountHighLabels, 0xFF},
    {0x38, "RPM8", ByteLabels, 0xFF},
    {0x39, "RPM8(MSB)", CountHighLabels, 0xFF},
    {0x3A, "Lookup Hysteresis", ByteLabels, 0x05},
    {0x3B, "Enhance Acoustics", ByteLabels, 0x00},
    {0x3C, "Fan Response", "-:F2:F2:F2:-:F1:F1:F1", 0x11, RegisterAccess::ReadWrite,
     Presence::BothVariants, "-:-:-:-:-:F1:F1:F1"},
    {0x3D, "Device ID", ByteLabels, 0x34, RegisterAccess::ReadOnly},
    {0x3E, "Company ID", ByteLabels, 0x41, RegisterAccess::ReadOnly},
    {0x3F, "Revision", ByteLabels, 0x00, RegisterAccess::ReadOnly},
    {0x40, "Local Temperature", TemperatureLowLabels, 0x00, RegisterAccess::ReadOnly},
    {0x41, "Local Temperature(MSB)", TemperatureHighLabels, 0x00, RegisterAccess::ReadOnly},
    {0x42, "Remote1 Temperature", TemperatureLowLabels, 0x00, RegisterAccess::ReadOnly},
    {0x43, "Remote1 Temperature(MSB)", TemperatureHighLabels, 0x00, RegisterAccess::ReadOnly},
    {0x44, "Remote2 Temperature", TemperatureLowLabels, 0x00, RegisterAccess::ReadOnly,
     Presence::OnlyZTM7720},
    {0x45, "Remote2 Temperature(MSB)", TemperatureHighLabels, 0x00, RegisterAccess::ReadOnly,
     Presence::OnlyZTM7720},
    {0x4A, "Tach1 Low", ByteLabels, 0xFF, RegisterAccess::ReadOnly},
    {0x4B, "Tach1 High", CountHighLabels, 0xFF, RegisterAccess::ReadOnly},
    {0x4C, "Tach2 Low", ByteLabels, 0xFF, RegisterAccess::ReadOnly, Presence::OnlyZTM7720},
    {0x4D, "Tach2 High", CountHighLabels, 0xFF, RegisterAccess::ReadOnly, Presence::OnlyZTM7720},
    {0x4E, "Therm % Ontime", ByteLabels, 0x00, RegisterAccess::ReadOnly},
    {0x4F, "Status1", "LH:LL:R1H:R1L:R1D:R2H:R2L:R2D", 0x00, RegisterAccess::ReadingClears,
     Presence::BothVariants, "LH:LL:R1H:R1L:R1D:-:-:-"},
    {0x50, "Status2", "LT:R1T:R2T:%T:TA:-:-:TS", 0x00, RegisterAccess::ReadingClears,
     Presence::BothVariants, "LT:R1T:-:%T:TA:-:-:TS"},
    {0x51, "Status3", "F1S:F1A:F2S:F2A:-:-:-:ALRT", 0x00, RegisterAccess::ReadingClears,
     Presence::BothVariants, "F1S:F1A:-:-:-:-:-:ALRT"},
};

/// The row of the register at that address, or null if no variant has one there.
constexpr const RegisterRow *FindRegisterRow(int32_t address) {
    const auto row = std::ranges::lower_bound(RegisterTable, address, {}, &RegisterRow::Address);
    return row != std::end(RegisterTable) && row->Address == address ? &*row : nullptr;
}

// The map's slots and the search above rely on the order of the addresses.
static_assert(std::ranges::adjacent_find(RegisterTable, std::ranges::greater_equal{},
                                         &RegisterRow::Address) == std::end(RegisterTable));

} // namespace ztm
