#include "common/ChannelHistory.h"

#include "common/At.h"

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr double noTime = std::numeric_limits<double>::quiet_NaN();

/// 64 samples at one per 30 ms. Bins are split by time, so a day fits at any sample rate.
constexpr double binSeconds = 64 * 0.030;

constexpr int levelCount = 4;
constexpr uint64_t levelFactor = 8;

/// The first index from `begin` up to `end` for which `isBefore` is false.
template <class Predicate>
uint64_t FirstNot(uint64_t begin, uint64_t end, const Predicate &isBefore) {
    while (begin < end) {
        const uint64_t middle = begin + (end - begin) / 2;
        if (isBefore(middle)) {
            begin = middle + 1;
        } else {
            end = middle;
        }
    }
    return begin;
}

} // namespace

ChannelHistory::Cell ChannelHistory::Cell::Empty() {
    Cell cell;
    cell.lows.fill(infinity);
    cell.highs.fill(-infinity);
    cell.sums.fill(0);
    cell.counts.fill(0);
    return cell;
}

ChannelHistory::Cell ChannelHistory::Cell::Of(const Values &values) {
    Cell cell{values, values, {}, {}};
    for (size_t channel = 0; channel < channelCount; ++channel) {
        if (!std::isnan(values[channel])) {
            cell.sums[channel] = values[channel];
            cell.counts[channel] = 1;
        }
    }
    return cell;
}

// A comparison with NaN is false, so gaps are skipped.
void ChannelHistory::Cell::Include(const Cell &other) {
    for (size_t channel = 0; channel < channelCount; ++channel) {
        lows[channel] = other.lows[channel] < lows[channel] ? other.lows[channel] : lows[channel];
        highs[channel] =
            other.highs[channel] > highs[channel] ? other.highs[channel] : highs[channel];
        sums[channel] += other.sums[channel];
        counts[channel] += other.counts[channel];
    }
}

ChannelHistory::Pyramid::Pyramid(uint64_t capacity) {
    for (int level = 0; level < levelCount; ++level) {
        capacity /= levelFactor;
        // A ring has at least one chunk; some spare room at the top does no harm.
        levels.emplace_back(std::max<uint64_t>(capacity, 256));
    }
}

template <class Base>
void ChannelHistory::Pyramid::Complete(uint64_t count, const Base &base) {
    complete = count;
    for (auto &level : levels) {
        if (count % levelFactor != 0) {
            return;
        }
        const bool atBase = &level == &levels.front();
        Cell sum = Cell::Empty();
        for (uint64_t index = count - levelFactor; index < count; ++index) {
            sum.Include(atBase ? base(index) : (*(&level - 1))[index]);
        }
        count /= levelFactor;
        level.Put(count - 1) = sum;
    }
}

ChannelHistory::Pyramid::Step ChannelHistory::Pyramid::StepFrom(uint64_t begin, uint64_t end,
                                                                size_t highest) const {
    Step step;
    while (step.level < highest && begin % (step.length * levelFactor) == 0 &&
           begin + step.length * levelFactor <= std::min(end, complete)) {
        step.length *= levelFactor;
        ++step.level;
    }
    return step;
}

template <class OnElement, class OnCell>
void ChannelHistory::Pyramid::Visit(uint64_t begin, uint64_t end, const OnElement &element,
                                    const OnCell &cell) const {
    while (begin < end) {
        const Step step = StepFrom(begin, end, levels.size());
        if (step.level == 0) {
            element(begin);
        } else {
            cell(levels[step.level - 1][begin / step.length]);
        }
        begin += step.length;
    }
}

template <class InElement, class InCell>
uint64_t ChannelHistory::Pyramid::First(uint64_t begin, uint64_t end, const InElement &inElement,
                                        const InCell &inCell) const {
    const uint64_t none = end;
    size_t highest = levels.size();
    while (begin < end) {
        const Step step = StepFrom(begin, end, highest);
        if (step.level == 0 && inElement(begin)) {
            return begin;
        }
        if (step.level > 0 && inCell(levels[step.level - 1][begin / step.length])) {
            end = begin + step.length; // it is in here
            highest = step.level - 1;
        } else {
            begin += step.length;
        }
    }
    return none;
}

void ChannelHistory::Pyramid::Clear() {
    complete = 0;
    for (auto &level : levels) {
        level.Clear();
    }
}

size_t ChannelHistory::Pyramid::Bytes() const {
    size_t bytes = 0;
    for (const auto &level : levels) {
        bytes += level.Bytes();
    }
    return bytes;
}

