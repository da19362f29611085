#pragma once

#include "cli/Commands.h"

#include <string>

namespace ztm::cli {

/// What is typed behind a command on a file.
struct FileWords {
    std::string File;
    bool IsForced = false;
    bool IsDryRun = false;
};

/// What a command does with a file, in the words of its help.
struct FileCommand {
    const char *Name;
    const char *What;
    bool WritesFile; ///< which is then refused if it exists, unless --force is given
    bool CanRunDry;
    void (*Run)(Session &session, const FileWords &words);
};

/// Adds it under a command that has several.
void AddFileCommand(CLI::App &parent, StepMaker &made, const FileCommand &file);

/// Throws Failure FileFailed.
[[noreturn]] void FailFile(const std::string &path, const std::string &problem);

} // namespace ztm::cli
