#include "support/Instrument.h"
#include "support/WindowDriver.h"
#include "ui/instruments/BitLabel.h"
#include "ui/instruments/Gauge.h"
#include "ui/instruments/ToggleIndicator.h"
#include "ui/instruments/ValueSlider.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QHBoxLayout>
#include <QSignalSpy>

#include <cmath>
#include <numbers>

namespace ztm::test {
namespace {

void ShowWithFocus(QWidget &window, QSize size) {
    window.resize(size);
    window.show();
    window.activateWindow();
    window.setFocus();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    Settle();
}

using Counts = std::pair<qsizetype, qsizetype>;

/// Tells how often two signals came since it was asked the last time.
class SignalCounter {
public:
    template <class Instrument, class First, class Second>
    SignalCounter(Instrument *instrument, First one, Second other)
        : first(instrument, one), second(instrument, other) {}

    Counts operator()() {
        const Counts counts{first.count(), second.count()};
        first.clear();
        second.clear();
        return counts;
    }

private:
    QSignalSpy first;
    QSignalSpy second;
};

constexpr int lowNumber = lowPointerNumber;
constexpr int highNumber = highPointerNumber;
constexpr double aPixel = 0.6; // is worth at most that

class GaugeTest : public testing::Test {
protected:
    GaugeTest() {
        gauge.SetMinimum(-55);
        gauge.SetMaximum(127);
        gauge.SetLowPointer(0);
        gauge.SetHighPointer(21);
        ShowWithFocus(gauge, {250, 250});
    }

    /// The low and the high pointer.
    std::pair<double, double> Pointers() const { return {gauge.LowPointer(), gauge.HighPointer()}; }

    QPoint Low(double value) const { return gauge.PointerPosition(lowNumber, value).toPoint(); }
    QPoint High(double value) const { return gauge.PointerPosition(highNumber, value).toPoint(); }

    /// The colour that is painted in the direction of a value, at a share of the radius.
    QColor ColourAt(double value, double share) {
        const double fraction = (value - gauge.Minimum()) / (gauge.Maximum() - gauge.Minimum());
        const double angle = (0.75 + 1.5 * fraction) * std::numbers::pi;
        const double radius = share * gauge.width() / 2;
        const QPointF point =
            gauge.rect().toRectF().center() + radius * QPointF(std::cos(angle), std::sin(angle));
        return PaintedAnew(gauge).pixelColor((point * gauge.devicePixelRatioF()).toPoint());
    }

    bool IsGreen(double value, double share) {
        const QColor colour = ColourAt(value, share);
        return colour.green() > colour.red() + 50 && colour.green() > colour.blue() + 50;
    }

