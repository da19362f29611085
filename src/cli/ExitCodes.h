#pragma once

#include <stdexcept>
#include <string>

namespace ztm::cli {

/// The exit status of the command.
enum ExitCode : int {
    Done = 0,
    ChipFailed = 1,   ///< the chip or the bus
    NothingFound = 2, ///< no adapter, no chip, or another variant than the wanted one
    AnswerIsNo = 3,   ///< what was asked for does not hold
    WrongUse = 64,
    FileFailed = 74, ///< a file, standard output among them, could not be read or written
    BySignal = 128   ///< plus the number of the signal
};

/// Ends a command, and with it the run. The text is one line: what is wrong, and what helps.
class Failure : public std::runtime_error {
public:
    Failure(ExitCode code, const std::string &text) : std::runtime_error(text), exitCode(code) {}
    ExitCode Code() const { return exitCode; }

private:
    ExitCode exitCode;
};

/// Something that was typed is not as it has to be; nothing was sent for it.
inline Failure Refused(const std::string &text) {
    return {WrongUse, text};
}

} // namespace ztm::cli
