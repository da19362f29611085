#pragma once

#include "adapter/sim/SimulatedBoard.h"

namespace ztm::test {

/// Puts a new simulated board behind the adapter's entries, on that clock.
void PlugIn(sim::Variant variant, sim::SimulatedBoard::Clock clock);

} // namespace ztm::test
