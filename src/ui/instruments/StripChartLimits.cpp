#include "ui/instruments/StripChartLimits.h"

#include <qcustomplot.h>

namespace ztm {

StripChartLimits::StripChartLimits(QCustomPlot &plot) {
    for (QCPItemLine *&item : items) {
        item = new QCPItemLine(&plot);
        item->setLayer(QStringLiteral("grid"));
        item->setVisible(false);
        for (QCPItemPosition *end : {item->start, item->end}) {
            end->setTypeX(QCPItemPosition::ptAxisRectRatio);
            end->setTypeY(QCPItemPosition::ptPlotCoords);
        }
    }
}

void StripChartLimits::Show(const LimitLines &lines, QCPAxis &axis, const QColor &colour) {
    const std::array limits{lines.low, lines.high};
    for (size_t side = 0; side < items.size(); ++side) {
        QCPItemLine *item = items[side];
        item->setVisible(limits[side].has_value());
        item->setPen(QPen(colour, 0, Qt::DashLine));
        for (QCPItemPosition *end : {item->start, item->end}) {
            end->setAxes(axis.axisRect()->axis(QCPAxis::atBottom), &axis);
            end->setCoords(end == item->start ? 0 : 1, limits[side].value_or(0));
        }
    }
}

void StripChartLimits::Hide() {
    for (QCPItemLine *item : items) {
        item->setVisible(false);
    }
}

} // namespace ztm