void ChannelHistory::Append(double timeSeconds, const Values &values, const Flags &isMeasured) {
    if (!std::isfinite(timeSeconds)) {
        return;
    }
    Sample &sample = raw.Put(rawCount);
    sample.time = rawCount == 0 ? timeSeconds : std::max(timeSeconds, raw[rawCount - 1].time);
    for (size_t channel = 0; channel < channelCount; ++channel) {
        newest[channel] = std::isfinite(values[channel]) ? values[channel] : Extent::gap;
        const bool isValue = isMeasured[channel] && !std::isnan(newest[channel]);
        sample.values[channel] = isValue ? newest[channel] : Extent::gap;
        seen[channel] = seen[channel] || isValue;
    }
    ++rawCount;
    rawPyramid.Complete(rawCount, [this](uint64_t index) { return Cell::Of(raw[index].values); });
    AppendToBins(sample.time, sample.values);
}

void ChannelHistory::AppendToBins(double time, const Values &values) {
    if (binCount == 0 || time >= bins[binCount - 1].start + binSeconds) {
        binPyramid.Complete(binCount, [this](uint64_t index) { return bins[index].cell; });
        bins.Put(binCount) = Bin{time, time, values, values, Cell::Empty()};
        ++binCount;
    }
    Bin &bin = bins.Put(binCount - 1);
    bin.end = time;
    bin.last = values;
    bin.cell.Include(Cell::Of(values));
}

void ChannelHistory::Clear() {
    raw.Clear();
    rawPyramid.Clear();
    bins.Clear();
    binPyramid.Clear();
    rawCount = 0;
    binCount = 0;
    seen.fill(false);
    ++generation;
}

double ChannelHistory::FirstTime() const {
    return IsEmpty() ? noTime : std::min(bins[FirstBin()].start, raw[FirstRaw()].time);
}

double ChannelHistory::LastTime() const {
    return IsEmpty() ? noTime : raw[rawCount - 1].time;
}

uint64_t ChannelHistory::FindRaw(double time) const {
    return FirstNot(FirstRaw(), rawCount, [&](uint64_t index) { return raw[index].time < time; });
}

uint64_t ChannelHistory::FindBinStart(double time) const {
    return FirstNot(FirstBin(), binCount, [&](uint64_t index) { return bins[index].start < time; });
}

uint64_t ChannelHistory::FindBinEnd(double time) const {
    return FirstNot(FirstBin(), binCount, [&](uint64_t index) { return bins[index].end < time; });
}

bool ChannelHistory::IsRawFrom(double time) const {
    return FirstRaw() == 0 || raw[FirstRaw()].time < time;
}

ChannelHistory::Span ChannelHistory::Between(double from, double to) const {
    Span span;
    if (IsEmpty() || !(from < to)) {
        return span;
    }
    span.rawBegin = FindRaw(from);
    span.rawEnd = FindRaw(to);
    if (!IsRawFrom(from)) {
        span.binBegin = FindBinEnd(from);
        // Dropped samples may have the same time as the oldest one kept.
        const double justAfterOldest = std::nextafter(raw[FirstRaw()].time, infinity);
        span.binEnd = std::max(span.binBegin, FindBinStart(std::min(to, justAfterOldest)));
    }
    return span;
}

/// Passes every value of a channel in a span, alone or with others as the cell of a pyramid or bin.
template <class OnValue, class OnCell>
void ChannelHistory::VisitCells(size_t channel, const Span &span, const OnValue &value,
                                const OnCell &cell) const {
    binPyramid.Visit(
        span.binBegin, span.binEnd, [&](uint64_t index) { cell(bins[index].cell); }, cell);
    rawPyramid.Visit(
        span.rawBegin, span.rawEnd, [&](uint64_t index) { value(raw[index].values[channel]); },
        cell);
}

Extent ChannelHistory::Of(size_t channel, const Span &span) const {
    Extent extent;
    const bool anyBin = span.binBegin < span.binEnd;
    const bool anyRaw = span.rawBegin < span.rawEnd;
    extent.any = anyBin || anyRaw;
    if (!extent.any) {
        return extent;
    }
    float low = infinity;
    float high = -infinity;
    const auto include = [&](float least, float greatest) {
        low = least < low ? least : low;
        high = greatest > high ? greatest : high;
    };
    VisitCells(
        channel, span, [&](float value) { include(value, value); },
        [&](const Cell &cell) { include(cell.lows[channel], cell.highs[channel]); });
    if (low <= high) {
        extent.low = low;
        extent.high = high;
    }
    extent.first = anyBin ? bins[span.binBegin].first[channel] : raw[span.rawBegin].values[channel];
    extent.last =
        anyRaw ? raw[span.rawEnd - 1].values[channel] : bins[span.binEnd - 1].last[channel];
    return extent;
}

