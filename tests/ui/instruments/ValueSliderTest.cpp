#include "ui/instruments/ValueSlider.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <cmath>
#include <limits>

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
    std::pair<qsizetype, qsizetype> Signals() {
        const std::pair counts{changed.count(), released.count()};
        changed.clear();
        released.clear();
        return counts;
    }

    void TurnWheel(int angle) {
        QWheelEvent event(QPointF(9, 99), slider.mapToGlobal(QPointF(9, 99)), {}, {0, angle},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&slider, &event);
    }

    QImage Painted(double scale = 1) {
        QImage image((QSizeF(slider.size()) * scale).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        image.fill(slider.palette().color(QPalette::Window));
        slider.render(&image);
        return image;
    }

    ValueSlider slider;
    QSignalSpy changed{&slider, &ValueSlider::ValueChanged};
    QSignalSpy released{&slider, &ValueSlider::Released};
};

using Counts = std::pair<qsizetype, qsizetype>;

TEST_F(ValueSliderTest, TheProgramSetsSilentlyAndReadsBackClamped) {
    for (const auto &[set, read] : std::vector<std::pair<double, double>>{
             {1234.5, 1234.5}, {0, 75}, {4915200, 15000}, {-INFINITY, 75}, {76, 76}}) {
        slider.setProperty("value", set);
        EXPECT_EQ(slider.property("value").toDouble(), read);
    }
    slider.SetValue(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(slider.Value(), 76);
    slider.SetMaximum(50);
    EXPECT_EQ(slider.Value(), 50);
    EXPECT_EQ(slider.Minimum(), 50);
    slider.SetMinimum(INFINITY);
    EXPECT_EQ(slider.Minimum(), 50);
    EXPECT_EQ(Signals(), Counts(0, 0));
}

TEST_F(ValueSliderTest, ADragFollowsTheMouseAndEndsWithTheRelease) {
    for (const int height : {200, 300, 800}) {
        slider.resize(72, height);
        for (const double value : {8000.0, 75.0, 15000.0, 2500.0}) {
            QTest::mousePress(&slider, Qt::LeftButton, {}, At(slider.Value()));
            EXPECT_TRUE(slider.IsDragged());
            EXPECT_EQ(Signals(), Counts(0, 0)) << "a press on the handle is no move";
            QTest::mouseMove(&slider, At((slider.Value() + value) / 2));
            QTest::mouseMove(&slider, At(value));
            EXPECT_EQ(Signals(), Counts(2, 0));
            QTest::mouseRelease(&slider, Qt::LeftButton, {}, At(value));
            EXPECT_NEAR(slider.Value(), value, PixelWorth());
            EXPECT_EQ(slider.Value(), std::round(slider.Value())) << "a pixel is worth many units";
            EXPECT_EQ(Signals(), Counts(0, 1));
            EXPECT_FALSE(slider.IsDragged());
        }
    }
}

TEST_F(ValueSliderTest, AHandleTakenOffItsMiddleDoesNotJumpAndStopsAtTheEnds) {
    slider.SetValue(7000);
    const QPoint grip = At(7000) + QPoint(5, 4);
    QTest::mousePress(&slider, Qt::LeftButton, {}, grip);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, grip);
    EXPECT_EQ(slider.Value(), 7000);
    EXPECT_EQ(Signals(), Counts(0, 1));
    QTest::mousePress(&slider, Qt::LeftButton, {}, grip);
    QTest::mouseMove(&slider, grip - QPoint(0, 10));
    EXPECT_NEAR(slider.Value(), 7000 + 10 * PixelWorth(), PixelWorth());
    QTest::mouseMove(&slider, QPoint(5, -500));
    EXPECT_EQ(slider.Value(), 15000);
    QTest::mouseMove(&slider, QPoint(5, 5000));
    EXPECT_EQ(slider.Value(), 75);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, QPoint(5, 5000));
}

TEST_F(ValueSliderTest, AClickOnTheTrackGoesThere) {
    for (const double value : {12000.0, 100.0, 6000.0}) {
        QTest::mouseClick(&slider, Qt::LeftButton, {}, At(value));
        EXPECT_NEAR(slider.Value(), value, PixelWorth());
        EXPECT_EQ(Signals(), Counts(1, 1));
    }
    const double before = slider.Value();
    QTest::mouseClick(&slider, Qt::RightButton, {}, At(200));
    EXPECT_EQ(slider.Value(), before);
    EXPECT_EQ(Signals(), Counts(0, 0));
}

