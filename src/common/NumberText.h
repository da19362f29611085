#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ztm {

/// The program's number format, the same in every locale: plain decimal notation with a point, no
/// blanks, only the digits needed, no zero before the point (".5", "-.25", "0"). A 32-bit value
/// gets at most 7 significant digits, a 64-bit value at most 15. `value` must be finite.
std::string NumberText(float value);
std::string NumberText(double value);

/// The numeric value of a text: its longest leading decimal number (sign, digits, decimal point,
/// exponent); 0 if there is none. Blanks, tabs and line feeds are ignored anywhere. A number
/// outside the range of a double gives ±infinity or 0.
double NumericValue(std::string_view text);

/// Whether a text is a decimal number as a whole, apart from blanks, tabs and line feeds, or has
/// nothing else.
bool IsNumber(std::string_view text);

/// Whether a text starts with a number as NumericValue reads it.
bool HasNumber(std::string_view text);

/// The value of a hexadecimal text, as if "&H" stood in front of it. Blanks, tabs and line feeds
/// are ignored; the first character that is not a hexadecimal digit ends the number; no digits give
/// 0. One to four digits are a 16-bit signed number ("FFFF" is −1), five to eight a 32-bit signed
/// one. With more digits, leading zeros are dropped; more than eight remaining digits give
/// 0x7FFFFFFF.
int32_t HexValue(std::string_view text);

/// `value` in upper-case hexadecimal digits without leading zeros, rounded to the nearest integer
/// (halves to even) and limited to 32 bits; a negative number as its 32-bit two's complement
/// ("FFFFFFFF" for −1).
std::string HexText(double value);

/// A byte in two upper-case digits with "0x" before them: "0x0A".
std::string HexByte(int32_t value);

} // namespace ztm
