#pragma once

#include "common/ChannelHistory.h"

namespace ztm {

/// The measurements of the session over time, in seconds from the midnight before it started.
/// All charts draw from it.
const ChannelHistory &MeasurementHistory();

/// Adds the present `Measurements`, with a gap for channels that the variant lacks. To be called
/// once per monitor tick while the measurements are to be kept; a pause of several periods and
/// some seconds leaves a gap in all channels.
void RecordMeasurements();

/// Forgets everything.
void ResetMeasurementHistory();

} // namespace ztm
