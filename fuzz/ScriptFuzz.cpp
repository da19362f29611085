#include "Fuzz.h"

#include "cli/ExitCodes.h"
#include "cli/Script.h"
#include "link/Session.h"

#include <algorithm>

namespace ztm::fuzz {
namespace {

/// How many lines there are to run, those of blocks once.
size_t CountOf(const std::vector<cli::ReadyLine> &lines) {
    size_t count = 0;
    for (const cli::ReadyLine &line : lines) {
        Require(static_cast<bool>(line.Ready.Run) == (line.Repeats == 0),
                "a line is a command or a block");
        count += line.Repeats == 0 ? 1 : CountOf(line.Body);
    }
    return count;
}

} // namespace

/// Nothing is asked of the adapter while a script is read and checked, whether it is refused or
/// not; what is refused names its line; and line by line the same is accepted as in one piece.
void Try(std::string_view text) {
    test::StartSession();
    std::vector<cli::ReadyLine> ready;
    bool isAccepted = true;
    try {
        const auto lines = cli::ReadScript(text, "script");
        cli::CheckVariants(lines, "script", "");
        ready = cli::MakeReady(lines, "script");
        Require(CountOf(ready) <= text.size(), "no more commands than characters");
    } catch (const cli::Failure &failure) {
        isAccepted = false;
        Require(failure.Code() == cli::WrongUse, "a script is only refused for what it says");
        Require(std::string_view(failure.what()).starts_with("script:"), "the line is named");
    }
    Require(test::Adapter().calls.empty(), "nothing is sent before a script has been checked");

    // As at a prompt, where a refused line is left out.
    cli::ScriptReader reader("script");
    bool isEachAccepted = true;
    for (size_t end = 0; !text.empty(); text.remove_prefix(std::min(end + 1, text.size()))) {
        end = std::min(text.find('\n'), text.size());
        try {
            reader.Take(text.substr(0, end));
        } catch (const cli::Failure &) {
            isEachAccepted = false;
        }
    }
    Require(!isAccepted || (isEachAccepted && !reader.IsWithinBlock()), "line by line as a whole");
    Require(test::Adapter().calls.empty(), "reading sends nothing");
}

} // namespace ztm::fuzz
