#pragma once

#include "common/At.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

namespace ztm {

/// Fixed room for the newest `capacity` elements, counted from the first one ever put in.
/// Memory comes in chunks as it fills, and not again once the ring has been round.
template <class T>
class Ring {
public:
    /// `capacity` is a power of two and at least as large as a chunk.
    explicit Ring(uint64_t capacity) : mask(capacity - 1), chunks(capacity / chunkSize) {}

    T &Put(uint64_t index) {
        auto &chunk = chunks[(index & mask) / chunkSize];
        if (!chunk) {
            chunk = std::make_unique<T[]>(chunkSize);
            ++allocated;
        }
        return chunk[index % chunkSize];
    }

    const T &operator[](uint64_t index) const {
        return chunks[(index & mask) / chunkSize][index % chunkSize];
    }

    uint64_t Capacity() const { return mask + 1; }
    size_t Bytes() const { return allocated * chunkSize * sizeof(T) + chunks.size() * sizeof(T *); }

    void Clear() {
        for (auto &chunk : chunks) {
            chunk.reset();
        }
        allocated = 0;
    }

private:
    static constexpr uint64_t chunkSize = 256;

    uint64_t mask;
    std::vector<std::unique_ptr<T[]>> chunks;
    size_t allocated = 0;
};

/// What the samples of one channel in a span of time come to.
struct Extent {
    static constexpr float gap = std::numeric_limits<float>::quiet_NaN();

    float low = gap; ///< the extremes, not-a-number when there is no value in the span
    float high = gap;
    float first = gap; ///< the outermost samples, not-a-number when they are gaps
    float last = gap;
    bool any = false; ///< whether there is a sample at all, gaps included
};

/// The measured values of six channels over time, bounded, for any number of readers. Every
/// sample of at least the last 131,072 is kept (over an hour at one per 30 ms), and the extremes
/// of bins of about 1.9 s for at least 24 hours beyond. No extreme is ever lost within that time:
/// a query may show it up to one bin early or late once the sample itself has gone.
class ChannelHistory {
public:
    static constexpr int channelCount = 6;
    using Values = std::array<float, channelCount>;

    /// Adds a sample of every channel at `timeSeconds`, seconds from any origin that the caller
    /// likes. A time before that of the last sample counts as that time; a sample without a time
    /// is left out. A value that is not finite is a gap.
    void Append(double timeSeconds, const Values &values);

    /// Forgets everything and gives the memory back.
    void Clear();

    bool IsEmpty() const { return rawCount == 0; }
    /// Changes whenever the history is cleared, so that readers can drop what they derived.
    uint64_t Generation() const { return generation; }
    /// Number of samples appended since the last Clear().
    uint64_t SampleCount() const { return rawCount; }

    /// Times of the oldest and the newest sample; not-a-number while empty.
    double FirstTime() const;
    double LastTime() const;
    /// The newest sample of the channel; not-a-number when that is a gap or there is none.
    float LastValue(int channel) const;
    /// Whether the channel has had any value since the last Clear().
    bool HasValues(int channel) const { return At(seen, channel); }

    /// The samples with from <= time < to, extremes from the pyramids: the cost grows with the
    /// logarithm of their number.
    Extent MinMax(int channel, double from, double to) const;
    /// MinMax for every channel; finds the span only once.
    std::array<Extent, channelCount> MinMax(double from, double to) const;

    /// The newest sample at or before `time`; a gap when there is none. Once the samples have
    /// gone, the last value of their bin.
    float ValueAt(int channel, double time) const;
    /// Time of the newest sample before, and of the oldest at or after, `time`; not-a-number when
    /// there is none.
    double TimeBefore(double time) const;
    double TimeFrom(double time) const;

    /// Gives out what is kept of from <= time < to in order of time: bins with their extremes
    /// first, then samples, whose lows and highs are the same.
    void Visit(double from, double to,
               const std::function<void(double time, const Values &lows, const Values &highs)>
                   &take) const;

    /// Whether all samples from `time` on are still there one by one.
    bool IsRawFrom(double time) const;

    /// Memory in use, in bytes.
    size_t Bytes() const;

private:
    struct Sample {
        double time;
        Values values;
    };

    /// Extremes of each channel; low above high where there is no value.
    struct Cell {
        Values lows;
        Values highs;

        static Cell Empty();
        void Include(const Cell &other);
        void Include(const Values &values);
    };

    struct Bin {
        double start;
        double end;
        Values first;
        Values last;
        Cell cell;
    };

    /// Cells of 8, 64, 512 and 4,096 elements of the ring beneath.
    class Pyramid {
    public:
        explicit Pyramid(uint64_t capacity);

        /// Called when `count` elements are complete; `base` gives the cell of an element.
        template <class Base>
        void Complete(uint64_t count, const Base &base);

        /// Widens `low` and `high` by the elements begin <= index < end; `value` gives the low
        /// and the high of one.
        template <class Element>
        void Merge(uint64_t begin, uint64_t end, size_t channel, const Element &value, float &low,
                   float &high) const;

        void Clear();
        size_t Bytes() const;

    private:
        std::vector<Ring<Cell>> levels;
        uint64_t complete = 0;
    };

    struct Span {
        uint64_t rawBegin = 0;
        uint64_t rawEnd = 0;
        uint64_t binBegin = 0;
        uint64_t binEnd = 0;
    };

    static constexpr uint64_t rawCapacity = 131072;
    static constexpr uint64_t binCapacity = 65536;

    uint64_t FirstRaw() const { return rawCount > rawCapacity ? rawCount - rawCapacity : 0; }
    uint64_t FirstBin() const { return binCount > binCapacity ? binCount - binCapacity : 0; }
    uint64_t FindRaw(double time) const;
    uint64_t FindBinStart(double time) const;
    uint64_t FindBinEnd(double time) const;
    Span Between(double from, double to) const;
    Extent Of(size_t channel, const Span &span) const;
    void AppendToBins(double time, const Values &values);

    Ring<Sample> raw{rawCapacity};
    Pyramid rawPyramid{rawCapacity};
    Ring<Bin> bins{binCapacity}; // of all samples, those still in `raw` included
    Pyramid binPyramid{binCapacity};
    uint64_t rawCount = 0;
    uint64_t binCount = 0; // the last one is still filling
    uint64_t generation = 0;
    std::array<bool, channelCount> seen{};
};

} // namespace ztm
