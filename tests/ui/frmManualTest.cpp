#include "ui/frmManual.h"

#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"
#include "support/UiTest.h"
#include "ui/Twips.h"
#include "ui/frmHeaters.h"
#include "ui/instruments/ValueSlider.h"

#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QTest>
#include <QTimer>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Presses, moves or lets go of the handle of a slider.
void Mouse(ValueSlider &slider, QEvent::Type type, double value) {
    auto &track = *slider.findChild<QSlider *>();
    const QPoint at = track.mapFrom(&slider, slider.HandlePosition(value).toPoint());
    if (type == QEvent::MouseMove) {
        QTest::mouseMove(&track, at);
    } else if (type == QEvent::MouseButtonPress) {
        QTest::mousePress(&track, Qt::LeftButton, {}, at);
    } else {
        QTest::mouseRelease(&track, Qt::LeftButton, {}, at);
    }
}

TEST(ValueSlider, TellsOfTheUserAndNotOfTheProgram) {
    ValueSlider slider;
    QSignalSpy changes(&slider, &ValueSlider::ValueChanged);
    slider.SetMaximum(15000);
    slider.SetMinimum(75);
    slider.SetSteps(50, 500);
    slider.resize(90, 400);
    slider.show();
    for (const auto &[set, shown] :
         {std::pair{4000.0, 4000.0}, {1e9, 15000.0}, {-1.0, 75.0}, {99.6, 100.0}}) {
        slider.SetValue(set);
        EXPECT_EQ(slider.Value(), shown) << set;
    }
    EXPECT_EQ(changes.count(), 0);
    EXPECT_GT(slider.HandlePosition(75).y(), slider.HandlePosition(15000).y()) << "up is more";

    auto &track = *slider.findChild<QSlider *>();
    const struct {
        Qt::Key key;
        double value;
    } keys[] = {{Qt::Key_Up, 150},    {Qt::Key_PageUp, 650},     {Qt::Key_Down, 600},
                {Qt::Key_End, 15000}, {Qt::Key_PageDown, 14500}, {Qt::Key_Home, 75}};
    for (const auto &[key, value] : keys) {
        QTest::keyClick(&track, key);
        EXPECT_EQ(slider.Value(), value);
        EXPECT_EQ(changes.takeLast().first().toDouble(), value);
    }
    Mouse(slider, QEvent::MouseButtonPress, 75);
    Mouse(slider, QEvent::MouseMove, 9000);
    EXPECT_NEAR(slider.Value(), 9000, 60) << "the handle follows the mouse";
    EXPECT_EQ(changes.count(), 1);
    Mouse(slider, QEvent::MouseButtonRelease, 9000);
    EXPECT_EQ(changes.count(), 1);
}

class ManualTest : public UiTest {
protected:
    void Open(std::string_view variant) {
        StartSessionOf(variant);
        Find<QTimer>("tmrMain").stop(); // only the test's own ticks
        Adapter().registers[0x2A] = 0x00;
        Adapter().registers[0x2B] = 0x04; // 4800 RPM
        Adapter().registers[0x2C] = 0xFF;
        Adapter().registers[0x2D] = 0xFF; // 75 RPM
        ClickTab("Control");
        Click("cmdManual");
        Settle();
    }

    static ValueSlider &Slider(int fan) {
        return Find<ValueSlider>(QString("sldFan(%1)").arg(fan));
    }

    static std::vector<Call> WritesOfRpm(int32_t address, int rpm) {
        const int count = static_cast<int>(std::nearbyint(4915200.0 / rpm));
        return {Write(address, count / 256), Write(address - 1, count % 256)};
    }
};

TEST_F(ManualTest, ShowsWhatTheChipHoldsAndWritesNothing) {
    Open(ZTM7720);
    const std::vector<Call> load{Read(0x2A), Read(0x2B), Read(0x2C), Read(0x2D)};
    std::vector<Call> twice = load;
    twice.insert(twice.end(), load.begin(), load.end());
    EXPECT_EQ(Adapter().calls, twice);
    EXPECT_EQ(Find("frmManual").windowTitle(), "Manual RPM Mode");
    EXPECT_TRUE(ManualDialogOpen);
    EXPECT_EQ(Slider(0).Value(), 4800);
    EXPECT_EQ(Slider(1).Value(), 75);
    EXPECT_EQ(Find("frmManual").findChild<QLabel *>("Label1")->text(),
              "Set required RPM values for Fan1, Fan2");
    EXPECT_EQ(TextOf("Label2(1)"), "Fan2 Current Speed");
    EXPECT_EQ(TextOf("lblFanSpeed(0)"), "0");
    EXPECT_EQ(Slider(1).toolTip(), "Slide this to adjust the Fan Speed");
    for (const auto &[fan, left] : {std::pair{0, 360}, {1, 1440}}) {
        EXPECT_EQ(Slider(fan).mapTo(&Find("frmManual"), QPoint()).x(), Twips(left, Slider(fan)));
    }
    Adapter().registers[0x2D] = 0x02;
    Adapter().registers[0x2C] = 0x00;
    Adapter().calls.clear();
    Click("cmdManual");
    EXPECT_EQ(Adapter().calls, load) << "pressed again, it reads again";
    EXPECT_EQ(Slider(1).Value(), 9600);
    Tick();
    EXPECT_THAT(Adapter().Writes(), IsEmpty());
}

