#include "ui/fan/LookupGraph.h"

#include "common/At.h"
#include "fan/LookupGraphScale.h"
#include "link/LinkState.h"
#include "monitor/Channels.h"
#include "ui/instruments/InstrumentAccess.h"
#include "ui/kit/Twips.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr QColor ground(255, 255, 255);
constexpr QColor gridColour(216, 216, 216); // lighter than the preview
constexpr QColor readingColour(96, 96, 96);
constexpr QColor firstCurveColour(0, 0, 255);
constexpr QColor secondCurveColour(0, 192, 0);
constexpr QColor highlightColour(255, 0, 0);
constexpr QColor previewColour(192, 192, 192);
constexpr int curvePixels = 3;
constexpr int thinPixels = 1;

constexpr double baselineHeight = 60; // twips above the bottom edge
constexpr int celsiusPerGridLine = 10;
constexpr int verticalGridLines = 15;
constexpr int horizontalGridLines = 10;

constexpr int largeCelsius = 10;
constexpr int smallRpm = 50;
constexpr int largeRpm = 500;

/// Where a point of the table in use is drawn.
QPointF PlaceOf(int point) {
    const LookupPoint &drawn = At(TableInUse(), point);
    return {TempX(drawn.Temperature), RPMY(drawn.RPM)};
}

/// The part of a line (or, with equal ends, of a point) within one graph width and height around
/// the graph. A point may be hundreds of widths away, and a painter is slow with lines far outside
/// its device.
std::optional<QLineF> NearPart(const QLineF &line) {
    const std::pair<double, double> bounds[] = {// speed towards an edge, and the room up to it
                                                {-line.dx(), line.x1() + GraphWidth},
                                                {line.dx(), 2 * GraphWidth - line.x1()},
                                                {-line.dy(), line.y1() + GraphHeight},
                                                {line.dy(), 2 * GraphHeight - line.y1()}};
    double from = 0;
    double to = 1;
    for (const auto &[speed, room] : bounds) {
        if (speed > 0) {
            to = std::min(to, room / speed);
        } else if (speed < 0) {
            from = std::max(from, room / speed);
        } else if (room < 0) {
            return std::nullopt;
        }
    }
    return from <= to ? std::optional(QLineF(line.pointAt(from), line.pointAt(to))) : std::nullopt;
}

void DrawLine(QPainter &painter, const QPointF &from, const QPointF &to) {
    if (const auto line = NearPart({from, to})) {
        painter.drawLine(*line);
    }
}

void DrawCircle(QPainter &painter, const QPointF &centre) {
    if (NearPart({centre, centre})) {
        painter.drawEllipse(centre, LookupGraph::HitRadius, LookupGraph::HitRadius);
    }
}

