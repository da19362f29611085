#include "ui/instruments/Gauge.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QImage>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QTest>

#include <cmath>
#include <limits>
#include <numbers>

namespace ztm::test {
namespace {

using testing::DoubleNear;

constexpr int side = 250;
constexpr int lowNumber = lowPointerNumber;
constexpr int highNumber = highPointerNumber;

class GaugeTest : public testing::Test {
protected:
    GaugeTest() {
        gauge.SetMinimum(-55);
        gauge.SetMaximum(127);
        gauge.SetLowPointer(0);
        gauge.SetHighPointer(21);
        gauge.resize(side, side);
        gauge.show();
        gauge.activateWindow();
        gauge.setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&gauge));
    }

    /// The low and the high pointer.
    std::pair<double, double> Pointers() const { return {gauge.LowPointer(), gauge.HighPointer()}; }

    /// How often PointerMoving and PointerChanged came since the last time.
    std::pair<qsizetype, qsizetype> Signals() {
        const std::pair counts{moving.count(), changed.count()};
        moving.clear();
        changed.clear();
        return counts;
    }

    QPoint Handle(int pointer, double value) const {
        return gauge.PointerPosition(pointer, value).toPoint();
    }

    void Press(const QPoint &at) { QTest::mousePress(&gauge, Qt::LeftButton, {}, at); }

    void Release(const QPoint &at) { QTest::mouseRelease(&gauge, Qt::LeftButton, {}, at); }

    void Drag(int pointer, double from, double to) {
        Press(Handle(pointer, from));
        QTest::mouseMove(&gauge, Handle(pointer, (from + to) / 2));
        QTest::mouseMove(&gauge, Handle(pointer, to));
        Release(Handle(pointer, to));
    }

    /// What a pixel along the handles' way is worth.
    double PixelWorth() const {
        const QPointF away = gauge.PointerPosition(highNumber, 0) - gauge.rect().toRectF().center();
        const double radius = std::hypot(away.x(), away.y());
        return (gauge.Maximum() - gauge.Minimum()) / (radius * 1.5 * std::numbers::pi);
    }

    /// The colour that is painted in the direction of a value, at a share of the radius.
    QColor ColourAt(double value, double share, double scale) {
        QImage image((QSizeF(gauge.size()) * scale).toSize(), QImage::Format_RGB32);
        image.setDevicePixelRatio(scale);
        gauge.render(&image);
        const double fraction = (value - gauge.Minimum()) / (gauge.Maximum() - gauge.Minimum());
        const double angle = (0.75 + 1.5 * fraction) * std::numbers::pi;
        const double radius = share * side / 2;
        const QPointF point(side / 2.0 + radius * std::cos(angle),
                            side / 2.0 + radius * std::sin(angle));
        return image.pixelColor(static_cast<int>(point.x() * scale),
                                static_cast<int>(point.y() * scale));
    }

    Gauge gauge;
    QSignalSpy moving{&gauge, &Gauge::PointerMoving};
    QSignalSpy changed{&gauge, &Gauge::PointerChanged};
};

bool IsGreen(const QColor &colour) {
    return colour.green() > colour.red() + 50 && colour.green() > colour.blue() + 50;
}

TEST_F(GaugeTest, TheProgramSetsSilentlyAndReadsBackClamped) {
    for (const char *name : {"needle", "lowPointer", "highPointer"}) {
        for (const auto &[set, read] : std::vector<std::pair<double, double>>{
                 {80.5, 80.5}, {-64, -55}, {191, 127}, {INFINITY, 127}, {-55, -55}, {12, 12}}) {
            gauge.setProperty(name, set);
            EXPECT_EQ(gauge.property(name).toDouble(), read) << name;
        }
        gauge.setProperty(name, std::numeric_limits<double>::quiet_NaN());
        EXPECT_EQ(gauge.property(name).toDouble(), 12) << name;
    }
    gauge.SetMaximum(10);
    EXPECT_EQ(gauge.Needle(), 10);
    EXPECT_EQ(Pointers(), std::pair(10.0, 10.0));
    gauge.SetMinimum(20);
    EXPECT_EQ(gauge.Maximum(), 20);
    EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(0, 0)));
}

