#pragma once

#include "common/At.h"
#include "common/ChannelHistory.h"

#include <cstdint>
#include <vector>

namespace ztm {

/// A time of a chart is the same as that of a sample if they are as near as that, in seconds: times
/// are rounded when a history is moved on the chart.
inline constexpr double sameMoment = 1e-6;

/// The pixel columns of a strip chart: column k covers the time from k to k + 1 column widths after
/// the time origin, so a column keeps its samples while the chart scrolls. Columns that stay
/// visible are not read again.
class StripChartColumns {
public:
    /// Times of the history come so many seconds later on the chart.
    explicit StripChartColumns(const ChannelHistory &source, double shiftSeconds = 0)
        : history(source), shift(shiftSeconds) {}

    /// Updates `count` columns of `width` seconds, starting with column `begin`. Returns the first
    /// column, counted from the origin, from which the traces may look different; begin + count if
    /// none do. The column before it has samples, unless it is out of sight.
    int64_t Update(double width, int64_t begin, int count);

    int64_t Begin() const { return first; }
    int Count() const { return static_cast<int>(extents.size()); }
    int64_t End() const { return first + Count(); }
    double Width() const { return seconds; }
    /// The column, counted from the origin, that holds a time of the history.
    int64_t ColumnOf(double time) const;
    /// The start of column `index`, 0 being the leftmost one.
    double TimeOf(int index) const { return static_cast<double>(first + index) * seconds; }
    double Shift() const { return shift; }
    /// The same as a time of the history.
    double HistoryTimeOf(int index) const { return TimeOf(index) - shift; }

    /// The place of a column, counted from the origin, in a ring of Count() columns.
    size_t Slot(int64_t column) const;

    /// A channel in column `index`, 0 being the leftmost one.
    const Extent &At(int channel, int index) const {
        return ztm::At(extents[Slot(first + index)], channel);
    }

    /// The channel's extremes over all columns.
    Extent Whole(int channel) const;

    const ChannelHistory &History() const { return history; }

private:
    using Column = std::array<Extent, ChannelHistory::channelCount>;

    static bool LooksLike(const Column &one, const Column &other);
    bool HasSamples(int64_t column) const { return extents[Slot(column)].front().any; }
    Column Read(int64_t column) const;

    const ChannelHistory &history;
    const double shift;
    std::vector<Column> extents;
    double seconds = 0;
    int64_t first = 0;
    int64_t settledUntil = 0; // columns before this one have all their samples
    uint64_t generation = 0;
    uint64_t sampleCount = 0;
};

} // namespace ztm
