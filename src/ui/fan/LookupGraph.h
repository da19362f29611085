#pragma once

#include "fan/LookupCurve.h"
#include "ui/fan/LiveTrail.h"
#include "ui/fan/LookupMarks.h"
#include "ui/instruments/AccessibleParts.h"

#include <QPainter>
#include <QWidget>

#include <array>
#include <optional>

namespace ztm {

/// The graph of the automatic control window: fan speed upwards over temperature to the right, with
/// grid, curves, a mark with its number at every point, the highlighted point and a preview of the
/// carried point. Beneath a part of a curve that falls in temperature or speed there is a band, and
/// where a fan is now there is a dot with its way in the last minute; marks, bands and dots say
/// more when the mouse rests on them. It draws the lookup table in use in twips at any size in
/// pixels, and reports the mouse in twips within the graph; its first and last pixels are the edges
/// of the graph. Its background is light in every palette, because the colours of its curves are
/// fixed.
class LookupGraph final : public QWidget, public AccessibleParts {
    Q_OBJECT

public:
    explicit LookupGraph(QWidget *parent = nullptr);

    /// The radius of the highlight, and half the reach of the hit test, in twips.
    static constexpr double HitRadius = 40;

    /// What is drawn besides the table; call update afterwards.
    bool linear = false;                ///< straight lines between points instead of steps
    int selectedPoint = 0;              ///< 0 to 7
    std::optional<QPointF> carriedAt{}; ///< position of the carried point, in twips

    /// From now on shows these fans. Paints no more than they and their ways need, whatever else
    /// has changed.
    void ShowLive(const std::array<std::optional<LivePoint>, 2> &fans);

    /// Whether a place, in twips, is on the selected point.
    bool IsOnSelectedPoint(QPointF place) const;

    /// What there is to say of a place, in pixels: of the points, the fan or the part of a curve
    /// there. Empty if there is nothing.
    QString HintAt(QPointF pixels) const;

    /// Describes the points for assistive technology.
    void DescribePoints();

    // As seen by assistive technology: of each point first its temperature, then its speed.
    int PartCount() const override { return 2 * LookupPoints; }
    AccessiblePart PartAt(int part) const override;
    void MovePart(int part, double value) override;

    QSize sizeHint() const override;

signals:
    void MouseDown(QPointF place);
    void MouseMoved(QPointF place);

    /// The mouse was released at least the toolkit's drag distance from where it was pressed.
    void MouseDragged(QPointF place);

    /// An arrow key was pressed, or repeats while it is held: the change in degrees and in RPM.
    void MoveWanted(int celsius, int rpm, bool isRepeated);

    /// The key of a point's number was pressed.
    void PointWanted(int point);

    /// A point is to have another temperature or another speed.
    void TemperatureWanted(int point, double celsius);
    void SpeedWanted(int point, double rpm);

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QPointF PixelsPerTwip() const;
    QPointF InTwips(QPointF pixels) const;
    QPointF InPixels(QPointF place) const;
    QFont MarkFont() const;
    LookupMarks Marks(const SpeedPoints &points) const;
    QPen Pen(const QColor &colour, int pixels, Qt::PenCapStyle cap = Qt::FlatCap) const;
    void DrawGrid(QPainter &painter);
    void DrawBands(QPainter &painter, const SpeedPoints &points);
    void DrawCurve(QPainter &painter, const SpeedPoints &points, PointSpan curve,
                   const QColor &colour);
    void DrawMarks(QPainter &painter, const SpeedPoints &points);
    void DrawLive(QPainter &painter);
    void HiLightPoints(QPainter &painter);
    void GrayLines(QPainter &painter, double xVal, double yVal);
    void DrawReading(QPainter &painter);

    QPointF pressedAt; // in pixels
    std::array<std::optional<LivePoint>, 2> live{};
    QRect liveArea; // of `live`, in pixels
};

} // namespace ztm
