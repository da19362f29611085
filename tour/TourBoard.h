#pragma once

#include "adapter/sim/SimulatedBoard.h"

namespace ztm::test {

/// Puts a new simulated board with that clock behind the adapter functions.
void PlugIn(sim::Variant variant, sim::SimulatedBoard::Clock clock);

} // namespace ztm::test
