#include "support/ClockDouble.h"

namespace ztm::test {

ClockDouble::ClockDouble(double secondsSinceMidnight) : start(secondsSinceMidnight) {
    SetClock(this);
}

ClockDouble::~ClockDouble() {
    SetClock(nullptr);
}

} // namespace ztm::test
