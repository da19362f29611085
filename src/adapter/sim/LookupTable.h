#pragma once

#include "adapter/sim/RegisterFile.h"

#include <cstddef>

namespace ztm::sim {

/// The speed in RPM from the chip's lookup table for a fan (counted from 0) at that temperature; 0
/// below the first point. The registers select the fan's points, and steps or straight lines
/// between them.
double LookUpRpm(const RegisterFile &registers, size_t fan, double celsius);

} // namespace ztm::sim
