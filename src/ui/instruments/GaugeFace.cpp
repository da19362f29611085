#include "ui/instruments/GaugeFace.h"

#include "ui/instruments/Colours.h"
#include "ui/instruments/Scale.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <array>
#include <cmath>

namespace ztm {
namespace {

// Angles are in degrees, clockwise from three o'clock, as in QPainter.
constexpr double firstDegrees = 135;
constexpr double sweepDegrees = 270;
constexpr double fullTurn = 360;

// This close to an end of the scale, a mouse below it means that end, and a pointer counts as at
// it.
constexpr double endDegrees = 15;

// Lengths are in hundredths of the diameter.
constexpr double ringOuter = 40;
constexpr double ringThickness = 5;
constexpr double ringInner = ringOuter - ringThickness;
constexpr double minorTickLength = 2.2;
constexpr double thinBandRadius = 33.3;
constexpr double thinBandThickness = 1.4;
constexpr double numberRadius = 31.6;
constexpr double needleLength = 34.6;
constexpr double needleTipHalfWidth = 0.35;
constexpr double needleHalfWidth = 1.5;
constexpr double needleRim = 0.4;
constexpr double hubRadius = 3.4;
constexpr double handleInner = 39;
constexpr double handleShoulder = 41.5;
constexpr double handleOuter = 49;
constexpr double handleWidth = 7;
constexpr double handleMiddle = (handleShoulder + handleOuter) / 2;
constexpr double captionTop = 34;
constexpr double captionHeight = 15;
constexpr double captionWidth = 50;

constexpr double numberSize = 5.6;
constexpr double largestNumberSize = 8;
constexpr double letterSize = 6;
constexpr double captionSize = 10;

// How far beside a handle the mouse still grabs it, in pixels.
constexpr double reach = 4;

constexpr QColor bandColour(46, 160, 67);
constexpr QColor lowColour(0, 104, 168);
constexpr QColor highColour(186, 74, 0);

/// The low handle lies before its value and the high one after it, so that neither covers the
/// other when they meet.
double Side(int pointer) {
    return pointer == lowPointerNumber ? -1 : 1;
}

double HandleDegrees(int pointer) {
    return qRadiansToDegrees(std::atan2(Side(pointer) * handleWidth / 2, handleMiddle));
}

} // namespace

double GaugeFace::DegreesOf(double value) const {
    const double range = maximum - minimum;
    return range > 0 ? sweepDegrees * (Clamped(value) - minimum) / range : 0;
}

QPointF GaugeFace::OnFace(double degrees, double radius) const {
    const double angle = qDegreesToRadians(firstDegrees + degrees);
    return centre + radius * unit * QPointF(std::cos(angle), std::sin(angle));
}

QPointF GaugeFace::PointerPosition(int pointer, double value) const {
    return OnFace(DegreesOf(value) + HandleDegrees(pointer),
                  std::hypot(handleMiddle, handleWidth / 2));
}

double GaugeFace::DegreesAt(int pointer, const QPointF &position) const {
    const QPointF away = position - centre;
    return qRadiansToDegrees(std::atan2(away.y(), away.x())) - HandleDegrees(pointer) -
           firstDegrees;
}

double GaugeFace::ValueAt(double degrees, double current) const {
    const double along = std::fmod(degrees + 2 * fullTurn, fullTurn);
    if (along > sweepDegrees) {
        const bool between = along > sweepDegrees + endDegrees && along < fullTurn - endDegrees;
        const double now = DegreesOf(current);
        if (between && now < endDegrees) {
            return minimum;
        }
        if (between && now > sweepDegrees - endDegrees) {
            return maximum;
        }
        return along < (sweepDegrees + fullTurn) / 2 ? maximum : minimum;
    }
    const double value = minimum + (maximum - minimum) * along / sweepDegrees;
    // The mouse resolves one pixel: no more decimals than that is worth.
    const double pixels = qDegreesToRadians(sweepDegrees) * handleMiddle * unit;
    const double decimals = std::ceil(1 - std::log10((maximum - minimum) / pixels));
    const double perUnit = std::pow(10, qMax(0.0, decimals));
    return std::isfinite(perUnit) ? std::round(value * perUnit) / perUnit : value;
}

double GaugeFace::HandleReach() const {
    return (handleOuter - handleShoulder) / 2 * unit + reach;
}

int GaugeFace::PointerAt(const QPointF &position, const GaugeReadings &readings) const {
    int nearest = 0;
    double least = INFINITY;
    for (const int pointer : {highPointerNumber, lowPointerNumber}) {
        const QPointF away = position - PointerPosition(pointer, readings.Pointer(pointer));
        const double distance = std::hypot(away.x(), away.y());
        const bool shown = pointer == highPointerNumber || readings.lowVisible;
        if (shown && distance <= HandleReach() && distance < least) {
            nearest = pointer;
            least = distance;
        }
    }
    return nearest;
}

void GaugeFace::SetRange(double from, double to) {
    minimum = from;
    maximum = to;
    UpdateMarks();
}

void GaugeFace::SetSize(const QRectF &room, const QFont &textFont) {
    centre = room.center();
    unit = qMax(1.0, qMin(room.width(), room.height())) / 100.0;
    font = textFont;
    numberFont = font;
    // As the text around the gauge, but no larger than the dial has room for.
    const int largestNumber = qRound(largestNumberSize * unit);
    const int fontSize = QFontInfo(font).pixelSize();
    numberFont.setPixelSize(
        qMax(qMax(1, qRound(numberSize * unit)), qMin(fontSize, largestNumber)));
    letterFont = font;
    letterFont.setBold(true);
    letterFont.setPixelSize(qMax(1, qRound(letterSize * unit)));
    UpdateMarks();
}

void GaugeFace::UpdateMarks() {
    majorTicks.clear();
    minorTicks.clear();
    numbers.clear();
    const ScaleMarks marks = MarksFor(minimum, maximum);
    for (const double value : marks.numbered) {
        AddNumber(value);
        if (maximum > minimum) {
            majorTicks.append(
                {OnFace(DegreesOf(value), ringInner), OnFace(DegreesOf(value), ringOuter)});
        }
    }
    for (const double value : marks.small) {
        minorTicks.append({OnFace(DegreesOf(value), ringInner),
                           OnFace(DegreesOf(value), ringInner + minorTickLength)});
    }
}

/// Adds a number that touches the circle of numbers from inside.
void GaugeFace::AddNumber(double value) {
    const QFontMetricsF metrics(numberFont);
    const QString text = QString::number(value, 'g', 10);
    const double halfWidth = metrics.horizontalAdvance(text) / 2;
    const double halfHeight = metrics.capHeight() / 2;
    const double angle = qDegreesToRadians(firstDegrees + DegreesOf(value));
    const QPointF outward(std::cos(angle), std::sin(angle));
    // From the middle of the text to the edge of an ellipse around it, in that direction.
    const double extent = std::hypot(halfWidth * outward.x(), halfHeight * outward.y());
    const QPointF middle = centre + (numberRadius * unit - extent) * outward;
    numbers.append({middle + QPointF(-halfWidth, halfHeight), text});
}

void GaugeFace::FitCaption(const QString &caption) {
    captionFont = font;
    captionFont.setBold(true);
    captionFont.setPixelSize(qMax(1, qRound(captionSize * unit)));
    const double width = QFontMetricsF(captionFont).horizontalAdvance(caption);
    const double room = captionWidth * unit;
    if (width > room) {
        captionFont.setPixelSize(qMax(1, qFloor(captionSize * unit * room / width)));
    }
}

void GaugeFace::Paint(QPainter &painter, const GaugeReadings &readings, const Look &look) const {
    painter.setRenderHint(QPainter::Antialiasing);
    DrawScale(painter, readings, look);
    DrawCaption(painter, readings.caption, look.palette);
    if (readings.needleVisible) {
        DrawNeedle(painter, readings.needle, look.palette);
    }
    if (readings.lowVisible) {
        DrawHandle(painter, lowPointerNumber, readings.low, look);
    }
    DrawHandle(painter, highPointerNumber, readings.high, look);
}

void GaugeFace::DrawArc(QPainter &painter, const GaugeReadings::Band &band, double radius,
                        double thickness, const QColor &colour) const {
    const double from = DegreesOf(band.start);
    const double to = DegreesOf(band.end);
    if (!(from < to)) {
        return;
    }
    // A filled outline is much cheaper than a wide stroke. Qt's arcs run counterclockwise.
    const auto square = [this](double half) {
        const QPointF corner(half * unit, half * unit);
        return QRectF(centre - corner, centre + corner);
    };
    QPainterPath path(OnFace(from, radius + thickness / 2));
    path.arcTo(square(radius + thickness / 2), -firstDegrees - from, from - to);
    path.arcTo(square(radius - thickness / 2), -firstDegrees - to, to - from);
    painter.fillPath(path, colour);
}

void GaugeFace::DrawScale(QPainter &painter, const GaugeReadings &readings,
                          const Look &look) const {
    const QColor ink = look.palette.color(QPalette::WindowText);
    const QColor track = Mix(look.palette.color(QPalette::Window), ink, 0.2);
    const QColor colour = look.enabled ? bandColour : Mix(track, ink, 0.3);
    const double ringMiddle = (ringInner + ringOuter) / 2;
    DrawArc(painter, {minimum, maximum}, ringMiddle, ringThickness, track);
    DrawArc(painter, readings.band0, ringMiddle, ringThickness, colour);
    DrawArc(painter, readings.band1, thinBandRadius, thinBandThickness, colour);

    painter.setPen(QPen(ink, 0.35 * unit));
    painter.drawLines(minorTicks);
    painter.setPen(QPen(ink, 0.75 * unit));
    painter.drawLines(majorTicks);
    painter.setFont(numberFont);
    for (const Number &number : numbers) {
        painter.drawText(number.baseline, number.text);
    }
}

void GaugeFace::DrawNeedle(QPainter &painter, double needle, const QPalette &palette) const {
    const double degrees = DegreesOf(needle);
    const QPointF along = OnFace(degrees, 1) - centre;
    const QPointF across(-along.y(), along.x());
    const auto draw = [&](double rim, QPalette::ColorRole role) {
        painter.setBrush(palette.color(role));
        const QPointF tip = centre + (needleLength + rim) * along;
        const QPointF tipSide = (needleTipHalfWidth + rim) * across;
        const QPointF side = (needleHalfWidth + rim) * across;
        const std::array corners{tip - tipSide, tip + tipSide, centre + side, centre - side};
        painter.drawConvexPolygon(corners.data(), static_cast<int>(corners.size()));
        const double radius = (hubRadius + rim) * unit;
        painter.drawEllipse(centre, radius, radius);
    };
    painter.setPen(Qt::NoPen);
    // The rim sets the needle off from the numbers below it.
    draw(needleRim, QPalette::Window);
    draw(0, QPalette::WindowText);
}

/// A flag with its straight edge at the value and its tip on the scale.
void GaugeFace::DrawHandle(QPainter &painter, int pointer, double value, const Look &look) const {
    const bool isLow = pointer == lowPointerNumber;
    const double width = Side(pointer) * handleWidth;
    const std::array shape{QPointF(handleInner, 0), QPointF(handleOuter, 0),
                           QPointF(handleOuter, width), QPointF(handleShoulder, width)};
    const QColor ink = look.palette.color(QPalette::WindowText);
    const QColor ground = look.palette.color(QPalette::Window);
    const QColor fill = isLow ? lowColour : highColour;

    painter.save();
    painter.translate(centre);
    painter.rotate(firstDegrees + DegreesOf(value));
    painter.scale(unit, unit);
    if (pointer == look.focusedPointer) {
        const QColor ring = look.palette.color(QPalette::Highlight);
        painter.setPen(QPen(ring, 3.2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawPolygon(shape.data(), static_cast<int>(shape.size()));
        painter.setPen(QPen(ground, 1.2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawPolygon(shape.data(), static_cast<int>(shape.size()));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.enabled ? fill : Mix(ground, ink, 0.5));
    painter.drawConvexPolygon(shape.data(), static_cast<int>(shape.size()));
    painter.restore();

    const double half = handleWidth * unit;
    const QPointF middle = PointerPosition(pointer, value);
    painter.setFont(letterFont);
    painter.setPen(look.enabled ? QColor(Qt::white) : ground);
    painter.drawText(QRectF(middle - QPointF(half, half), middle + QPointF(half, half)),
                     Qt::AlignCenter,
                     isLow ? QCoreApplication::translate("ztm::Gauge", "L")
                           : QCoreApplication::translate("ztm::Gauge", "H"));
}

void GaugeFace::DrawCaption(QPainter &painter, const QString &caption,
                            const QPalette &palette) const {
    const QPointF corner(-captionWidth / 2 * unit, captionTop * unit);
    const QSizeF size(captionWidth * unit, captionHeight * unit);
    painter.setFont(captionFont);
    painter.setPen(palette.color(QPalette::WindowText));
    painter.drawText(QRectF(centre + corner, size), Qt::AlignCenter | Qt::TextDontClip, caption);
}

} // namespace ztm
