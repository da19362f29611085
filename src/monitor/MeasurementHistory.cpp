#include "monitor/MeasurementHistory.h"

#include "common/Clock.h"
#include "monitor/Channels.h"

namespace ztm {
namespace {

static_assert(ChannelHistory::channelCount == ChannelCount);

ChannelHistory history;
double lastRecord = 0; // seconds since midnight, of the last sample

/// The time of the next sample: goes on evenly where the time of day starts again at 0.
double SampleTime() {
    const double now = SecondsSinceMidnight();
    const double time =
        history.IsEmpty() ? now : history.LastTime() + ElapsedSeconds(lastRecord, now);
    lastRecord = now;
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
            values[static_cast<size_t>(channel)] = Extent::gap;
        }
    }
    history.Append(SampleTime(), values);
}

void ResetMeasurementHistory() {
    history.Clear();
}

} // namespace ztm
