#include "ui/instruments/StripChartPlot.h"

#include <algorithm>

namespace ztm {
namespace {

/// The grid at the ticks of the time axis and the left one, in the pens of their own grids, which
/// draw their lines point by point and are many times slower.
class Grid final : public QCPLayerable {
public:
    explicit Grid(QCustomPlot *plot) : QCPLayerable(plot, QStringLiteral("grid")) {
        plot->xAxis->grid()->setVisible(false);
        plot->yAxis->grid()->setVisible(false);
    }

protected:
    void applyDefaultAntialiasingHint(QCPPainter *painter) const override {
        painter->setAntialiasing(false);
    }

    void draw(QCPPainter *painter) override {
        const QRect plot = mParentPlot->axisRect()->rect();
        const auto pixelOf = [](const QCPAxis &axis, double tick) {
            return static_cast<int>(axis.coordToPixel(tick));
        };
        const QCPAxis &time = *mParentPlot->xAxis;
        for (const double tick : time.tickVector()) {
            painter->fillRect(pixelOf(time, tick), plot.top(), 1, plot.height(),
                              time.grid()->pen().color());
        }
        const QCPAxis &value = *mParentPlot->yAxis;
        for (const double tick : value.tickVector()) {
            painter->fillRect(plot.left(), pixelOf(value, tick), plot.width(), 1,
                              value.grid()->pen().color());
        }
    }
};

} // namespace

StripChartPlot::StripChartPlot(const StripChartColumns &source, QWidget *parent)
    : QCustomPlot(parent), columns(source), picture(source) {
    // No layer has a buffer of its own: a replot paints only what is below the traces.
    layer(QStringLiteral("overlay"))->setMode(QCPLayer::lmLogical);
    overlay = new StripChartOverlay(this);
    new Grid(this); // the base class owns it
}

StripChartPlottable &StripChartPlot::AddTrace(QCPAxis *valueAxis, int channel,
                                              const StripChartColumns &source) {
    traces.push_back(new StripChartPlottable(xAxis, valueAxis, source, channel));
    // Above the axes: the newest column is on an axis line.
    traces.back()->setLayer(QStringLiteral("legend"));
    return *traces.back();
}

void StripChartPlot::KeepTraces(size_t count) {
    for (; traces.size() > count; traces.pop_back()) {
        removePlottable(traces.back());
    }
}

void StripChartPlot::TracesChanged(int64_t from) {
    if (from >= columns.End()) {
        return;
    }
    picture.Invalidate(from);
    const QRect rect = axisRect()->rect();
    const auto index = static_cast<double>(std::max(from - columns.Begin(), int64_t{0}));
    const int left = rect.left() + static_cast<int>(index / bufferDevicePixelRatio()) - 1;
    update(QRect(QPoint(left, rect.top() - 1), rect.bottomRight() + QPoint(1, 1)));
}

void StripChartPlot::TracesChanged() {
    picture.Invalidate(std::numeric_limits<int64_t>::min());
    update();
}

void StripChartPlot::paintEvent(QPaintEvent *event) {
    if (devicePixelRatioF() != bufferDevicePixelRatio()) {
        replot(rpQueuedReplot); // now on another screen
    }
    QCPPainter painter(this);
    painter.fillRect(rect(), mBackgroundBrush);
    for (const auto &buffer : std::as_const(mPaintBuffers)) {
        buffer->draw(&painter);
    }
    const double ratio = bufferDevicePixelRatio();
    picture.Update(traces);
    painter.save();
    painter.scale(1 / ratio, 1 / ratio);
    picture.Draw(painter, DevicePlotRect(*axisRect(), ratio).topLeft());
    painter.restore();
    overlay->Paint(painter, event->rect());
}

} // namespace ztm
