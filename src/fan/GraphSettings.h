#pragma once

namespace ztm {

/// Top of the speed scale of the automatic-control graph in RPM.
extern float GraphRpmRange;

/// Puts the start-of-session value back.
void ResetGraphSettings();

} // namespace ztm
