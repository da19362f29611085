#pragma once

namespace ztm {

/// Starts the session for `DeviceName` in the loaded main window: defaults and timer, bit
/// display, register map and tree, the first register read and shown, and at last the window
/// itself. Does nothing without a loaded main window.
void StartSession();

} // namespace ztm
