#include "ui/instruments/BitLabel.h"

#include "ui/instruments/Colours.h"
#include "ui/instruments/InstrumentAccess.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace ztm {
namespace {

constexpr double borderInk = 0.5; // of the text's colour

} // namespace

BitLabel::BitLabel(QWidget *parent) : QLabel(parent) {
    MakeInstrumentsAccessible();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAlignment(Qt::AlignCenter);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    setAutoFillBackground(true);
    setCursor(Qt::PointingHandCursor);
}

void BitLabel::ShowDigit(const QString &digit) {
    if (text() == digit) {
        return;
    }
    setText(digit);
    if (QAccessible::isActive()) {
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent event(this, changed);
        QAccessible::updateAccessibility(&event);
    }
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
    QStylePainter painter(this);
    // The frames of styles can hardly be seen in dark palettes.
    painter.setPen(
        Mix(palette().color(QPalette::Base), palette().color(QPalette::Text), borderInk));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = rect().adjusted(3, 3, -3, -3);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
    }
}

} // namespace ztm
