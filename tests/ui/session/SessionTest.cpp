#include "fan/LookupGraphScale.h"
#include "link/Heaters.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "support/UiTest.h"

#include <QTimer>
#include <QWindow>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using SessionTest = UiTest;

TEST_F(SessionTest, StartsFromTheDefaultsAndAnIdleTickOnlyAppliesThePeriod) {
    auto &heater = Heaters[1];
    auto numbers = std::tie(MonitorInterval, GraphType, LogInterval, MaxLogEntries, GraphRpmRange,
                            SmbusDelayMs, heater.LowPct, heater.IntervalMs);
    auto switches = std::tie(MonitoringEnabled, GraphingEnabled, LimitMonitorEnabled,
                             BargraphEnabled, BigGraphEnabled, MonitorInReadWrite, ManualDialogOpen,
                             heater.SoftwareControl, heater.StartPending);
    numbers = std::tuple(1, 3, 1, 1, 1, 1, 1, 1);
    switches = std::tuple(true, true, true, true, true, true, true, true, true);
    SmbusDelayEnabled = false;
    StartSessionOf(ZTM7720);
    EXPECT_EQ(numbers, std::tuple(30, 1, 100, 10000, 8000, 20, 20, 500));
    EXPECT_EQ(switches, std::tuple(false, false, false, false, false, false, false, false, false));
    EXPECT_TRUE(SmbusDelayEnabled);
    const auto &timer = Find<QTimer>("tmrMain");
    EXPECT_TRUE(timer.isActive());
    EXPECT_EQ(timer.interval(), 30);
    MonitorInterval = 50;
    Tick();
    EXPECT_EQ(timer.interval(), 50);
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(SessionTest, ClosingTheMainWindowClosesEveryOtherFirstAndThenSaysGoodbye) {
    StartSessionOf(ZTM7720);
    ForEveryDialog([](const char *window) {
        const auto *handle = Find(window).windowHandle();
        EXPECT_EQ(handle->transientParent(), Find("frmMain").windowHandle()) << window;
        EXPECT_EQ(handle->modality(), Qt::NonModal) << window;
    });
    Press("frmGraphOptions", Qt::Key_Escape);
    ClickTab("Visual Display");
    Click("cmdGraphOptions");
    Click("chkBigGraph");
    Press("frmGraphOptions", Qt::Key_Enter);
    Press("frmBigGraph", Qt::Key_Escape);
    EXPECT_EQ(Find("frmBigGraph").windowHandle()->transientParent(), nullptr);
    Adapter().calls.clear();
    Adapter().script = [](const Call &) {
        EXPECT_THAT(LoadedForms(), ElementsAre(&Find("frmMain")));
        return int16_t{0};
    };
    CloseByCloseBox("frmMain");
    EXPECT_THAT(LoadedForms(), IsEmpty());
    EXPECT_THAT(Adapter().calls, ElementsAre(Handshake));
}

} // namespace
} // namespace ztm::test
