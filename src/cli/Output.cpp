#include "cli/Output.h"

#include "cli/ExitCodes.h"
#include "cli/Interruption.h"
#include "common/Numbers.h"
#include "common/WholeFile.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <unistd.h>

namespace ztm::cli {
namespace {

constexpr size_t longestWait = size_t{1} << 16U; // of bytes that have not been written
constexpr int columnGap = 2;

std::string Fixed(double value, int decimals) {
    if (!std::isfinite(value)) {
        return {};
    }
    std::array<char, 340> buffer;
    const double rounded = RoundToDecimals(value, decimals);
    const auto written =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), rounded == 0 ? 0 : rounded,
                      std::chars_format::fixed, decimals);
    return {buffer.data(), written.ptr};
}

/// How many characters a UTF-8 text has.
int Length(std::string_view text) {
    return static_cast<int>(std::count_if(text.begin(), text.end(), [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
    }));
}

} // namespace

Cell::Cell(std::string_view text) : text(text) {}

Cell::Cell(double value, int decimals)
    : text(Fixed(value, decimals)), kind(Kind::Number), number(RoundToDecimals(value, decimals)) {}

Cell Cell::Hex(int32_t byte) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    Cell cell(byte);
    cell.text = {'0', 'x', digits[static_cast<size_t>(byte >> 4 & 0xF)],
                 digits[static_cast<size_t>(byte & 0xF)]};
    return cell;
}

Cell Cell::Bool(bool value, std::string_view whenTrue, std::string_view whenFalse) {
    Cell cell(value ? whenTrue : whenFalse);
    cell.kind = Kind::Bool;
    cell.number = value ? 1 : 0;
    return cell;
}

void Cell::AddTo(nlohmann::ordered_json &object, const std::string &key) const {
    if (kind == Kind::Text) {
        object[key] = text;
    } else if (kind == Kind::Bool) {
        object[key] = number != 0;
    } else if (!std::isfinite(number)) {
        object[key] = nullptr;
    } else if (number == std::trunc(number)) {
        object[key] = static_cast<int64_t>(number);
    } else {
        object[key] = number;
    }
}

void Output::Heading(const std::vector<Column> &columns) {
    if (form == Form::Json) {
        return;
    }
    std::vector<std::string> titles;
    std::ranges::transform(columns, std::back_inserter(titles), &Column::Key);
    if (titles != lastTitles) {
        Put(columns, titles);
        lastTitles = std::move(titles);
    }
}

void Output::Line(const std::vector<Column> &columns, const std::vector<Cell> &cells) {
    if (form == Form::Json) {
        nlohmann::ordered_json object;
        for (size_t i = 0; i < columns.size(); ++i) {
            if (columns[i].IsInJson) {
                cells[i].AddTo(object, columns[i].Key);
            }
        }
        // File names need not be UTF-8.
        waiting += object.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
        waiting += '\n';
    } else {
        std::vector<std::string> texts;
        std::ranges::transform(cells, std::back_inserter(texts), &Cell::Text);
        Put(columns, texts);
    }
    if (waiting.size() > longestWait) {
        Flush();
    }
}

void Output::Put(const std::vector<Column> &columns, const std::vector<std::string> &texts) {
    for (size_t i = 0; i < columns.size(); ++i) {
        const bool isLast = i + 1 == columns.size();
        if (form == Form::Tabs) {
            waiting.append(texts[i]).append(isLast ? "" : "\t");
            continue;
        }
        const int room = std::abs(columns[i].Width) - Length(texts[i]);
        const auto pad = static_cast<size_t>(std::max(room, 0));
        if (columns[i].Width < 0) {
            waiting.append(pad, ' ').append(texts[i]).append(isLast ? 0 : columnGap, ' ');
        } else {
            waiting.append(texts[i]).append(isLast ? 0 : pad + columnGap, ' ');
        }
    }
    waiting += '\n';
}

void Output::Print(std::string_view text) {
    waiting += text;
    Flush();
}

void Output::Flush() {
    const std::string bytes = std::move(waiting);
    waiting.clear();
    if (WriteAll(STDOUT_FILENO, bytes) == bytes.size()) {
        return;
    }
    if (errno == EPIPE) {
        throw OutputClosed{};
    }
    throw Failure(FileFailed, std::string("standard output: ") + std::strerror(errno));
}

void Tell(const std::string &text) {
    WriteAll(STDERR_FILENO, "ztm: " + text + '\n');
}

} // namespace ztm::cli
