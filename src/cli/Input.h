#pragma once

#include <optional>
#include <string>

namespace ztm::cli {

/// Where the lines of "run -" come from.
class LineInput {
public:
    virtual ~LineInput() = default;
    /// The next line; none at the end. Throws Interrupted.
    virtual std::optional<std::string> Next(bool isWithinBlock) = 0;
};

/// Standard input as it comes. Throws Failure FileFailed if it cannot be read.
class PipedInput final : public LineInput {
public:
    std::optional<std::string> Next(bool isWithinBlock) override;

private:
    std::string bytes;
    bool isAtEnd = false;
};

/// A prompt on the terminal, with line editing and a history. SIGINT is the proper end of a line;
/// when the terminal is gone, that counts as SIGHUP. What is typed is shown on standard error if
/// standard output is no terminal.
class TypedInput final : public LineInput {
public:
    TypedInput();
    std::optional<std::string> Next(bool isWithinBlock) override;
};

} // namespace ztm::cli
