#include "ui/control/frmManual.h"
#include "link/Heaters.h"
#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"
#include "support/UiTest.h"
#include "ui/control/frmHeaters.h"
#include "ui/instruments/ValueSlider.h"
#include "ui/kit/Twips.h"

#include <QLabel>
#include <QTest>
#include <QTimer>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ManualTest : public UiTest {
protected:
    static void SetSpeedCounts(int first, int second) {
        auto &registers = Adapter().registers;
        registers[0x2A] = static_cast<uint8_t>(first);
        registers[0x2B] = static_cast<uint8_t>(first >> 8);
        registers[0x2C] = static_cast<uint8_t>(second);
        registers[0x2D] = static_cast<uint8_t>(second >> 8);
    }

    /// The dialog on speeds of about 4000 and 2000 RPM, with nothing written since the last tick.
    static void Open(std::string_view variant = ZTM7720) {
        SetSpeedCounts(1229, 2458);
        StartSessionOf(variant);
        Find<QTimer>("tmrMain").stop(); // no other ticks than the test's
        ClickTab("Control");
        Click("cmdManual");
        Settle();
    }

    static ValueSlider &Slider(int fan) {
        return Find<ValueSlider>(QString("sldFan(%1)").arg(fan));
    }

    static QPoint Handle(int fan, double rpm) { return Slider(fan).HandlePosition(rpm).toPoint(); }

    static void Grip(int fan) {
        QTest::mousePress(&Slider(fan), Qt::LeftButton, {}, Handle(fan, Slider(fan).Value()));
        Adapter().calls.clear();
    }

    static void Drag(int fan, double rpm) { QTest::mouseMove(&Slider(fan), Handle(fan, rpm)); }

    static void LetGo(int fan) {
        QTest::mouseRelease(&Slider(fan), Qt::LeftButton, {}, Handle(fan, Slider(fan).Value()));
    }

    /// The calls that set a fan to its slider's present value.
    static std::vector<Call> SetToSlider(int fan) {
        const int count = static_cast<int>(std::lround(4915200 / Slider(fan).Value()));
        const int high = fan == 0 ? 0x2B : 0x2D;
        return {Write(high, count / 256), Write(high - 1, count % 256)};
    }

    /// What was asked since the last time.
    static std::vector<Call> Asked() { return std::exchange(Adapter().calls, {}); }
};

TEST_F(ManualTest, OpeningReadsTwiceAndTheButtonReadsAgainWithoutAWrite) {
    const std::vector load{Read(0x2A), Read(0x2B), Read(0x2C), Read(0x2D)};
    std::vector twice = load;
    twice.insert(twice.end(), load.begin(), load.end());
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        ResetCore();
        Open(variant);
        EXPECT_EQ(Asked(), twice);
        EXPECT_TRUE(ManualDialogOpen);
        EXPECT_EQ(Find("frmManual").windowTitle(), "Manual RPM Mode");
        EXPECT_EQ(Slider(0).Value(), 3999);
        EXPECT_EQ(Slider(1).Value(), 2000);
        const auto *first = &Slider(0);
        const struct {
            int count;
            double shown;
        } cases[] = {{0xFFFF, 75}, {1, 15000}, {0, 75}, {327, 15000}, {328, 14985}};
        for (const auto &c : cases) {
            SetSpeedCounts(c.count, 4915);
            Click("cmdManual");
            EXPECT_EQ(Asked(), load) << "nothing is written back";
            EXPECT_EQ(&Slider(0), first) << "the same window";
            EXPECT_EQ(Slider(0).Value(), c.shown) << c.count;
            EXPECT_EQ(Slider(1).Value(), 1000);
        }
        Tick();
        EXPECT_THAT(Adapter().Writes(), IsEmpty());
        DeleteAllForms();
    }
}

