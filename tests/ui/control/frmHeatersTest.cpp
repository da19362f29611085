#include "ui/control/frmHeaters.h"

#include "link/Heaters.h"
#include "monitor/MonitorSettings.h"
#include "support/UiTest.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QTimer>

#include <limits>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr Call readDuty{0xDA, 0, 0, 1, 3};

Call SetDuty(int32_t first, int32_t second) {
    return {0xDB, first, second, 0, 0};
}

class HeatersTest : public UiTest {
protected:
    HeatersTest() {
        StartSessionOf(ZTM7720);
        Find<QTimer>("tmrMain").stop(); // only the test's own ticks
        ClickTab("Control");
        // The adapter reports the duties that were set last.
        Adapter().script = [](const Call &call) {
            if (call.request == 0xDB) {
                if (call.value != 255) {
                    Adapter().heaterReply[0] = static_cast<uint8_t>(call.value);
                }
                if (call.index != 255) {
                    Adapter().heaterReply[1] = static_cast<uint8_t>(call.index);
                }
            }
            return int16_t{0};
        };
    }

    static void Open() {
        Click("cmdHeaters");
        Settle();
    }

    /// The duties sent while that many ramp steps are due.
    std::vector<Call> DutiesIn(int steps) {
        Adapter().calls.clear();
        for (int step = 0; step < steps; ++step) {
            clock.Advance(0.6);
            Tick();
        }
        std::vector<Call> duties;
        for (const Call &call : Adapter().calls) {
            if (call.request == 0xDB) {
                duties.push_back(call);
            }
        }
        return duties;
    }
};

TEST_F(HeatersTest, OpensOnTheSettingsWithTheDutiesOfTheAdapter) {
    Adapter().heaterReply = {35, 100, 7};
    Heaters[1] = {1, true, 10, 90, 5, 250, false, false};
    Open();
    EXPECT_EQ(Find("frmHeaters").windowTitle(), "Heaters");
    EXPECT_THAT(Adapter().calls, ElementsAre(readDuty));
    const struct {
        const char *box;
        const char *text;
    } shown[] = {{"txtPWM(0)", "35"},      {"txtPWM(1)", "100"},     {"txtFrom(0)", "20"},
                 {"txtFrom(1)", "10"},     {"txtTo(0)", "80"},       {"txtTo(1)", "90"},
                 {"txtIncrement(0)", "2"}, {"txtIncrement(1)", "5"}, {"txtInterval(0)", "500"},
                 {"txtInterval(1)", "250"}};
    for (const auto &[box, text] : shown) {
        EXPECT_EQ(TextOf(box), text) << box;
    }
    EXPECT_FALSE(Find<QCheckBox>("chkSWControl(0)").isChecked());
    EXPECT_TRUE(Find<QCheckBox>("chkSWControl(1)").isChecked());
}

TEST_F(HeatersTest, ApplySendsBothDutiesAtOnce) {
    const struct {
        const char *text;
        int duty;
        bool marked;
    } cases[] = {{"60", 60, false}, {"150", 100, true}, {"-5", 0, true},     {"12.7", 12, false},
                 {"off", 0, false}, {"", 0, false},     {"1e300", 100, true}};
    Open();
    Type("txtPWM(1)", "7");
    for (const auto &c : cases) {
        Type("txtPWM(0)", c.text);
        EXPECT_EQ(!Find("txtPWM(0)").toolTip().isEmpty(), c.marked) << c.text;
        Adapter().calls.clear();
        Click("cmdApply");
        EXPECT_THAT(Adapter().calls, ElementsAre(SetDuty(c.duty, 7))) << c.text;
        EXPECT_EQ(Heaters[0].Pwm, c.duty);
    }
    EXPECT_TRUE(Find("frmHeaters").isVisible());
    EXPECT_THAT(DutiesIn(3), IsEmpty()) << "no ramp was asked for";
}

TEST_F(HeatersTest, TextThatNoFieldHoldsIsMarkedAndLimited) {
    const struct {
        const char *box;
        const char *text;
        bool marked;
        std::function<int()> field;
        int value;
    } cases[] = {
        {"txtInterval(0)", "32767", false, [] { return Heaters[0].IntervalMs; }, 32767},
        {"txtInterval(0)", "32768", true, [] { return Heaters[0].IntervalMs; }, 32767},
        {"txtInterval(1)", "-70000", true, [] { return Heaters[1].IntervalMs; }, -32768},
        {"txtIncrement(0)", "2.5", false, [] { return Heaters[0].IncrementPct; }, 2},
        {"txtIncrement(1)", "99999", true, [] { return Heaters[1].IncrementPct; }, 32767},
        {"txtFrom(0)", "101", true, [] { return Heaters[0].LowPct; }, 101},
        {"txtTo(1)", "5000000000", true, [] { return Heaters[1].HighPct; },
         std::numeric_limits<int>::max()},
    };
    Open();
    for (const auto &c : cases) {
        Type(c.box, c.text);
        EXPECT_EQ(!Find(c.box).toolTip().isEmpty(), c.marked) << c.box << " " << c.text;
        Click("cmdApply");
        EXPECT_EQ(c.field(), c.value) << c.box << " " << c.text;
    }
}

