#include "ui/kit/Frame.h"

#include <QPainter>

#include <algorithm>

namespace ztm {

QFont Frame::CaptionFont() const {
    QFont small = font();
    if (const int height = fontMetrics().height(); height > captionRoom) {
        small.setPixelSize(std::max(1, QFontInfo(small).pixelSize() * captionRoom / height));
    }
    return small;
}

void Frame::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setFont(CaptionFont());
    const QFontMetrics metrics = painter.fontMetrics();
    const int captionLeft = fontMetrics().averageCharWidth();
    const QRect caption(captionLeft, 0, metrics.horizontalAdvance(title().trimmed()),
                        metrics.height());
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(caption, Qt::AlignCenter, title().trimmed());

    const QRect gap = caption.adjusted(-3, 0, 3, 0);
    painter.setClipRegion(QRegion(rect()) - QRegion(title().isEmpty() ? QRect() : gap));
    painter.setRenderHint(QPainter::Antialiasing);
    QColor border = palette().color(QPalette::WindowText);
    border.setAlphaF(0.3F);
    painter.setPen(border);
    const double top = title().isEmpty() ? 0.5 : caption.center().y() + 0.5;
    painter.drawRoundedRect(rect().toRectF().adjusted(0.5, top, -0.5, -0.5), 3, 3);
}

} // namespace ztm