TEST_F(ManualTest, OneFanHasOneSliderOnTheRight) {
    Open(ZTM7710);
    EXPECT_EQ(Slider(0).Caption(), "Fan");
    EXPECT_EQ(Slider(0).mapTo(&Find("frmManual"), QPoint()).x(), Twips(1440, Slider(0)));
    EXPECT_EQ(Find("frmManual").findChild<QLabel *>("Label1")->text(), "");
    EXPECT_EQ(TextOf("Label2(0)"), "Current Fan Speed");
    EXPECT_FALSE(Slider(1).isVisible() || Find("Label2(1)").isVisible() ||
                 Find("lblFanSpeed(1)").isVisible());
    EXPECT_EQ(Adapter().calls.size(), 8U) << "both speeds are read";
    Adapter().calls.clear();
    Press("sldFan(0)", Qt::Key_Up);
    QTest::keyClick(Slider(0).findChild<QSlider *>(), Qt::Key_Up);
    EXPECT_EQ(Adapter().Writes(), WritesOfRpm(0x2B, 4850));
}

TEST_F(ManualTest, ADragWritesOncePerTickAndAlwaysTheLastValue) {
    Open(ZTM7720);
    Adapter().calls.clear();
    Mouse(Slider(0), QEvent::MouseButtonPress, 4800);
    Mouse(Slider(0), QEvent::MouseMove, 6000);
    const auto first = static_cast<int>(Slider(0).Value());
    EXPECT_EQ(Adapter().Writes(), WritesOfRpm(0x2B, first));
    Mouse(Slider(0), QEvent::MouseMove, 7000);
    Mouse(Slider(0), QEvent::MouseMove, 8000);
    EXPECT_EQ(Adapter().Writes().size(), 2U) << "not again before the tick";
    Adapter().calls.clear();
    Tick();
    EXPECT_EQ(Adapter().Writes(), WritesOfRpm(0x2B, static_cast<int>(Slider(0).Value())));
    Mouse(Slider(0), QEvent::MouseMove, 12000);
    Adapter().calls.clear();
    Mouse(Slider(0), QEvent::MouseButtonRelease, 12000);
    EXPECT_NEAR(Slider(0).Value(), 12000, 100);
    EXPECT_EQ(Adapter().Writes(), WritesOfRpm(0x2B, static_cast<int>(Slider(0).Value())));
    Adapter().calls.clear();
    Tick();
    Tick();
    EXPECT_THAT(Adapter().Writes(), IsEmpty()) << "nothing is left";
}

TEST_F(ManualTest, TheSlowestSpeedHasNoCount) {
    Open(ZTM7720);
    Adapter().calls.clear();
    QTest::keyClick(Slider(0).findChild<QSlider *>(), Qt::Key_Home);
    EXPECT_THAT(Adapter().calls, IsEmpty());
    Slider(1).findChild<QSlider *>()->setSingleStep(1);
    QTest::keyClick(Slider(1).findChild<QSlider *>(), Qt::Key_Up);
    EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x2D, 0xFC), Write(0x2C, 0xA2)));
}

TEST_F(ManualTest, TheTickShowsTheSpeedsWhileTheDialogIsOpen) {
    Open(ZTM7720);
    Click("cmdHeaters");
    Measurements[3] = 1234;
    Measurements[4] = 75;
    Tick();
    EXPECT_EQ(TextOf("lblFanSpeed(0)"), "1234 RPM");
    EXPECT_EQ(TextOf("lblFanSpeed(1)"), "75 RPM");
    EXPECT_TRUE(ManualDialogOpen && HeatersDialogOpen);
    CloseByCloseBox("frmManual");
    EXPECT_FALSE(ManualDialogOpen);
    EXPECT_TRUE(HeatersDialogOpen);
    Tick();
    Find("frmMain").activateWindow();
    Click("cmdManual");
    EXPECT_EQ(TextOf("lblFanSpeed(0)"), "0") << "a new window";
    Click("cmdClose");
    EXPECT_EQ(LoadedForms().size(), 2U);
}

} // namespace
} // namespace ztm::test
