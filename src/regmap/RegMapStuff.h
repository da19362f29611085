#pragma once

#include "regmap/RegisterTable.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ztm {

// The register map: every register of the current chip, and look-up functions.

/// One register as the program shows it. The texts are views into constant data and stay valid
/// for the whole run.
struct RegisterEntry {
    int32_t Address = 0;          ///< 0x00 to 0x51
    std::string_view Name;        ///< unique within the map; also the register's text in the tree
    std::string_view Description; ///< always equal to `Name`
    std::string_view BitLabels;   ///< eight labels separated by ":", bit 7 first; "-" is no label
    int16_t Default = 0;          ///< 0 to 255
    RegisterAccess Access = RegisterAccess::ReadWrite;

    bool IsReadOnly() const { return Access != RegisterAccess::ReadWrite; }
    /// Whether it is the high byte of a pair; the low byte is the register before it.
    bool IsHighByte() const;
};

inline constexpr int RegisterMapSize = 70;

/// The registers of the current chip in ascending address order, from slot 0 on without a gap. The
/// slots after the last register are empty: address 0, empty texts, default 0.
extern std::array<RegisterEntry, RegisterMapSize> RegisterMap;

/// Fills the first slots of `RegisterMap` for the chip named by `DeviceName`: 69 for a ZTM7720,
/// 61 for a ZTM7710, none for any other name. Leaves the other slots as they are.
void BuildRegisterMap();

/// Empties every slot, as at the start of the run.
void ResetRegisterMap();

/// The registers of the current chip: the filled slots.
std::span<const RegisterEntry> Registers();

/// The names of the bits of a register that are set in `bits`, bit 7 first, separated by a blank. A
/// field is named once; a bit without a label is "bit 3".
std::string BitNames(const RegisterEntry &entry, int32_t bits);

/// The index of the first register with exactly that name. Empty slots have no name, so an empty
/// text finds nothing.
std::optional<int16_t> FindRegisterByName(std::string_view name);

/// The index of the first slot with that address. Empty slots match address 0; once the map is
/// built, slot 0 holds register 0x00 and is found before them.
std::optional<int16_t> FindRegisterByAddress(int32_t address);

} // namespace ztm
