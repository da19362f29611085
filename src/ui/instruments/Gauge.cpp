#include "ui/instruments/Gauge.h"

#include "ui/instruments/InstrumentAccess.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace ztm {
namespace {

constexpr int fastSteps = 10;

bool IsArrow(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_Left || key == Qt::Key_Right;
}

/// The steps that a key stands for, positive upwards; 0 for any other key.
int StepsOf(const QKeyEvent &event) {
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0) {
        return 0;
    }
    const int size = (event.modifiers() & Qt::ShiftModifier) != 0 ? fastSteps : 1;
    switch (event.key()) {
    case Qt::Key_Up:
    case Qt::Key_Right:
        return size;
    case Qt::Key_Down:
    case Qt::Key_Left:
        return -size;
    default:
        return 0;
    }
}

} // namespace

Gauge::Gauge(QWidget *parent) : QWidget(parent) {
    MakeInstrumentsAccessible();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    UpdateFace();
}

QSize Gauge::sizeHint() const {
    const int side = 15 * fontMetrics().height();
    return {side, side};
}

QSize Gauge::minimumSizeHint() const {
    const int side = 6 * fontMetrics().height();
    return {side, side};
}

void Gauge::Show(double &value, double newValue) {
    if (value != newValue && !std::isnan(newValue)) {
        value = newValue;
        update();
    }
}

void Gauge::SetNeedle(double value) {
    Show(shown.needle, face.Clamped(value));
}

void Gauge::SetNeedleVisible(bool visible) {
    if (shown.needleVisible != visible) {
        shown.needleVisible = visible;
        update();
    }
}

void Gauge::SetBand0Start(double value) {
    Show(shown.band0.start, value);
}

void Gauge::SetBand0End(double value) {
    Show(shown.band0.end, value);
}

void Gauge::SetBand1Start(double value) {
    Show(shown.band1.start, value);
}

void Gauge::SetBand1End(double value) {
    Show(shown.band1.end, value);
}

void Gauge::SetLowPointer(double value) {
    SetPointer(lowPointerNumber, value);
}

void Gauge::SetHighPointer(double value) {
    SetPointer(highPointerNumber, value);
}

void Gauge::SetPointer(int pointer, double value) {
    Show(shown.Pointer(pointer), face.Clamped(value));
    UpdateDescription();
    TellPartChanged(*this, pointer == highPointerNumber ? PartCount() - 1 : 0);
}

int Gauge::PartCount() const {
    return shown.lowVisible ? 2 : 1;
}

int Gauge::PointerOf(int part) const {
    return part == PartCount() - 1 ? highPointerNumber : lowPointerNumber;
}

AccessiblePart Gauge::PartAt(int part) const {
    const int pointer = PointerOf(part);
    const double value = shown.Pointer(pointer);
    const QString name = pointer == highPointerNumber ? tr("%1, high") : tr("%1, low");
    const int reach = qRound(face.HandleReach());
    const QPoint middle = PointerPosition(pointer, value).toPoint();
    return {.name = name.arg(accessibleName()),
            .valueText = QString::number(value),
            .value = value,
            .minimum = Minimum(),
            .maximum = Maximum(),
            .step = singleStep,
            .place = QRect(middle - QPoint(reach, reach), middle + QPoint(reach, reach)),
            .hasFocus = selected == pointer};
}

void Gauge::MovePart(int part, double value) {
    if (isEnabled()) {
        Finish();
        Begin(Means::Keys, PointerOf(part));
        MoveTo(value);
        Finish();
    }
}

void Gauge::SetMinimum(double value) {
    SetRange(value, qMax(value, Maximum()));
}

void Gauge::SetMaximum(double value) {
    SetRange(qMin(value, Minimum()), value);
}

void Gauge::SetRange(double from, double to) {
    if (!std::isfinite(from) || !std::isfinite(to) || (from == Minimum() && to == Maximum())) {
        return;
    }
    face.SetRange(from, to);
    SetNeedle(Needle());
    SetLowPointer(LowPointer());
    SetHighPointer(HighPointer());
    update();
}

void Gauge::SetLowPointerVisible(bool visible) {
    if (shown.lowVisible == visible) {
        return;
    }
    if (move.pointer == lowPointerNumber) {
        move = {};
    }
    shown.lowVisible = visible;
    selected = visible ? lowPointerNumber : highPointerNumber;
    UpdateDescription();
    update();
}

void Gauge::SetCaption(const QString &text) {
    if (shown.caption != text) {
        shown.caption = text;
        face.FitCaption(text);
        UpdateDescription();
        update();
    }
}

/// The text for assistive tools; skipped if there are none.
void Gauge::UpdateDescription() {
    if (!QAccessible::isActive()) {
        return;
    }
    const QString highText = tr("high %1").arg(shown.high);
    const QString text = shown.lowVisible
                             ? tr("%1, low %2, %3").arg(shown.caption).arg(shown.low).arg(highText)
                             : tr("%1, %2").arg(shown.caption, highText);
    if (text != accessibleDescription()) {
        setAccessibleDescription(text);
    }
}

void Gauge::Begin(Means means, int pointer) {
    move = {};
    move.means = means;
    move.pointer = pointer;
    move.start = shown.Pointer(pointer);
    if (selected != pointer) {
        selected = pointer;
        update();
    }
}

