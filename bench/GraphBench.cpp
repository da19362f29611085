// The cost of repainting the automatic control graph while a point is carried over it. Fails if it
// is too high.

#include "Measure.h"
#include "fan/LookupTable.h"
#include "link/LinkState.h"
#include "ui/fan/LookupGraph.h"

#include <QApplication>
#include <QImage>

namespace {

constexpr QSize graphSize(1000, 800);
constexpr int warmUpPaints = 50;
constexpr int measuredPaints = 1000;
constexpr double boundMicroseconds = 2000;

double MedianRepaint(ztm::LookupGraph &graph) {
    QImage target(graphSize, QImage::Format_ARGB32_Premultiplied);
    ztm::bench::Times times;
    for (int paint = 0; paint < warmUpPaints + measuredPaints; ++paint) {
        graph.carriedAt = QPointF(1000 + paint, 600 + paint);
        if (paint < warmUpPaints) {
            graph.render(&target);
        } else {
            times.Take([&] { graph.render(&target); });
        }
    }
    return times.Median();
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    const QApplication application(argumentCount, arguments);
    ztm::bench::Table table;
    ztm::bench::Table::Heading("automatic control graph, repaint of 1000 x 800, a point carried");
    for (const bool eightPoints : {true, false}) {
        ztm::EightPointMode = eightPoints;
        for (int point = 0; point < ztm::LookupPoints; ++point) {
            ztm::TableInUse()[static_cast<size_t>(point)] = {
                15 * point + 10, static_cast<int16_t>(900 * point + 500)};
        }
        ztm::LookupGraph graph;
        graph.resize(graphSize);
        graph.linear = eightPoints;
        graph.selectedPoint = 2;
        table.AtMost(eightPoints ? "one curve, linear: median" : "two curves, steps: median",
                     MedianRepaint(graph), boundMicroseconds, "us");
    }
    return table.ExitCode();
}
