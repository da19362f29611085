#pragma once

#include "ui/instruments/StripChartSetup.h"

#include <QPalette>
#include <QRectF>

#include <vector>

class QCPItemText;
class QCustomPlot;
class QFont;

namespace ztm {

/// The texts of a strip chart: titles of value axes, and labels that stand at their positions but
/// within the plot. They lie below the traces: no label ever covers a value.
class StripChartLabels {
public:
    /// Plot and setup must outlive it.
    StripChartLabels(QCustomPlot &plot, const StripChartSetup &setup);

    /// Shows the text that the setup has for an entry. An empty one is not seen.
    void ShowText(size_t entry);

    void SetPalette(const QPalette &palette, const QFont &font);

    /// Has the labels placed anew by the next Place().
    void Invalidate() { room = {}; }
    /// Places the labels where the plot has moved, or after Invalidate().
    void Place();

private:
    QCustomPlot &plot;
    const StripChartSetup &setup;
    std::vector<QCPItemText *> items; // owned by the plot; nullptr for the title of an axis
    QRectF room;                      // the plot that they have been placed in
};

} // namespace ztm
