#pragma once

#include "ui/instruments/StripChartOverlay.h"
#include "ui/instruments/StripChartPicture.h"

#include <qcustomplot.h>

namespace ztm {

/// The plot of a strip chart. What lies below the traces is painted as the library does it, at a
/// replot; the traces and what lies above them come from their own picture and from the overlay,
/// so that a new sample paints a few columns of pixels and no replot.
class StripChartPlot final : public QCustomPlot {
public:
    StripChartPlot(const StripChartColumns &columns, QWidget *parent);

    StripChartPlottable &AddTrace(QCPAxis *valueAxis, int channel);
    const std::vector<StripChartPlottable *> &Traces() const { return traces; }
    StripChartOverlay &Overlay() { return *overlay; }
    const StripChartOverlay &Overlay() const { return *overlay; }

    /// Has the traces painted anew, from a column on, counted from the origin.
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
