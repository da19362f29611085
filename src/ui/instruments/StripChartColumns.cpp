#include "ui/instruments/StripChartColumns.h"

#include <algorithm>
#include <cmath>

namespace ztm {

int64_t StripChartColumns::ColumnOf(double time) const {
    return static_cast<int64_t>(std::floor(time / seconds));
}

size_t StripChartColumns::Slot(int64_t column) const {
    const auto size = static_cast<int64_t>(extents.size());
    const int64_t slot = column % size;
    return static_cast<size_t>(slot < 0 ? slot + size : slot);
}

void StripChartColumns::Update(double width, int64_t begin, int count) {
    const bool same = width == seconds && count == Count() && generation == history.Generation();
    if (same && begin == first && sampleCount == history.SampleCount()) {
        return;
    }
    int64_t knownBegin = first;
    int64_t knownEnd = std::min(first + Count(), settledUntil);
    if (!same) {
        knownBegin = knownEnd = begin;
        extents.assign(static_cast<size_t>(std::max(count, 0)), {});
    }
    seconds = width;
    first = begin;
    generation = history.Generation();
    sampleCount = history.SampleCount();
    settledUntil = history.IsEmpty() ? begin : ColumnOf(history.LastTime());
    for (int64_t column = begin; column < begin + count; ++column) {
        if (column < knownBegin || column >= knownEnd) {
            extents[Slot(column)] = history.MinMax(static_cast<double>(column) * width,
                                                   static_cast<double>(column + 1) * width);
        }
    }
}

Extent StripChartColumns::Whole(int channel) const {
    Extent whole;
    for (const auto &column : extents) {
        const Extent &extent = column[static_cast<size_t>(channel)];
        whole.any = whole.any || extent.any;
        whole.low = std::fmin(whole.low, extent.low);
        whole.high = std::fmax(whole.high, extent.high);
    }
    return whole;
}

} // namespace ztm
