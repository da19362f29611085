#include "ui/instruments/StateLabel.h"

#include "ui/instruments/InstrumentAccess.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"

#include <QEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

#include <algorithm>

namespace ztm {
namespace {

constexpr int leastCharacters = 5;
constexpr int gapCharacters = 3; // behind the text

} // namespace

StateLabel::StateLabel(const char *name, const QString &itsCaption, Qt::TextElideMode elided,
                       QWidget *parent)
    : QLabel(parent), caption(itsCaption), mode(elided) {
    MakeInstrumentsAccessible();
    setObjectName(QLatin1String(name));
    setAccessibleName(caption);
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
    hide();
}

void StateLabel::ShowState(const QString &newFront, const QString &newRest, const QString &tip) {
    front = newFront;
    front.replace(QLatin1Char('\n'), QLatin1Char(' '));
    rest = newRest;
    Measure();
    setText(front + rest);
    setAccessibleName(text().isEmpty() ? caption : text());
    setToolTip(PlainToolTip(tip.isEmpty() ? text() : tip));
    setVisible(!text().isEmpty());
}

void StateLabel::Measure() {
    const QFontMetrics metrics = fontMetrics();
    gap = gapCharacters * metrics.averageCharWidth();
    restWidth = metrics.horizontalAdvance(rest);
    wantedWidth = metrics.horizontalAdvance(front) + restWidth + gap;
}

QSize StateLabel::sizeHint() const {
    return minimumSizeHint().expandedTo({wantedWidth, 0});
}

QSize StateLabel::minimumSizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    return {leastCharacters * metrics.averageCharWidth(), metrics.height()};
}

bool StateLabel::event(QEvent *event) {
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        update();
    } else if (event->type() == QEvent::FontChange) {
        Measure();
    }
    return QLabel::event(event);
}

void StateLabel::mousePressEvent(QMouseEvent *event) {
    pressed = event->button() == Qt::LeftButton;
}

void StateLabel::mouseReleaseEvent(QMouseEvent *event) {
    const bool clicked = pressed && event->button() == Qt::LeftButton;
    pressed = false;
    if (clicked && rect().contains(event->position().toPoint())) {
        emit Click();
    }
}

void StateLabel::keyPressEvent(QKeyEvent *event) {
    const bool presses = IsEnter(*event) || event->key() == Qt::Key_Space;
    if (presses && !event->isAutoRepeat()) {
        emit Click();
    } else {
        QLabel::keyPressEvent(event);
    }
}

void StateLabel::paintEvent(QPaintEvent * /*event*/) {
    QStylePainter painter(this);
    const QFontMetrics metrics = fontMetrics();
    // Parts take a pixel less than the whole; the gap has room for it.
    const bool fits = metrics.horizontalAdvance(text()) <= width() - gap / 2;
    const QString fitting =
        fits ? text()
             : metrics.elidedText(metrics.elidedText(front, mode, width() - gap - restWidth) + rest,
                                  Qt::ElideRight, width() - gap / 2);
    QFont underlined = font();
    underlined.setUnderline(underMouse());
    painter.setFont(underlined);
    painter.drawItemText(rect(), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, palette(),
                         true, fitting, foregroundRole());
    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect.setWidth(std::min(width(), metrics.horizontalAdvance(fitting) + gap / 2));
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, option);
    }
}

} // namespace ztm
