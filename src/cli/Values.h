#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ztm::cli {

// What is typed, as values. Each refuses (Failure WrongUse) what is not one as a whole.

/// A text for comparing names: without blanks, in lower case.
std::string Folded(std::string_view text);

/// A decimal number with a point, in every locale.
double ParseNumber(std::string_view text, const std::string &what);

/// A whole decimal number of that range.
int32_t ParseWhole(std::string_view text, int32_t least, int32_t most, const std::string &what);

/// A byte: decimal, or hexadecimal as in 0x1F or 1Fh.
int32_t ParseByte(std::string_view text, int32_t most, const std::string &what);

/// The number of a hexadecimal text: 1F, 0x1F or 1Fh; none if it is not one. Larger ones than 16
/// bits hold become 0xFFFF.
std::optional<int32_t> HexNumber(std::string_view text);

/// Whether a text says itself that it is hexadecimal, as 0x1F and 1Fh do.
bool IsMarkedHex(std::string_view text);

/// A 7-bit address of the range that the chips can have, as in 0x2C.
int32_t ParseI2cAddress(std::string_view text);

/// Seconds: 100ms, 2s, 5m, 1h; a bare number is seconds.
double ParseSeconds(std::string_view text);

/// A channel that the current variant has: 0 to 5. Its name, or that of the larger variant.
int ParseChannel(std::string_view text);

/// The position of a text in a list of choices: the whole text, or its first word.
int32_t ParseChoice(std::string_view text, std::span<const std::string_view> choices,
                    const std::string &what);

/// The texts with commas between them.
std::string Listed(std::span<const std::string_view> texts);

} // namespace ztm::cli
