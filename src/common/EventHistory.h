#pragma once

#include <cstdint>
#include <deque>
#include <string>

namespace ztm {

/// Something that happened at a moment.
struct Event {
    double time;      ///< on the time axis of the samples
    int channel;      ///< that it is about, or -1
    std::string text; ///< short, in one line
    uint64_t number;  ///< by which it is known; no two in a history have the same
};

/// The newest 10,000 events in order of their times, for any number of readers.
class EventHistory {
public:
    static constexpr size_t capacity = 10'000;

    /// One with the time of another comes after it. A time that is not finite is ignored.
    void Add(double time, int channel, std::string text);
    void Clear();

    /// Changes with whatever changes, so that readers can follow.
    uint64_t Version() const { return version; }

    size_t Size() const { return events.size(); }
    /// 0 is the oldest.
    const Event &operator[](size_t index) const { return events[index]; }
    /// The index of the oldest event at or after `time`; Size() if there is none.
    size_t FirstFrom(double time) const;

private:
    std::deque<Event> events;
    uint64_t version = 0;
};

} // namespace ztm
