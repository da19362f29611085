#pragma once

#include "ui/instruments/Scale.h"
#include "ui/kit/WheelSteps.h"

#include <QFont>
#include <QWidget>

#include <algorithm>

namespace ztm {

/// A vertical slider: a handle that the user moves along a scale with numbers, a caption above and
/// the value below.
///
/// The value always stays between `minimum` and `maximum`: setting it clamps. NaN is ignored. The
/// user drags the handle, clicks on the track, turns the wheel or uses the keys: arrows move by a
/// small step, Page Up and Page Down by a large one, Home goes to the minimum and End to the
/// maximum. The signals report only the user's actions.
class ValueSlider : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double value READ Value WRITE SetValue)
    Q_PROPERTY(double minimum READ Minimum WRITE SetMinimum)
    Q_PROPERTY(double maximum READ Maximum WRITE SetMaximum)
    Q_PROPERTY(QString caption READ Caption WRITE SetCaption)

public:
    /// A scale from 0 to 100, with the value 0.
    explicit ValueSlider(QWidget *parent = nullptr);

    double Value() const { return value; }
    void SetValue(double newValue);

    /// The ends of the scale. An end set beyond the other moves the other too.
    double Minimum() const { return minimum; }
    void SetMinimum(double end);
    double Maximum() const { return maximum; }
    void SetMaximum(double end);

    /// The steps of an arrow key or a notch of the wheel, and of Page Up and Page Down.
    void SetSteps(double small, double large);
    double SmallStep() const { return smallStep; }

    /// Also the accessible name.
    QString Caption() const { return caption; }
    void SetCaption(const QString &text);

    /// The value as shown.
    QString ValueText() const;

    /// Whether the user holds the handle with the mouse.
    bool IsDragged() const { return dragged; }

    /// The position of the middle of the handle at a value, in widget coordinates.
    Q_INVOKABLE QPointF HandlePosition(double ofValue) const;

    /// Moves the handle as the user does.
    void MoveTo(double newValue);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The user has moved the handle, and may move it further.
    void ValueChanged(double newValue);

    /// The user has released the handle, moved or not.
    void Released();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    /// Layout that depends on the size, the font and the ends of the scale.
    struct Face {
        QRectF track;      // of the handle's middle, without a width
        QSizeF handle;     // its size
        double ticksLeft;  // where the scale's marks begin
        double bandHeight; // of caption and value
        QFont captionFont;
        QFont numberFont;
        ScaleMarks marks;
    };

    double Clamped(double any) const { return std::clamp(any, minimum, maximum); }
    void SetRange(double from, double to);
    double ValueAt(double y) const;
    QRectF HandleRect() const;
    void DragTo(const QPointF &position);
    void Release();

    void UpdateFace();
    void DrawTrack(QPainter &painter) const;
    void DrawScale(QPainter &painter) const;
    void DrawHandle(QPainter &painter) const;
    void DrawText(QPainter &painter, double top, const QString &text) const;

    double minimum = 0;
    double maximum = 100;
    double value = 0;
    double smallStep = 1;
    double largeStep = 10;
    QString caption;
    Face face;
    bool dragged = false;
    bool moved = false; // since the mouse was pressed
    double start = 0;   // the value then
    QPointF pressed;    // where the mouse grabbed the handle
    double held = 0;    // from the middle of the handle down to there
    WheelSteps wheel;
};

} // namespace ztm
