// What a repaint of the automatic control graph costs while a point is carried over it.

#include "fan/LookupTable.h"
#include "link/LinkState.h"
#include "ui/LookupGraph.h"

#include <QApplication>
#include <QImage>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <vector>

namespace {

constexpr QSize graphSize(1000, 800);
constexpr int warmUpPaints = 50;
constexpr int measuredPaints = 1000;
constexpr double boundMicroseconds = 2000;

double CpuMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

/// The median cost of a repaint, in microseconds of CPU time.
double Measure(ztm::LookupGraph &graph, QImage &target) {
    std::vector<double> times;
    for (int paint = 0; paint < warmUpPaints + measuredPaints; ++paint) {
        graph.carriedAt = QPointF(1000 + paint, 600 + paint);
        const double start = CpuMicroseconds();
        graph.render(&target);
        if (paint >= warmUpPaints) {
            times.push_back(CpuMicroseconds() - start);
        }
    }
    std::nth_element(times.begin(), times.begin() + measuredPaints / 2, times.end());
    return times[measuredPaints / 2];
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    const QApplication application(argumentCount, arguments);
    bool met = true;
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
        QImage target(graphSize, QImage::Format_ARGB32_Premultiplied);
        const double median = Measure(graph, target);
        met = met && median < boundMicroseconds;
        std::printf("%-44s median %7.1f us (bound %.0f us) %s\n",
                    eightPoints ? "graph repaint 1000 x 800, linear" : "graph repaint, steps",
                    median, boundMicroseconds, median < boundMicroseconds ? "ok" : "MISSED");
    }
    return met ? EXIT_SUCCESS : EXIT_FAILURE;
}