TEST_F(GaugeTest, ADragMovesThePointerAndSaysOnceThatItIsDone) {
    for (const int size : {160, side, 500}) {
        gauge.resize(size, size + 40);
        gauge.SetLowPointer(0);
        gauge.SetHighPointer(127);
        for (const double value : {-55.0, 20.0, 80.5, 126.0, -30.0}) {
            Drag(lowNumber, gauge.LowPointer(), value);
            EXPECT_THAT(gauge.LowPointer(), DoubleNear(value, PixelWorth())) << size;
            const auto [moves, changes] = Signals();
            EXPECT_GT(moves, 0);
            EXPECT_EQ(changes, 1);
        }
        gauge.SetLowPointer(-55);
        for (const double value : {100.0, 0.0, -55.0, 127.0}) {
            Drag(highNumber, gauge.HighPointer(), value);
            EXPECT_THAT(gauge.HighPointer(), DoubleNear(value, PixelWorth())) << size;
            EXPECT_EQ(Signals().second, 1);
        }
    }
}

TEST_F(GaugeTest, ADragGivesTheExactValueUnderAnExactMouse) {
    const auto send = [this](QEvent::Type type, const QPointF &at) {
        QMouseEvent event(type, at, gauge.mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(&gauge, &event);
    };
    send(QEvent::MouseButtonPress, gauge.PointerPosition(highNumber, 21));
    for (int quarter = 4; quarter < 4 * 127; ++quarter) {
        send(QEvent::MouseMove, gauge.PointerPosition(highNumber, quarter / 4.0));
        EXPECT_EQ(gauge.HighPointer(), quarter / 4.0);
    }
    send(QEvent::MouseButtonRelease, gauge.PointerPosition(highNumber, 80.5));
}

TEST_F(GaugeTest, AHandleTakenAtItsEdgeDoesNotJump) {
    const QPoint aside(4, 3);
    for (const int value : {20, 21, 22, 23}) {
        gauge.SetHighPointer(value);
        Press(Handle(highNumber, value));
        Release(Handle(highNumber, value));
        EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(0, 0)));
    }
    gauge.SetHighPointer(21);
    Press(Handle(highNumber, 21) + aside);
    Release(Handle(highNumber, 21) + aside);
    EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(0, 0)));
    Press(Handle(highNumber, 21) + aside);
    QTest::mouseMove(&gauge, Handle(highNumber, 21) + aside + QPoint(1, 0));
    EXPECT_NE(gauge.HighPointer(), 21);
    EXPECT_THAT(gauge.HighPointer(), DoubleNear(21, 2 * PixelWorth()));
    Release(Handle(highNumber, 21) + aside);
}

TEST_F(GaugeTest, OnlyTheScaleBoundsThePointers) {
    Drag(lowNumber, 0, 100);
    EXPECT_THAT(gauge.LowPointer(), DoubleNear(100, PixelWorth()));
    EXPECT_EQ(gauge.HighPointer(), 21);
    // Where they meet, each can still be taken.
    gauge.SetLowPointer(21);
    Drag(lowNumber, 21, -20);
    EXPECT_THAT(gauge.LowPointer(), DoubleNear(-20, PixelWorth()));
    EXPECT_EQ(gauge.HighPointer(), 21);
}

TEST_F(GaugeTest, BelowTheScaleAPointerStaysAtItsEnd) {
    Press(Handle(highNumber, 21));
    QTest::mouseMove(&gauge, Handle(highNumber, 127));
    QTest::mouseMove(&gauge, QPoint(side / 2 - 30, side - 2));
    EXPECT_EQ(gauge.HighPointer(), 127);
    Release(QPoint(side / 2 - 30, side - 2));
}

TEST_F(GaugeTest, OnlyTheLeftButtonOnAHandleMovesAnything) {
    const QPoint handle = Handle(lowNumber, 0);
    QTest::mousePress(&gauge, Qt::RightButton, {}, handle);
    EXPECT_NE(gauge.cursor().shape(), Qt::ClosedHandCursor);
    QTest::mouseMove(&gauge, Handle(lowNumber, -40));
    QTest::mouseRelease(&gauge, Qt::RightButton, {}, Handle(lowNumber, -40));
    Press(gauge.rect().center());
    QTest::mouseMove(&gauge, handle);
    Release(Handle(lowNumber, -40));
    gauge.SetLowPointerVisible(false);
    Drag(lowNumber, 0, -40);
    EXPECT_EQ(Pointers(), std::pair(0.0, 21.0));
    EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(0, 0)));
    // A hidden pointer does not stop the other.
    Drag(highNumber, 21, -40);
    EXPECT_THAT(gauge.HighPointer(), DoubleNear(-40, PixelWorth()));
}

