#include "monitor/MeasurementHistory.h"

#include "common/At.h"
#include "common/Clock.h"
#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"

#include <algorithm>

namespace ztm {
namespace {

static_assert(ChannelHistory::channelCount == ChannelCount);

/// A long tick is not a pause.
constexpr double longestTickSeconds = 3;
constexpr double periodsOfAPause = 4;
constexpr double millisecondsPerSecond = 1000;

ChannelHistory history;
double lastRecord = 0;        // seconds since midnight, of the last sample
double lastPeriodSeconds = 0; // of the monitor timer at that sample

/// Ends the lines of the traces where samples pause, for instance while graphing is off.
void LeaveGap(double elapsedSeconds, double periodSeconds) {
    // The spacing may still be that of the previous period.
    const double period = std::max(periodSeconds, lastPeriodSeconds);
    if (elapsedSeconds > std::max(longestTickSeconds, periodsOfAPause * period)) {
        ChannelHistory::Values none;
        none.fill(Extent::gap);
        history.Append(history.LastTime() + period, none);
    }
}

/// The time of the next sample. Continues past midnight, where the time of day restarts at 0.
double NextSampleTime() {
    const double now = SecondsSinceMidnight();
    const double period = MonitorInterval / millisecondsPerSecond;
    double time = now;
    if (!history.IsEmpty()) {
        const double elapsed = ElapsedSeconds(lastRecord, now);
        time = history.LastTime() + elapsed;
        LeaveGap(elapsed, period);
    }
    lastRecord = now;
    lastPeriodSeconds = period;
    return time;
}

} // namespace

const ChannelHistory &MeasurementHistory() {
    return history;
}

void RecordMeasurements() {
    ChannelHistory::Values values = Measurements;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        if (!HasChannel(channel)) {
            At(values, channel) = Extent::gap;
        }
    }
    history.Append(NextSampleTime(), values);
}

void ResetMeasurementHistory() {
    history.Clear();
}

} // namespace ztm
