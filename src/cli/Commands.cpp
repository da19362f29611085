#include "cli/Commands.h"

#include "cli/ExitCodes.h"

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
        throw Refused(OneLine(error.what()));
    }
    return made;
}

void RequireNewFile(const std::string &path, bool isForced) {
    struct stat status {};
    if (!isForced && stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode)) {
        throw Failure(FileFailed, path + " exists; --force replaces it");
    }
}

std::string OneLine(std::string text) {
    std::ranges::replace(text, '\n', ' ');
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace ztm::cli
