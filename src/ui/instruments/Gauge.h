#pragma once

#include "ui/instruments/AccessibleParts.h"
#include "ui/instruments/GaugeFace.h"

#include <QWidget>

namespace ztm {

/// A round instrument: a needle and two coloured bands on a scale, a caption below, and two
/// handles, low (L) and high (H), that the user drags along the scale or moves with the keys.
///
/// The scale runs clockwise over 270 degrees, from the lower left to the lower right. Needle and
/// pointers always stay between `minimum` and `maximum`: setting them clamps, and reading gives the
/// clamped value. A band is drawn if its start is below its end. NaN is ignored.
///
/// The arrow keys move the pointer with the focus ring by `singleStep`, with Shift by ten steps;
/// Space, L and H select the pointer; Escape restores a pointer that is being moved. One pointer
/// may be moved past the other. The signals report only the user's actions.
class Gauge : public QWidget, public AccessibleParts {
    Q_OBJECT
    Q_PROPERTY(double needle READ Needle WRITE SetNeedle)
    Q_PROPERTY(double lowPointer READ LowPointer WRITE SetLowPointer)
    Q_PROPERTY(double highPointer READ HighPointer WRITE SetHighPointer)
    Q_PROPERTY(double band0Start READ Band0Start WRITE SetBand0Start)
    Q_PROPERTY(double band0End READ Band0End WRITE SetBand0End)
    Q_PROPERTY(double band1Start READ Band1Start WRITE SetBand1Start)
    Q_PROPERTY(double band1End READ Band1End WRITE SetBand1End)
    Q_PROPERTY(double minimum READ Minimum WRITE SetMinimum)
    Q_PROPERTY(double maximum READ Maximum WRITE SetMaximum)
    Q_PROPERTY(double singleStep READ SingleStep WRITE SetSingleStep)
    Q_PROPERTY(bool lowPointerVisible READ IsLowPointerVisible WRITE SetLowPointerVisible)
    Q_PROPERTY(QString caption READ Caption WRITE SetCaption)

public:
    /// A scale from 0 to 100, with the pointers at its ends.
    explicit Gauge(QWidget *parent = nullptr);

    double Needle() const { return shown.needle; }
    void SetNeedle(double value);
    /// A hidden needle keeps its value.
    bool IsNeedleVisible() const { return shown.needleVisible; }
    void SetNeedleVisible(bool visible);

    double LowPointer() const { return shown.low; }
    void SetLowPointer(double value);
    double HighPointer() const { return shown.high; }
    void SetHighPointer(double value);

    /// The thick band on the scale.
    double Band0Start() const { return shown.band0.start; }
    void SetBand0Start(double value);
    double Band0End() const { return shown.band0.end; }
    void SetBand0End(double value);

    /// The thin band inside the scale.
    double Band1Start() const { return shown.band1.start; }
    void SetBand1Start(double value);
    double Band1End() const { return shown.band1.end; }
    void SetBand1End(double value);

    /// The ends of the scale. An end set beyond the other moves the other too.
    double Minimum() const { return face.Minimum(); }
    void SetMinimum(double value);
    double Maximum() const { return face.Maximum(); }
    void SetMaximum(double value);

    /// How far an arrow key moves a pointer.
    double SingleStep() const { return singleStep; }
    void SetSingleStep(double step) { singleStep = step; }

    /// A hidden low pointer keeps its value and cannot be moved by the user.
    bool IsLowPointerVisible() const { return shown.lowVisible; }
    void SetLowPointerVisible(bool visible);

    /// Whether the user is moving a pointer.
    bool IsPointerHeld() const { return move.means != Means::None; }

    QString Caption() const { return shown.caption; }
    void SetCaption(const QString &text);

    /// The position of the middle of a pointer's handle (2 low, 3 high) at a value, in widget
    /// coordinates. Dragging from the position of one value to that of another moves the pointer
    /// from one to the other.
    Q_INVOKABLE QPointF PointerPosition(int pointer, double value) const;

    // The pointers as seen by assistive technology, the low one first if it is visible.
    int PartCount() const override;
    AccessiblePart PartAt(int part) const override;
    void MovePart(int part, double value) override;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The user has moved a pointer, and may move it further.
    void PointerMoving();

    /// The user has finished moving a pointer: once per drag or key press that moved it.
    void PointerChanged();

protected:
    bool event(QEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;

private:
    enum class Means { None, Mouse, Keys };

    /// A move of a pointer in progress.
    struct Move {
        Means means = Means::None;
        int pointer = 0;
        double start = 0;       // the value to go back to
        QPointF pressed;        // where the mouse grabbed the handle
        double heldDegrees = 0; // from there to the middle of the handle
        bool moved = false;
    };

    void Show(double &value, double newValue);
    void SetRange(double from, double to);
    void SetPointer(int pointer, double value);
    void UpdateFace();
    void UpdateDescription();

    int PointerOf(int part) const;
    void Begin(Means means, int pointer);
    void MoveTo(double value);
    void DragTo(const QPointF &position);
    void Finish();
    void Interrupt();
    void PutBack();
    void SelectPointer(int pointer);
    void UpdateCursor(const QPointF &position);

    GaugeReadings shown;
    GaugeFace face;
    double singleStep = 1;
    Move move;
    int selected = lowPointerNumber;
};

} // namespace ztm
