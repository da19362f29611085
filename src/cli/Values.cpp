#include "cli/Values.h"

#include "adapter/i2c/BusControl.h"
#include "cli/ExitCodes.h"
#include "monitor/Channels.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <vector>

namespace ztm::cli {
namespace {

constexpr double longestSeconds = 1e6;

struct Unit {
    std::string_view name;
    double seconds;
};
constexpr Unit units[] = {{"ms", 0.001}, {"s", 1}, {"m", 60}, {"h", 3600}};

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

template <class Number>
std::optional<Number> Whole(std::string_view text, int base) {
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? std::optional(number) : std::nullopt;
}

std::optional<double> Decimal(std::string_view text) {
    double number = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

/// The digits of a text that says that it is hexadecimal, or the text.
std::string_view HexDigits(std::string_view text) {
    if (text.starts_with("0x") || text.starts_with("0X")) {
        return text.substr(2);
    }
    const bool isMarked = text.size() > 1 && (text.back() == 'h' || text.back() == 'H');
    return isMarked ? text.substr(0, text.size() - 1) : text;
}

std::string Quoted(std::string_view text) {
    return '"' + std::string(text) + '"';
}

} // namespace

std::string Folded(std::string_view text) {
    std::string folded;
    for (const char c : text) {
        if (!IsBlank(c)) {
            folded += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return folded;
}

double ParseNumber(std::string_view text, const std::string &what) {
    if (const auto number = Decimal(text)) {
        return *number;
    }
    throw Refused(Quoted(text) + " is no number for " + what);
}

int32_t ParseWhole(std::string_view text, int32_t least, int32_t most, const std::string &what) {
    const auto number = Whole<int32_t>(text, 10);
    if (!number || *number < least || *number > most) {
        throw Refused(Quoted(text) + " is not " + what + ": a whole number from " +
                      std::to_string(least) + " to " + std::to_string(most));
    }
    return *number;
}

bool IsMarkedHex(std::string_view text) {
    return HexDigits(text).size() < text.size();
}

std::optional<int32_t> HexNumber(std::string_view text) {
    const std::string_view digits = HexDigits(text);
    const bool isHex = !digits.empty() && std::ranges::all_of(digits, [](unsigned char c) {
        return std::isxdigit(c) != 0;
    });
    if (!isHex) {
        return std::nullopt;
    }
    constexpr int32_t largest = 0xFFFF;
    return std::min(Whole<int32_t>(digits, 16).value_or(largest), largest);
}

int32_t ParseByte(std::string_view text, int32_t most, const std::string &what) {
    const auto number = IsMarkedHex(text) ? HexNumber(text) : Whole<int32_t>(text, 10);
    if (!number || *number < 0 || *number > most) {
        throw Refused(Quoted(text) + " is no value for " + what + ": 0 to " + std::to_string(most) +
                      ", hexadecimal as in 0x1F or 1Fh");
    }
    return *number;
}

int32_t ParseI2cAddress(std::string_view text) {
    const auto address = HexNumber(text);
    if (!IsMarkedHex(text) || !address || *address < i2c::firstAddress ||
        *address > i2c::lastAddress) {
        throw Refused(Quoted(text) + " is no 7-bit address of the chip: 0x28 to 0x64");
    }
    return *address;
}

double ParseSeconds(std::string_view text) {
    const size_t unitAt = std::min(text.find_first_not_of("0123456789."), text.size());
    const std::string_view unit = text.substr(unitAt);
    const auto number = Decimal(text.substr(0, unitAt));
    const auto *known = std::ranges::find(units, unit.empty() ? "s" : unit, &Unit::name);
    if (!number || known == std::end(units)) {
        throw Refused(Quoted(text) + " is no time: 100ms, 2s, 5m, 1h, or a number of seconds");
    }
    const double seconds = *number * known->seconds;
    if (seconds > longestSeconds) {
        throw Refused(Quoted(text) + " is too long a time: at most " +
                      std::to_string(static_cast<int>(longestSeconds)) + " s");
    }
    return seconds;
}

int ParseChannel(std::string_view text) {
    const std::string wanted = Folded(text);
    std::vector<std::string_view> names;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        if (HasChannel(channel)) {
            names.push_back(ChannelName(channel));
            const std::string_view general = Channels[static_cast<size_t>(channel)].Name;
            for (const std::string_view name : {names.back(), general}) {
                // A "%" is easily forgotten.
                if (Folded(name) == wanted || Folded(name) == wanted + '%') {
                    return channel;
                }
            }
        }
    }
    throw Refused(Quoted(text) + " is no channel: " + Listed(names));
}

int32_t ParseChoice(std::string_view text, std::span<const std::string_view> choices,
                    const std::string &what) {
    const std::string wanted = Folded(text);
    for (size_t position = 0; position < choices.size(); ++position) {
        const std::string_view choice = choices[position];
        if (Folded(choice) == wanted || Folded(choice.substr(0, choice.find(' '))) == wanted) {
            return static_cast<int32_t>(position);
        }
    }
    throw Refused(Quoted(text) + " is no " + what + ": " + Listed(choices));
}

std::string Listed(std::span<const std::string_view> texts) {
    std::string list;
    for (const std::string_view text : texts) {
        list.append(list.empty() ? "" : ", ").append(text);
    }
    return list;
}

} // namespace ztm::cli
