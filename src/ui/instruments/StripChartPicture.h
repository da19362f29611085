#pragma once

#include "ui/instruments/StripChartPlottable.h"

#include <QImage>

namespace ztm {

/// The traces in device pixels, on a transparent background as large as the plot. The picture is a
/// ring: a column is painted once and keeps its pixels while the chart scrolls.
class StripChartPicture {
public:
    explicit StripChartPicture(const StripChartColumns &source) : columns(source) {}

    /// Marks columns from `from` on, counted from the origin, as outdated.
    void Invalidate(int64_t from);
    /// Paints the outdated columns.
    void Update(const std::vector<StripChartPlottable *> &traces);
    /// Draws everything at a position in painter pixels.
    void Draw(QPainter &painter, QPoint topLeft) const;

private:
    void Paint(const std::vector<StripChartPlottable *> &traces, int from);

    const StripChartColumns &columns;
    QImage image;
    int64_t rightUntil = 0;
};

} // namespace ztm