TEST_F(GaugeTest, EscapePutsBackADraggedPointer) {
    Press(Handle(lowNumber, 0));
    QTest::mouseMove(&gauge, Handle(lowNumber, -40));
    EXPECT_EQ(gauge.cursor().shape(), Qt::ClosedHandCursor);
    Signals();
    QTest::keyClick(&gauge, Qt::Key_Escape);
    QTest::mouseMove(&gauge, Handle(lowNumber, -50));
    Release(Handle(lowNumber, -50));
    EXPECT_EQ(gauge.LowPointer(), 0);
    EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(1, 0)));
}

TEST_F(GaugeTest, TheKeysMoveTheSelectedPointer) {
    struct Case {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        std::pair<double, double> pointers;
    };
    for (const auto &[key, modifiers, pointers] :
         {Case{Qt::Key_Up, {}, {1, 21}}, Case{Qt::Key_Right, Qt::ShiftModifier, {11, 21}},
          Case{Qt::Key_Down, {}, {10, 21}}, Case{Qt::Key_Left, Qt::ShiftModifier, {0, 21}},
          Case{Qt::Key_Space, {}, {0, 21}}, Case{Qt::Key_Up, {}, {0, 22}},
          Case{Qt::Key_L, {}, {0, 22}}, Case{Qt::Key_Left, {}, {-1, 22}},
          Case{Qt::Key_H, {}, {-1, 22}}, Case{Qt::Key_Right, {}, {-1, 23}},
          Case{Qt::Key_Up, Qt::ControlModifier, {-1, 23}}}) {
        const bool moves = Pointers() != pointers;
        QTest::keyClick(&gauge, key, modifiers);
        EXPECT_EQ(Pointers(), pointers) << key;
        EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(moves, moves))) << key;
    }
}

TEST_F(GaugeTest, AHeldKeyIsOneChange) {
    const auto send = [this](QEvent::Type type, bool repeated) {
        QKeyEvent event(type, Qt::Key_Up, Qt::NoModifier, QString(), repeated);
        QApplication::sendEvent(&gauge, &event);
    };
    send(QEvent::KeyPress, false);
    for (int repeat = 0; repeat < 3; ++repeat) {
        send(QEvent::KeyRelease, true);
        send(QEvent::KeyPress, true);
    }
    EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(4, 0)));
    send(QEvent::KeyRelease, false);
    EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(0, 1)));
    EXPECT_EQ(gauge.LowPointer(), 4);

    // Whoever leaves with the key down has finished as well, and only once.
    send(QEvent::KeyPress, false);
    gauge.clearFocus();
    EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(1, 1)));
    send(QEvent::KeyRelease, false);
    EXPECT_EQ(Signals(), (std::pair<qsizetype, qsizetype>(0, 0)));
}

TEST_F(GaugeTest, PaintsBandsAndNeedleAtEveryScale) {
    constexpr double ring = 0.72;
    constexpr double thinLine = 0.666;
    for (const double scale : {1.0, 2.0}) {
        gauge.SetNeedle(90);
        gauge.SetBand0Start(0);
        gauge.SetBand0End(20);
        gauge.SetBand1Start(60);
        gauge.SetBand1End(80);
        for (const double value : {-30.0, -3.0, 2.0, 18.0, 23.0, 57.0, 62.0, 78.0, 83.0}) {
            EXPECT_EQ(IsGreen(ColourAt(value, ring, scale)), value > 0 && value < 20) << value;
            EXPECT_EQ(IsGreen(ColourAt(value, thinLine, scale)), value > 60 && value < 80) << value;
        }
        gauge.SetBand0End(-10);
        EXPECT_FALSE(IsGreen(ColourAt(2, ring, scale)));

        const QColor ink = gauge.palette().color(QPalette::WindowText);
        EXPECT_EQ(ColourAt(90, 0.3, scale), ink);
        gauge.SetNeedle(-20);
        EXPECT_NE(ColourAt(90, 0.3, scale), ink);
        EXPECT_EQ(ColourAt(-20, 0.3, scale), ink);
    }
}

} // namespace
} // namespace ztm::test