TEST_F(HeatersTest, SpinButtonsKeepToTheirRanges) {
    Open();
    const struct {
        const char *box;
        const char *from;
        const char *up;
        const char *down;
    } cases[] = {
        {"txtPWM(0)", "98", "100", "93"},      {"txtFrom(1)", "0", "1", "0"},
        {"txtIncrement(0)", "1", "2", "1"},    {"txtIncrement(1)", "1", "2", "0"},
        {"txtInterval(0)", "50", "100", "50"}, {"txtInterval(1)", "10000", "10000", "9950"}};
    for (const auto &c : cases) {
        for (const auto &[suffix, expected] : {std::pair{"SpinUp", c.up}, {"SpinDown", c.down}}) {
            Type(c.box, c.from);
            Click(QString(c.box) + suffix);
            EXPECT_EQ(TextOf(c.box), expected) << c.box;
        }
    }
}

TEST_F(HeatersTest, TheRampOfOneHeaterLeavesTheOtherAlone) {
    Open();
    Type("txtPWM(0)", "33");
    Click("chkSWControl(0)");
    Adapter().calls.clear();
    Click("cmdApply");
    EXPECT_THAT(Adapter().calls, ElementsAre(SetDuty(33, 0)));
    EXPECT_THAT(DutiesIn(3), ElementsAre(SetDuty(20, 255), SetDuty(22, 255), SetDuty(24, 255)));
    EXPECT_EQ(TextOf("txtPWM(0)"), "24") << "the dialog shows the ramp";
    EXPECT_EQ(TextOf("txtPWM(1)"), "0");

    CloseByCloseBox("frmHeaters");
    EXPECT_FALSE(HeatersDialogOpen);
    EXPECT_THAT(DutiesIn(2), ElementsAre(SetDuty(26, 255), SetDuty(28, 255)));
    Open();
    EXPECT_EQ(TextOf("txtPWM(0)"), "28") << "read afresh";
    EXPECT_TRUE(Find<QCheckBox>("chkSWControl(0)").isChecked());

    Click("chkSWControl(1)");
    Click("chkSWControl(0)");
    Type("txtFrom(1)", "50");
    Type("txtTo(1)", "52");
    Click("cmdApply");
    EXPECT_THAT(DutiesIn(4), ElementsAre(SetDuty(255, 50), SetDuty(255, 52), SetDuty(255, 50),
                                         SetDuty(255, 52)));
    Click("chkSWControl(0)");
    Click("cmdApply");
    EXPECT_THAT(DutiesIn(2), ElementsAre(SetDuty(20, 255), SetDuty(255, 50), SetDuty(22, 255),
                                         SetDuty(255, 52)));
    Click("cmdClose");
    EXPECT_EQ(LoadedForm<frmHeaters>(), nullptr);
    EXPECT_FALSE(HeatersDialogOpen);
}

TEST_F(HeatersTest, ARampOfAnyShapeStaysAPercentage) {
    const struct {
        const char *low, *high, *increment;
        std::vector<int> duties;
    } cases[] = {
        {"30", "60", "0", {30, 30, 30, 30}},       {"60", "30", "5", {60, 30, 60, 30}},
        {"-20", "150", "70", {0, 70, 100, 30, 0}}, {"300", "255", "10", {100, 100, 100, 100}},
        {"50", "60", "-40", {50, 10, 0, 0}},
    };
    Open();
    Click("chkSWControl(0)");
    for (const auto &c : cases) {
        Type("txtFrom(0)", c.low);
        Type("txtTo(0)", c.high);
        Type("txtIncrement(0)", c.increment);
        Click("cmdApply");
        std::vector<int> duties;
        for (const Call &call : DutiesIn(static_cast<int>(c.duties.size()))) {
            duties.push_back(call.value);
        }
        EXPECT_EQ(duties, c.duties) << c.low << " to " << c.high << " by " << c.increment;
    }
}

TEST_F(HeatersTest, AFailedRequestEndsTheProgram) {
    Open();
    Click("chkSWControl(0)");
    Click("cmdApply");
    const auto fail = [](int16_t request) {
        Adapter().script = [request](const Call &call) {
            return static_cast<int16_t>(call.request == request ? -1 : 0);
        };
    };
    fail(0xDB);
    clock.Advance(1);
    EXPECT_THROW(Tick(), CommFailed);
    fail(0xDA);
    Heaters[0].StartPending = false;
    clock.Advance(1);
    EXPECT_THROW(Tick(), CommFailed);
}

} // namespace
} // namespace ztm::test
