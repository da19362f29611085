#include "common/Numbers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace ztm {

double RoundHalfToEven(double value) {
    return std::nearbyint(value);
}

int32_t ToInt32(double value) {
    using Limits = std::numeric_limits<int32_t>;
    if (std::isnan(value)) {
        return 0;
    }
    return static_cast<int32_t>(
        std::clamp<double>(RoundHalfToEven(value), Limits::min(), Limits::max()));
}

double RoundToDecimals(double value, int decimals) {
    // Only the conversion to text rounds a binary value by its exact decimal expansion; scaling by
    // a power of ten would round twice.
    char text[400];
    const auto written =
        std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
    double rounded = value;
    std::from_chars(text, written.ptr, rounded);
    return rounded;
}

} // namespace ztm
