#pragma once

namespace ztm {

/// Starts the session for `DeviceName` in the loaded main window: defaults and timer, bit display,
/// register map and tree; reads and shows the first register, and finally shows the window. Does
/// nothing without a loaded main window.
void StartSession();

} // namespace ztm
