#include "common/At.h"
#include "fan/LookupGraphScale.h"
#include "ui/fan/LookupGraph.h"
#include "ui/fan/LookupGraphParts.h"

#include <algorithm>
#include <cmath>

// How the graph of the lookup table is painted.

namespace ztm {
namespace {

constexpr QColor ground(255, 255, 255);
constexpr QColor gridColour(216, 216, 216); // lighter than the preview
constexpr QColor readingColour(96, 96, 96);
constexpr QColor firstCurveColour(0, 0, 255);
constexpr QColor secondCurveColour(0, 192, 0);
constexpr QColor highlightColour(255, 0, 0);
constexpr QColor previewColour(192, 192, 192);
constexpr QColor bandColour(255, 191, 0);
constexpr QColor markColour(255, 255, 255);
constexpr QColor faultyMarkColour(255, 196, 180);
constexpr QColor faultyTextColour(150, 0, 0);
constexpr int curvePixels = 3;
constexpr int thinPixels = 1;
constexpr int bandPixels = 11;

constexpr double baselineHeight = 60; // twips above the bottom edge
constexpr int celsiusPerGridLine = 10;
constexpr int verticalGridLines = 15;
constexpr int horizontalGridLines = 10;

/// Where a point of the table in use is drawn.
QPointF PlaceInUse(int point) {
    return PlaceOf(PointInUse(point, SeenPoints()));
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

} // namespace

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
    const SpeedPoints points = PointsInUse(SeenPoints());
    DrawGrid(painter);
    DrawBands(painter, points);
    for (int fan = 0; fan < (EightPointMode ? 1 : 2); ++fan) {
        DrawCurve(painter, points, CurveOfFan(fan, EightPointMode),
                  fan == 0 ? firstCurveColour : secondCurveColour);
    }
    DrawLive(painter);
    DrawMarks(painter, points);
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

/// Under the parts of the curves where something is odd.
void LookupGraph::DrawBands(QPainter &painter, const SpeedPoints &points) {
    painter.setPen(Pen(bandColour, bandPixels, linear ? Qt::FlatCap : Qt::SquareCap));
    VisitFaults(points, [&](int point, SegmentFault) {
        VisitLines(At(points, point - 1), At(points, point), linear,
                   [&](const QPointF &from, const QPointF &to) { DrawLine(painter, from, to); });
    });
}

/// Baseline, rise, the line from point to point, and tail.
void LookupGraph::DrawCurve(QPainter &painter, const SpeedPoints &points, PointSpan curve,
                            const QColor &colour) {
    painter.setRenderHint(QPainter::Antialiasing, linear);
    // Caps that close the corners.
    painter.setPen(Pen(colour, curvePixels, linear ? Qt::RoundCap : Qt::SquareCap));
    const QPointF start = PlaceOf(At(points, curve.First));
    const QPointF foot(start.x(), GraphHeight - baselineHeight);
    DrawLine(painter, {0, foot.y()}, foot);
    DrawLine(painter, foot, start);
    for (int point = curve.First + 1; point <= curve.Last; ++point) {
        VisitLines(At(points, point - 1), At(points, point), linear,
                   [&](const QPointF &from, const QPointF &to) { DrawLine(painter, from, to); });
    }
    const QPointF end = PlaceOf(At(points, curve.Last));
    DrawLine(painter, end, {TempX(GraphCelsius), end.y()});
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void LookupGraph::DrawLive(QPainter &painter) {
    painter.save();
    painter.resetTransform();
    painter.setRenderHint(QPainter::Antialiasing);
    const GraphPlace placeOf = [this](double celsius, double rpm) {
        return InPixels(PlaceOf({celsius, rpm}));
    };
    for (int fan = 0; fan < 2; ++fan) {
        if (const auto &shown = At(live, fan)) {
            const QColor &colour = fan == 0 ? firstCurveColour : secondCurveColour;
            DrawTrail(painter, placeOf, *shown, fan, colour);
            DrawLivePoint(painter, placeOf, *shown, colour);
        }
    }
    painter.restore();
}

void LookupGraph::DrawMarks(QPainter &painter, const SpeedPoints &points) {
    const auto fates = FatesOf(points, SeenPoints());
    painter.save();
    painter.resetTransform();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(MarkFont());
    for (const LookupMark &mark : Marks(points)) {
        const bool isFaulty = std::any_of(mark.points.begin(), mark.points.end(), [&](int point) {
            return !At(fates, point).IsAsEntered();
        });
        const bool isSelected = mark.points.contains(selectedPoint);
        const QColor &curve =
            EightPointMode || mark.points[0] < PointsPerFan ? firstCurveColour : secondCurveColour;
        painter.setPen(QPen(isSelected ? highlightColour : curve, thinPixels));
        painter.setBrush(isFaulty ? faultyMarkColour : markColour);
        DrawMark(painter, mark);
        painter.setPen(isFaulty ? faultyTextColour : QColor(Qt::black));
        painter.drawText(mark.badge, Qt::AlignCenter, mark.numbers);
    }
    painter.restore();
}

void LookupGraph::HiLightPoints(QPainter &painter) {
    painter.setPen(Pen(highlightColour, curvePixels));
    painter.setRenderHint(QPainter::Antialiasing);
    DrawCircle(painter, PlaceInUse(selectedPoint));
    painter.setRenderHint(QPainter::Antialiasing, false);
}

/// The lines that the selected point would have at that place.
void LookupGraph::GrayLines(QPainter &painter, double xVal, double yVal) {
    const auto [first, last] = CurveOfPoint(selectedPoint, EightPointMode);
    const QPointF mouse(xVal, yVal);
    painter.setPen(Pen(previewColour, thinPixels));
    DrawLine(painter,
             selectedPoint == first ? QPointF(xVal, RPMY(0)) : PlaceInUse(selectedPoint - 1),
             mouse);
    DrawLine(painter, mouse,
             selectedPoint == last ? QPointF(TempX(GraphCelsius), yVal)
                                   : PlaceInUse(selectedPoint + 1));
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
