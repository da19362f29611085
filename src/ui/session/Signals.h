#pragma once

namespace ztm {

/// From now on SIGTERM, SIGINT and SIGHUP close the program from its event loop as the close box of
/// its window does, after whatever runs a loop of its own: menus, messages, file dialogs. A second
/// one ends the process at once, with 128 + its number as the exit code. A SIGHUP that is ignored
/// already stays so. SIGPIPE and SIGXFSZ do nothing any more: the write that failed says so.
/// Needs the application object.
void TakeSignals();

} // namespace ztm
