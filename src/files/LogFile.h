#pragma once

#include "common/ChannelHistory.h"
#include "monitor/Channels.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ztm {

/// Recorded measurement logs, see MeasurementLog.h: read piece by piece, complete or cut off.

/// A log holds no more rows than this for its reader.
inline constexpr uint64_t MostLogRows = uint64_t{1} << 20U;

/// What a log says besides its values.
struct LogContents {
    std::string StartedAt; ///< date and time, as the bytes of the file
    std::array<bool, ChannelCount> HasColumn{};
    std::array<std::string, ChannelCount> Names{}; ///< of the columns, as in the header
    uint64_t Rows = 0;
    bool IsCutOff = false;  ///< it ends within a line, which is left out
    bool IsTooLong = false; ///< rows after the first MostLogRows are left out
};

/// Reads the text of a log. Every row becomes a sample at its elapsed seconds, with gaps for the
/// channels without a column.
class LogReader {
public:
    /// The history takes the rows; give it room for MostLogRows.
    explicit LogReader(ChannelHistory &rows) : history(rows) {}

    /// Takes the next bytes of the file, cut anywhere. False if it is no log: Problem says why.
    bool Feed(std::string_view bytes);
    /// Call at the end of the file. False if it is no log, or ends before its first row could
    /// start.
    bool Finish();

    const LogContents &Contents() const { return contents; }
    /// The first line that is not as in a log, as in "line 7: no value of Fan1"; empty if there is
    /// none.
    const std::string &Problem() const { return problem; }

private:
    struct Column {
        size_t channel;
        std::string ending; // behind a value: unit and tab
    };

    bool TakeLine(std::string_view line);
    bool TakeHeader(std::string_view line);
    bool TakeRow(std::string_view line);
    bool Refuse(const std::string &reason);

    ChannelHistory &history;
    LogContents contents;
    std::vector<Column> columns;
    std::string begun; // the part of a line that has been fed
    uint64_t lines = 0;
    std::string problem;
};

/// Reads the file of a log in steps that are short enough to do other things between them.
class LogFile {
public:
    explicit LogFile(ChannelHistory &rows) : reader(rows) {}
    ~LogFile() { Close(); }
    LogFile(const LogFile &) = delete;
    LogFile &operator=(const LogFile &) = delete;

    enum class State { Reading, Read, Failed };

    /// Starts reading. Fails for what is no regular file; never waits for a FIFO.
    State Open(const std::string &path);
    /// Reads on for about `seconds`, by at least 16 KiB, until the end that the file has then.
    State Step(double seconds);

    /// The part that has been read, 0 to 1.
    double Progress() const;
    const LogContents &Contents() const { return reader.Contents(); }
    /// Why it failed: the system's words, or those of LogReader::Problem.
    const std::string &Problem() const { return problem; }

private:
    State Fail(const std::string &reason);
    void Close();

    LogReader reader;
    int descriptor = -1;
    uint64_t length = 0;
    uint64_t done = 0;
    std::string problem;
};

} // namespace ztm
