#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ztm {

/// How the program writes a number, in every locale: plain decimal notation with a point,
/// no blanks, only the digits needed, no zero in front of the point below 1 (".5", "-.25",
/// "0"). A 32-bit value gets at most 7 significant digits, a 64-bit value at most 15.
/// `value` is finite.
std::string NumberText(float value);
std::string NumberText(double value);

/// The numeric (or decimal) value of a text: its longest leading decimal number (sign,
/// digits, decimal point, exponent), with blanks, tabs and line feeds ignored wherever they
/// stand; 0 when there is none. What is beyond a double gives ±infinity or 0.
double NumericValue(std::string_view text);

/// The hexadecimal value of a text, as if "&H" stood in front of it: blanks, tabs and line
/// feeds are ignored, the first character that is no hexadecimal digit ends the number, no
/// digits give 0. One to four digits are a 16-bit signed number ("FFFF" is −1), five to eight
/// a 32-bit signed one. Of more digits leading zeros are dropped; a number that still has more
/// than eight gives 0x7FFFFFFF.
int32_t HexValue(std::string_view text);

/// Upper-case hexadecimal digits without leading zeros of the number rounded to the nearest
/// integer (halves to even) and limited to 32 bits; a negative number as its 32-bit two's
/// complement ("FFFFFFFF" for −1).
std::string HexText(double value);

} // namespace ztm
