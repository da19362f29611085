#include "cli/Script.h"

#include "cli/ExitCodes.h"
#include "cli/Interruption.h"
#include "cli/Values.h"
#include "link/LinkState.h"
#include "regmap/RegMapStuff.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <set>
#include <utility>

namespace ztm::cli {
namespace {

constexpr size_t deepestBlock = 20;
constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // that some editors put in front

bool IsBlank(char c) {
    return c == ' ' || c == '\t';
}

/// The failure of a line, with the line's name.
Failure Located(const Failure &failure, const std::string &name, int number) {
    return name.empty() ? failure
                        : Failure(failure.Code(),
                                  name + ":" + std::to_string(number) + ": " + failure.what());
}

/// Does something for a line; a failure names the line.
template <class Action>
auto AtLine(const std::string &name, int number, const Action &action) {
    try {
        return action();
    } catch (const Failure &failure) {
        throw Located(failure, name, number);
    }
}

/// `made` are the files of the lines before.
void CheckFiles(const std::vector<ScriptLine> &lines, const std::string &name,
                const Options &settings, bool isRepeated, std::set<std::string> &made) {
    for (const ScriptLine &line : lines) {
        CheckFiles(line.Body, name, settings, isRepeated || line.Repeats > 1, made);
        if (!line.Make) {
            continue;
        }
        AtLine(name, line.Number, [&] {
            const Step step = line.Make();
            step.Check(settings);
            std::error_code unknown;
            const std::string path =
                std::filesystem::absolute(step.File.Path, unknown).lexically_normal();
            if (!made.contains(path)) {
                CheckFile(step.File);
            }
            if (!step.File.IsMade) {
                return;
            }
            const bool isNew = made.insert(path).second;
            if (!step.File.IsReplaced && (isRepeated || !isNew)) {
                throw Failure(FileFailed,
                              step.File.Path + " is made more than once; --force replaces it");
            }
        });
    }
}

void TakeVariant(std::string_view variant) {
    DeviceName = variant;
    ResetRegisterMap();
    BuildRegisterMap();
}

} // namespace

std::vector<std::string> WordsOf(std::string_view line) {
    std::vector<std::string> words;
    bool isInWord = false;
    char quote = 0;
    for (const char c : line) {
        if (static_cast<unsigned char>(c) < ' ' && c != '\t') {
            throw Refused("a control character");
        }
        if (quote == 0 && !isInWord && c == '#') {
            break;
        }
        if (quote == 0 && IsBlank(c)) {
            isInWord = false;
            continue;
        }
        if (!std::exchange(isInWord, true)) {
            words.emplace_back();
        }
        if (c == quote) {
            quote = 0;
        } else if (quote == 0 && (c == '"' || c == '\'')) {
            quote = c;
        } else {
            words.back() += c;
        }
    }
    if (quote != 0) {
        throw Refused(std::string("a quotation mark without an end: ") + quote);
    }
    return words;
}

std::optional<ScriptLine> ScriptReader::Take(std::string_view line) {
    ++number;
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    if (number == 1 && line.starts_with(byteOrderMark)) {
        line.remove_prefix(byteOrderMark.size());
    }
    return AtLine(name, number, [&]() -> std::optional<ScriptLine> {
        const auto words = WordsOf(line);
        if (words.empty()) {
            return std::nullopt;
        }
        if (words[0] == "repeat") {
            if (words.size() != 2 || blocks.size() == deepestBlock) {
                throw Refused("repeat needs a number: repeat 10, at most " +
                              std::to_string(deepestBlock) + " within another");
            }
            ScriptLine block;
            block.Number = number;
            block.Repeats =
                ParseWhole(words[1], 1, std::numeric_limits<int32_t>::max(), "a number of rounds");
            blocks.push_back(std::move(block));
            return std::nullopt;
        }
        if (words[0] == "end") {
            if (words.size() != 1 || blocks.empty()) {
                throw Refused("end stands alone, and ends a repeat");
            }
            ScriptLine block = std::move(blocks.back());
            blocks.pop_back();
            return Add(std::move(block));
        }
        ScriptLine command;
        command.Number = number;
        command.Make = ParseWords(words);
        return Add(std::move(command));
    });
}

std::optional<ScriptLine> ScriptReader::Add(ScriptLine line) {
    if (blocks.empty()) {
        return line;
    }
    blocks.back().Body.push_back(std::move(line));
    return std::nullopt;
}

void ScriptReader::Finish() const {
    if (!blocks.empty()) {
        throw Located(Refused("repeat without an end"), name, blocks.back().Number);
    }
}

std::vector<ScriptLine> ReadScript(std::string_view text, const std::string &name) {
    ScriptReader reader(name);
    std::vector<ScriptLine> lines;
    while (!text.empty()) {
        const size_t end = std::min(text.find('\n'), text.size());
        if (auto line = reader.Take(text.substr(0, end))) {
            lines.push_back(std::move(*line));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    reader.Finish();
    return lines;
}

std::vector<ReadyLine> MakeReady(const std::vector<ScriptLine> &lines, const std::string &name) {
    std::vector<ReadyLine> ready;
    for (const ScriptLine &line : lines) {
        Step step = line.Make ? AtLine(name, line.Number, line.Make) : Step{};
        ready.push_back({line.Number, std::move(step), line.Repeats, MakeReady(line.Body, name)});
    }
    return ready;
}

void CheckVariants(const std::vector<ScriptLine> &lines, const std::string &name,
                   const std::string &variant) {
    if (!variant.empty()) {
        TakeVariant(variant);
        MakeReady(lines, name);
        return;
    }
    try {
        TakeVariant(ZTM7720);
        MakeReady(lines, name);
    } catch (const Failure &failure) {
        TakeVariant(ZTM7710);
        try {
            MakeReady(lines, name);
        } catch (const Failure &) {
            throw failure; // of the larger chip, which has all that can be named
        }
    }
}

void CheckFiles(const std::vector<ScriptLine> &lines, const std::string &name,
                const Options &settings) {
    std::set<std::string> made;
    CheckFiles(lines, name, settings, false, made);
}

void RunLines(Session &session, const std::vector<ReadyLine> &lines, const std::string &name) {
    for (const ReadyLine &line : lines) {
        const bool isLast = &line == &lines.back();
        try {
            for (int32_t round = 0; round < line.Repeats; ++round) {
                RunLines(session, line.Body, name);
                CheckInterruption();
            }
            if (line.Ready.Run) {
                AtLine(name, line.Number, [&] {
                    CheckFile(line.Ready.File);
                    line.Ready.Run(session);
                    session.Out.Flush();
                });
            }
        } catch (const Interrupted &interruption) {
            const bool isItsEnd = interruption.isItsEnd && isLast && line.Repeats == 0;
            throw Interrupted{interruption.signal, isItsEnd};
        }
    }
}

} // namespace ztm::cli
