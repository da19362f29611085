#pragma once

#include "common/ChannelHistory.h"

namespace ztm {

/// The measurements of the session over time, in seconds from the midnight before it started.
/// All charts draw from it.
const ChannelHistory &MeasurementHistory();

/// Adds the current `Measurements`, with a gap for channels that the variant lacks. Call once per
/// monitor tick while the measurements are to be kept; a pause of more than 4 periods and 3 s
/// leaves a gap in all channels.
void RecordMeasurements();

/// Clears the history.
void ResetMeasurementHistory();

} // namespace ztm
