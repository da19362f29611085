#pragma once

#include "common/At.h"
#include "common/Ring.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace ztm {

/// Summary of the samples of one channel in a time span.
struct Extent {
    static constexpr float gap = std::numeric_limits<float>::quiet_NaN();

    float low = gap; ///< minimum and maximum; NaN if the span has no value
    float high = gap;
    float first = gap; ///< first and last sample; NaN for a gap
    float last = gap;
    bool any = false; ///< whether there is any sample, gaps included
};

/// What the samples of one channel in a time span come to.
struct Statistics {
    float low = Extent::gap; ///< NaN if there is no value, like the mean
    float high = Extent::gap;
    double mean = std::numeric_limits<double>::quiet_NaN();
    uint64_t count = 0;  ///< of values
    bool isExact = true; ///< false where samples have been dropped: the ends are those of bins
};

/// Measured values of six channels over time, in bounded memory, for any number of readers. The
/// newest samples are kept (131,072 unless said otherwise: over an hour at one per 30 ms), and the
/// extremes of bins of about 1.9 s for at least the last 24 hours. No extreme is lost within that
/// time; once its sample has been dropped, a query may show it up to one bin early or late.
class ChannelHistory {
public:
    static constexpr int channelCount = 6;
    using Values = std::array<float, channelCount>;
    using Flags = std::array<bool, channelCount>;
    static constexpr Flags allMeasured{true, true, true, true, true, true};

    /// `samplesKept` must be a power of two and at least 256.
    explicit ChannelHistory(uint64_t samplesKept = uint64_t{1} << 17U)
        : raw(samplesKept), rawPyramid(samplesKept) {}

    /// Adds a sample of every channel at `timeSeconds`, in seconds from any origin. A time before
    /// the last sample counts as the time of the last sample; a sample whose time is not finite is
    /// ignored. A value that is not finite or not measured is a gap.
    void Append(double timeSeconds, const Values &values, const Flags &isMeasured = allMeasured);

    /// Deletes everything and frees the memory.
    void Clear();

    bool IsEmpty() const { return rawCount == 0; }
    /// Changes whenever the history is cleared, so that readers can drop derived data.
    uint64_t Generation() const { return generation; }
    /// Number of samples appended since the last Clear().
    uint64_t SampleCount() const { return rawCount; }

    /// Times of the oldest and the newest sample; NaN while empty.
    double FirstTime() const;
    double LastTime() const;
    /// The value last appended to the channel, measured or not; NaN if it was not finite or there
    /// is none.
    float LastValue(int channel) const { return IsEmpty() ? Extent::gap : At(newest, channel); }
    /// Whether the channel has had any measured value since the last Clear().
    bool HasValues(int channel) const { return At(seen, channel); }

    /// Summary of from <= time < to, with extremes from the pyramids: the cost grows with the
    /// logarithm of the number of samples.
    Extent MinMax(int channel, double from, double to) const;
    /// MinMax for every channel; finds the span only once.
    std::array<Extent, channelCount> MinMax(double from, double to) const;

    /// Of the samples with from <= time <= to. The cost grows with the logarithm of their number.
    Statistics StatisticsOf(int channel, double from, double to) const;
    /// The time of the first value with from <= time <= to that is at or beyond `level`, seen from
    /// the side of `start`, where samples have been dropped that of the start of its bin; NaN if
    /// there is none. The cost grows with the logarithm of the number of samples.
    double TimeOfReaching(int channel, double from, double to, float start, float level) const;

    /// The newest sample at or before `time`; a gap if there is none. Where samples have been
    /// dropped, the last value of their bin.
    float ValueAt(int channel, double time) const;
    /// Time of the newest sample before `time`, and of the oldest at or after it; NaN if there is
    /// none.
    double TimeBefore(double time) const;
    double TimeFrom(double time) const;

    /// Passes everything kept with from <= time < to in time order: first bins with their extremes,
    /// then samples, whose lows and highs are equal. Ends when `take` returns false.
    void Visit(double from, double to,
               const std::function<bool(double time, const Values &lows, const Values &highs)>
                   &take) const;

    /// Whether every sample from `time` on is still kept.
    bool IsRawFrom(double time) const;

    /// Memory in use, in bytes.
    size_t Bytes() const;

private:
    struct Sample {
        double time;
        Values values;
    };

    /// Extremes of each channel, low > high if there is no value, and sum and number of its values.
    struct Cell {
        Values lows;
        Values highs;
        std::array<double, channelCount> sums;
        std::array<uint32_t, channelCount> counts;

        static Cell Empty();
        static Cell Of(const Values &values);
        void Include(const Cell &other);
    };

    struct Bin {
        double start;
        double end;
        Values first;
        Values last;
        Cell cell;
    };

    /// Cells of 8, 64, 512 and 4,096 elements of the ring below.
    class Pyramid {
    public:
        explicit Pyramid(uint64_t capacity);

        /// Call when `count` elements are complete; `base` gives the cell of an element.
        template <class Base>
        void Complete(uint64_t count, const Base &base);

        /// Passes the elements begin <= index < end: as many as possible as whole cells to `cell`,
        /// the others by their index to `element`.
        template <class OnElement, class OnCell>
        void Visit(uint64_t begin, uint64_t end, const OnElement &element,
                   const OnCell &cell) const;

        /// The first of the elements begin <= index < end of which `inElement` says yes, `end` if
        /// there is none. `inCell` must say whether there is such a one in a cell.
        template <class InElement, class InCell>
        uint64_t First(uint64_t begin, uint64_t end, const InElement &inElement,
                       const InCell &inCell) const;

        void Clear();
        size_t Bytes() const;

    private:
        /// An element, or a cell of a level counted from 1.
        struct Step {
            uint64_t length = 1;
            size_t level = 0;
        };
        /// The longest that starts at `begin`, on no level above `highest`.
        Step StepFrom(uint64_t begin, uint64_t end, size_t highest) const;

        std::vector<Ring<Cell>> levels;
        uint64_t complete = 0;
    };

    struct Span {
        uint64_t rawBegin = 0;
        uint64_t rawEnd = 0;
        uint64_t binBegin = 0;
        uint64_t binEnd = 0;
    };

    static constexpr uint64_t binCapacity = 65536;

    uint64_t FirstRaw() const { return rawCount > raw.Capacity() ? rawCount - raw.Capacity() : 0; }
    uint64_t FirstBin() const { return binCount > binCapacity ? binCount - binCapacity : 0; }
    uint64_t FindRaw(double time) const;
    uint64_t FindBinStart(double time) const;
    uint64_t FindBinEnd(double time) const;
    Span Between(double from, double to) const;
    Extent Of(size_t channel, const Span &span) const;
    template <class OnValue, class OnCell>
    void VisitCells(size_t channel, const Span &span, const OnValue &value,
                    const OnCell &cell) const;
    void AppendToBins(double time, const Values &values);

    Ring<Sample> raw;
    Pyramid rawPyramid;
    Ring<Bin> bins{binCapacity}; // of all samples, including those in `raw`
    Pyramid binPyramid{binCapacity};
    uint64_t rawCount = 0;
    uint64_t binCount = 0; // the last one is still filling
    uint64_t generation = 0;
    Flags seen{};
    Values newest{};
};

} // namespace ztm
