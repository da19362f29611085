#pragma once

#include "ui/kit/WheelSteps.h"

#include <QWidget>

#include <cstdint>

class QLineEdit;
class QToolButton;

namespace ztm {

/// The range of a spin button: whole numbers from `minimum` to `maximum`.
struct SpinRange {
    int minimum;
    int maximum;
    int step = 1;

    /// `value` changed by `change` and limited to the range. From outside it moves into the range
    /// or not at all, never against the direction of the change.
    int64_t Moved(int64_t value, int64_t change) const;
};

/// A pair of small arrows bound to a text box that takes any text. A step rounds the number in the
/// box to a whole number, changes it and limits it to the range, see SpinRange; the arrows give the
/// box the focus and repeat while held. The box's Up and Down keys step as well, and so does the
/// wheel over it while it has the focus. The box reports the new text like any other, and Ctrl+Z
/// takes a step back.
class SpinButton final : public QWidget {
    Q_OBJECT

public:
    /// Takes its object name from the box: "<box>Spin", the arrows "<box>SpinUp" and
    /// "<box>SpinDown".
    SpinButton(QLineEdit &textBox, SpinRange spinRange, QWidget *parent);

    /// Changes the number by that many steps, down if negative.
    void Step(int steps);

    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QToolButton *NewArrow(Qt::ArrowType arrow, const char *suffix, int steps);
    bool StepByWheel(QWheelEvent &event);

    QLineEdit &box;
    SpinRange range;
    WheelSteps wheel;
    QToolButton *up;
    QToolButton *down;
};

/// A text box and its spin button side by side, as one widget for a layout.
QWidget *NewSpinBox(QLineEdit *&box, const QString &name, SpinRange range, QWidget *parent);

} // namespace ztm
