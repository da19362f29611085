#include "ui/instruments/ChartCursors.h"

#include "common/At.h"

#include <algorithm>

namespace ztm {

std::optional<double> ChartCursors::Time(int cursor) const {
    return At(times, cursor);
}

void ChartCursors::Set(int cursor, double time) {
    if (At(times, cursor) != time) {
        At(times, cursor) = time;
        emit Changed();
    }
}

void ChartCursors::Remove() {
    if (times[0] || times[1]) {
        times = {};
        emit Changed();
    }
}

void ChartCursors::Unset(int cursor) {
    if (At(times, cursor)) {
        At(times, cursor).reset();
        emit Changed();
    }
}

std::optional<ChartCursors::Span> ChartCursors::Between() const {
    if (!times[0] || !times[1]) {
        return std::nullopt;
    }
    return Span{std::min(*times[0], *times[1]), std::max(*times[0], *times[1])};
}

} // namespace ztm
