// The command "ztm": the program's core without its windows.

#include "cli/AdapterLibrary.h"
#include "cli/CommandLine.h"
#include "cli/Connection.h"
#include "cli/ExitCodes.h"
#include "cli/Input.h"
#include "cli/Interruption.h"
#include "cli/Script.h"
#include "common/WholeFile.h"

#include <clocale>
#include <csignal>
#include <unistd.h>

namespace ztm::cli {
namespace {

Adapter AdapterOf(const Options &options) {
    return options.Adapter == "sim"   ? Adapter::Sim
           : options.Adapter == "i2c" ? Adapter::I2c
                                      : Adapter::Usb;
}

Form FormOf(const Options &options) {
    return options.Json ? Form::Json : isatty(STDOUT_FILENO) != 0 ? Form::Columns : Form::Tabs;
}

/// One command, or the lines of a file.
struct Script {
    std::string name; ///< empty for a command
    std::vector<ScriptLine> lines;
};

Script ReadWhole(const Request &request) {
    if (!request.Script) {
        ScriptLine line;
        line.Make = request.Command;
        return {"", {line}};
    }
    std::string problem;
    const auto text = ReadFile(*request.Script, problem);
    if (!text) {
        throw Failure(FileFailed, *request.Script + ": " + problem);
    }
    return {*request.Script, ReadScript(*text, *request.Script)};
}

/// Whether a prompt goes on after a failure.
bool IsForgiven(const Failure &failure) {
    return failure.Code() != ChipFailed;
}

/// Runs lines as they come. At a prompt what fails is told, and the next line can be typed.
void RunInput(Session &session) {
    const bool isPrompt = isatty(STDIN_FILENO) != 0;
    std::unique_ptr<LineInput> input;
    if (isPrompt) {
        input = std::make_unique<TypedInput>();
    } else {
        input = std::make_unique<PipedInput>();
    }
    ScriptReader reader(isPrompt ? "" : "standard input");
    for (bool isOpen = true; isOpen;) {
        try {
            const auto typed = input->Next(reader.IsWithinBlock());
            isOpen = typed.has_value();
            if (const auto line = isOpen ? reader.Take(*typed) : std::nullopt) {
                RunLines(session, MakeReady({*line}, reader.Name()), reader.Name());
            }
        } catch (const Failure &failure) {
            if (!isPrompt || !IsForgiven(failure)) {
                throw;
            }
            Tell(failure.what());
        } catch (const Interrupted &interruption) {
            if (!isPrompt || !interruption.isItsEnd) {
                throw;
            }
            ForgetSignal();
            reader.GiveUpBlocks();
        }
    }
    reader.Finish();
}

/// Runs `action` and says what has gone wrong. Returns the exit status.
template <class Action>
int StatusOf(const Action &action) {
    try {
        action();
        return Done;
    } catch (const Failure &failure) {
        Tell(failure.what());
        return failure.Code();
    } catch (const Interrupted &interruption) {
        return interruption.isItsEnd ? int{Done} : BySignal + interruption.signal;
    } catch (const OutputClosed &) {
        return BySignal + SIGPIPE;
    } catch (const std::exception &error) {
        Tell(error.what());
        return ChipFailed;
    }
}

/// Everything that needs the chip.
int RunOnChip(const Request &request, Output &out) {
    const bool isFromInput = request.Script == "-";
    const Options &options = request.Settings;
    Script script;
    std::unique_ptr<Clock> clock;
    const int early = StatusOf([&] {
        if (!isFromInput) {
            script = ReadWhole(request);
            CheckVariants(script.lines, script.name, options.Variant);
            CheckFiles(script.lines, script.name, options);
        }
        OpenAdapterLibrary(AdapterOf(options));
        clock = NewClock(options.Fast);
        SetClock(clock.get());
    });
    if (early != Done) {
        return early;
    }
    Session session(options, out);
    bool isNormal = false;
    const int status = StatusOf([&] {
        Connect(options);
        if (isFromInput) {
            RunInput(session);
        } else {
            RunLines(session, MakeReady(script.lines, script.name), script.name);
        }
        isNormal = true;
    });
    session.End(isNormal);
    SetClock(nullptr);
    return status;
}

int Run(int argumentCount, char *arguments[]) {
    Request request;
    const int parsed = StatusOf([&] { request = ParseCommandLine(argumentCount, arguments); });
    if (parsed != Done) {
        return parsed;
    }
    Output out(FormOf(request.Settings));
    if (request.Text) {
        return StatusOf([&] { out.Print(*request.Text); });
    }
    if (request.IsForBuses) {
        return StatusOf([&] { PrintBuses(out); });
    }
    return RunOnChip(request, out);
}

} // namespace
} // namespace ztm::cli

int main(int argumentCount, char *arguments[]) {
    // The date in files is in the user's words; numbers have a point everywhere.
    std::setlocale(LC_TIME, "");
    std::setlocale(LC_CTYPE, "");
    ztm::cli::CatchSignals();
    return ztm::cli::Run(argumentCount, arguments);
}
