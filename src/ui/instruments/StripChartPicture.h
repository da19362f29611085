#pragma once

#include "ui/instruments/StripChartPlottable.h"

#include <QImage>

namespace ztm {

/// The traces in device pixels, on a transparent ground as large as the plot. A column keeps its
/// pixels while the chart scrolls, and is painted once: the picture is a ring.
class StripChartPicture {
public:
    explicit StripChartPicture(const StripChartColumns &source) : columns(source) {}

    /// Columns from `from` on, counted from the origin, are no longer right.
    void Invalidate(int64_t from);
    /// Paints what is not right.
    void Update(const std::vector<StripChartPlottable *> &traces);
    /// Everything at a place in pixels of the painter.
    void Draw(QPainter &painter, QPoint topLeft) const;

private:
    void Paint(const std::vector<StripChartPlottable *> &traces, int from);

    const StripChartColumns &columns;
    QImage image;
    int64_t rightUntil = 0;
};

} // namespace ztm