TEST_F(ManualTest, IsLaidOutForTheVariant) {
    Open(ZTM7720);
    const auto &window = Find("frmManual");
    const auto leftOf = [](int fan) { return Slider(fan).mapTo(&Find("frmManual"), QPoint()).x(); };
    const auto textOf = [](const char *name) {
        return Find("frmManual").findChild<QLabel *>(name)->text();
    };
    EXPECT_EQ(leftOf(0), Twips(360, window));
    EXPECT_EQ(leftOf(1), Twips(1440, window));
    EXPECT_EQ(textOf("Label1"), "Set required RPM values for Fan1, Fan2");
    EXPECT_EQ(textOf("Label2(0)") + "|" + textOf("Label2(1)"),
              "Fan1 Current Speed|Fan2 Current Speed");
    EXPECT_EQ(Slider(0).Caption() + "|" + Slider(1).Caption(), "Fan1|Fan2");
    DeleteAllForms();
    ResetCore();
    Open(ZTM7710);
    Click("cmdManual"); // loading again changes nothing
    Settle();
    EXPECT_EQ(leftOf(0), Twips(1440, Find("frmManual")));
    EXPECT_EQ(textOf("Label1"), "");
    EXPECT_EQ(textOf("Label2(0)"), "Current Fan Speed");
    EXPECT_EQ(Slider(0).Caption(), "Fan");
    EXPECT_FALSE(Slider(1).isVisible() || Find("Label2(1)").isVisible() ||
                 Find("lblFanSpeed(1)").isVisible());
}

TEST_F(ManualTest, AMoveWritesThePairOfItsFanAlone) {
    Open();
    Asked();
    const struct {
        int fan;
        double rpm;
        std::vector<Call> calls;
    } cases[] = {
        {0, 1000, {Write(0x2B, 0x13), Write(0x2A, 0x33)}},
        {1, 76, {Write(0x2D, 0xFC), Write(0x2C, 0xA2)}},
        {0, 75, {}},
        {1, 15000, {Write(0x2D, 0x01), Write(0x2C, 0x48)}},
        {0, 999.5, {Write(0x2B, 0x13), Write(0x2A, 0x33)}}, // a half goes to even
    };
    for (const auto &c : cases) {
        Slider(c.fan).MoveTo(c.rpm);
        EXPECT_EQ(Asked(), c.calls) << c.rpm;
    }
    Press("sldFan(1)", Qt::Key_PageDown);
    EXPECT_EQ(Slider(1).Value(), 14500);
    EXPECT_EQ(Asked(), SetToSlider(1)) << "keys need not wait for a tick";
    Press("sldFan(0)", Qt::Key_Home);
    EXPECT_THAT(Asked(), IsEmpty());
    EXPECT_EQ(TextOf("lblFanSpeed(0)"), "0") << "only a measurement changes it";
}

TEST_F(ManualTest, ADragWritesAtMostOncePerTickAndAlwaysItsLastValue) {
    Open();
    Tick();
    Grip(0);
    Drag(0, 5000);
    EXPECT_EQ(Asked(), SetToSlider(0)) << "the first move at once";
    Drag(0, 6000);
    Drag(0, 7000);
    EXPECT_THAT(Asked(), IsEmpty());
    Tick();
    EXPECT_EQ(Asked(), SetToSlider(0)) << "the last of them with the tick";
    Drag(0, 8000);
    EXPECT_THAT(Asked(), IsEmpty()) << "that was this period's write";
    Tick();
    EXPECT_EQ(Asked(), SetToSlider(0));
    Tick();
    EXPECT_THAT(Asked(), IsEmpty());
    Drag(0, 9000);
    EXPECT_EQ(Asked(), SetToSlider(0)) << "a period without a write leaves the next move free";
    Drag(0, 9500);
    LetGo(0);
    EXPECT_EQ(Asked(), SetToSlider(0)) << "letting go does not wait, however long the period";
    Tick();
    EXPECT_THAT(Asked(), IsEmpty());
}

