#include "monitor/RecentMeasurements.h"

#include "common/Clock.h"
#include "monitor/MonitorSettings.h"

#include <algorithm>
#include <limits>

namespace ztm {
namespace {

constexpr size_t capacity = MostRecentSamples;
static_assert(static_cast<double>(capacity) * RecentSpacingSeconds > RecentSeconds);

constexpr double latestSeconds = 2;
constexpr double millisecondsPerSecond = 1000;

std::array<RecentSample, capacity> samples{};
size_t total = 0; // kept so far

} // namespace

bool IsMeasuredNow(int channel) {
    // A round takes a tick for each channel.
    const double round = ChannelCount * MonitorInterval / millisecondsPerSecond;
    return MonitoringEnabled && HasChannel(channel) &&
           RunningSeconds() - MeasuredTime(channel) <= round + latestSeconds;
}

void KeepRecentMeasurements() {
    const double now = RunningSeconds();
    if (total > 0 && now - samples[(total - 1) % capacity].Time < RecentSpacingSeconds) {
        return;
    }
    RecentSample &sample = samples[total % capacity];
    sample.Time = now;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const auto slot = static_cast<size_t>(channel);
        sample.Values[slot] =
            IsMeasuredNow(channel) ? Measurements[slot] : std::numeric_limits<float>::quiet_NaN();
    }
    ++total;
}

size_t RecentCount() {
    return std::min(total, capacity);
}

const RecentSample &RecentAt(size_t index) {
    return samples[(total - RecentCount() + index) % capacity];
}

void ResetRecentMeasurements() {
    total = 0;
}

} // namespace ztm
