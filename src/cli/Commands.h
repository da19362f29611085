#pragma once

#include "cli/Session.h"

#include <CLI/App.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ztm::cli {

/// A command that is ready to run.
struct Step {
    std::function<void(Session &)> Run;
    /// Throws Failure for what stands against the command, such as a file that exists. For a
    /// command that stands alone, before anything is sent.
    std::function<void(const Options &)> Check = [](const Options & /*settings*/) {};
};

/// Makes the step of what was typed, for the chip whose register map is built; throws Failure
/// WrongUse if that chip does not have what was named.
using StepMaker = std::function<Step()>;

/// A command of the command line and of scripts.
struct Command {
    std::string_view Name;
    /// Adds it to the grammar, which puts what was typed into `made`.
    void (*Add)(CLI::App &grammar, StepMaker &made);
};

/// All commands that a script may have too.
const std::vector<Command> &Commands();

void AddScan(CLI::App &grammar, StepMaker &made);
void AddRead(CLI::App &grammar, StepMaker &made);
void AddWrite(CLI::App &grammar, StepMaker &made);
void AddDump(CLI::App &grammar, StepMaker &made);
void AddWatch(CLI::App &grammar, StepMaker &made);
void AddLog(CLI::App &grammar, StepMaker &made);
void AddAlerts(CLI::App &grammar, StepMaker &made);
void AddSnapshot(CLI::App &grammar, StepMaker &made);
void AddExport(CLI::App &grammar, StepMaker &made);
void AddTable(CLI::App &grammar, StepMaker &made);
void AddFan(CLI::App &grammar, StepMaker &made);
void AddLimits(CLI::App &grammar, StepMaker &made);
void AddHeater(CLI::App &grammar, StepMaker &made);

// Those of scripts alone.
void AddWait(CLI::App &grammar, StepMaker &made);
void AddUntil(CLI::App &grammar, StepMaker &made);

/// The maker of the step of a script's line, from its words. Throws Failure WrongUse.
StepMaker ParseWords(std::vector<std::string> words);

/// Throws Failure unless `path` can take a new file: there is none, or it may be replaced.
void RequireNewFile(const std::string &path, bool isForced);

/// The text without CLI11's own line ends, as one line.
std::string OneLine(std::string text);

} // namespace ztm::cli
