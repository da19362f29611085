#include "ui/instruments/StripChartLabels.h"

#include "ui/instruments/Colours.h"
#include "ui/instruments/StripChartPlottable.h"

#include <qcustomplot.h>

#include <QStaticText>

#include <algorithm>

namespace ztm {

using Label = StripChartSetup::Label;

namespace {

/// A text that is laid out once, however often the chart is drawn.
class LabelItem final : public QCPItemText {
public:
    using QCPItemText::QCPItemText;

protected:
    void draw(QCPPainter *painter) override {
        if (IsExport(*painter)) {
            QCPItemText::draw(painter); // as text, not as glyphs
            return;
        }
        if (laidOut.text() != text() || laidOutFont != font()) {
            laidOutFont = font();
            laidOut.setTextFormat(Qt::PlainText);
            laidOut.setText(text());
            laidOut.prepare({}, laidOutFont);
        }
        const QPointF corner = position->pixelPosition();
        const QSizeF space(padding().left() + padding().right(), 0);
        painter->fillRect(QRectF(corner, laidOut.size() + space), brush());
        painter->setFont(laidOutFont);
        painter->setPen(color());
        painter->drawStaticText(corner + QPointF(padding().left(), 0), laidOut);
    }

private:
    QStaticText laidOut;
    QFont laidOutFont;
};

} // namespace

StripChartLabels::StripChartLabels(QCustomPlot &chart, const StripChartSetup &shown)
    : plot(chart), setup(shown) {
    plot.addLayer(QStringLiteral("labels"), plot.layer(QStringLiteral("grid")));
    for (const Label &label : setup.labels) {
        QCPItemText *item = nullptr;
        if (label.place == Label::Place::AtPosition) {
            item = new LabelItem(&plot);
            item->setClipToAxisRect(false);
            item->setPadding(QMargins(3, 0, 3, 0));
            item->setLayer(QStringLiteral("labels"));
            item->setPositionAlignment(Qt::AlignLeft | Qt::AlignTop);
            item->position->setType(QCPItemPosition::ptAbsolute);
        }
        items.push_back(item);
        ShowText(items.size() - 1);
    }
}

void StripChartLabels::ShowText(size_t entry) {
    const Label &label = setup.labels[entry];
    if (auto *item = items[entry]) {
        item->setText(label.text);
        item->setVisible(!label.text.isEmpty());
    } else {
        const bool isLeft = label.place == Label::Place::LeftAxisTitle;
        (isLeft ? plot.yAxis : plot.yAxis2)->setLabel(label.text);
    }
    Invalidate();
}

void StripChartLabels::SetPalette(const QPalette &palette, const QFont &font) {
    const QColor ground = palette.color(QPalette::Base);
    QFont bold = font;
    bold.setBold(true);
    for (size_t entry = 0; entry < items.size(); ++entry) {
        if (auto *item = items[entry]) {
            const QColor colour = setup.labels[entry].colour;
            item->setColor(colour.isValid() ? Readable(colour, ground)
                                            : palette.color(QPalette::Text));
            item->setBrush(ground);
            item->setFont(bold);
        }
    }
    Invalidate();
}

void StripChartLabels::Place() {
    const QRectF now = plot.axisRect()->rect();
    if (now == room) {
        return;
    }
    room = now;
    const int above = plot.viewport().height() - plot.height(); // the title of a picture
    const auto within = [](double wanted, double low, double high) {
        return std::max(low, std::min(wanted, high));
    };
    for (size_t entry = 0; entry < items.size(); ++entry) {
        if (auto *item = items[entry]) {
            const QPointF wanted = setup.labels[entry].position;
            const QPointF size =
                item->bottomRight->pixelPosition() - item->topLeft->pixelPosition();
            item->position->setCoords(
                within(wanted.x() * plot.width(), room.left(), room.right() - size.x()),
                within(above + wanted.y() * plot.height(), room.top(), room.bottom() - size.y()));
        }
    }
}

} // namespace ztm
