#include "ui/instruments/Colours.h"

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr double readableContrast = 4.5;

/// Relative luminance, 0 to 1.
double Luminance(const QColor &colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

} // namespace

QColor Mix(const QColor &first, const QColor &second, double share) {
    const auto mixed = [share](float from, float to) {
        return from + (to - from) * static_cast<float>(share);
    };
    return QColor::fromRgbF(mixed(first.redF(), second.redF()),
                            mixed(first.greenF(), second.greenF()),
                            mixed(first.blueF(), second.blueF()));
}

QColor Readable(const QColor &colour, const QColor &ground) {
    constexpr int steps = 20;
    constexpr double step = 0.12;
    const double groundLuminance = Luminance(ground);
    const QColor target = groundLuminance < 0.18 ? Qt::white : Qt::black;
    QColor result = colour;
    for (int count = 0; count < steps; ++count) {
        const auto [low, high] = std::minmax({Luminance(result), groundLuminance});
        if ((high + 0.05) / (low + 0.05) >= readableContrast) {
            break;
        }
        result = Mix(result, target, step);
    }
    return result;
}

} // namespace ztm
