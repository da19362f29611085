#include "ui/instruments/StateLabel.h"

#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"

#include <QEvent>
#include <QKeyEvent>
#include <QStylePainter>

#include <algorithm>

namespace ztm {
namespace {

constexpr int leastCharacters = 5;
constexpr int gapCharacters = 3; // behind the text

} // namespace

StateLabel::StateLabel(const char *name, const QString &itsCaption, Qt::TextElideMode elided,
                       QWidget *parent)
    : PressLabel(parent), caption(itsCaption), mode(elided) {
    setObjectName(QLatin1String(name));
    setAccessibleName(caption);
    setTextFormat(Qt::PlainText);
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
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
    if (event->type() == QEvent::FontChange) {
        Measure();
    }
    return PressLabel::event(event);
}

void StateLabel::keyPressEvent(QKeyEvent *event) {
    if (IsEnter(*event) && !event->isAutoRepeat()) {
        emit Click();
    } else {
        PressLabel::keyPressEvent(event);
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
    painter.end();
    PaintFocus({0, 0, std::min(width(), metrics.horizontalAdvance(fitting) + gap / 2), height()});
}

} // namespace ztm
