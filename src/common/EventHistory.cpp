#include "common/EventHistory.h"

#include <algorithm>
#include <cmath>

namespace ztm {

void EventHistory::Add(double time, int channel, std::string text) {
    if (!std::isfinite(time)) {
        return;
    }
    ++version;
    const auto after =
        std::upper_bound(events.begin(), events.end(), time,
                         [](double moment, const Event &event) { return moment < event.time; });
    events.insert(after, {time, channel, std::move(text), version});
    if (events.size() > capacity) {
        events.pop_front();
    }
}

void EventHistory::Clear() {
    ++version;
    events.clear();
}

size_t EventHistory::FirstFrom(double time) const {
    const auto first =
        std::lower_bound(events.begin(), events.end(), time,
                         [](const Event &event, double moment) { return event.time < moment; });
    return static_cast<size_t>(first - events.begin());
}

} // namespace ztm
