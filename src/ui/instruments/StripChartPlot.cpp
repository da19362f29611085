#include "ui/instruments/StripChartPlot.h"

#include <algorithm>

namespace ztm {

StripChartPlot::StripChartPlot(const StripChartColumns &source, QWidget *parent)
    : QCustomPlot(parent), columns(source), picture(source) {
    // No layer has a buffer of its own: a replot paints only what is below the traces.
    layer(QStringLiteral("overlay"))->setMode(QCPLayer::lmLogical);
    overlay = new StripChartOverlay(this);
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
