#pragma once

#include "adapter/sim/RegisterFile.h"

#include <cstddef>

namespace ztm::sim {

/// The speed in RPM that the chip's lookup table gives a fan (counted from 0) at that
/// temperature, 0 below the table's first point. The registers say which points are the fan's
/// and whether the speed changes in steps or in straight lines between them.
double LookUpRpm(const RegisterFile &registers, size_t fan, double celsius);

} // namespace ztm::sim
