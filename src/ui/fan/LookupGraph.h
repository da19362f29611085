#pragma once

#include "fan/LookupTable.h"

#include <QPainter>
#include <QWidget>

#include <array>
#include <optional>

namespace ztm {

/// The graph of the automatic control window: fan speed upwards over temperature to the right,
/// with grid, curves, the highlighted point and the preview of a point that is being carried. It
/// draws the lookup table in use in twips, whatever its size in pixels, and reports the mouse in
/// twips. Its ground is light in every palette, since the colours of its curves are fixed.
class LookupGraph final : public QWidget {
    Q_OBJECT

public:
    explicit LookupGraph(QWidget *parent = nullptr);

    /// The radius of the highlight and the measure of the hit test, in twips.
    static constexpr double HitRadius = 40;

    /// What is drawn besides the table; call update afterwards.
    bool linear = false;                ///< straight lines between points instead of steps
    int selectedPoint = 0;              ///< 0 to 7
    std::optional<QPointF> carriedAt{}; ///< where the selected point is carried, in twips

    /// Whether that place, in twips, is on the selected point.
    bool IsOnSelectedPoint(QPointF place) const;

    /// Tells assistive technology the points.
    void DescribePoints();

    QSize sizeHint() const override;

signals:
    void MouseDown(QPointF place);
    void MouseMoved(QPointF place);

    /// An arrow key: so many degrees and so many RPM.
    void MoveWanted(int celsius, int rpm);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    QPointF InTwips(QPointF pixels) const;
    QPen Pen(const QColor &colour, int pixels, Qt::PenCapStyle cap = Qt::FlatCap) const;
    void DrawGrid(QPainter &painter);
    void DrawCurve(QPainter &painter, int first, int last, const QColor &colour);
    void HiLightPoints(QPainter &painter);
    void GrayLines(QPainter &painter, double xVal, double yVal);
    void DrawReading(QPainter &painter);
};

} // namespace ztm
