#include "Fuzz.h"

#include "common/NumberText.h"
#include "common/Numbers.h"

#include <cmath>
#include <limits>

using namespace ztm;
using namespace ztm::fuzz;

namespace {

std::string WithoutBlanks(std::string_view text) {
    std::string dense;
    for (const char character : text) {
        if (character != ' ' && character != '\t' && character != '\n') {
            dense += character;
        }
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

extern "C" int LLVMFuzzerInitialize(int * /*argumentCount*/, char *** /*arguments*/) {
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    const std::string_view text = TextOf(data, size);
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
    return 0;
}
