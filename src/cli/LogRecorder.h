#pragma once

#include "monitor/MeasurementLog.h"

#include <string>

namespace ztm::cli {

/// Records a measurement log as the program's monitor does, tick by tick, until it has its entries;
/// without a limit until something is thrown. The file is whole then. Every channel is measured
/// once before the start. Throws Failure if the log cannot be written.
void RecordLog(const std::string &path, const LogSettings &settings);

} // namespace ztm::cli
