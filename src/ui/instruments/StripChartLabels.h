#pragma once

#include "ui/instruments/StripChartSetup.h"

#include <QPalette>
#include <QRectF>

#include <vector>

class QCPItemText;
class QCustomPlot;
class QFont;

namespace ztm {

/// The texts of a strip chart: titles of value axes, and labels at their positions, kept within the
/// plot. They are drawn below the traces, so no label covers a value.
class StripChartLabels {
public:
    /// Plot and setup must outlive it.
    StripChartLabels(QCustomPlot &plot, const StripChartSetup &setup);

    /// Shows the text of an entry of the setup. An empty one is hidden.
    void ShowText(size_t entry);

    void SetPalette(const QPalette &palette, const QFont &font);

    /// Makes the next Place() place the labels again.
    void Invalidate() { room = {}; }
    /// Places the labels if the plot has moved, or after Invalidate().
    void Place();

private:
    QCustomPlot &plot;
    const StripChartSetup &setup;
    std::vector<QCPItemText *> items; // owned by the plot; nullptr for the title of an axis
    QRectF room;                      // the plot area they were placed in
};

} // namespace ztm
