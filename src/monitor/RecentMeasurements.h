#pragma once

#include "monitor/Channels.h"

#include <array>
#include <cstddef>

namespace ztm {

/// The measurements of the last minute, four times a second, in a fixed amount of memory. They are
/// kept while the monitor measures, whether or not anything is graphed.
struct RecentSample {
    double Time;                            ///< RunningSeconds
    std::array<float, ChannelCount> Values; ///< NaN for a channel that is not measured now
};

inline constexpr double RecentSeconds = 60;
inline constexpr double RecentSpacingSeconds = 0.25;

inline constexpr size_t MostRecentSamples = 256;

/// Whether the monitor is measuring a channel: its value is of the last round of all channels, or
/// late by at most 2 s.
bool IsMeasuredNow(int channel);

/// Keeps `Measurements`. Call once per tick while measuring.
void KeepRecentMeasurements();

/// How many samples there are, some of which may be older than a minute; 0 is the oldest.
size_t RecentCount();
const RecentSample &RecentAt(size_t index);

/// Forgets them.
void ResetRecentMeasurements();

} // namespace ztm
