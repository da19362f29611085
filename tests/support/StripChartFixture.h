#pragma once

#include "ui/instruments/StripChart.h"

#include <qcustomplot.h>

#include <QTest>

#include <gmock/gmock.h>

namespace ztm::test {

inline constexpr double interval = 0.030;
inline constexpr double noon = 12 * 3600;
inline constexpr QColor temperatureColour(200, 0, 0);
inline constexpr QColor fanColour(0, 0, 200);

/// A strip chart of a temperature on the left and a fan on the right axis, in a window.
class StripChartTest : public testing::Test {
protected:
    StripChartTest() : chart(history, TwoTraces()) {
        chart.resize(700, 400);
        chart.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&chart));
        QObject::connect(Plot(), &QCustomPlot::afterReplot, &chart, [this] { ++replots; });
        Settle();
    }

    static StripChartSetup TwoTraces() {
        using Label = StripChartSetup::Label;
        StripChartSetup setup;
        setup.traces = {{0, "Local", temperatureColour, false, "°C", 1, 1},
                        {3, "Fan1", fanColour, true, "RPM", 0, 3}};
        setup.left = {0, 100};
        setup.right = StripChartSetup::ValueAxis{0, 10000};
        setup.labels = {{"Temperature", Label::Place::LeftAxisTitle, {}, {}},
                        {"Local", Label::Place::AtPosition, {0.8, 0.1}, temperatureColour},
                        {"Fan Speed", Label::Place::RightAxisTitle, {}, {}},
                        {"Fan1", Label::Place::AtPosition, {0.8, 0.2}, fanColour}};
        return setup;
    }

    QCustomPlot *Plot() { return chart.findChild<QCustomPlot *>(); }

    void Append(float temperature, float fan = Extent::gap) {
        constexpr float none = Extent::gap;
        history.Append(time, {temperature, none, none, fan, none, none});
        time += interval;
        chart.HistoryChanged();
    }

    void AppendMany(int samples, float temperature, float fan = Extent::gap) {
        for (int sample = 0; sample < samples; ++sample) {
            Append(temperature, fan);
        }
        Settle();
    }

    /// Lets all painting that is due happen.
    void Settle() {
        for (int turn = 0; turn < 4; ++turn) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
        QTest::qWait(1);
    }

    void Wheel(QPointF point, int notches) {
        QWheelEvent event(point, chart.mapToGlobal(point), {}, {0, notches * 120}, Qt::NoButton,
                          Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&chart, &event);
        Settle();
    }

    void Hover(QPointF point) {
        QMouseEvent move(QEvent::MouseMove, point, chart.mapToGlobal(point), Qt::NoButton,
                         Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&chart, &move);
        Settle();
    }

    void DragBy(QPoint from, QPoint by) {
        QTest::mousePress(&chart, Qt::LeftButton, {}, from);
        for (int step = 1; step <= 4; ++step) {
            const QPointF point = from + by * step / 4;
            QMouseEvent move(QEvent::MouseMove, point, chart.mapToGlobal(point), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&chart, &move);
            Settle();
        }
        QTest::mouseRelease(&chart, Qt::LeftButton, {}, from + by);
        Settle();
    }

    void Key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&chart, key, modifiers);
        Settle();
    }

    /// The seconds of the time at the cursor.
    double CursorSecond() const {
        return chart.CursorText().value(0).section(QLatin1Char(':'), -1).toDouble();
    }

    double Span() const { return chart.VisibleTo() - chart.VisibleFrom(); }
    QPoint Middle() const {
        return chart
            .PointOf((chart.VisibleFrom() + chart.VisibleTo()) / 2,
                     (chart.ValueRange().lower + chart.ValueRange().upper) / 2)
            .toPoint();
    }

    /// The columns of the picture between two values on the left axis that hold a colour.
    std::vector<int> ColumnsWith(QColor colour, double low, double high) {
        const QImage picture = chart.grab().toImage();
        const double ratio = chart.devicePixelRatioF();
        const int top = qFloor(chart.PointOf(0, high).y() * ratio);
        const int bottom = qCeil(chart.PointOf(0, low).y() * ratio);
        const int left = qRound(chart.PointOf(chart.VisibleFrom(), 0).x() * ratio);
        const int right = qCeil(chart.PointOf(chart.VisibleTo(), 0).x() * ratio);
        std::vector<int> found;
        for (int x = left; x < right; ++x) {
            for (int y = top; y < bottom; ++y) {
                if (picture.pixelColor(x, y) == colour) {
                    found.push_back(x - left);
                    break;
                }
            }
        }
        return found;
    }

    ChannelHistory history;
    StripChart chart;
    double time = noon;
    int replots = 0;
};

} // namespace ztm::test
