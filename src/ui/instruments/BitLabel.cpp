#include "ui/instruments/BitLabel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace ztm {

BitLabel::BitLabel(QWidget *parent) : QLabel(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAlignment(Qt::AlignCenter);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    setAutoFillBackground(true);
    setCursor(Qt::PointingHandCursor);
}

bool BitLabel::event(QEvent *event) {
    if (event->type() == QEvent::ToolTip && toolTip() == QLatin1String("-")) {
        return true; // an unnamed bit has nothing to say
    }
    if (event->type() == QEvent::MouseMove || event->type() == QEvent::Enter) {
        emit MouseMove();
    } else if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    }
    return QLabel::event(event);
}

void BitLabel::mousePressEvent(QMouseEvent *event) {
    pressed = event->button() == Qt::LeftButton;
}

void BitLabel::mouseReleaseEvent(QMouseEvent *event) {
    const bool clicked = pressed && event->button() == Qt::LeftButton;
    pressed = false;
    if (clicked && rect().contains(event->position().toPoint())) {
        emit Click();
    }
}

void BitLabel::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Space && !event->isAutoRepeat()) {
        emit Click();
    } else {
        QLabel::keyPressEvent(event);
    }
}

void BitLabel::paintEvent(QPaintEvent *event) {
    QLabel::paintEvent(event);
    if (hasFocus()) {
        QStylePainter painter(this);
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = rect().adjusted(3, 3, -3, -3);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
    }
}

} // namespace ztm
