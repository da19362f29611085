#include "ui/instruments/ValueSlider.h"
#include "support/Instrument.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QSignalSpy>

#include <cmath>

namespace ztm::test {
namespace {

class ValueSliderTest : public testing::Test {
protected:
    ValueSliderTest() {
        slider.SetMinimum(75);
        slider.SetMaximum(15000);
        slider.SetSteps(100, 1000);
        slider.SetCaption("Fan1");
        slider.SetValue(1000);
        slider.resize(72, 300);
        slider.show();
        QApplication::setActiveWindow(&slider);
        slider.setFocus();
    }

    QPoint At(double value) const { return slider.HandlePosition(value).toPoint(); }

    /// What a pixel is worth.
    double PixelWorth() const {
        const double pixels = slider.HandlePosition(75).y() - slider.HandlePosition(15000).y();
        return (15000 - 75) / pixels;
    }

    /// How often ValueChanged and Released came since the last time.
    Counts Signals() {
        const Counts counts{changed.count(), released.count()};
        changed.clear();
        released.clear();
        return counts;
    }

    ValueSlider slider;
    QSignalSpy changed{&slider, &ValueSlider::ValueChanged};
    QSignalSpy released{&slider, &ValueSlider::Released};
};

TEST_F(ValueSliderTest, TheProgramSetsSilentlyAndReadsBackClamped) {
    const std::tuple<double, double> cases[] = {{1234.5, 1234.5}, {0, 75},  {4915200, 15000},
                                                {-INFINITY, 75},  {76, 76}, {NAN, 76}};
    for (const auto &[set, read] : cases) {
        slider.setProperty("value", set);
        EXPECT_EQ(slider.property("value").toDouble(), read);
    }
    slider.SetMaximum(50);
    EXPECT_EQ(slider.Value(), 50);
    EXPECT_EQ(slider.Minimum(), 50);
    slider.SetMinimum(INFINITY);
    EXPECT_EQ(slider.Minimum(), 50);
    EXPECT_EQ(Signals(), Counts(0, 0));
}

TEST_F(ValueSliderTest, TheLeftButtonMovesTheHandleUntilItsRelease) {
    for (const int height : {200, 300, 800}) {
        slider.resize(72, height);
        const QPoint grip = At(7000) + QPoint(5, 4);
        const struct {
            const char *drag;
            QPoint press;
            std::vector<QPoint> moves;
            double value;
            int changes;
            Qt::MouseButton button = Qt::LeftButton;
        } cases[] = {
            {"none", At(7000), {}, 7000, 0},
            {"none, off the middle", grip, {}, 7000, 0},
            {"off the middle", grip, {grip - QPoint(0, 10)}, 7000 + 10 * PixelWorth(), 1},
            {"up", At(7000), {At(8000), At(12000)}, 12000, 2},
            {"to the lower end", At(7000), {At(2500), At(75)}, 75, 2},
            {"beyond the upper end", grip, {QPoint(5, -500)}, 15000, 1},
            {"beyond the lower end", grip, {QPoint(5, 5000)}, 75, 1},
            {"from the track", At(14000), {}, 14000, 1},
            {"by another button", At(100), {}, 7000, 0, Qt::RightButton},
        };
        for (const auto &c : cases) {
            slider.SetValue(7000);
            const bool left = c.button == Qt::LeftButton;
            QTest::mousePress(&slider, c.button, {}, c.press);
            EXPECT_EQ(slider.IsDragged(), left) << c.drag;
            MoveAndRelease(slider, c.press, c.moves, c.button);
            EXPECT_FALSE(slider.IsDragged()) << c.drag;
            EXPECT_EQ(Signals(), Counts(c.changes, left)) << c.drag;
            EXPECT_NEAR(slider.Value(), c.value, c.value == 7000 ? 0 : PixelWorth()) << c.drag;
            EXPECT_EQ(slider.Value(), std::round(slider.Value())) << "a pixel is worth many units";
        }
    }
}

TEST_F(ValueSliderTest, ALostReleaseOrAHiddenWindowEndsTheDrag) {
    QTest::mousePress(&slider, Qt::LeftButton, {}, At(9000));
    SendMouse(slider, QEvent::MouseMove, At(3000), Qt::NoButton);
    EXPECT_NEAR(slider.Value(), 9000, PixelWorth());
    EXPECT_EQ(Signals(), Counts(1, 1));
    QTest::mousePress(&slider, Qt::LeftButton, {}, At(3000));
    slider.hide();
    EXPECT_FALSE(slider.IsDragged());
    EXPECT_EQ(Signals(), Counts(1, 0));
}

TEST_F(ValueSliderTest, KeysAndTheWheelStepAndStopAtTheEnds) {
    const struct {
        Qt::Key key; // none: the wheel
        double value;
        int changes;
        int angle = 0;
    } cases[] = {
        {Qt::Key_Up, 1100, 1},      {Qt::Key_Right, 1200, 1},  {Qt::Key_Down, 1100, 1},
        {Qt::Key_Left, 1000, 1},    {Qt::Key_PageUp, 2000, 1}, {Qt::Key_PageDown, 1000, 1},
        {Qt::Key_PageDown, 75, 1},  {Qt::Key_Down, 75, 0},     {Qt::Key_End, 15000, 1},
        {Qt::Key_PageUp, 15000, 0}, {Qt::Key_Home, 75, 1},     {Qt::Key_A, 75, 0},
        {{}, 275, 1, 240},          {{}, 275, 0, -60},         {{}, 175, 1, -60},
    };
    for (const auto &c : cases) {
        if (c.angle == 0) {
            QTest::keyClick(&slider, c.key);
        }
        TurnWheel(slider, {9, 99}, c.angle);
        EXPECT_EQ(slider.Value(), c.value) << c.key << c.angle;
        EXPECT_EQ(Signals(), Counts(c.changes, 0)) << c.key << c.angle;
    }
}

TEST_F(ValueSliderTest, AssistiveToolsReadAndSetTheValue) {
    auto *access = QAccessible::queryAccessibleInterface(&slider);
    EXPECT_EQ(access->role(), QAccessible::Slider);
    EXPECT_EQ(access->text(QAccessible::Name), "Fan1");
    EXPECT_EQ(access->text(QAccessible::Value), "1000");
    auto *value = access->valueInterface();
    EXPECT_EQ(value->minimumValue(), 75);
    EXPECT_EQ(value->maximumValue(), 15000);
    value->setCurrentValue(20000);
    EXPECT_EQ(value->currentValue(), 15000);
    EXPECT_EQ(Signals(), Counts(1, 0)) << "it is the user who sets it";
}

TEST(Scale, MarksAreRoundAndMeetTheEnds) {
    const std::tuple<double, double, std::vector<double>> cases[] = {
        {75, 15000, {75, 2500, 5000, 7500, 10000, 12500, 15000}},
        {0, 15000, {0, 2500, 5000, 7500, 10000, 12500, 15000}},
        {0, 100, {0, 20, 40, 60, 80, 100}},
        {-55, 127, {-55, -25, 0, 25, 50, 75, 100, 127}},
        {5, 5, {5}},
    };
    for (const auto &[from, to, numbered] : cases) {
        EXPECT_EQ(MarksFor(from, to).numbered, numbered) << from << " to " << to;
    }
    EXPECT_THAT(MarksFor(0, 20).small, testing::SizeIs(8 * 4));
}

} // namespace
} // namespace ztm::test
