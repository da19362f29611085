#include "ui/instruments/ToggleIndicator.h"

#include "ui/instruments/InstrumentAccess.h"

#include <QPainter>
#include <QPainterPath>

namespace ztm {
namespace {

constexpr QColor alarmColour(255, 0, 0);
constexpr QColor clearColour(0, 255, 0);
constexpr QColor unknownColour(160, 160, 160);
constexpr QColor outlineColour(64, 64, 64);

/// The marks, in units of a disc of diameter 20 around the origin.
QPainterPath Cross() {
    QPainterPath path;
    path.moveTo(-3.5, -3.5);
    path.lineTo(3.5, 3.5);
    path.moveTo(3.5, -3.5);
    path.lineTo(-3.5, 3.5);
    return path;
}

QPainterPath Tick() {
    QPainterPath path;
    path.moveTo(-4.5, 0);
    path.lineTo(-1.5, 3.5);
    path.lineTo(4.5, -3.5);
    return path;
}

} // namespace

ToggleIndicator::ToggleIndicator(QWidget *parent) : QWidget(parent) {
    MakeInstrumentsAccessible();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    TellState();
}

void ToggleIndicator::SetAlarm(bool on) {
    if (alarm != on) {
        alarm = on;
        TellState();
        update();
    }
}

void ToggleIndicator::SetKnown(bool isKnown) {
    if (known != isKnown) {
        known = isKnown;
        TellState();
        update();
    }
}

void ToggleIndicator::TellState() {
    setAccessibleDescription(!known ? tr("Not read") : alarm ? tr("Alarm") : tr("OK"));
}

QSize ToggleIndicator::sizeHint() const {
    const int diameter = fontMetrics().height() + 4;
    return {diameter, diameter};
}

void ToggleIndicator::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect().toRectF().center());
    const double scale = qMin(width(), height()) / 20.0;
    painter.scale(scale, scale);
    painter.setPen(outlineColour);
    painter.setBrush(!known ? unknownColour : alarm ? alarmColour : clearColour);
    painter.drawEllipse(QPointF(), 9.0, 9.0);
    if (known) {
        painter.strokePath(alarm ? Cross() : Tick(),
                           QPen(alarm ? Qt::white : Qt::black, 2.2, Qt::SolidLine, Qt::RoundCap));
    }
}

} // namespace ztm