Extent ChannelHistory::MinMax(int channel, double from, double to) const {
    return Of(static_cast<size_t>(channel), Between(from, to));
}

std::array<Extent, ChannelHistory::channelCount> ChannelHistory::MinMax(double from,
                                                                        double to) const {
    const Span span = Between(from, to);
    std::array<Extent, channelCount> extents;
    for (size_t channel = 0; channel < channelCount; ++channel) {
        extents[channel] = Of(channel, span);
    }
    return extents;
}

Statistics ChannelHistory::StatisticsOf(int channel, double from, double to) const {
    const auto index = static_cast<size_t>(channel);
    const double behind = std::nextafter(to, std::numeric_limits<double>::infinity());
    Cell sum = Cell::Empty();
    VisitCells(
        index, Between(from, behind),
        [&](float value) {
            if (!std::isnan(value)) {
                sum.lows[index] = std::min(sum.lows[index], value);
                sum.highs[index] = std::max(sum.highs[index], value);
                sum.sums[index] += value;
                ++sum.counts[index];
            }
        },
        [&](const Cell &cell) { sum.Include(cell); });
    Statistics result;
    result.isExact = IsEmpty() || IsRawFrom(from);
    result.count = sum.counts[index];
    if (result.count > 0) {
        result.low = sum.lows[index];
        result.high = sum.highs[index];
        result.mean = sum.sums[index] / static_cast<double>(result.count);
    }
    return result;
}

double ChannelHistory::TimeOfReaching(int channel, double from, double to, float start,
                                      float level) const {
    const auto index = static_cast<size_t>(channel);
    const Span span = Between(from, std::nextafter(to, std::numeric_limits<double>::infinity()));
    const auto reaches = [&](float low, float high) {
        return start <= level ? high >= level : low <= level;
    };
    const auto inCell = [&](const Cell &cell) {
        return reaches(cell.lows[index], cell.highs[index]);
    };
    const uint64_t bin = binPyramid.First(
        span.binBegin, span.binEnd, [&](uint64_t at) { return inCell(bins[at].cell); }, inCell);
    if (bin < span.binEnd) {
        return std::max(from, bins[bin].start);
    }
    const uint64_t sample = rawPyramid.First(
        span.rawBegin, span.rawEnd,
        [&](uint64_t at) { return reaches(raw[at].values[index], raw[at].values[index]); }, inCell);
    return sample < span.rawEnd ? raw[sample].time : noTime;
}

float ChannelHistory::ValueAt(int channel, double time) const {
    const auto index = static_cast<size_t>(channel);
    if (IsEmpty() || !(time >= FirstTime())) {
        return Extent::gap;
    }
    if (time >= raw[FirstRaw()].time) {
        const uint64_t after =
            FirstNot(FirstRaw(), rawCount, [&](uint64_t at) { return raw[at].time <= time; });
        return raw[after - 1].values[index];
    }
    const uint64_t after =
        FirstNot(FirstBin(), binCount, [&](uint64_t at) { return bins[at].start <= time; });
    return bins[after - 1].last[index];
}

double ChannelHistory::TimeBefore(double time) const {
    const uint64_t sample = FindRaw(time);
    if (sample > FirstRaw()) {
        return raw[sample - 1].time;
    }
    const uint64_t bin = FindBinEnd(time);
    return bin > FirstBin() ? bins[bin - 1].end : noTime;
}

double ChannelHistory::TimeFrom(double time) const {
    if (IsEmpty() || time > LastTime()) {
        return noTime;
    }
    const double sampleTime = raw[FindRaw(time)].time;
    const uint64_t bin = FindBinStart(time);
    return bin < binCount ? std::min(sampleTime, bins[bin].start) : sampleTime;
}

void ChannelHistory::Visit(
    double from, double to,
    const std::function<bool(double time, const Values &lows, const Values &highs)> &take) const {
    const Span span = Between(from, to);
    for (uint64_t index = span.binBegin; index < span.binEnd; ++index) {
        const Bin &bin = bins[index];
        Values lows = bin.cell.lows;
        Values highs = bin.cell.highs;
        for (size_t channel = 0; channel < channelCount; ++channel) {
            if (lows[channel] > highs[channel]) {
                lows[channel] = highs[channel] = Extent::gap;
            }
        }
        if (!take(bin.start, lows, highs)) {
            return;
        }
    }
    for (uint64_t index = span.rawBegin; index < span.rawEnd; ++index) {
        if (!take(raw[index].time, raw[index].values, raw[index].values)) {
            return;
        }
    }
}

size_t ChannelHistory::Bytes() const {
    return sizeof *this + raw.Bytes() + rawPyramid.Bytes() + bins.Bytes() + binPyramid.Bytes();
}

} // namespace ztm
