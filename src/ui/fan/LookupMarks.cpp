#include "ui/fan/LookupMarks.h"

#include "common/At.h"

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr double arrowShare = 0.75; // of the height of a badge

/// Which way a number is beyond a range.
int Beyond(double number, double least, double greatest) {
    return number < least ? -1 : number > greatest ? 1 : 0;
}

/// The numbers of points, three or more in a row as "1–8".
QString NumbersOf(const QVarLengthArray<int, 8> &points) {
    QString text;
    for (qsizetype first = 0; first < points.size();) {
        qsizetype last = first;
        while (last + 1 < points.size() && points[last + 1] == points[last] + 1) {
            ++last;
        }
        last = last - first < 2 ? first : last;
        text += text.isEmpty() ? QString() : QStringLiteral(", ");
        text += QString::number(points[first] + 1);
        if (last > first) {
            text += QChar(0x2013) + QString::number(points[last] + 1);
        }
        first = last + 1;
    }
    return text;
}

/// Whether a curve leaves a point inside the quarter on that side.
bool IsTaken(const LookupMark &mark, const QPoint &side) {
    return std::any_of(mark.ways.begin(), mark.ways.end(), [&](const QPointF &way) {
        return way.x() * side.x() > 0 && way.y() * side.y() > 0;
    });
}

/// Where the numbers of a point stand: behind its arrow, or else above left of it, where a rising
/// curve leaves room, or on another side that is free and on the graph.
QRectF BadgeOf(const LookupMark &mark, const QRectF &room, const QFontMetricsF &metrics) {
    const double height = metrics.height();
    const double width = std::max(height, metrics.horizontalAdvance(mark.numbers) + height / 2);
    QRectF badge(0, 0, width, height);
    if (!mark.beyond.isNull()) {
        badge.moveCenter(mark.place - QPointF(mark.beyond.x() * (width / 2 + arrowShare * height),
                                              mark.beyond.y() * (0.5 + arrowShare) * height));
    } else {
        for (const QPoint side : {QPoint(-1, -1), QPoint(1, -1), QPoint(1, 1), QPoint(-1, 1)}) {
            badge.moveCenter(mark.place + QPointF(side.x() * (width / 2 + height / 4),
                                                  side.y() * 0.75 * height));
            if (room.contains(badge) && !IsTaken(mark, side)) {
                break;
            }
        }
    }
    badge.moveLeft(std::clamp(badge.left(), room.left(), room.right() - width));
    badge.moveTop(std::clamp(badge.top(), room.top(), room.bottom() - height));
    return badge;
}

/// Gives the points of one mark to another.
void Join(LookupMark &mark, const LookupMark &other, const QRectF &room,
          const QFontMetricsF &metrics) {
    mark.points.append(other.points.begin(), other.points.size());
    std::sort(mark.points.begin(), mark.points.end());
    mark.numbers = NumbersOf(mark.points);
    mark.badge = BadgeOf(mark, room, metrics);
}

/// Joins two marks that overlap, if there are any.
bool JoinTwo(LookupMarks &marks, const QRectF &room, const QFontMetricsF &metrics) {
    for (qsizetype one = 0; one < marks.size(); ++one) {
        for (qsizetype other = one + 1; other < marks.size(); ++other) {
            if (marks[one].badge.intersects(marks[other].badge)) {
                Join(marks[one], marks[other], room, metrics);
                marks.remove(other);
                return true;
            }
        }
    }
    return false;
}

} // namespace

LookupMarks LayOutMarks(const std::array<QPointF, LookupPoints> &places, bool isLinear,
                        const QRectF &room, const QFontMetricsF &metrics) {
    LookupMarks marks;
    for (int point = 0; point < LookupPoints; ++point) {
        const QPointF &place = At(places, point);
        LookupMark mark;
        mark.place = {std::clamp(place.x(), room.left(), room.right()),
                      std::clamp(place.y(), room.top(), room.bottom())};
        mark.beyond = {Beyond(place.x(), room.left(), room.right()),
                       Beyond(place.y(), room.top(), room.bottom())};
        if (isLinear) {
            mark.ways = {At(places, std::max(point - 1, 0)) - place,
                         At(places, std::min(point + 1, LookupPoints - 1)) - place};
        }
        mark.points = {point};
        mark.numbers = NumbersOf(mark.points);
        mark.badge = BadgeOf(mark, room, metrics);
        marks.append(mark);
    }
    while (JoinTwo(marks, room, metrics)) {
    }
    return marks;
}

void DrawMark(QPainter &painter, const LookupMark &mark) {
    constexpr double rounding = 3;
    painter.drawRoundedRect(mark.badge, rounding, rounding);
    if (mark.beyond.isNull()) {
        return;
    }
    // From the point on the edge back towards the badge.
    const double size = mark.badge.height() * arrowShare;
    const QPointF along =
        QPointF(mark.beyond) * (size / std::hypot(mark.beyond.x(), mark.beyond.y()));
    const QPointF across(along.y() / 2, -along.x() / 2);
    const std::array<QPointF, 3> corners{mark.place, mark.place - along + across,
                                         mark.place - along - across};
    painter.save();
    painter.setBrush(painter.pen().color());
    painter.drawPolygon(corners.data(), static_cast<int>(corners.size()));
    painter.restore();
}

} // namespace ztm