TEST_F(ManualTest, SlidersWaitForThemselvesAlone) {
    Open();
    Slider(1).MoveTo(3000);
    Grip(0);
    Drag(0, 5000);
    EXPECT_EQ(Asked(), SetToSlider(0));
}

TEST_F(ManualTest, NothingIsLostWhenTheDialogIsClosedOrReadAgain) {
    for (const char *end : {"box", "button", "load"}) {
        ResetCore();
        Open();
        Grip(1);
        Drag(1, 5000);
        Drag(1, 6000);
        Asked();
        auto expected = SetToSlider(1);
        if (end == std::string("load")) {
            Click("cmdManual");
            expected.insert(expected.end(), {Read(0x2A), Read(0x2B), Read(0x2C), Read(0x2D)});
        } else {
            end == std::string("box") ? CloseByCloseBox("frmManual") : Click("cmdClose");
        }
        EXPECT_EQ(Asked(), expected) << end;
        DeleteAllForms();
    }
}

TEST_F(ManualTest, TheTickShowsTheMeasuredSpeedsWhileTheDialogIsOpen) {
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        ResetCore();
        Open(variant);
        EXPECT_EQ(TextOf("lblFanSpeed(0)"), "0");
        Measurements[3] = 1234;
        Measurements[4] = 567;
        Tick();
        EXPECT_EQ(TextOf("lblFanSpeed(0)"), "1234 RPM");
        EXPECT_EQ(TextOf("lblFanSpeed(1)"), variant == ZTM7720 ? "567 RPM" : "0");
        DeleteAllForms();
    }
}

TEST_F(ManualTest, BothDialogsRunSideBySideAndGoOneByOne) {
    for (const bool byCloseBox : {false, true}) {
        ResetCore();
        Open();
        Click("cmdHeaters");
        Heaters[0].SoftwareControl = Heaters[0].StartPending = Heaters[0].RampUp = true;
        Adapter().heaterReply[0] = 20;
        Measurements[3] = 1234;
        clock.Advance(1);
        Tick();
        EXPECT_EQ(TextOf("lblFanSpeed(0)"), "1234 RPM");
        EXPECT_EQ(TextOf("txtPWM(0)"), "20");
        EXPECT_TRUE(ManualDialogOpen && HeatersDialogOpen);

        byCloseBox ? CloseByCloseBox("frmManual") : Click("cmdClose"); // the older one's
        EXPECT_EQ(LoadedForm<frmManual>(), nullptr);
        EXPECT_FALSE(ManualDialogOpen);
        EXPECT_TRUE(HeatersDialogOpen);
        clock.Advance(1);
        Tick();
        EXPECT_EQ(TextOf("txtPWM(0)"), "22") << "the ramp goes on";

        byCloseBox ? CloseByCloseBox("frmHeaters") : Click("cmdClose");
        EXPECT_FALSE(ManualDialogOpen || HeatersDialogOpen);
        clock.Advance(1);
        Tick();
        EXPECT_EQ(LoadedForms().size(), 1U);
        DeleteAllForms();
    }
}

TEST_F(ManualTest, AFailedRequestEndsInTheOneWay) {
    const std::function<void()> actions[] = {
        [] { Slider(0).MoveTo(5000); },
        [] { Click("cmdManual"); },
        [] { // the first load of a new dialog
            Click("cmdClose");
            Click("cmdManual");
        },
    };
    Open();
    for (const auto &action : actions) {
        EXPECT_EXIT(FailIn(action), testing::ExitedWithCode(EXIT_FAILURE), endOfAFailure);
    }
    // A value that still waits is not written then.
    Grip(0);
    Drag(0, 5000);
    Drag(0, 6000);
    MonitoringEnabled = true;
    EXPECT_EXIT(FailIn(Tick), testing::ExitedWithCode(EXIT_FAILURE), endOfAFailure);
}

} // namespace
} // namespace ztm::test