/// The first and the last point of the curve that a point is on.
std::pair<int, int> CurveOf(int point) {
    if (EightPointMode) {
        return {0, LookupPoints - 1};
    }
    return point < PointsPerFan ? std::pair{0, PointsPerFan - 1}
                                : std::pair{PointsPerFan, LookupPoints - 1};
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

bool LookupGraph::IsOnSelectedPoint(QPointF place) const {
    const QPointF point = PlaceOf(selectedPoint);
    return std::abs(place.x() - point.x()) < 2 * HitRadius &&
           std::abs(place.y() - point.y()) < 2 * HitRadius;
}

void LookupGraph::DescribePoints() {
    QString text = tr("Selected: point %1.").arg(selectedPoint + 1);
    const LookupTable &table = TableInUse();
    for (size_t point = 0; point < table.size(); ++point) {
        text += tr(" Point %1: %2 °C, %3 RPM.")
                    .arg(point + 1)
                    .arg(table[point].Temperature)
                    .arg(table[point].RPM);
    }
    setAccessibleDescription(text);
}

AccessiblePart LookupGraph::PartAt(int part) const {
    const int point = part / 2;
    const bool isSpeed = part % 2 != 0;
    const auto &[celsius, rpm] = At(TableInUse(), point);
    const int value = isSpeed ? rpm : celsius;
    const QPointF middle(PlaceOf(point).x() * PixelsPerTwip().x(),
                         PlaceOf(point).y() * PixelsPerTwip().y());
    const QPointF reach = 2 * HitRadius * PixelsPerTwip();
    return {.name = (isSpeed ? tr("Point %1, speed") : tr("Point %1, temperature")).arg(point + 1),
            .valueText = (isSpeed ? tr("%1 RPM") : tr("%1 °C")).arg(value),
            .value = static_cast<double>(value),
            .minimum = isSpeed ? 0.0 : lowestCelsius,
            .maximum = isSpeed ? static_cast<double>(LargestPointRpm) : highestCelsius,
            .step = isSpeed ? smallRpm : 1.0,
            .place = QRectF(middle - reach, middle + reach).toRect(),
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
    const bool large = event->modifiers().testFlag(Qt::ShiftModifier);
    const int celsius = large ? largeCelsius : 1;
    const int rpm = large ? largeRpm : smallRpm;
    switch (event->key()) {
    case Qt::Key_Left:
        emit MoveWanted(-celsius, 0);
        break;
    case Qt::Key_Right:
        emit MoveWanted(celsius, 0);
        break;
    case Qt::Key_Up:
        emit MoveWanted(0, rpm);
        break;
    case Qt::Key_Down:
        emit MoveWanted(0, -rpm);
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

/// A pen of that many pixels at any scale of the painter.
QPen LookupGraph::Pen(const QColor &colour, int pixels, Qt::PenCapStyle cap) const {
    QPen pen(colour, pixels * devicePixelRatioF(), Qt::SolidLine, cap);
    pen.setCosmetic(true);
    return pen;
}

void LookupGraph::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), ground);
    painter.scale(PixelsPerTwip().x(), PixelsPerTwip().y());
    DrawGrid(painter);
    if (EightPointMode) {
        DrawCurve(painter, 0, LookupPoints - 1, firstCurveColour);
    } else {
        DrawCurve(painter, 0, PointsPerFan - 1, firstCurveColour);
        DrawCurve(painter, PointsPerFan, LookupPoints - 1, secondCurveColour);
    }
    HiLightPoints(painter);
    if (carriedAt) {
        GrayLines(painter, carriedAt->x(), carriedAt->y());
        painter.setPen(Pen(highlightColour, thinPixels));
        DrawCircle(painter, *carriedAt);
        DrawReading(painter);
    }
    if (hasFocus()) {
        painter.resetTransform();
        painter.setPen(palette().color(QPalette::Highlight));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

void LookupGraph::DrawGrid(QPainter &painter) {
    painter.setPen(Pen(gridColour, thinPixels));
    for (int line = 1; line <= verticalGridLines; ++line) {
        const double x = TempX(celsiusPerGridLine * line);
        painter.drawLine(QPointF(x, 0), QPointF(x, GraphHeight));
    }
    for (int line = 1; line <= horizontalGridLines; ++line) {
        const double y = RPMY(line * static_cast<double>(GraphRpmRange) / horizontalGridLines);
        painter.drawLine(QPointF(0, y), QPointF(GraphWidth, y));
    }
}

/// Baseline, rise, the line from point to point, and tail.
void LookupGraph::DrawCurve(QPainter &painter, int first, int last, const QColor &colour) {
    painter.setRenderHint(QPainter::Antialiasing, linear);
    // Caps that close the corners.
    painter.setPen(Pen(colour, curvePixels, linear ? Qt::RoundCap : Qt::SquareCap));
    QPointF place(0, GraphHeight - baselineHeight);
    const auto drawTo = [&](const QPointF &next) {
        DrawLine(painter, place, next);
        place = next;
    };
    const QPointF start = PlaceOf(first);
    drawTo({start.x(), place.y()});
    drawTo(start);
    for (int point = first + 1; point <= last; ++point) {
        const QPointF next = PlaceOf(point);
        if (!linear) {
            drawTo({next.x(), place.y()});
        }
        drawTo(next);
    }
    drawTo({TempX(GraphCelsius), place.y()});
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void LookupGraph::HiLightPoints(QPainter &painter) {
    painter.setPen(Pen(highlightColour, curvePixels));
    painter.setRenderHint(QPainter::Antialiasing);
    DrawCircle(painter, PlaceOf(selectedPoint));
    painter.setRenderHint(QPainter::Antialiasing, false);
}

/// The lines that the selected point would have at that place.
void LookupGraph::GrayLines(QPainter &painter, double xVal, double yVal) {
    const auto [first, last] = CurveOf(selectedPoint);
    const QPointF mouse(xVal, yVal);
    painter.setPen(Pen(previewColour, thinPixels));
    DrawLine(painter, selectedPoint == first ? QPointF(xVal, RPMY(0)) : PlaceOf(selectedPoint - 1),
             mouse);
    DrawLine(painter, mouse,
             selectedPoint == last ? QPointF(TempX(GraphCelsius), yVal)
                                   : PlaceOf(selectedPoint + 1));
}

/// The values of the carried point, beside it and within the graph.
void LookupGraph::DrawReading(QPainter &painter) {
    const QString text = tr("%1 °C, %2 RPM")
                             .arg(std::floor(X2Temp(carriedAt->x())))
                             .arg(std::floor(Y2RPM(carriedAt->y())));
    const QPointF place(carriedAt->x() * PixelsPerTwip().x(), carriedAt->y() * PixelsPerTwip().y());
    painter.resetTransform();
    const double space = fontMetrics().height() / 2.0;
    QRectF box(place.x() + space, place.y() - 3 * space,
               fontMetrics().horizontalAdvance(text) + space, 2.5 * space);
    box.moveRight(std::min(box.right(), width() - 1.0));
    box.moveTop(std::max(box.top(), 0.0));
    painter.setPen(readingColour);
    painter.setBrush(ground);
    painter.drawRect(box);
    painter.setPen(Qt::black);
    painter.drawText(box, Qt::AlignCenter, text);
}

} // namespace ztm
