#include "ui/instruments/StripChartOverlay.h"

#include "ui/instruments/StripChartPlottable.h"

#include <algorithm>

namespace ztm {
namespace {

constexpr int tickWidth = 2;
constexpr int tickHeight = 9;

QString TextOf(const StripChartOverlay::Mark &mark) {
    return (mark.above ? QStringLiteral("▲ ") : QStringLiteral("▼ ")) + mark.name;
}

} // namespace

StripChartOverlay::StripChartOverlay(QCustomPlot *plot)
    : QCPLayerable(plot, QStringLiteral("overlay")) {}

bool StripChartOverlay::ShowCursor(double x, std::vector<Row> readings) {
    if (rows == readings && (x == position || rows.empty())) {
        return false;
    }
    position = x;
    rows = std::move(readings);
    return true;
}

bool StripChartOverlay::SetNotice(const Notice &shown) {
    const bool changed = notice != shown;
    notice = shown;
    return changed;
}

void StripChartOverlay::SetPalette(const QPalette &colours, const QFont &textFont) {
    palette = colours;
    font = textFont;
    for (QStaticText &letter : letters) {
        letter.prepare({}, font);
    }
}

void StripChartOverlay::applyDefaultAntialiasingHint(QCPPainter *painter) const {
    painter->setAntialiasing(false);
}

void StripChartOverlay::draw(QCPPainter *painter) {
    if (IsExport(*painter)) {
        painter->setFont(font);
        PaintTicks(*painter, TickBand());
        PaintMeasuringCursors(*painter);
        PaintCursor(*painter);
    }
}

void StripChartOverlay::Paint(QPainter &painter, const QRect &part) const {
    painter.setFont(font);
    PaintTicks(painter, part);
    PaintMarks(painter);
    PaintMeasuringCursors(painter);
    PaintCursor(painter);
    PaintNotice(painter);
}

bool StripChartOverlay::ShowMeasuringCursors(const std::array<double, 2> &x) {
    const bool changed = measuringCursors != x;
    measuringCursors = x;
    return changed;
}

/// A line with a letter at its foot.
void StripChartOverlay::PaintMeasuringCursors(QPainter &painter) const {
    const QRectF plot = Plot();
    const QFontMetricsF metrics(font);
    const QColor colour = palette.color(QPalette::Highlight);
    for (size_t cursor = 0; cursor < measuringCursors.size(); ++cursor) {
        const double x = measuringCursors[cursor];
        if (x < 0 || x > plot.width()) {
            continue;
        }
        painter.fillRect(QRectF(plot.left() + x, plot.top(), 1, plot.height()), colour);
        QRectF letter(0, 0, metrics.height(), metrics.height());
        letter.moveBottomLeft(
            QPointF(std::min(plot.left() + x, plot.right() - letter.width()), plot.bottom()));
        painter.fillRect(letter, colour);
        painter.setPen(palette.color(QPalette::HighlightedText));
        const QSizeF size = letters[cursor].size();
        painter.drawStaticText(letter.center() - QPointF(size.width(), size.height()) / 2,
                               letters[cursor]);
    }
}

/// Along the top and the bottom of the plot, from the axis inwards.
std::vector<QRectF> StripChartOverlay::PlacesOfMarks() const {
    const QRectF plot = Plot();
    const QFontMetricsF metrics(font);
    const double space = metrics.horizontalAdvance(QLatin1Char(' '));
    std::vector<QRectF> places;
    std::array<std::array<double, 2>, 2> used{}; // of the top and the bottom, at the left and right
    for (const Mark &mark : marks) {
        double &inwards = used[mark.above ? 0 : 1][mark.rightAxis ? 1 : 0];
        QRectF place(0, 0, metrics.horizontalAdvance(TextOf(mark)) + space, metrics.height());
        place.moveLeft(mark.rightAxis ? plot.right() - space - inwards - place.width()
                                      : plot.left() + space + inwards);
        place.moveTop(mark.above ? plot.top() + 1 : plot.bottom() - place.height() - 1);
        inwards += place.width() + space;
        places.push_back(place);
    }
    return places;
}

void StripChartOverlay::PaintMarks(QPainter &painter) const {
    const auto places = PlacesOfMarks();
    for (size_t index = 0; index < marks.size(); ++index) {
        painter.fillRect(places[index], palette.color(QPalette::Base));
        painter.setPen(marks[index].colour);
        painter.drawText(places[index], Qt::AlignCenter, TextOf(marks[index]));
    }
}

const StripChartOverlay::Mark *StripChartOverlay::MarkAt(QPointF point) const {
    const auto places = PlacesOfMarks();
    for (size_t index = 0; index < marks.size(); ++index) {
        if (places[index].contains(point)) {
            return &marks[index];
        }
    }
    return nullptr;
}

QRect StripChartOverlay::TickBand() const {
    const QRect plot = mParentPlot->axisRect()->rect();
    return {plot.left(), plot.bottom() + 1 - tickHeight, plot.width() + tickWidth, tickHeight};
}

void StripChartOverlay::PaintTicks(QPainter &painter, const QRect &part) const {
    const QRect band = TickBand();
    const QRect shown = band & part;
    if (shown.isEmpty()) {
        return;
    }
    const auto end = std::upper_bound(ticks.begin(), ticks.end(), shown.right() - band.left());
    QVarLengthArray<QRect, 256> rects;
    for (auto tick = std::lower_bound(ticks.begin(), end, shown.left() - band.left() - tickWidth);
         tick != end; ++tick) {
        rects.append({band.left() + *tick, band.top(), tickWidth, tickHeight});
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette.color(QPalette::Text));
    painter.drawRects(rects.constData(), static_cast<int>(rects.size()));
}

void StripChartOverlay::PaintCursor(QPainter &painter) const {
    if (rows.empty()) {
        return;
    }
    const QRectF plot = Plot();
    const QColor ink = palette.color(QPalette::Text);
    painter.fillRect(QRectF(plot.left() + position, plot.top(), 1, plot.height()), ink);

    const QFontMetricsF metrics(font);
    const double space = metrics.horizontalAdvance(QLatin1Char(' '));
    double nameWidth = 0;
    double readingWidth = 0;
    for (const Row &row : rows) {
        nameWidth = std::max(nameWidth, metrics.horizontalAdvance(row.name));
        readingWidth = std::max(readingWidth, metrics.horizontalAdvance(row.reading));
    }
    const double margin = 2 * space;
    const double swatch = metrics.height() * 0.6;
    const double width = margin * 2 + swatch + space + nameWidth + margin + readingWidth;
    const double height = static_cast<double>(rows.size()) * metrics.height() + margin;
    double x = plot.left() + position + margin;
    if (x + width > plot.right()) {
        x = std::max(plot.left(), plot.left() + position - margin - width);
    }
    const QRectF box(x, plot.bottom() - height - margin, width, height);
    painter.setPen(ink);
    painter.setBrush(palette.color(QPalette::Base));
    painter.drawRect(box);
    PaintReadings(
        painter,
        QRectF(box.left() + margin, box.top() + margin / 2, width - 2 * margin, metrics.height()),
        swatch + space);
}

/// One per line from `line` down, each with a swatch of its trace's colour.
void StripChartOverlay::PaintReadings(QPainter &painter, QRectF line, double indent) const {
    const double swatch = line.height() * 0.6;
    for (const Row &row : rows) {
        if (row.colour.isValid()) {
            painter.fillRect(QRectF(line.left(), line.center().y() - 1, swatch, 3), row.colour);
        }
        painter.drawText(line.adjusted(indent, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                         row.name);
        painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, row.reading);
        line.translate(0, line.height());
    }
}

void StripChartOverlay::PaintNotice(QPainter &painter) const {
    if (notice.text.isEmpty()) {
        return;
    }
    const QRectF plot = Plot();
    if (notice.place == Notice::Place::Middle) {
        painter.setPen(palette.color(QPalette::Text));
        painter.drawText(plot, Qt::AlignCenter | Qt::TextWordWrap, notice.text);
        return;
    }
    const QFontMetricsF metrics(font);
    const double space = metrics.horizontalAdvance(QLatin1Char(' '));
    QRectF box(0, plot.top() + plot.height() * 0.02,
               metrics.horizontalAdvance(notice.text) + 2 * space, metrics.height());
    box.moveLeft(std::round(plot.center().x() - box.width() / 2));
    painter.fillRect(box, palette.color(QPalette::Highlight));
    painter.setPen(palette.color(QPalette::HighlightedText));
    painter.drawText(box, Qt::AlignCenter, notice.text);
}

} // namespace ztm
