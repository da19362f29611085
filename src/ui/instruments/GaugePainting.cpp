#include "ui/instruments/Gauge.h"
#include "ui/instruments/Scale.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include <array>
#include <cmath>

namespace ztm {
namespace {

// Angles are in degrees, clockwise from three o'clock as the painter turns.
constexpr double firstDegrees = 135;
constexpr double sweepDegrees = 270;
constexpr double fullTurn = 360;

// So near to an end of the scale, a mouse below it means that end, and a pointer on it is at it.
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
constexpr double letterSize = 6;
constexpr double captionSize = 10;

// How far beside a handle the mouse still takes it, in pixels.
constexpr double reach = 4;

constexpr QColor bandColour(46, 160, 67);
constexpr QColor lowColour(0, 104, 168);
constexpr QColor highColour(186, 74, 0);

QColor Blend(const QColor &first, const QColor &second, float share) {
    const auto mix = [share](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(mix(first.redF(), second.redF()), mix(first.greenF(), second.greenF()),
                            mix(first.blueF(), second.blueF()));
}

/// The low handle lies before its value and the high one after it, so that neither covers the
/// other when they meet.
double Side(int pointer) {
    return pointer == Gauge::lowPointerNumber ? -1 : 1;
}

double HandleDegrees(int pointer) {
    return qRadiansToDegrees(std::atan2(Side(pointer) * handleWidth / 2, handleMiddle));
}

} // namespace

double Gauge::DegreesOf(double value) const {
    const double range = maximum - minimum;
    return range > 0 ? sweepDegrees * (Clamped(value) - minimum) / range : 0;
}

QPointF Gauge::OnFace(double degrees, double radius) const {
    const double angle = qDegreesToRadians(firstDegrees + degrees);
    return face.centre + radius * face.unit * QPointF(std::cos(angle), std::sin(angle));
}

QPointF Gauge::PointerPosition(int pointer, double value) const {
    return OnFace(DegreesOf(value) + HandleDegrees(pointer),
                  std::hypot(handleMiddle, handleWidth / 2));
}

QPointF Gauge::HandleMiddle(int pointer) const {
    return PointerPosition(pointer, pointer == lowPointerNumber ? low : high);
}

/// The degrees along the scale that a handle with its middle in that direction stands for.
double Gauge::DegreesAt(int pointer, const QPointF &position) const {
    const QPointF away = position - face.centre;
    return qRadiansToDegrees(std::atan2(away.y(), away.x())) - HandleDegrees(pointer) -
           firstDegrees;
}

/// The value at any angle. Below the scale it is the nearer end, except that a pointer which is
/// about at an end (`current`) goes there, and does not jump to the other.
double Gauge::ValueAt(double degrees, double current) const {
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
    // The mouse gives a value to the pixel: no more decimals than that is worth.
    const double pixels = qDegreesToRadians(sweepDegrees) * handleMiddle * face.unit;
    const double decimals = std::ceil(1 - std::log10((maximum - minimum) / pixels));
    const double perUnit = std::pow(10, qMax(0.0, decimals));
    return std::isfinite(perUnit) ? std::round(value * perUnit) / perUnit : value;
}

/// The pointer whose handle is at a position, or 0.
int Gauge::PointerAt(const QPointF &position) const {
    int nearest = 0;
    double least = INFINITY;
    for (const int pointer : {highPointerNumber, lowPointerNumber}) {
        const QPointF away = position - HandleMiddle(pointer);
        const double distance = std::hypot(away.x(), away.y());
        const double radius = (handleOuter - handleShoulder) / 2 * face.unit + reach;
        const bool shown = pointer == highPointerNumber || lowVisible;
        if (shown && distance <= radius && distance < least) {
            nearest = pointer;
            least = distance;
        }
    }
    return nearest;
}

void Gauge::UpdateFace() {
    face = {};
    face.centre = rect().toRectF().center();
    face.unit = qMax(1, qMin(width(), height())) / 100.0;
    face.numberFont = font();
    face.numberFont.setPixelSize(qMax(1, qRound(numberSize * face.unit)));
    face.letterFont = font();
    face.letterFont.setBold(true);
    face.letterFont.setPixelSize(qMax(1, qRound(letterSize * face.unit)));
    UpdateCaptionFont();
    AddTicks();
}

void Gauge::AddTicks() {
    const ScaleMarks marks = MarksFor(minimum, maximum);
    for (const double value : marks.numbered) {
        AddNumber(value);
        if (maximum > minimum) {
            face.majorTicks.append(
                {OnFace(DegreesOf(value), ringInner), OnFace(DegreesOf(value), ringOuter)});
        }
    }
    for (const double value : marks.small) {
        face.minorTicks.append({OnFace(DegreesOf(value), ringInner),
                                OnFace(DegreesOf(value), ringInner + minorTickLength)});
    }
}

/// Adds a number that touches the circle of numbers from inside.
void Gauge::AddNumber(double value) {
    const QFontMetricsF metrics(face.numberFont);
    const QString text = QString::number(value, 'g', 10);
    const double halfWidth = metrics.horizontalAdvance(text) / 2;
    const double halfHeight = metrics.capHeight() / 2;
    const double angle = qDegreesToRadians(firstDegrees + DegreesOf(value));
    const QPointF outward(std::cos(angle), std::sin(angle));
    // From the middle of the text to its edge, in that direction, of an ellipse around it.
    const double extent = std::hypot(halfWidth * outward.x(), halfHeight * outward.y());
    const QPointF middle = face.centre + (numberRadius * face.unit - extent) * outward;
    face.numbers.append({middle + QPointF(-halfWidth, halfHeight), text});
}

void Gauge::UpdateCaptionFont() {
    captionFont = font();
    captionFont.setBold(true);
    captionFont.setPixelSize(qMax(1, qRound(captionSize * face.unit)));
    const double width = QFontMetricsF(captionFont).horizontalAdvance(caption);
    const double room = captionWidth * face.unit;
    if (width > room) {
        captionFont.setPixelSize(qMax(1, qFloor(captionSize * face.unit * room / width)));
    }
}

void Gauge::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    DrawScale(painter);
    DrawCaption(painter);
    DrawNeedle(painter);
    if (lowVisible) {
        DrawHandle(painter, lowPointerNumber);
    }
    DrawHandle(painter, highPointerNumber);
}

void Gauge::DrawArc(QPainter &painter, const Band &band, double radius, double thickness,
                    const QColor &colour) const {
    const double from = DegreesOf(band.start);
    const double to = DegreesOf(band.end);
    if (!(from < to)) {
        return;
    }
    // A filled outline costs a good deal less than a wide stroke. Qt's arcs run the other way.
    const auto square = [this](double half) {
        const QPointF corner(half * face.unit, half * face.unit);
        return QRectF(face.centre - corner, face.centre + corner);
    };
    QPainterPath path(OnFace(from, radius + thickness / 2));
    path.arcTo(square(radius + thickness / 2), -firstDegrees - from, from - to);
    path.arcTo(square(radius - thickness / 2), -firstDegrees - to, to - from);
    painter.fillPath(path, colour);
}

void Gauge::DrawScale(QPainter &painter) const {
    const QColor ink = palette().color(QPalette::WindowText);
    const QColor track = Blend(palette().color(QPalette::Window), ink, 0.2F);
    const QColor colour = isEnabled() ? bandColour : Blend(track, ink, 0.3F);
    const double ringMiddle = (ringInner + ringOuter) / 2;
    DrawArc(painter, {minimum, maximum}, ringMiddle, ringThickness, track);
    DrawArc(painter, band0, ringMiddle, ringThickness, colour);
    DrawArc(painter, band1, thinBandRadius, thinBandThickness, colour);

    painter.setPen(QPen(ink, 0.35 * face.unit));
    painter.drawLines(face.minorTicks);
    painter.setPen(QPen(ink, 0.75 * face.unit));
    painter.drawLines(face.majorTicks);
    painter.setFont(face.numberFont);
    for (const Face::Number &number : face.numbers) {
        painter.drawText(number.baseline, number.text);
    }
}

void Gauge::DrawNeedle(QPainter &painter) const {
    const double degrees = DegreesOf(needle);
    const QPointF along = OnFace(degrees, 1) - face.centre;
    const QPointF across(-along.y(), along.x());
    const auto draw = [&](double rim, QPalette::ColorRole role) {
        painter.setBrush(palette().color(role));
        const QPointF tip = face.centre + (needleLength + rim) * along;
        const QPointF tipSide = (needleTipHalfWidth + rim) * across;
        const QPointF side = (needleHalfWidth + rim) * across;
        const std::array corners{tip - tipSide, tip + tipSide, face.centre + side,
                                 face.centre - side};
        painter.drawConvexPolygon(corners.data(), static_cast<int>(corners.size()));
        const double radius = (hubRadius + rim) * face.unit;
        painter.drawEllipse(face.centre, radius, radius);
    };
    painter.setPen(Qt::NoPen);
    // The rim sets the needle off from the numbers below it.
    draw(needleRim, QPalette::Window);
    draw(0, QPalette::WindowText);
}

/// A flag whose straight edge stands on the value, with a tip on the scale.
void Gauge::DrawHandle(QPainter &painter, int pointer) const {
    const bool isLow = pointer == lowPointerNumber;
    const double width = Side(pointer) * handleWidth;
    const std::array shape{QPointF(handleInner, 0), QPointF(handleOuter, 0),
                           QPointF(handleOuter, width), QPointF(handleShoulder, width)};
    const QColor ink = palette().color(QPalette::WindowText);
    const QColor ground = palette().color(QPalette::Window);
    const QColor fill = isLow ? lowColour : highColour;

    painter.save();
    painter.translate(face.centre);
    painter.rotate(firstDegrees + DegreesOf(isLow ? low : high));
    painter.scale(face.unit, face.unit);
    if (hasFocus() && pointer == selected) {
        const QColor ring = palette().color(QPalette::Highlight);
        painter.setPen(QPen(ring, 3.2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawPolygon(shape.data(), static_cast<int>(shape.size()));
        painter.setPen(QPen(ground, 1.2, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.drawPolygon(shape.data(), static_cast<int>(shape.size()));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(isEnabled() ? fill : Blend(ground, ink, 0.5F));
    painter.drawConvexPolygon(shape.data(), static_cast<int>(shape.size()));
    painter.restore();

    const double half = handleWidth * face.unit;
    const QPointF middle = HandleMiddle(pointer);
    painter.setFont(face.letterFont);
    painter.setPen(isEnabled() ? QColor(Qt::white) : ground);
    painter.drawText(QRectF(middle - QPointF(half, half), middle + QPointF(half, half)),
                     Qt::AlignCenter, isLow ? tr("L") : tr("H"));
}

void Gauge::DrawCaption(QPainter &painter) const {
    const QPointF corner(-captionWidth / 2 * face.unit, captionTop * face.unit);
    const QSizeF size(captionWidth * face.unit, captionHeight * face.unit);
    painter.setFont(captionFont);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(QRectF(face.centre + corner, size), Qt::AlignCenter | Qt::TextDontClip,
                     caption);
}

} // namespace ztm
