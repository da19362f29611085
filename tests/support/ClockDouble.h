#pragma once

#include "common/Clock.h"

namespace ztm::test {

/// A clock that only moves when somebody waits, by exactly that time, and that is in for as
/// long as it lives.
class ClockDouble final : public Clock {
public:
    explicit ClockDouble(double secondsSinceMidnight = 36000);
    ~ClockDouble() override;

    double RunningSeconds() override { return start + total; }
    void Sleep(double seconds) override { Advance(seconds); }

    void Advance(double seconds) { total += seconds; }

    /// How far the clock has moved since it was put in.
    double TotalSeconds() const { return total; }

private:
    double start;
    double total = 0;
};

} // namespace ztm::test
