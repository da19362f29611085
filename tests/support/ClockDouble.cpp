#include "support/ClockDouble.h"

#include <cmath>

namespace ztm::test {

ClockDouble::ClockDouble(double secondsSinceMidnight) : now(secondsSinceMidnight) {
    SetClock(this);
}

ClockDouble::~ClockDouble() {
    SetClock(nullptr);
}

void ClockDouble::Advance(double seconds) {
    now = std::fmod(now + seconds, 86400.0);
    total += seconds;
}

} // namespace ztm::test
