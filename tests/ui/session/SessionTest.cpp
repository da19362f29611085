#include "fan/LookupGraphScale.h"
#include "link/Heaters.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "support/UiTest.h"

#include <QTimer>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using SessionTest = UiTest;

TEST_F(SessionTest, StartsFromTheDefaults) {
    MonitorInterval = 1;
    MonitoringEnabled = GraphingEnabled = LimitMonitorEnabled = BargraphEnabled = true;
    BigGraphEnabled = MonitorInReadWrite = ManualDialogOpen = true;
    GraphType = 3;
    LogInterval = MaxLogEntries = 1;
    GraphRpmRange = 1;
    SmbusDelayMs = 1;
    SmbusDelayEnabled = false;
    Heaters[1] = {1, true, 1, 1, 1, 1, true, true};
    StartSessionOf(ZTM7720);
    EXPECT_EQ(MonitorInterval, 30);
    EXPECT_FALSE(MonitoringEnabled || GraphingEnabled || LimitMonitorEnabled || BargraphEnabled);
    EXPECT_FALSE(BigGraphEnabled || MonitorInReadWrite || ManualDialogOpen);
    EXPECT_EQ(GraphType, 1);
    EXPECT_EQ(LogInterval, 100);
    EXPECT_EQ(MaxLogEntries, 10000);
    EXPECT_EQ(GraphRpmRange, 8000);
    EXPECT_EQ(SmbusDelayMs, 20);
    EXPECT_TRUE(SmbusDelayEnabled);
    EXPECT_EQ(Heaters[1].LowPct, 20);
    EXPECT_EQ(Heaters[1].IntervalMs, 500);
    EXPECT_FALSE(Heaters[1].SoftwareControl || Heaters[1].StartPending);
    EXPECT_TRUE(Find<QTimer>("tmrMain").isActive());
    EXPECT_EQ(Find<QTimer>("tmrMain").interval(), 30);
}

TEST_F(SessionTest, FanControlButtonsFollowConfiguration1) {
    const struct {
        uint8_t configuration1;
        bool automatic, manual;
    } cases[] = {{0x01, false, true}, {0x81, true, false}};
    for (const auto &c : cases) {
        ResetCore();
        Adapter().registers[0x01] = c.configuration1;
        StartSessionOf(ZTM7720);
        EXPECT_EQ(IsEnabled("cmdAuto"), c.automatic);
        EXPECT_EQ(IsEnabled("cmdSetLookups"), c.automatic);
        EXPECT_EQ(IsEnabled("cmdManual"), c.manual);
        for (const char *name : {"cmdConParam", "cmdThermTemp", "cmdThermTimer", "cmdHeaters",
                                 "cmdLogData", "cmdSaveRegs", "cmdRecallRegs"}) {
            EXPECT_TRUE(IsEnabled(name)) << name;
        }
        DeleteAllForms();
    }
}

TEST_F(SessionTest, AnIdleTickAsksNothingAndAppliesThePeriod) {
    StartSessionOf(ZTM7720);
    MonitorInterval = 50;
    Tick();
    EXPECT_EQ(Find<QTimer>("tmrMain").interval(), 50);
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(SessionTest, ClosingTheMainWindowClosesEveryWindowAndSaysGoodbye) {
    StartSessionOf(ZTM7720);
    ClickTab("Visual Display");
    Click("cmdSetUpLog");
    Adapter().calls.clear();
    CloseByCloseBox("frmMain");
    EXPECT_THAT(LoadedForms(), IsEmpty());
    EXPECT_THAT(Adapter().calls, ElementsAre(Handshake));
}

TEST_F(SessionTest, AFailedRequestIsToldOnceThenEveryWindowIsUnloadedAndTheProcessEnds) {
    StartSessionOf(ZTM7720);
    ClickTab("Register Access");
    Click("chkContRead");
    MonitoringEnabled = true;
    EXPECT_EXIT(FailIn(Tick), testing::ExitedWithCode(EXIT_FAILURE), endOfAFailure);
}

} // namespace
} // namespace ztm::test
