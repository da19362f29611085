#include "ui/instruments/BitLabel.h"

#include "ui/instruments/Colours.h"

#include <QAccessible>
#include <QEvent>
#include <QPainter>

namespace ztm {
namespace {

constexpr double borderInk = 0.5; // of the text's colour

} // namespace

BitLabel::BitLabel(QWidget *parent) : PressLabel(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAlignment(Qt::AlignCenter);
    setBackgroundRole(QPalette::Base);
    setForegroundRole(QPalette::Text);
    setAutoFillBackground(true);
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
    }
    return PressLabel::event(event);
}

void BitLabel::paintEvent(QPaintEvent *event) {
    QLabel::paintEvent(event);
    QPainter painter(this);
    // The frames of styles can hardly be seen in dark palettes.
    painter.setPen(
        Mix(palette().color(QPalette::Base), palette().color(QPalette::Text), borderInk));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.end();
    PaintFocus(rect().adjusted(3, 3, -3, -3));
}

} // namespace ztm