    Gauge gauge;
    SignalCounter newSignals{&gauge, &Gauge::PointerMoving, &Gauge::PointerChanged};
};

TEST_F(GaugeTest, TheProgramSetsSilentlyAndReadsBackClamped) {
    const std::tuple<double, double> cases[] = {{80.5, 80.5},    {-64, -55}, {191, 127},
                                                {INFINITY, 127}, {12, 12},   {NAN, 12}};
    for (const char *name : {"needle", "lowPointer", "highPointer"}) {
        for (const auto &[set, read] : cases) {
            gauge.setProperty(name, set);
            EXPECT_EQ(gauge.property(name).toDouble(), read) << name;
        }
    }
    gauge.SetMaximum(10);
    EXPECT_EQ(gauge.Needle(), 10);
    EXPECT_EQ(Pointers(), std::pair(10.0, 10.0));
    gauge.SetMinimum(20);
    EXPECT_EQ(gauge.Maximum(), 20);
    EXPECT_EQ(newSignals(), Counts(0, 0));
}

TEST_F(GaugeTest, TheLeftButtonDragsAHandleAndSaysOnceThatItIsDone) {
    for (const int side : {160, 250, 500}) {
        gauge.resize(side, side + 40);
        const auto below = [side](int aside) { return QPoint(side / 2 + aside, side + 38); };
        const QPoint grip = High(21) + QPoint(4, 3);
        const struct {
            const char *drag;
            QPoint press;
            std::vector<QPoint> moves;
            double low, high;
            bool taken = true;
            bool lowShown = true;
            double lowBefore = 0;
            Qt::MouseButton button = Qt::LeftButton;
        } cases[] = {
            {"low", Low(0), {Low(-20), Low(-55)}, -55, 21},
            {"to a fraction", Low(0), {Low(80.5)}, 80.5, 21},
            {"past the other", Low(0), {Low(50), Low(126)}, 126, 21},
            {"apart", Low(21), {Low(0), Low(-20)}, -20, 21, true, true, 21},
            {"high", High(21), {High(100), High(127)}, 0, 127},
            {"past the low", High(21), {High(0), High(-30)}, 0, -30},
            {"over the upper end", High(21), {High(127), below(-30)}, 0, 127},
            {"over the lower end", Low(0), {Low(-55), below(30)}, -55, 21},
            {"none", High(21), {}, 0, 21},
            {"none, off the middle", grip, {}, 0, 21},
            {"of a pixel", grip, {grip + QPoint(1, 0)}, 0, 21.3},
            {"of nothing", gauge.rect().center(), {Low(0), Low(-40)}, 0, 21, false},
            {"of a hidden handle", Low(0), {Low(-40)}, 0, 21, false, false},
            {"beside a hidden handle", High(21), {High(-40)}, 0, -40, true, false},
            {"by another button", Low(0), {Low(-40)}, 0, 21, false, true, 0, Qt::RightButton},
        };
        for (const auto &c : cases) {
            gauge.SetLowPointerVisible(c.lowShown);
            gauge.SetLowPointer(c.lowBefore);
            gauge.SetHighPointer(21);
            QTest::mousePress(&gauge, c.button, {}, c.press);
            EXPECT_EQ(gauge.cursor().shape() == Qt::ClosedHandCursor, c.taken) << c.drag;
            MoveAndRelease(gauge, c.press, c.moves, c.button);
            EXPECT_NEAR(gauge.LowPointer(), c.low, c.low == c.lowBefore ? 0 : aPixel);
            EXPECT_NEAR(gauge.HighPointer(), c.high, c.high == 21 ? 0 : aPixel);
            const auto [moves, changes] = newSignals();
            const bool moved = c.low != c.lowBefore || c.high != 21;
            EXPECT_EQ(moves > 0, moved) << c.drag << side;
            EXPECT_EQ(changes, moved) << c.drag << side;
        }
    }
}

TEST_F(GaugeTest, ADragGivesTheExactValueUnderAnExactMouse) {
    const auto high = [this](double value) { return gauge.PointerPosition(highNumber, value); };
    SendMouse(gauge, QEvent::MouseButtonPress, high(21), Qt::LeftButton);
    for (int quarter = 4; quarter < 4 * 127; ++quarter) {
        SendMouse(gauge, QEvent::MouseMove, high(quarter / 4.0), Qt::LeftButton);
        EXPECT_EQ(gauge.HighPointer(), quarter / 4.0);
    }
    SendMouse(gauge, QEvent::MouseMove, high(50), Qt::NoButton);
    EXPECT_EQ(newSignals().second, 1) << "a release that went elsewhere";
    EXPECT_EQ(gauge.HighPointer(), 126.75);
}

TEST_F(GaugeTest, TheKeysMoveTheSelectedPointer) {
    const struct {
        const char *key;
        double low, high;
    } cases[] = {
        {"Up", 1, 21},      {"Shift+Right", 11, 21}, {"Down", 10, 21}, {"Shift+Left", 0, 21},
        {"Space", 0, 21},   {"Up", 0, 22},           {"Space", 0, 22}, {"Up", 1, 22},
        {"H", 1, 22},       {"Right", 1, 23},        {"L", 1, 23},     {"Left", 0, 23},
        {"Ctrl+Up", 0, 23},
    };
    for (const auto &c : cases) {
        const std::pair expected(c.low, c.high);
        const bool moves = Pointers() != expected;
        const QKeyCombination key = QKeySequence(c.key)[0];
        QTest::keyClick(&gauge, key.key(), key.keyboardModifiers());
        EXPECT_EQ(Pointers(), expected) << c.key;
        EXPECT_EQ(newSignals(), Counts(moves, moves)) << c.key;
    }
}

TEST_F(GaugeTest, AHeldKeyIsOneChange) {
    const auto after = [this](QEvent::Type type, bool repeated = false) {
        QKeyEvent event(type, Qt::Key_Up, Qt::NoModifier, QString(), repeated);
        QApplication::sendEvent(&gauge, &event);
        return newSignals();
    };
    EXPECT_EQ(after(QEvent::KeyPress), Counts(1, 0));
    EXPECT_EQ(after(QEvent::KeyRelease, true), Counts(0, 0));
    EXPECT_EQ(after(QEvent::KeyPress, true), Counts(1, 0));
    EXPECT_EQ(after(QEvent::KeyRelease), Counts(0, 1));
    EXPECT_EQ(after(QEvent::KeyPress), Counts(1, 0));
    gauge.clearFocus();
    EXPECT_EQ(newSignals(), Counts(0, 1)) << "who leaves with the key down has finished as well";
    EXPECT_EQ(after(QEvent::KeyRelease), Counts(0, 0));
}

TEST_F(GaugeTest, PaintsBandsAndNeedle) {
    constexpr double ring = 0.72;
    constexpr double thinLine = 0.666;
    gauge.SetNeedle(90);
    gauge.SetBand0Start(0);
    gauge.SetBand0End(20);
    gauge.SetBand1Start(60);
    gauge.SetBand1End(80);
    for (const double value : {-30.0, -3.0, 2.0, 18.0, 23.0, 57.0, 62.0, 78.0, 83.0}) {
        EXPECT_EQ(IsGreen(value, ring), value > 0 && value < 20) << value;
        EXPECT_EQ(IsGreen(value, thinLine), value > 60 && value < 80) << value;
    }
    gauge.SetBand0End(-10);
    EXPECT_FALSE(IsGreen(2, ring));

    const QColor ink = gauge.palette().color(QPalette::WindowText);
    for (const double needle : {90.0, -20.0}) {
        gauge.SetNeedle(needle);
        EXPECT_EQ(ColourAt(90, 0.3) == ink, needle == 90);
        EXPECT_EQ(ColourAt(-20, 0.3) == ink, needle == -20);
    }
}

class ValueSliderTest : public testing::Test {
protected:
    ValueSliderTest() {
        slider.SetMinimum(75);
        slider.SetMaximum(15000);
        slider.SetSteps(100, 1000);
        slider.SetCaption("Fan1");
        slider.SetValue(1000);
        ShowWithFocus(slider, {72, 300});
    }

