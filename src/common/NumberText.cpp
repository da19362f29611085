#include "common/NumberText.h"

#include "common/Numbers.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <charconv>
#include <iterator>
#include <limits>

namespace ztm {
namespace {

bool IsIgnored(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string WithoutBlanks(std::string_view text) {
    std::string kept;
    std::copy_if(text.begin(), text.end(), std::back_inserter(kept),
                 [](char c) { return !IsIgnored(c); });
    return kept;
}

/// Puts the decimal point `exponent` digits after the first of `digits`.
std::string PlainNotation(std::string digits, int exponent) {
    const auto pointAt = exponent + 1;
    if (pointAt <= 0) {
        return digits.insert(0, static_cast<size_t>(-pointAt), '0').insert(0, 1, '.');
    }
    const auto wholeDigits = static_cast<size_t>(pointAt);
    if (digits.size() <= wholeDigits) {
        return digits.append(wholeDigits - digits.size(), '0');
    }
    return digits.insert(wholeDigits, 1, '.');
}

template <class Float>
std::string Text(Float value, int significantDigits) {
    if (value == 0) {
        return "0";
    }
    // Scientific notation gives the significant digits, correctly rounded: "-1.2345e+01".
    std::array<char, 32> buffer;
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       std::chars_format::scientific, significantDigits - 1);
    const std::string_view scientific(buffer.data(), written.ptr);
    const std::string_view mantissa = scientific.substr(0, scientific.find('e'));
    const char *exponentSign = mantissa.data() + mantissa.size() + 1;
    int exponent = 0;
    std::from_chars(exponentSign + (*exponentSign == '+' ? 1 : 0), written.ptr, exponent);
    std::string digits;
    std::copy_if(mantissa.begin(), mantissa.end(), std::back_inserter(digits), IsDigit);
    digits.erase(digits.find_last_not_of('0') + 1);
    std::string text = PlainNotation(std::move(digits), exponent);
    return value < 0 ? text.insert(0, 1, '-') : text;
}

/// The length of the longest decimal number that `text` starts with; 0 when there is none.
size_t DecimalLength(std::string_view text) {
    size_t at = 0;
    const auto skipDigits = [&] {
        const size_t from = at;
        while (at < text.size() && IsDigit(text[at])) {
            ++at;
        }
        return at - from;
    };
    const auto skipOneOf = [&](std::string_view set) {
        if (at < text.size() && set.find(text[at]) != std::string_view::npos) {
            ++at;
        }
    };
    skipOneOf("+-");
    size_t mantissaDigits = skipDigits();
    skipOneOf(".");
    mantissaDigits += skipDigits();
    if (mantissaDigits == 0) {
        return 0;
    }
    const size_t mantissaEnd = at;
    skipOneOf("eE");
    if (at == mantissaEnd) {
        return mantissaEnd;
    }
    skipOneOf("+-");
    return skipDigits() > 0 ? at : mantissaEnd;
}

/// Whether a decimal number outside the range of a double is too large, not too close to 0.
bool IsBeyondDouble(std::string_view number) {
    const size_t mantissaEnd = std::min(number.find_first_of("eE"), number.size());
    const std::string_view mantissa = number.substr(0, mantissaEnd);
    const auto point = static_cast<int64_t>(std::min(mantissa.find('.'), mantissaEnd));
    const auto firstDigit = static_cast<int64_t>(mantissa.find_first_of("123456789"));
    int64_t exponent = 0;
    if (mantissaEnd < number.size()) {
        const char *digits = number.data() + mantissaEnd + 1;
        const auto result = std::from_chars(digits + (*digits == '+' ? 1 : 0),
                                            number.data() + number.size(), exponent);
        if (result.ec == std::errc::result_out_of_range) {
            return *digits != '-';
        }
    }
    return exponent > firstDigit - point; // the sum could overflow
}

} // namespace

std::string NumberText(float value) {
    return Text(value, 7);
}

std::string NumberText(double value) {
    return Text(value, 15);
}

double NumericValue(std::string_view text) {
    const std::string kept = WithoutBlanks(text);
    std::string number = kept.substr(0, DecimalLength(kept));
    if (number.starts_with('+')) {
        number.erase(0, 1);
    }
    double value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (result.ec == std::errc::result_out_of_range && IsBeyondDouble(number)) {
        const double infinity = std::numeric_limits<double>::infinity();
        return number.starts_with('-') ? -infinity : infinity;
    }
    return value;
}

bool IsNumber(std::string_view text) {
    const std::string kept = WithoutBlanks(text);
    return DecimalLength(kept) == kept.size();
}

bool HasNumber(std::string_view text) {
    return DecimalLength(WithoutBlanks(text)) > 0;
}

int32_t HexValue(std::string_view text) {
    std::string digits = WithoutBlanks(text);
    digits.erase(std::find_if_not(digits.begin(), digits.end(),
                                  [](unsigned char c) { return std::isxdigit(c) != 0; }),
                 digits.end());
    constexpr size_t shortDigits = 4;
    constexpr size_t longDigits = 8;
    if (digits.size() > longDigits) {
        digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size() - longDigits));
        if (digits.size() > longDigits) {
            return std::numeric_limits<int32_t>::max();
        }
    }
    uint32_t value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value, 16);
    return digits.size() <= shortDigits ? static_cast<int16_t>(value) : static_cast<int32_t>(value);
}

std::string HexText(double value) {
    char text[8];
    const auto end =
        std::to_chars(text, text + sizeof text, static_cast<uint32_t>(ToInt32(value)), 16).ptr;
    std::transform(text, end, text,
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return {text, end};
}

std::string HexByte(int32_t value) {
    std::string digits = HexText(value);
    return "0x" + digits.insert(0, digits.size() < 2 ? 1 : 0, '0');
}

} // namespace ztm
