#pragma once

#include "ui/instruments/StripChartOverlay.h"
#include "ui/instruments/StripChartPicture.h"

#include <qcustomplot.h>

namespace ztm {

/// The plot of a strip chart. What is below the traces is painted by a replot of the library; the
/// traces and what is above them come from their own picture and the overlay, so a new sample
/// paints a few columns of pixels without a replot.
class StripChartPlot final : public QCustomPlot {
public:
    StripChartPlot(const StripChartColumns &columns, QWidget *parent);

    StripChartPlottable &AddTrace(QCPAxis *valueAxis, int channel) {
        return AddTrace(valueAxis, channel, columns);
    }
    /// A trace of other columns, which must be kept at the same times.
    StripChartPlottable &AddTrace(QCPAxis *valueAxis, int channel, const StripChartColumns &source);
    /// Removes all traces but the first ones.
    void KeepTraces(size_t count);
    const std::vector<StripChartPlottable *> &Traces() const { return traces; }
    StripChartOverlay &Overlay() { return *overlay; }
    const StripChartOverlay &Overlay() const { return *overlay; }

    /// Repaints the traces, from a column on, counted from the origin.
    void TracesChanged(int64_t from);
    void TracesChanged();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const StripChartColumns &columns;
    std::vector<StripChartPlottable *> traces; // owned by the base class, as is the overlay
    StripChartOverlay *overlay;
    StripChartPicture picture;
};

} // namespace ztm
