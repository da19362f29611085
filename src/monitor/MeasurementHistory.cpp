#include "monitor/MeasurementHistory.h"

#include "common/At.h"
#include "common/Clock.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "monitor/Channels.h"
#include "monitor/Events.h"
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
double lastPeriodSeconds = 0; // of the monitor timer at the last sample

/// Ends the lines of the traces where samples pause, for instance while graphing is off. The time
/// elapsed is NaN before the first sample.
void LeaveGap(double elapsedSeconds, double periodSeconds) {
    // The spacing may still be that of the previous period.
    const double period = std::max(periodSeconds, lastPeriodSeconds);
    if (elapsedSeconds > std::max(longestTickSeconds, periodsOfAPause * period)) {
        ChannelHistory::Values none;
        none.fill(Extent::gap);
        history.Append(history.LastTime() + period, none);
        AddEvent("Measured again after " + NumberText(RoundToDecimals(elapsedSeconds, 1)) + " s");
    }
}

} // namespace

const ChannelHistory &MeasurementHistory() {
    return history;
}

void RecordMeasurements() {
    ChannelHistory::Values values = Measurements;
    ChannelHistory::Flags measured{};
    for (int channel = 0; channel < ChannelCount; ++channel) {
        At(measured, channel) = IsMeasured(channel);
        if (!HasChannel(channel)) {
            At(values, channel) = Extent::gap;
        }
    }
    const double now = RunningSeconds();
    const double period = MonitorInterval / millisecondsPerSecond;
    LeaveGap(now - history.LastTime(), period);
    lastPeriodSeconds = period;
    history.Append(now, values, measured);
}

void ResetMeasurementHistory() {
    history.Clear();
}

} // namespace ztm
