#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>

#include <functional>

namespace ztm {

/// Where a fan is on the graph of the lookup table.
struct LivePoint {
    int Channel; ///< of the temperature that drives it
    double Celsius;
    double Rpm;         ///< as measured
    double DemandedRpm; ///< by its curve

    bool operator==(const LivePoint &) const = default;
};

/// A place on the graph in pixels, for a temperature in °C and a speed in RPM.
using GraphPlace = std::function<QPointF(double celsius, double rpm)>;

/// Draws the way of fan 0 or 1 in the last minute, the fainter the longer ago.
void DrawTrail(QPainter &painter, const GraphPlace &placeOf, const LivePoint &live, int fan,
               const QColor &colour);

/// Draws the fan as a dot, with a line to where its curve demands it.
void DrawLivePoint(QPainter &painter, const GraphPlace &placeOf, const LivePoint &live,
                   const QColor &colour);

/// Where both draw, with the width of what they draw.
QRectF LiveArea(const GraphPlace &placeOf, const LivePoint &live, int fan);

} // namespace ztm
