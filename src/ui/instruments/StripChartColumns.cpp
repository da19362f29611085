#include "ui/instruments/StripChartColumns.h"

#include "common/At.h"

#include <algorithm>
#include <cmath>

namespace ztm {

int64_t StripChartColumns::ColumnOf(double time) const {
    return static_cast<int64_t>(std::floor((time + shift) / seconds));
}

size_t StripChartColumns::Slot(int64_t column) const {
    const auto size = static_cast<int64_t>(extents.size());
    const int64_t slot = column % size;
    return static_cast<size_t>(slot < 0 ? slot + size : slot);
}

/// Whether both are drawn alike; the last value of a column affects only the next one.
bool StripChartColumns::LooksLike(const Column &one, const Column &other) {
    const auto same = [](float a, float b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    return std::equal(one.begin(), one.end(), other.begin(), [&](const Extent &a, const Extent &b) {
        return a.any == b.any && same(a.low, b.low) && same(a.high, b.high) &&
               same(a.first, b.first);
    });
}

StripChartColumns::Column StripChartColumns::Read(int64_t column) const {
    return history.MinMax(static_cast<double>(column) * seconds - shift,
                          static_cast<double>(column + 1) * seconds - shift);
}

int64_t StripChartColumns::Update(double width, int64_t begin, int count) {
    const bool same = width == seconds && count == Count() && generation == history.Generation();
    const int64_t end = begin + std::max(count, 0);
    if (same && begin == first && (sampleCount == history.SampleCount() || settledUntil >= end)) {
        return end;
    }
    const int64_t knownBegin = same ? first : begin;
    const int64_t knownEnd = same ? End() : begin;
    const int64_t settledEnd = std::min(knownEnd, settledUntil);
    if (!same) {
        extents.assign(static_cast<size_t>(end - begin), {});
    }
    seconds = width;
    first = begin;
    generation = history.Generation();
    sampleCount = history.SampleCount();
    settledUntil = history.IsEmpty() ? begin : ColumnOf(history.LastTime());
    int64_t changed = begin < knownBegin || !same ? begin : end;
    for (int64_t column = begin; column < end; ++column) {
        if (column < knownBegin || column >= settledEnd) {
            Column &known = extents[Slot(column)];
            const Column now = Read(column);
            if (column >= knownEnd || !LooksLike(known, now)) {
                changed = std::min(changed, column);
            }
            known = now;
        }
    }
    // A line across columns without samples can be drawn only once its far end is known.
    while (changed > begin && !HasSamples(changed - 1)) {
        --changed;
    }
    return changed;
}

Extent StripChartColumns::Whole(int channel) const {
    Extent whole;
    for (const auto &column : extents) {
        const Extent &extent = ztm::At(column, channel);
        whole.any = whole.any || extent.any;
        whole.low = std::fmin(whole.low, extent.low);
        whole.high = std::fmax(whole.high, extent.high);
    }
    return whole;
}

} // namespace ztm
