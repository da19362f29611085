#pragma once

#include "link/Session.h"
#include "support/ClockDouble.h"

#include <gmock/gmock.h>

namespace ztm::test {

using Calls = std::vector<Call>;

/// What something asks of the adapter library.
template <class Action>
Calls CallsOf(const Action &action) {
    Adapter().calls.clear();
    action();
    return Adapter().calls;
}

/// A session over the recording adapter, in a time that only moves when somebody waits.
class LinkTest : public testing::Test {
protected:
    explicit LinkTest(double secondsSinceMidnight = 36000) : clock(secondsSinceMidnight) {
        StartSession();
    }

    ClockDouble clock;
};

} // namespace ztm::test
