#include "files/LogFile.h"

#include "common/Clock.h"
#include "common/EightBitText.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ztm {
namespace {

constexpr std::string_view firstLine = "Started At: ";
constexpr size_t longestLine = 1024;
constexpr double longestLog = 1e9; // seconds
constexpr size_t pieceSize = size_t{16} * 1024;

/// Takes a number as the log has it from the front of a line: no blanks, no exponent.
template <class Float>
bool TakeNumber(std::string_view &line, Float &value) {
    // Not the words for what is no number, which from_chars would take.
    const size_t first = line.find_first_not_of('-');
    if (first > 1 || (line[first] != '.' && (line[first] < '0' || line[first] > '9'))) {
        return false;
    }
    const auto result =
        std::from_chars(line.data(), line.data() + line.size(), value, std::chars_format::fixed);
    line.remove_prefix(static_cast<size_t>(result.ptr - line.data()));
    return result.ec == std::errc();
}

bool TakeText(std::string_view &line, std::string_view text) {
    const bool found = line.starts_with(text);
    line.remove_prefix(found ? text.size() : 0);
    return found;
}

} // namespace

bool LogReader::Feed(std::string_view bytes) {
    while (problem.empty() && !bytes.empty() && !contents.IsTooLong) {
        const size_t end = bytes.find('\n');
        const std::string_view piece = bytes.substr(0, end);
        if (begun.size() + piece.size() > longestLine) {
            ++lines;
            return Refuse("too long for a log");
        }
        bytes.remove_prefix(std::min(bytes.size(), piece.size() + 1));
        if (end == std::string_view::npos) {
            begun += piece;
        } else if (begun.empty()) {
            TakeLine(piece);
        } else {
            TakeLine(begun += piece);
            begun.clear();
        }
    }
    return problem.empty();
}

bool LogReader::Finish() {
    contents.IsCutOff = !begun.empty() && !contents.IsTooLong;
    if (problem.empty() && lines < 2) {
        ++lines;
        return Refuse("the file ends before the rows of a log");
    }
    return problem.empty();
}

bool LogReader::TakeLine(std::string_view line) {
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    if (++lines > 2) {
        return TakeRow(line);
    }
    if (lines == 2) {
        return TakeHeader(line);
    }
    if (!TakeText(line, firstLine)) {
        return Refuse("a log begins with \"Started At: \"");
    }
    contents.StartedAt = line;
    return true;
}

/// A tab, and the names of the columns in the order of the channels.
bool LogReader::TakeHeader(std::string_view line) {
    if (!TakeText(line, "\t")) {
        return Refuse("no names of columns");
    }
    for (size_t channel = 0; channel < Channels.size(); ++channel) {
        const Channel &known = Channels[channel];
        const std::string_view name = line.substr(0, line.find('\t'));
        const bool isLast = channel + 1 == Channels.size();
        if (name.empty() || (name != known.Name && name != known.NameZTM7710)) {
            continue;
        }
        line.remove_prefix(name.size());
        if (!TakeText(line, isLast ? "" : "\t")) {
            return Refuse("no tab behind a name");
        }
        contents.HasColumn[channel] = true;
        contents.Names[channel] = name;
        Column column{channel, {}};
        AppendWindows1252(column.ending, UnitOf(known.Measures));
        column.ending += isLast ? "" : "\t";
        columns.push_back(std::move(column));
    }
    return line.empty() || Refuse("a column that no log has");
}

bool LogReader::TakeRow(std::string_view line) {
    double elapsed = 0;
    TakeText(line, " "); // for the sign
    if (!TakeNumber(line, elapsed) || !TakeText(line, "\t") || std::abs(elapsed) > longestLog) {
        return Refuse("no elapsed time");
    }
    if (elapsed < history.LastTime()) {
        return Refuse("the time goes back");
    }
    ChannelHistory::Values values;
    values.fill(Extent::gap);
    for (const Column &column : columns) {
        if (!TakeNumber(line, values[column.channel]) || !TakeText(line, column.ending)) {
            return Refuse("no value of " + contents.Names[column.channel]);
        }
    }
    if (!line.empty()) {
        return Refuse("more values than columns");
    }
    contents.IsTooLong = contents.Rows == MostLogRows;
    if (!contents.IsTooLong) {
        ++contents.Rows;
        history.Append(elapsed, values);
    }
    return true;
}

bool LogReader::Refuse(const std::string &reason) {
    problem = "line " + std::to_string(lines) + ": " + reason;
    return false;
}

LogFile::State LogFile::Open(const std::string &path) {
    descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    struct stat status {};
    if (descriptor < 0 || fstat(descriptor, &status) != 0) {
        return Fail(std::strerror(errno));
    }
    if (!S_ISREG(status.st_mode)) {
        return Fail("no regular file");
    }
    length = static_cast<uint64_t>(status.st_size);
    return State::Reading;
}

LogFile::State LogFile::Step(double seconds) {
    if (descriptor < 0) {
        return State::Failed;
    }
    std::array<char, pieceSize> piece;
    const double start = EvenSeconds();
    do {
        const ssize_t size = read(descriptor, piece.data(), piece.size());
        if (size < 0) {
            return Fail(std::strerror(errno));
        }
        const bool isLog =
            size > 0 ? reader.Feed({piece.data(), static_cast<size_t>(size)}) : reader.Finish();
        if (!isLog) {
            return Fail(reader.Problem());
        }
        done += static_cast<uint64_t>(size);
        if (size == 0 || Contents().IsTooLong) {
            Close();
            return State::Read;
        }
    } while (EvenSeconds() - start < seconds);
    return State::Reading;
}

double LogFile::Progress() const {
    return length == 0 ? 1 : std::min(1.0, static_cast<double>(done) / static_cast<double>(length));
}

LogFile::State LogFile::Fail(const std::string &reason) {
    problem = reason;
    Close();
    return State::Failed;
}

void LogFile::Close() {
    if (descriptor >= 0) {
        close(descriptor);
        descriptor = -1;
    }
}

} // namespace ztm
