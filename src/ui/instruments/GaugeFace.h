#pragma once

#include <QFont>
#include <QLineF>
#include <QList>
#include <QPalette>
#include <QPointF>
#include <QRectF>

#include <algorithm>

class QPainter;

namespace ztm {

/// The numbers of a gauge's two pointers.
inline constexpr int lowPointerNumber = 2;
inline constexpr int highPointerNumber = 3;

/// What a gauge shows on its face.
struct GaugeReadings {
    /// Drawn if its start is below its end.
    struct Band {
        double start = 0;
        double end = 0;
    };

    double needle = 0;
    bool needleVisible = true;
    double low = 0;
    double high = 100;
    bool lowVisible = true;
    Band band0; ///< the thick one on the scale
    Band band1; ///< the thin one inside the scale
    QString caption;

    double &Pointer(int number) { return number == lowPointerNumber ? low : high; }
    double Pointer(int number) const { return number == lowPointerNumber ? low : high; }
};

/// The face of a gauge: maps values to points and points to values, finds the handle under the
/// mouse, and paints. The scale runs clockwise over 270 degrees from the lower left to the lower
/// right; degrees count from its start.
class GaugeFace {
public:
    double Minimum() const { return minimum; }
    double Maximum() const { return maximum; }
    double Clamped(double value) const { return std::clamp(value, minimum, maximum); }

    void SetRange(double from, double to);
    /// Fits the face into a widget.
    void SetSize(const QRectF &room, const QFont &textFont);
    /// Makes the caption's font smaller if it does not fit.
    void FitCaption(const QString &caption);

    double DegreesOf(double value) const;
    /// The degrees along the scale for a pointer whose handle has its middle in that direction.
    double DegreesAt(int pointer, const QPointF &position) const;
    /// The value at any angle, with no more decimals than a pixel is worth. Below the scale it is
    /// the nearer end, but a pointer that is near an end (`current`) stays at that end and does not
    /// jump to the other.
    double ValueAt(double degrees, double current) const;
    /// The middle of a pointer's handle at a value.
    QPointF PointerPosition(int pointer, double value) const;
    /// How far from the middle of a handle the mouse grabs it, in pixels.
    double HandleReach() const;
    /// The pointer whose handle is at a position, or 0.
    int PointerAt(const QPointF &position, const GaugeReadings &readings) const;

    /// The widget state that affects the picture.
    struct Look {
        QPalette palette;
        bool enabled = true;
        int focusedPointer = 0; ///< the one with the focus ring, or 0
    };
    void Paint(QPainter &painter, const GaugeReadings &readings, const Look &look) const;

private:
    struct Number {
        QPointF baseline;
        QString text;
    };

    void UpdateMarks();
    void AddNumber(double value);
    QPointF OnFace(double degrees, double radius) const;
    void DrawArc(QPainter &painter, const GaugeReadings::Band &band, double radius,
                 double thickness, const QColor &colour) const;
    void DrawScale(QPainter &painter, const GaugeReadings &readings, const Look &look) const;
    void DrawNeedle(QPainter &painter, double needle, const QPalette &palette) const;
    void DrawHandle(QPainter &painter, int pointer, double value, const Look &look) const;
    void DrawCaption(QPainter &painter, const QString &caption, const QPalette &palette) const;

    double minimum = 0;
    double maximum = 100;
    QPointF centre;
    double unit = 1; // a hundredth of the diameter
    QFont font;
    QFont numberFont;
    QFont letterFont;
    QFont captionFont;
    QList<QLineF> majorTicks;
    QList<QLineF> minorTicks;
    QList<Number> numbers;
};

} // namespace ztm
