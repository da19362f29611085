#pragma once

#include "monitor/ChannelHistory.h"

namespace ztm {

/// The measurements of the session over time, in seconds from the midnight before it started.
/// All charts draw from it.
const ChannelHistory &MeasurementHistory();

/// Adds the present `Measurements`, with a gap for channels that the variant lacks.
void RecordMeasurements();

/// Forgets everything.
void ResetMeasurementHistory();

} // namespace ztm
