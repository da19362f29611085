#include "monitor/MeasurementHistory.h"

#include "link/LinkTest.h"
#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"

#include <cmath>

namespace ztm::test {
namespace {

using MeasurementHistoryTest = LinkTest;

TEST_F(MeasurementHistoryTest, APauseLeavesAGapAndASlowMonitorDoesNot) {
    constexpr int16_t longest = 32767;
    const struct {
        const char *name;
        int16_t intervalBefore, intervalAfter;
        double secondsBetween;
        bool isGap;
    } cases[] = {
        {"every tick", 30, 30, 0.030, false},
        {"a tick that took long", 30, 30, 2.5, false},
        {"a pause", 30, 30, 10, true},
        {"a slow monitor", longest, longest, 33, false},
        {"a slow monitor that missed ticks", longest, longest, 100, false},
        {"a pause of a slow monitor", longest, longest, 200, true},
        {"last period of a slow monitor", longest, 30, 33, false},
        {"first period of a slow monitor", 30, longest, 33, false},
        {"a pause over three midnights", 30, 30, 3 * 86400 - 36000 + 100, true},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.name);
        ResetCore();
        SetMeasurements({1, 2, 3, 4, 5, 6});
        MonitorInterval = c.intervalBefore;
        RecordMeasurements();
        MonitorInterval = c.intervalAfter;
        const double before = MeasurementHistory().LastTime();
        clock.Advance(c.secondsBetween);
        RecordMeasurements();
        EXPECT_NEAR(MeasurementHistory().LastTime(), before + c.secondsBetween, 1e-6);
        EXPECT_EQ(MeasurementHistory().ValueAt(0, before), 1);
        const float between = MeasurementHistory().ValueAt(0, before + c.secondsBetween / 2);
        EXPECT_EQ(std::isnan(between), c.isGap);
        EXPECT_EQ(MeasurementHistory().LastValue(0), 1);
    }
}

} // namespace
} // namespace ztm::test
