#include "ui/display/frmGraphOptions.h"
#include "monitor/MonitorSettings.h"
#include "support/DialogTest.h"

#include <QLineEdit>

namespace ztm::test {
namespace {

class GraphOptionsTest : public UiTest {
protected:
    static void Open() {
        if (LoadedForms().empty()) {
            StartSessionOf(ZTM7720);
            ClickTab("Visual Display");
        }
        Click("cmdGraphOptions");
        Settle();
    }
};

TEST_F(GraphOptionsTest, OpensOnTheSettings) {
    StartSessionOf(ZTM7720);
    ClickTab("Visual Display");
    MonitorInterval = 1000;
    SmbusDelayMs = 0.5F;
    GraphType = 3;
    LimitMonitorEnabled = true;
    Open();
    EXPECT_EQ(Shown("txtInterval txtSMBusDelay chkSMBusDelay chkEnMonitor chkEnGraph chkEnBargraph "
                    "chkLimitMonitor chkMonInRW chkBigGraph optGraphType(0)"),
              "1000|.5|1|0|0|0|1|0|0|1");
}

TEST_F(GraphOptionsTest, OkStoresEveryField) {
    Open();
    Type("txtInterval", "12.5x");
    Type("txtSMBusDelay", "1.25");
    for (const char *name : {"chkSMBusDelay", "chkEnMonitor", "chkEnGraph", "chkEnBargraph",
                             "chkLimitMonitor", "chkMonInRW", "optGraphType(1)"}) {
        Click(name);
    }
    Click("cmdOK");
    EXPECT_EQ(LoadedForm<frmGraphOptions>(), nullptr);
    EXPECT_EQ(MonitorInterval, 12) << "a half goes to even";
    EXPECT_EQ(SmbusDelayMs, 1.25F);
    EXPECT_FALSE(SmbusDelayEnabled);
    EXPECT_TRUE(MonitoringEnabled && GraphingEnabled && BargraphEnabled && LimitMonitorEnabled &&
                MonitorInReadWrite);
    EXPECT_EQ(GraphType, 2);
    EXPECT_TRUE(Adapter().Writes().empty());
}

TEST_F(GraphOptionsTest, NumbersOutOfRangeAreRefusedAndNothingIsStored) {
    Open();
    Click("chkEnMonitor");
    const struct {
        const char *interval, *delay;
    } cases[] = {{"0", "20"}, {"-5", "20"}, {"32768", "20"}, {"1e9", "20"},
                 {"x", "20"}, {"50", "-1"}, {"50", "1e39"}};
    for (const auto &c : cases) {
        Find<QLineEdit>("txtInterval").setText(c.interval);
        Find<QLineEdit>("txtSMBusDelay").setText(c.delay);
        EXPECT_EQ(AnswerMessageOf([] { Click("cmdOK"); }).title, "Options");
        EXPECT_NE(LoadedForm<frmGraphOptions>(), nullptr);
        EXPECT_EQ(MonitorInterval, 30);
        EXPECT_EQ(SmbusDelayMs, 20);
        EXPECT_FALSE(MonitoringEnabled);
    }
    for (const char *interval : {"1", "32767"}) {
        Find<QLineEdit>("txtInterval").setText(interval);
        Find<QLineEdit>("txtSMBusDelay").setText("0");
        Click("cmdApply");
        EXPECT_EQ(QString::number(MonitorInterval), interval);
    }
}

} // namespace
} // namespace ztm::test
