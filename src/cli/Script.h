#pragma once

#include "cli/Commands.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ztm::cli {

/// A line of a script, or a block of lines that is repeated.
struct ScriptLine {
    int Number = 0;
    StepMaker Make;      ///< none for a block
    int32_t Repeats = 0; ///< of a block
    std::vector<ScriptLine> Body;
};

/// The words of a line: apart by blanks, with blanks in "" or ''; from a word that starts with # on
/// it is a comment. Throws Failure WrongUse for an open quotation mark or a control character.
std::vector<std::string> WordsOf(std::string_view line);

/// Reads a script line by line. Whatever is refused, Failure WrongUse names script and line.
class ScriptReader {
public:
    /// `name` stands in front of the line's number, as in "night.ztm:12".
    explicit ScriptReader(std::string name) : name(std::move(name)) {}

    /// Takes the next line. Returns it, or the block that it ends, unless there is nothing in it or
    /// the block goes on. A line that is refused is left out.
    std::optional<ScriptLine> Take(std::string_view line);
    bool IsWithinBlock() const { return !blocks.empty(); }
    /// Forgets the lines of blocks that are open.
    void GiveUpBlocks() { blocks.clear(); }
    /// Throws if a block has no end.
    void Finish() const;

    const std::string &Name() const { return name; }

private:
    std::optional<ScriptLine> Add(ScriptLine line);

    std::string name;
    int number = 0;
    std::vector<ScriptLine> blocks; ///< that are open
};

/// All lines of a text.
std::vector<ScriptLine> ReadScript(std::string_view text, const std::string &name);

/// A script for the chip whose register map is built.
struct ReadyLine {
    int Number = 0;
    Step Ready;
    int32_t Repeats = 0;
    std::vector<ReadyLine> Body;
};
std::vector<ReadyLine> MakeReady(const std::vector<ScriptLine> &lines, const std::string &name);

/// Throws unless the lines fit at least one of the chip's variants, or the given one. The register
/// map is then that of such a variant.
void CheckVariants(const std::vector<ScriptLine> &lines, const std::string &name,
                   const std::string &variant);

/// Throws for what stands against the lines before anything is sent: a file to be read that is not
/// there and that no line before makes, one to be made that exists or that a line has made by then.
void CheckFiles(const std::vector<ScriptLine> &lines, const std::string &name,
                const Options &settings);

/// Runs the lines in turn. What is thrown names the line; a line in the middle that was interrupted
/// has not come to its end. An empty name stands for a command that is not from a script.
void RunLines(Session &session, const std::vector<ReadyLine> &lines, const std::string &name);

} // namespace ztm::cli
