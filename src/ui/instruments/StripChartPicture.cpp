#include "ui/instruments/StripChartPicture.h"

#include <algorithm>

namespace ztm {

void StripChartPicture::Invalidate(int64_t from) {
    rightUntil = std::min(rightUntil, from);
}

void StripChartPicture::Update(const std::vector<StripChartPlottable *> &traces) {
    if (traces.empty() || columns.Count() == 0) {
        return;
    }
    const QSize size(columns.Count(), traces.front()->Scale().rect.height());
    if (image.size() != size) {
        image = QImage(size, QImage::Format_ARGB32_Premultiplied);
        rightUntil = columns.Begin();
    }
    const int64_t from = std::max(rightUntil, columns.Begin());
    if (from < columns.End() && !image.isNull()) {
        Paint(traces, static_cast<int>(from - columns.Begin()));
    }
    rightUntil = columns.End();
}

void StripChartPicture::Paint(const std::vector<StripChartPlottable *> &traces, int from) {
    const auto origin = static_cast<int>(columns.Slot(columns.Begin()));
    const int count = columns.Count();
    const int start = (origin + from) % count;
    const int beforeSeam = std::min(count - from, count - start);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(start, 0, beforeSeam, image.height(), Qt::transparent);
    painter.fillRect(0, 0, count - from - beforeSeam, image.height(), Qt::transparent);
    painter.setPen(Qt::NoPen);
    for (auto *trace : traces) {
        trace->Paint(painter, from, origin);
    }
}

void StripChartPicture::Draw(QPainter &painter, QPoint topLeft) const {
    if (image.isNull() || columns.Count() != image.width()) {
        return;
    }
    const auto origin = static_cast<int>(columns.Slot(columns.Begin()));
    const int untilSeam = image.width() - origin;
    const int height = image.height();
    painter.drawImage(topLeft, image, QRect(origin, 0, untilSeam, height));
    if (origin > 0) { // an empty part would mean the whole image
        painter.drawImage(topLeft + QPoint(untilSeam, 0), image, QRect(0, 0, origin, height));
    }
}

} // namespace ztm
