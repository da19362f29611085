#include "Fuzz.h"

#include "common/NumberText.h"
#include "common/Numbers.h"

#include <cmath>
#include <limits>

namespace ztm::fuzz {
namespace {

std::string WithoutBlanks(std::string_view text) {
    std::string dense(text);
    for (const char blank : {' ', '\t', '\n'}) {
        std::erase(dense, blank);
    }
    return dense;
}

/// A number's text, plain decimal notation, is read as that number to the digits that it has.
template <typename Number>
void WriteAndRead(Number number, double tolerance) {
    const std::string text = NumberText(number);
    Require(text.find_first_not_of("0123456789.-") == std::string::npos, "plain decimal notation");
    Require(std::abs(NumericValue(text) - number) <=
                std::abs(number) * tolerance + std::numeric_limits<Number>::denorm_min(),
            "a text is read as the number that was written");
}

} // namespace

void Try(std::string_view text) {
    const double number = NumericValue(text);
    Require(!std::isnan(number), "a text is a number");
    Require(number == NumericValue(WithoutBlanks(text)), "blanks do not matter");
    if (std::isfinite(number)) {
        WriteAndRead(number, 1e-14);
    }
    if (std::abs(number) <= static_cast<double>(std::numeric_limits<float>::max())) {
        WriteAndRead(static_cast<float>(number), 1e-6);
    }

    const int32_t whole = ToInt32(number);
    Require(std::abs(number) > 2147483647.0 || std::abs(number - whole) <= 0.5, "nearest number");
    const std::string digits = HexText(number);
    Require(digits.size() < 5 ? (HexValue(digits) & 0xFFFF) == whole : HexValue(digits) == whole,
            "hexadecimal digits are read as the number that was written");
    Require(HexValue(text) == HexValue(WithoutBlanks(text)), "blanks do not matter");
}

} // namespace ztm::fuzz
