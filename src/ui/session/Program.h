#pragma once

#include <QWidget>

#include <memory>

namespace ztm {

/// Makes a window that stands beside those of the program.
using CompanionMaker = std::unique_ptr<QWidget> (*)();

/// Runs the program from the search wizard to its end and returns its exit code: 0 after a
/// normal end. After a failed adapter request the user is told, every window is unloaded and
/// the process ends with another code, without returning. The command line is not looked at:
/// `name` is the program's own name. A `companion` is shown for as long as the program runs; the
/// program ends with the last of its own windows, whether the companion is open or not.
int RunProgram(char *name, CompanionMaker companion = nullptr);

/// Ends the process now, without unloading a window.
[[noreturn]] void EndProgramAtOnce(int exitCode);

/// What a failed adapter request does in the program.
[[noreturn]] void EndAfterCommFailure();

} // namespace ztm
