#include "fan/PointText.h"

#include "common/NumberText.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace ztm {
namespace {

constexpr char separator = '\t';

std::optional<double> NumberOf(std::string_view text) {
    const double number = NumericValue(text);
    const bool isOne = HasNumber(text) && IsNumber(text) && std::isfinite(number);
    return isOne ? std::optional(number) : std::nullopt;
}

std::optional<SpeedPoint> PointOf(std::string_view line) {
    const size_t tab = line.find(separator);
    if (tab == std::string_view::npos || line.find(separator, tab + 1) != std::string_view::npos) {
        return std::nullopt;
    }
    const auto celsius = NumberOf(line.substr(0, tab));
    const auto rpm = NumberOf(line.substr(tab + 1));
    return celsius && rpm ? std::optional(SpeedPoint{*celsius, *rpm}) : std::nullopt;
}

/// Takes the first line, without its end, off a text.
std::string_view TakeLine(std::string_view &text) {
    const size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(end);
    text.remove_prefix(text.starts_with("\r\n") ? 2 : text.empty() ? 0 : 1);
    return line;
}

} // namespace

std::string PointsAsText(const SpeedPoints &points) {
    std::string text;
    for (const SpeedPoint &point : points) {
        text.append(NumberText(point.Celsius)) += separator;
        text.append(NumberText(point.Rpm)) += '\n';
    }
    return text;
}

ParsedPoints ParsePoints(std::string_view text) {
    ParsedPoints parsed;
    const auto refuse = [&](size_t line) {
        parsed.AreTooMany = line > LookupPoints;
        parsed.FaultyLine = static_cast<int>(line);
        parsed.Points.clear();
        return parsed;
    };
    do {
        const std::string_view line = TakeLine(text);
        if (line.empty() && text.empty() && !parsed.Points.empty()) {
            break;
        }
        const auto point = PointOf(line);
        if (!point || parsed.Points.size() == LookupPoints) {
            return refuse(parsed.Points.size() + 1);
        }
        parsed.Points.push_back(*point);
    } while (!text.empty());
    return parsed;
}

} // namespace ztm
