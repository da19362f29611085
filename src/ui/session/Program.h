#pragma once

#include <QWidget>

#include <memory>

namespace ztm {

/// Creates a window to be shown beside those of the program.
using CompanionMaker = std::unique_ptr<QWidget> (*)();

/// What the program shows first. A companion that comes alone calls OpenWizard in its time.
enum class Opening { Wizard, CompanionAlone };

/// Runs the program from the search wizard to its end and returns its exit code: 0 after a normal
/// end. After a failed adapter request it tells the user, unloads every window and ends the process
/// with another code, without returning. The command line is ignored: `name` is the program's own
/// name. A `companion` is shown while the program runs; the program ends with the last of its own
/// windows, even if the companion is still open, which a failed request hides. Signals end it as
/// TakeSignals says.
int RunProgram(char *name, CompanionMaker companion = nullptr, Opening opening = Opening::Wizard);

/// Opens the search wizard.
void OpenWizard();

/// Ends the process now, without unloading a window.
[[noreturn]] void EndProgramAtOnce(int exitCode);

/// How the program handles a failed adapter request.
[[noreturn]] void EndAfterCommFailure();

} // namespace ztm
