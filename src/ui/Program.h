#pragma once

namespace ztm {

/// Runs the program from the search wizard to its end and returns its exit code: 0 after a
/// normal end. After a failed adapter request the user is told, every window is unloaded and
/// the process ends with another code, without returning. The command line is not looked at:
/// `name` is the program's own name.
int RunProgram(char *name);

/// Ends the process now, without unloading a window.
[[noreturn]] void EndProgramAtOnce(int exitCode);

/// What a failed adapter request does in the program.
[[noreturn]] void EndAfterCommFailure();

} // namespace ztm
