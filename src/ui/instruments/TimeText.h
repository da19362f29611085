#pragma once

#include <QString>

namespace ztm {

/// Seconds since a midnight as time of day, "HH MM SS" or with another separator, with 0 to 3
/// decimals of a second.
QString TimeOfDayText(double seconds, QChar separator, int decimals = 0);

/// The local date of a time in seconds since the midnight before the clock started, as in
/// "2026-11-23".
QString DateText(double seconds);

} // namespace ztm
