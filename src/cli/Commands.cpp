#include "cli/Commands.h"

#include "cli/ExitCodes.h"
#include "common/WholeFile.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <algorithm>
#include <sys/stat.h>

namespace ztm::cli {
namespace {

const std::vector<Command> &ScriptCommands() {
    static const std::vector<Command> commands{{"wait", AddWait}, {"until", AddUntil}};
    return commands;
}

const Command *FindCommand(const std::vector<Command> &commands, std::string_view name) {
    const auto found = std::ranges::find(commands, name, &Command::Name);
    return found != commands.end() ? &*found : nullptr;
}

} // namespace

const std::vector<Command> &Commands() {
    static const std::vector<Command> commands{
        {"scan", AddScan},    {"read", AddRead}, {"write", AddWrite},   {"dump", AddDump},
        {"watch", AddWatch},  {"log", AddLog},   {"alerts", AddAlerts}, {"snapshot", AddSnapshot},
        {"table", AddTable},  {"fan", AddFan},   {"limits", AddLimits}, {"heater", AddHeater},
        {"export", AddExport}};
    return commands;
}

StepMaker ParseWords(std::vector<std::string> words) {
    const Command *command = FindCommand(Commands(), words.front());
    command = command != nullptr ? command : FindCommand(ScriptCommands(), words.front());
    if (command == nullptr) {
        throw Refused('"' + words.front() + "\" is no command of a script");
    }
    CLI::App grammar;
    StepMaker made;
    command->Add(grammar, made);
    grammar.require_subcommand(1);
    grammar.set_help_flag();
    std::ranges::reverse(words); // as the parser takes them
    try {
        grammar.parse(words);
    } catch (const CLI::CallForHelp &) {
        throw Refused("a script gives no help; see man ztm");
    } catch (const CLI::ParseError &error) {
        throw Refused(ProblemOf(grammar, error));
    }
    return made;
}

void CheckFile(const FileUse &file) {
    struct stat status {};
    std::string problem;
    if (file.Path.empty() || file.IsReplaced) {
        return;
    }
    if (!file.IsMade && !ReadFile(file.Path, problem)) {
        throw Failure(FileFailed, file.Path + ": " + problem);
    }
    if (file.IsMade && stat(file.Path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        throw Failure(FileFailed, file.Path + " exists; --force replaces it");
    }
}

std::string ProblemOf(const CLI::App &grammar, const CLI::ParseError &error) {
    if (const auto words = grammar.remaining(true); !words.empty()) {
        return '"' + words.front() + "\" is not understood";
    }
    std::string text = error.what();
    std::ranges::replace(text, '\n', ' ');
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace ztm::cli
