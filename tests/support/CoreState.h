#pragma once

namespace ztm::test {

/// Puts all of the core's state back to the start of a run.
void ResetCoreState();

} // namespace ztm::test
