#include "ui/fan/LookupGraph.h"

#include "common/At.h"
#include "monitor/Channels.h"
#include "ui/fan/FanTexts.h"
#include "ui/fan/LookupGraphParts.h"
#include "ui/instruments/InstrumentAccess.h"
#include "ui/kit/Twips.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineF>
#include <QMouseEvent>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <utility>

namespace ztm {
namespace {

constexpr int largeCelsius = 10;
constexpr int smallRpm = 50;
constexpr int largeRpm = 500;

constexpr double markFontShare = 0.85;
constexpr double hintReach = 8; // pixels

/// Whether a place is within reach of a level, an upright or an inclined line.
bool IsNearLine(const QPointF &from, const QPointF &to, const QPointF &place) {
    const QPointF way = to - from;
    const double length = QPointF::dotProduct(way, way);
    const double share =
        length > 0 ? std::clamp(QPointF::dotProduct(place - from, way) / length, 0.0, 1.0) : 0;
    return QLineF(from + share * way, place).length() < hintReach;
}

QString FaultText(int point, SegmentFault fault) {
    return (fault == SegmentFault::Fold
                ? LookupGraph::tr("From point %1 to point %2 the temperature falls back.")
                : LookupGraph::tr("From point %1 to point %2 the speed falls while the temperature "
                                  "rises."))
        .arg(point)
        .arg(point + 1);
}

QString NumberOf(double number) {
    return QString::number(number, 'f', 0);
}

/// A point as it is shown and read out.
QString PointText(int point, const SpeedPoint &values, const PointFate &fate) {
    const QString text = LookupGraph::tr("Point %1: %2 °C, %3 RPM.")
                             .arg(point + 1)
                             .arg(NumberOf(values.Celsius), NumberOf(values.Rpm));
    return fate.IsAsEntered() ? text : text + ' ' + FateText(values, fate) + '.';
}

} // namespace

LookupGraph::LookupGraph(QWidget *parent) : QWidget(parent) {
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setMinimumSize(sizeHint());
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(tr("Fan speed over temperature"));
    MakeInstrumentsAccessible();
}

QSize LookupGraph::sizeHint() const {
    return {Twips(GraphWidth, *this), Twips(GraphHeight, *this)};
}

void LookupGraph::ShowLive(const std::array<std::optional<LivePoint>, 2> &fans) {
    live = fans;
    QRectF area;
    for (int fan = 0; fan < 2; ++fan) {
        if (const auto &shown = At(live, fan)) {
            area |= LiveArea(
                [this](double celsius, double rpm) {
                    return InPixels(PlaceOf({celsius, rpm}));
                },
                *shown, fan);
        }
    }
    const QRect before = std::exchange(liveArea, area.toAlignedRect());
    update(before | liveArea); // the way fades also where a fan stands still
}

bool LookupGraph::IsOnSelectedPoint(QPointF place) const {
    const QPointF point = PlaceOf(PointInUse(selectedPoint, SeenPoints()));
    return std::abs(place.x() - point.x()) < 2 * HitRadius &&
           std::abs(place.y() - point.y()) < 2 * HitRadius;
}

void LookupGraph::DescribePoints() {
    const auto held = SeenPoints();
    const SpeedPoints points = PointsInUse(held);
    const auto fates = FatesOf(points, held);
    QStringList texts{tr("Selected: point %1.").arg(selectedPoint + 1)};
    for (int point = 0; point < LookupPoints; ++point) {
        texts += PointText(point, At(points, point), At(fates, point));
    }
    VisitFaults(points, [&](int point, SegmentFault fault) { texts += FaultText(point, fault); });
    setAccessibleDescription(texts.join(' '));
}

AccessiblePart LookupGraph::PartAt(int part) const {
    const int point = part / 2;
    const bool isSpeed = part % 2 != 0;
    const auto held = SeenPoints();
    const SpeedPoints points = PointsInUse(held);
    const SpeedPoint &values = At(points, point);
    const PointFate fate = At(FatesOf(points, held), point);
    const double value = isSpeed ? values.Rpm : values.Celsius;
    QString text = (isSpeed ? tr("%1 RPM") : tr("%1 °C")).arg(NumberOf(value));
    const LookupMarks marks = Marks(points);
    const auto mark = std::find_if(marks.begin(), marks.end(), [point](const LookupMark &one) {
        return one.points.contains(point);
    });
    if (!rect().contains(InPixels(PlaceOf(values)).toPoint())) {
        text += tr(", off the graph");
    }
    if (!fate.IsAsEntered()) {
        text += QStringLiteral(", ") + FateText(values, fate);
    }
    return {.name = (isSpeed ? tr("Point %1, speed") : tr("Point %1, temperature")).arg(point + 1),
            .valueText = text,
            .value = value,
            .minimum = isSpeed ? 0.0 : lowestCelsius,
            .maximum = isSpeed ? static_cast<double>(LargestPointRpm) : highestCelsius,
            .step = isSpeed ? smallRpm : 1.0,
            .place = mark->Extent().toRect() & rect(),
            .hasFocus = point == selectedPoint && isSpeed};
}

void LookupGraph::MovePart(int part, double value) {
    if (part % 2 != 0) {
        emit SpeedWanted(part / 2, value);
    } else {
        emit TemperatureWanted(part / 2, value);
    }
}

QPointF LookupGraph::PixelsPerTwip() const {
    return {(width() - 1) / GraphWidth, (height() - 1) / GraphHeight};
}

QPointF LookupGraph::InTwips(QPointF pixels) const {
    return {std::clamp(pixels.x() * GraphWidth / (width() - 1), 0.0, GraphWidth),
            std::clamp(pixels.y() * GraphHeight / (height() - 1), 0.0, GraphHeight)};
}

/// In pixels, at most a graph away.
QPointF LookupGraph::InPixels(QPointF place) const {
    return {std::clamp(place.x(), -GraphWidth, 2 * GraphWidth) * PixelsPerTwip().x(),
            std::clamp(place.y(), -GraphHeight, 2 * GraphHeight) * PixelsPerTwip().y()};
}

QFont LookupGraph::MarkFont() const {
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() * markFontShare);
    return small;
}

