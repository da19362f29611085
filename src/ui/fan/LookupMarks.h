#pragma once

#include "fan/LookupCurve.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <QVarLengthArray>

#include <array>

namespace ztm {

/// The marks of the lookup points on the graph, in pixels: a number beside each point, and for a
/// point off the graph an arrow at the edge. Points whose marks would overlap share one.
struct LookupMark {
    QPointF place;                  ///< of the point, or of the nearest one on the graph
    QPoint beyond;                  ///< to which sides the point is off the graph: −1, 0 or 1
    std::array<QPointF, 2> ways;    ///< of the curve from the point, if it is inclined there
    QRectF badge;                   ///< around the numbers
    QString numbers;                ///< "3", "3, 4", "1–8"
    QVarLengthArray<int, 8> points; ///< 0 to 7, in order
    QRectF Extent() const { return badge | QRectF(place, place).adjusted(-4, -4, 4, 4); }
};
using LookupMarks = QVarLengthArray<LookupMark, 8>;

/// `places` are those of the points, wherever they are; `room` is the graph.
LookupMarks LayOutMarks(const std::array<QPointF, LookupPoints> &places, bool isLinear,
                        const QRectF &room, const QFontMetricsF &metrics);

/// Draws badge and arrow, without the numbers, with the pen and brush of the painter.
void DrawMark(QPainter &painter, const LookupMark &mark);

} // namespace ztm
