#pragma once

#include "support/Instrument.h"
#include "ui/instruments/StripChart.h"

#include <qcustomplot.h>

#include <gmock/gmock.h>

namespace ztm::test {

inline constexpr double interval = 0.030;
inline constexpr double noon = 12 * 3600;
inline constexpr QColor temperatureColour(200, 0, 0);
inline constexpr QColor fanColour(0, 0, 200);

/// Where a picture has a colour, column by column.
inline QPolygon PixelsOf(const QImage &picture, QColor colour) {
    QPolygon found;
    for (int x = 0; x < picture.width(); ++x) {
        for (int y = 0; y < picture.height(); ++y) {
            if (picture.pixelColor(x, y) == colour) {
                found.emplace_back(x, y);
            }
        }
    }
    return found;
}

/// A strip chart of a temperature on the left and a fan on the right axis, in a window. The
/// labels of the traces have no text yet.
class StripChartTest : public testing::Test {
protected:
    StripChartTest() : chart(history, TwoTraces()) {
        chart.resize(700, 400);
        chart.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&chart));
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
                        {"", Label::Place::AtPosition, {0.8, 0.1}, temperatureColour},
                        {"Fan Speed", Label::Place::RightAxisTitle, {}, {}},
                        {"", Label::Place::AtPosition, {0.8, 0.2}, fanColour}};
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

    void Clear() {
        history.Clear();
        chart.HistoryChanged();
    }

    /// Lets all painting that is due happen.
    static void Settle() {
        for (int turn = 0; turn < 4; ++turn) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }

    /// Presses up to four keys, as in "Left, Ctrl++".
    void Press(const char *keys) {
        for (const QKeySequence sequence(keys); const int at : {0, 1, 2, 3}) {
            if (at < sequence.count()) {
                const QKeyCombination key = sequence[static_cast<uint>(at)];
                QTest::keyClick(&chart, key.key(), key.keyboardModifiers());
                Settle();
            }
        }
    }

    void Hover(QPointF point) {
        SendMouse(chart, QEvent::MouseMove, point, Qt::NoButton);
        Settle();
    }

    void DragBy(QPoint from, QPoint by) {
        QTest::mousePress(&chart, Qt::LeftButton, {}, from);
        MoveAndRelease(chart, from, {from + by / 2, from + by});
        Settle();
    }

    double Span() const { return chart.VisibleTo() - chart.VisibleFrom(); }

    /// The plot, and a point in fractions of it from its lower left corner.
    QRectF PlotRect() const {
        return {chart.PointOf(chart.VisibleFrom(), chart.ValueRange().upper),
                chart.PointOf(chart.VisibleTo(), chart.ValueRange().lower)};
    }
    QPoint At(double x, double y) const {
        const QRectF plot = PlotRect();
        return QPointF(plot.left() + x * plot.width(), plot.bottom() - y * plot.height()).toPoint();
    }

    /// What the screen shows once everything has been painted anew.
    QImage SeenAnew() {
        QEvent change(QEvent::PaletteChange);
        QCoreApplication::sendEvent(&chart, &change);
        Settle();
        return OnScreen(chart);
    }

    QRect InPixels(const QRectF &rect) const {
        const double ratio = chart.devicePixelRatioF();
        return QRectF(rect.topLeft() * ratio, rect.size() * ratio).toAlignedRect();
    }

    /// The columns of the plot on the screen that hold a colour between two values on the left
    /// axis.
    std::vector<int> ColumnsWith(QColor colour, double low = -1e9, double high = 1e9) const {
        const QRectF values(chart.PointOf(chart.VisibleFrom(), high),
                            chart.PointOf(chart.VisibleTo(), low));
        std::vector<int> found;
        for (const QPoint &pixel :
             PixelsOf(OnScreen(chart).copy(InPixels(PlotRect() & values)), colour)) {
            if (found.empty() || found.back() != pixel.x()) {
                found.push_back(pixel.x());
            }
        }
        return found;
    }

    ChannelHistory history;
    StripChart chart;
    double time = noon;
};

} // namespace ztm::test