LookupMarks LookupGraph::Marks(const SpeedPoints &points) const {
    std::array<QPointF, LookupPoints> places;
    std::transform(points.begin(), points.end(), places.begin(),
                   [this](const SpeedPoint &point) { return InPixels(PlaceOf(point)); });
    return LayOutMarks(places, linear, QRectF(rect()).adjusted(0, 0, -1, -1),
                       QFontMetricsF(MarkFont()));
}

QString LookupGraph::HintAt(QPointF pixels) const {
    const auto held = SeenPoints();
    const SpeedPoints points = PointsInUse(held);
    const auto fates = FatesOf(points, held);
    QStringList texts;
    for (const LookupMark &mark : Marks(points)) {
        if (mark.Extent().contains(pixels)) {
            for (const int point : mark.points) {
                texts += PointText(point, At(points, point), At(fates, point));
            }
        }
    }
    for (int fan = 0; fan < 2; ++fan) {
        const auto &shown = At(live, fan);
        const auto placeOf = [&] { return InPixels(PlaceOf({shown->Celsius, shown->Rpm})); };
        if (shown && QLineF(placeOf(), pixels).length() < hintReach) {
            texts += OnCurveText(fan, shown->Celsius, shown->Rpm, shown->DemandedRpm);
        }
    }
    const auto isNear = [&](const QPointF &from, const QPointF &to) {
        return IsNearLine(InPixels(from), InPixels(to), pixels);
    };
    VisitFaults(points, [&](int point, SegmentFault fault) {
        bool isHere = false;
        VisitLines(
            At(points, point - 1), At(points, point), linear,
            [&](const QPointF &from, const QPointF &to) { isHere = isHere || isNear(from, to); });
        if (isHere) {
            texts += FaultText(point, fault);
        }
    });
    return texts.join('\n');
}

bool LookupGraph::event(QEvent *event) {
    if (event->type() != QEvent::ToolTip) {
        return QWidget::event(event);
    }
    const auto *help = static_cast<QHelpEvent *>(event);
    const QString hint = HintAt(help->pos());
    QToolTip::showText(help->globalPos(), hint, this);
    return true;
}

void LookupGraph::mousePressEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        pressedAt = event->position();
        emit MouseDown(InTwips(event->position()));
    }
}

void LookupGraph::mouseMoveEvent(QMouseEvent *event) {
    emit MouseMoved(InTwips(event->position()));
}

void LookupGraph::mouseReleaseEvent(QMouseEvent *event) {
    const QPointF moved = event->position() - pressedAt;
    if (event->button() == Qt::LeftButton &&
        moved.manhattanLength() >= QApplication::startDragDistance()) {
        emit MouseDragged(InTwips(event->position()));
    }
}

void LookupGraph::keyPressEvent(QKeyEvent *event) {
    if (event->key() >= Qt::Key_1 && event->key() < Qt::Key_1 + LookupPoints &&
        (event->modifiers() & ~Qt::KeypadModifier) == 0) {
        emit PointWanted(event->key() - Qt::Key_1);
        return;
    }
    const bool large = event->modifiers().testFlag(Qt::ShiftModifier);
    const bool isRepeated = event->isAutoRepeat();
    const int celsius = large ? largeCelsius : 1;
    const int rpm = large ? largeRpm : smallRpm;
    switch (event->key()) {
    case Qt::Key_Left:
        emit MoveWanted(-celsius, 0, isRepeated);
        break;
    case Qt::Key_Right:
        emit MoveWanted(celsius, 0, isRepeated);
        break;
    case Qt::Key_Up:
        emit MoveWanted(0, rpm, isRepeated);
        break;
    case Qt::Key_Down:
        emit MoveWanted(0, -rpm, isRepeated);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace ztm
