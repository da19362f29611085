#include "cli/FileCommand.h"

#include "cli/ExitCodes.h"

#include <memory>

namespace ztm::cli {

void AddFileCommand(CLI::App &parent, StepMaker &made, const FileCommand &file) {
    auto *command = parent.add_subcommand(file.Name, file.What);
    const auto words = std::make_shared<FileWords>();
    command->add_option("FILE", words->File, "The file")->required();
    if (file.WritesFile) {
        command->add_flag("--force", words->IsForced, "Replace an existing file");
    }
    if (file.CanRunDry) {
        command->add_flag("--dry-run", words->IsDryRun, "Only show what would be written");
    }
    command->callback([&made, words, file] {
        made = [=] {
            return Step{[=](Session &session) { file.Run(session, *words); },
                        {words->File, file.WritesFile, words->IsForced}};
        };
    });
}

void FailFile(const std::string &path, const std::string &problem) {
    throw Failure(FileFailed, path + ": " + problem);
}

} // namespace ztm::cli
