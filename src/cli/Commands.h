#pragma once

#include "cli/Session.h"

#include <CLI/App.hpp>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ztm::cli {

/// The file that a command reads or makes.
struct FileUse {
    std::string Path; ///< empty for none
    bool IsMade = false;
    bool IsReplaced = false; ///< made even if it exists
};

/// A command that is ready to run.
struct Step {
    std::function<void(Session &)> Run;
    FileUse File{};
    /// Throws Failure for what else stands against the command.
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

/// Throws Failure FileFailed if a file that is to be read cannot be, or one that is to be made
/// exists.
void CheckFile(const FileUse &file);

/// Why the words are refused, in one line.
std::string ProblemOf(const CLI::App &grammar, const CLI::ParseError &error);

} // namespace ztm::cli
