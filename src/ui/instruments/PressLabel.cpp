#include "ui/instruments/PressLabel.h"

#include "ui/instruments/InstrumentAccess.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace ztm {

PressLabel::PressLabel(QWidget *parent) : QLabel(parent) {
    MakeInstrumentsAccessible();
    setCursor(Qt::PointingHandCursor);
}

bool PressLabel::event(QEvent *event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    }
    return QLabel::event(event);
}

void PressLabel::mousePressEvent(QMouseEvent *event) {
    pressed = event->button() == Qt::LeftButton;
}

void PressLabel::mouseReleaseEvent(QMouseEvent *event) {
    const bool clicked = pressed && event->button() == Qt::LeftButton;
    pressed = false;
    if (clicked && rect().contains(event->position().toPoint())) {
        emit Click();
    }
}

void PressLabel::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        emit Click();
    } else {
        QLabel::keyPressEvent(event);
    }
}

void PressLabel::PaintFocus(const QRect &frame) {
    if (hasFocus()) {
        QStylePainter painter(this);
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = frame;
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
    }
}

} // namespace ztm
