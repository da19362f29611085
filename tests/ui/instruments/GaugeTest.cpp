#include "ui/instruments/Gauge.h"
#include "support/Instrument.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

#include <cmath>
#include <numbers>

namespace ztm::test {
namespace {

constexpr int lowNumber = Gauge::lowPointerNumber;
constexpr int highNumber = Gauge::highPointerNumber;
constexpr double aPixel = 0.6; // is worth at most that

class GaugeTest : public testing::Test {
protected:
    GaugeTest() {
        gauge.SetMinimum(-55);
        gauge.SetMaximum(127);
        gauge.SetLowPointer(0);
        gauge.SetHighPointer(21);
        gauge.resize(250, 250);
        gauge.show();
        gauge.activateWindow();
        gauge.setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&gauge));
    }

    /// The low and the high pointer.
    std::pair<double, double> Pointers() const { return {gauge.LowPointer(), gauge.HighPointer()}; }

    /// How often PointerMoving and PointerChanged came since the last time.
    Counts Signals() {
        const Counts counts{moving.count(), changed.count()};
        moving.clear();
        changed.clear();
        return counts;
    }

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
    QSignalSpy moving{&gauge, &Gauge::PointerMoving};
    QSignalSpy changed{&gauge, &Gauge::PointerChanged};
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
    EXPECT_EQ(Signals(), Counts(0, 0));
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
            const auto [moves, changes] = Signals();
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
    EXPECT_EQ(Signals().second, 1) << "a release that went elsewhere";
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
        EXPECT_EQ(Signals(), Counts(moves, moves)) << c.key;
    }
}

TEST_F(GaugeTest, AHeldKeyIsOneChange) {
    const auto after = [this](QEvent::Type type, bool repeated = false) {
        QKeyEvent event(type, Qt::Key_Up, Qt::NoModifier, QString(), repeated);
        QApplication::sendEvent(&gauge, &event);
        return Signals();
    };
    EXPECT_EQ(after(QEvent::KeyPress), Counts(1, 0));
    EXPECT_EQ(after(QEvent::KeyRelease, true), Counts(0, 0));
    EXPECT_EQ(after(QEvent::KeyPress, true), Counts(1, 0));
    EXPECT_EQ(after(QEvent::KeyRelease), Counts(0, 1));
    EXPECT_EQ(after(QEvent::KeyPress), Counts(1, 0));
    gauge.clearFocus();
    EXPECT_EQ(Signals(), Counts(0, 1)) << "who leaves with the key down has finished as well";
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

} // namespace
} // namespace ztm::test
