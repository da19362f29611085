#include "ui/display/frmGraphOptions.h"
#include "monitor/MonitorSettings.h"
#include "support/UiTest.h"

#include <QAbstractButton>
#include <QLineEdit>

namespace ztm::test {
namespace {

class GraphOptionsTest : public UiTest {
protected:
    GraphOptionsTest() {
        StartSessionOf(ZTM7720);
        ClickTab("Visual Display");
        Adapter().calls.clear();
        Click("cmdGraphOptions");
    }

    static constexpr const char *boxes[] = {
        "chkSMBusDelay", "chkEnMonitor",    "chkEnGraph",      "chkEnBargraph",  "chkLimitMonitor",
        "chkMonInRW",    "optGraphType(0)", "optGraphType(1)", "optGraphType(2)"};

    /// Interval, delay and which of the boxes are set: what is shown, and what is stored.
    static std::string Shown() {
        QString shown = TextOf("txtInterval") + " " + TextOf("txtSMBusDelay") + " ";
        for (const char *box : boxes) {
            shown += Find<QAbstractButton>(box).isChecked() ? '1' : '0';
        }
        return shown.toStdString();
    }
    static std::string Stored() {
        QString stored = QString("%1 %2 ").arg(MonitorInterval).arg(SmbusDelayMs);
        for (const bool set : {SmbusDelayEnabled, MonitoringEnabled, GraphingEnabled,
                               BargraphEnabled, LimitMonitorEnabled, MonitorInReadWrite,
                               GraphType == 3, GraphType == 2, GraphType == 1}) {
            stored += set ? '1' : '0';
        }
        return stored.toStdString();
    }
};

TEST_F(GraphOptionsTest, EachBoxIsStoredByOkAndApplyAndShownAgain) {
    std::string before = "30 20 100000001";
    for (const char *box : boxes) {
        SCOPED_TRACE(box);
        EXPECT_EQ(Shown(), before);
        Click(box);
        const std::string shown = Shown();
        Click("cmdCancel");
        EXPECT_EQ(LoadedForm<frmGraphOptions>(), nullptr);
        EXPECT_EQ(Stored(), before);
        Click("cmdGraphOptions");
        Click(box);
        Click("cmdApply");
        EXPECT_EQ(Stored(), shown);
        Click("cmdOK");
        EXPECT_EQ(LoadedForm<frmGraphOptions>(), nullptr);
        EXPECT_EQ(Stored(), shown);
        Click("cmdGraphOptions");
        before = shown;
    }
    EXPECT_EQ(before, "30 20 011111001");
    EXPECT_THAT(Adapter().calls, testing::IsEmpty());
}

TEST_F(GraphOptionsTest, NumbersOutOfRangeAreRefusedAndNothingIsStored) {
    std::string before = Stored();
    Click("chkEnMonitor");
    const std::tuple<const char *, const char *, const char *> cases[] = {
        {"0", "20", ""},
        {"-5", "20", ""},
        {"32768", "20", ""},
        {"1e9", "20", ""},
        {"x", "20", ""},
        {"50", "-1", ""},
        {"50", "1e39", ""},
        {"1", "0", "1 0"},
        {"32767", ".5", "32767 0.5"},
        {"12.5x", "1.25", "12 1.25"},
        {"0", "20", ""},
    };
    for (const auto &[interval, delay, stored] : cases) {
        Find<QLineEdit>("txtInterval").setText(interval);
        Find<QLineEdit>("txtSMBusDelay").setText(delay);
        if (*stored == 0) {
            EXPECT_EQ(AnswerMessageOf([] { Click("cmdOK"); }).title, "Options") << interval;
        } else {
            Click("cmdApply");
            before = std::string(stored) + " 110000001";
        }
        EXPECT_NE(LoadedForm<frmGraphOptions>(), nullptr);
        EXPECT_EQ(Stored(), before);
    }
    Click("cmdCancel");
    Click("cmdGraphOptions");
    EXPECT_EQ(Shown(), before);
}

} // namespace
} // namespace ztm::test
