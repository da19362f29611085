#pragma once

#include "cli/Commands.h"

#include <optional>
#include <string>

namespace ztm::cli {

/// What the command line asks for: one of a command, a script, the list of buses, or a text.
struct Request {
    Options Settings;
    StepMaker Command;
    std::optional<std::string> Script; ///< its file, "-" for standard input
    bool IsForBuses = false;
    std::optional<std::string> Text; ///< help, or the version
};

/// Throws Failure WrongUse for what is not understood.
Request ParseCommandLine(int argumentCount, char *arguments[]);

} // namespace ztm::cli
