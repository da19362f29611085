#pragma once

#include <cstdint>

namespace ztm {

/// The nearest whole number; an exact half goes to the even neighbour (127.5 → 128,
/// 144.5 → 144).
double RoundHalfToEven(double value);

/// RoundHalfToEven limited to the range of a 32-bit number; NaN gives 0.
int32_t ToInt32(double value);

/// `value` rounded to `decimals` places (0 to 15) by its exact value; an exact half goes to the
/// even digit (25.375 → 25.38, 25.125 → 25.12).
double RoundToDecimals(double value, int decimals);

} // namespace ztm
