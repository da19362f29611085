#pragma once

#include "link/Registers.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ztm::cli {

// Registers and their bits as they are typed and shown, by the map of the current variant. What is
// not understood is refused (Failure WrongUse).

/// The address of a register: hexadecimal (01, 0x01, 01h), its name, or the beginning of one name
/// alone; blanks and case are ignored.
int32_t ParseRegister(std::string_view text);

/// What a write goes to.
struct WriteTarget {
    int32_t Address;
    std::optional<RegisterField> Bits; ///< none for the whole register
};

/// A register, or one with a "." and a bit behind it: a position from 7 to 0, or a label, which
/// stands for all bits that have it. Labels that are numbers are no names.
WriteTarget ParseTarget(std::string_view text);

/// The name in the map; "Unknown" for another address.
std::string_view NameOfRegister(int32_t address);

/// The bits of a value that have labels, as in "LUT=0 BD=1"; empty if there are none.
std::string BitsText(int32_t address, int32_t value);

} // namespace ztm::cli