    QPoint At(double value) const { return slider.HandlePosition(value).toPoint(); }

    /// What a pixel is worth.
    double PixelWorth() const {
        const double pixels = slider.HandlePosition(75).y() - slider.HandlePosition(15000).y();
        return (15000 - 75) / pixels;
    }

    ValueSlider slider;
    SignalCounter newSignals{&slider, &ValueSlider::ValueChanged, &ValueSlider::Released};
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
    EXPECT_EQ(newSignals(), Counts(0, 0));
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
            EXPECT_EQ(newSignals(), Counts(c.changes, left)) << c.drag;
            EXPECT_NEAR(slider.Value(), c.value, c.value == 7000 ? 0 : PixelWorth()) << c.drag;
            EXPECT_EQ(slider.Value(), std::round(slider.Value())) << "a pixel is worth many units";
        }
    }
}

TEST_F(ValueSliderTest, ALostReleaseOrADisabledOrHiddenSliderEndsTheDrag) {
    QTest::mousePress(&slider, Qt::LeftButton, {}, At(9000));
    SendMouse(slider, QEvent::MouseMove, At(3000), Qt::NoButton);
    EXPECT_NEAR(slider.Value(), 9000, PixelWorth());
    EXPECT_EQ(newSignals(), Counts(1, 1));
    QTest::mousePress(&slider, Qt::LeftButton, {}, At(3000));
    slider.setPalette(Qt::white);
    EXPECT_TRUE(slider.IsDragged());
    slider.setEnabled(false);
    EXPECT_FALSE(slider.IsDragged());
    slider.setEnabled(true);
    QTest::mousePress(&slider, Qt::LeftButton, {}, At(slider.Value()));
    slider.hide();
    EXPECT_FALSE(slider.IsDragged());
    EXPECT_EQ(newSignals(), Counts(1, 0));
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
        {{}, 175, 1, 180},          {{}, 275, 1, 60},          {{}, 275, 0, -60},
        {{}, 175, 1, -60},
    };
    for (const auto &c : cases) {
        if (c.angle == 0) {
            QTest::keyClick(&slider, c.key);
        }
        TurnWheel(slider, {9, 99}, c.angle);
        EXPECT_EQ(slider.Value(), c.value) << c.key << c.angle;
        EXPECT_EQ(newSignals(), Counts(c.changes, 0)) << c.key << c.angle;
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
    EXPECT_EQ(newSignals(), Counts(1, 0)) << "it is the user who sets it";
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

TEST(RepaintTest, PaintsOnlyWhatChangesAndAtOnce) {
    QWidget window;
    auto *layout = new QHBoxLayout(&window);
    const auto add = [layout](QWidget *widget) {
        layout->addWidget(widget);
        return widget;
    };
    auto *gauge = add(new Gauge);
    auto *indicator = add(new ToggleIndicator);
    auto *slider = add(new ValueSlider);
    auto *bit = add(new BitLabel);
    ShowWithFocus(window, {600, 300});
    gauge->setFocus();
    Settle();
    const auto expectSeen = [&](const QImage &before, bool changes, const QVariant &what) {
        EXPECT_EQ(OnScreen(window) != before, changes) << what.toString().toStdString();
        EXPECT_EQ(OnScreen(window), PaintedAnew(window)) << what.toString().toStdString();
    };
    const std::tuple<QWidget *, const char *, QVariant> cases[] = {
        {gauge, "needle", 30},     {gauge, "lowPointer", 40},  {gauge, "highPointer", 60},
        {gauge, "band0End", 50},   {gauge, "band0Start", 10},  {gauge, "band1End", 60},
        {gauge, "band1Start", 20}, {gauge, "caption", "60%"},  {gauge, "minimum", -20},
        {gauge, "maximum", 90},    {indicator, "alarm", true}, {indicator, "alarm", 0},
        {slider, "value", 50},     {bit, "text", "1"},
    };
    for (const auto &[widget, property, value] : cases) {
        for (const bool changes : {true, false}) {
            const QImage before = OnScreen(window);
            PaintCounter counter(*widget);
            widget->setProperty(property, value);
            Settle();
            EXPECT_EQ(counter.paints, changes) << property;
            expectSeen(before, changes, property);
        }
    }
    window.setPalette(QPalette(QColor(49, 54, 59)));
    Settle();
    for (const auto key : {Qt::Key_H, Qt::Key_Space, Qt::Key_Up}) {
        const QImage before = OnScreen(window);
        QTest::keyClick(gauge, key);
        Settle();
        expectSeen(before, true, key);
    }
    QTest::keyClick(gauge, Qt::Key_Tab); // the keyboard is in use
    for (QWidget *widget : {gauge, slider, bit}) {
        widget->setFocus();
        Settle();
        const QImage focused = OnScreen(window);
        widget->clearFocus();
        Settle();
        expectSeen(focused, true, widget->metaObject()->className());
    }
}

} // namespace
} // namespace ztm::test