TEST_F(ValueSliderTest, ALostReleaseOrAHiddenWindowEndsTheDrag) {
    QTest::mousePress(&slider, Qt::LeftButton, {}, At(9000));
    QMouseEvent move(QEvent::MouseMove, At(3000), slider.mapToGlobal(QPointF(At(3000))),
                     Qt::NoButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&slider, &move);
    EXPECT_NEAR(slider.Value(), 9000, PixelWorth());
    EXPECT_EQ(Signals(), Counts(1, 1));
    QTest::mousePress(&slider, Qt::LeftButton, {}, At(3000));
    slider.hide();
    EXPECT_FALSE(slider.IsDragged());
    EXPECT_EQ(Signals(), Counts(1, 0));
}

TEST_F(ValueSliderTest, KeysAndTheWheelStepAndStopAtTheEnds) {
    const struct {
        Qt::Key key;
        double value;
        int changes;
    } cases[] = {
        {Qt::Key_Up, 1100, 1},      {Qt::Key_Right, 1200, 1},  {Qt::Key_Down, 1100, 1},
        {Qt::Key_Left, 1000, 1},    {Qt::Key_PageUp, 2000, 1}, {Qt::Key_PageDown, 1000, 1},
        {Qt::Key_PageDown, 75, 1},  {Qt::Key_Down, 75, 0},     {Qt::Key_End, 15000, 1},
        {Qt::Key_PageUp, 15000, 0}, {Qt::Key_Home, 75, 1},     {Qt::Key_A, 75, 0},
    };
    for (const auto &c : cases) {
        QTest::keyClick(&slider, c.key);
        EXPECT_EQ(slider.Value(), c.value) << c.key;
        EXPECT_EQ(Signals(), Counts(c.changes, 0)) << c.key;
    }
    TurnWheel(240);
    EXPECT_EQ(slider.Value(), 275);
    TurnWheel(-60);
    EXPECT_EQ(slider.Value(), 275) << "half a notch";
    TurnWheel(-60);
    EXPECT_EQ(slider.Value(), 175);
    EXPECT_EQ(Signals(), Counts(2, 0));
}

TEST_F(ValueSliderTest, AssistiveToolsReadAndSetTheValue) {
    auto *access = QAccessible::queryAccessibleInterface(&slider);
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->role(), QAccessible::Slider);
    EXPECT_EQ(access->text(QAccessible::Name), "Fan1");
    EXPECT_EQ(access->text(QAccessible::Value), "1000");
    auto *value = access->valueInterface();
    ASSERT_NE(value, nullptr);
    EXPECT_EQ(value->minimumValue(), 75);
    EXPECT_EQ(value->maximumValue(), 15000);
    value->setCurrentValue(20000);
    EXPECT_EQ(value->currentValue(), 15000);
    EXPECT_EQ(Signals(), Counts(1, 0)) << "it is the user who sets it";
}

TEST_F(ValueSliderTest, ShowsHandleAndFocusAtEveryScaleAndPalette) {
    const QPalette usual = slider.palette();
    for (const QPalette &palette : {usual, QPalette(QColor(49, 54, 59), QColor(35, 38, 41))}) {
        slider.setPalette(palette);
        for (const double scale : {1.0, 1.5, 2.0}) {
            slider.setFocus();
            const QImage low = Painted(scale);
            slider.SetValue(14000);
            const QImage high = Painted(scale);
            const QPoint handle = (slider.HandlePosition(14000) * scale).toPoint();
            EXPECT_NE(low.pixelColor(handle), high.pixelColor(handle));
            slider.clearFocus();
            EXPECT_NE(high, Painted(scale)) << "the focus is seen";
            slider.SetValue(1000);
        }
    }
}

TEST(Scale, MarksAreRoundAndMeetTheEnds) {
    const struct {
        double from, to;
        std::vector<double> numbered;
    } cases[] = {
        {75, 15000, {75, 2500, 5000, 7500, 10000, 12500, 15000}},
        {0, 15000, {0, 2500, 5000, 7500, 10000, 12500, 15000}},
        {0, 100, {0, 20, 40, 60, 80, 100}},
        {-55, 127, {-55, -25, 0, 25, 50, 75, 100, 127}},
        {5, 5, {5}},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(MarksFor(c.from, c.to).numbered, c.numbered) << c.from << " to " << c.to;
    }
    EXPECT_THAT(MarksFor(0, 20).small, testing::SizeIs(8 * 4));
}

} // namespace
} // namespace ztm::test