/// Moves the current pointer within the scale.
void Gauge::MoveTo(double value) {
    const double bounded = face.Clamped(value);
    if (bounded != shown.Pointer(move.pointer)) {
        move.moved = true;
        SetPointer(move.pointer, bounded);
        emit PointerMoving();
    }
}

void Gauge::DragTo(const QPointF &position) {
    // A click on a handle is not a move.
    if (move.moved || position != move.pressed) {
        const double degrees = face.DegreesAt(move.pointer, position) + move.heldDegrees;
        MoveTo(face.ValueAt(degrees, shown.Pointer(move.pointer)));
    }
}

void Gauge::Finish() {
    const bool moved = move.moved;
    move = {};
    if (moved) {
        emit PointerChanged();
    }
}

/// Ends a move that the user did not finish: changes by keys stay, a drag that was not released is
/// undone.
void Gauge::Interrupt() {
    if (move.means == Means::Mouse) {
        PutBack();
    } else {
        Finish();
    }
}

void Gauge::PutBack() {
    const Move ended = move;
    move = {};
    if (shown.Pointer(ended.pointer) != ended.start) {
        SetPointer(ended.pointer, ended.start);
        emit PointerMoving();
    }
}

void Gauge::SelectPointer(int pointer) {
    Finish();
    if (shown.lowVisible && selected != pointer) {
        selected = pointer;
        update();
    }
}

bool Gauge::event(QEvent *event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
        // Escape is for the current move, not for the window.
        if (move.means != Means::None && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Escape) {
            event->accept();
            return true;
        }
        break;
    case QEvent::FocusIn:
        UpdateDescription();
        update();
        break;
    case QEvent::FocusOut:
        update();
        [[fallthrough]];
    case QEvent::UngrabMouse:
    case QEvent::Hide:
        Interrupt();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

void Gauge::changeEvent(QEvent *event) {
    if (event->type() == QEvent::FontChange) {
        UpdateFace();
        updateGeometry();
    } else if (event->type() == QEvent::EnabledChange) {
        Interrupt();
    }
    QWidget::changeEvent(event);
}

void Gauge::resizeEvent(QResizeEvent * /*event*/) {
    UpdateFace();
}

void Gauge::UpdateFace() {
    face.SetSize(rect(), font());
    face.FitCaption(shown.caption);
}

void Gauge::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    face.Paint(painter, shown, {palette(), isEnabled(), hasFocus() ? selected : 0});
}

QPointF Gauge::PointerPosition(int pointer, double value) const {
    return face.PointerPosition(pointer, value);
}

void Gauge::mousePressEvent(QMouseEvent *event) {
    const int pointer = face.PointerAt(event->position(), shown);
    if (event->button() != Qt::LeftButton || pointer == 0 || move.means == Means::Mouse) {
        event->ignore();
        return;
    }
    Finish();
    Begin(Means::Mouse, pointer);
    move.pressed = event->position();
    // A handle grabbed off its middle keeps its distance from the mouse, so that it does not jump.
    // Within a pixel it counts as the middle.
    const QPointF middle = PointerPosition(pointer, shown.Pointer(pointer));
    if (QLineF(middle, move.pressed).length() > 1) {
        move.heldDegrees =
            face.DegreesOf(shown.Pointer(pointer)) - face.DegreesAt(pointer, move.pressed);
    }
    UpdateCursor(event->position());
}

void Gauge::mouseMoveEvent(QMouseEvent *event) {
    if (move.means == Means::Mouse) {
        if ((event->buttons() & Qt::LeftButton) != 0) {
            DragTo(event->position());
        } else {
            Finish(); // the button was released elsewhere
        }
    }
    UpdateCursor(event->position());
}

void Gauge::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton && move.means == Means::Mouse) {
        DragTo(event->position());
        Finish();
    }
    UpdateCursor(event->position());
}

void Gauge::UpdateCursor(const QPointF &position) {
    if (move.means == Means::Mouse) {
        setCursor(Qt::ClosedHandCursor);
    } else if (face.PointerAt(position, shown) != 0) {
        setCursor(Qt::OpenHandCursor);
    } else {
        unsetCursor();
    }
}

void Gauge::keyPressEvent(QKeyEvent *event) {
    const int steps = StepsOf(*event);
    const bool plain = event->modifiers() == Qt::NoModifier;
    if (event->key() == Qt::Key_Escape && move.means != Means::None) {
        PutBack();
    } else if (move.means == Means::Mouse) {
        return; // the mouse holds the pointer
    } else if (steps != 0) {
        if (move.means == Means::None) {
            Begin(Means::Keys, selected);
        }
        MoveTo(shown.Pointer(selected) + steps * singleStep);
    } else if (plain && event->key() == Qt::Key_Space) {
        SelectPointer(selected == lowPointerNumber ? highPointerNumber : lowPointerNumber);
    } else if (plain && event->key() == Qt::Key_L) {
        SelectPointer(lowPointerNumber);
    } else if (plain && event->key() == Qt::Key_H) {
        SelectPointer(highPointerNumber);
    } else {
        QWidget::keyPressEvent(event);
    }
}

void Gauge::keyReleaseEvent(QKeyEvent *event) {
    if (move.means == Means::Keys && IsArrow(event->key())) {
        if (!event->isAutoRepeat()) {
            Finish();
        }
    } else {
        QWidget::keyReleaseEvent(event);
    }
}

} // namespace ztm
