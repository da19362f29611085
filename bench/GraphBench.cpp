// The cost of repainting the automatic control graph while a point is carried over it, with every
// mark, bands, both fans and their full trails. Fails if it is too high.

#include "Measure.h"
#include "fan/LookupTable.h"
#include "link/LinkState.h"
#include "monitor/MonitorSettings.h"
#include "monitor/RecentMeasurements.h"
#include "support/ClockDouble.h"
#include "ui/fan/LookupGraph.h"

#include <QApplication>
#include <QImage>

#include <cmath>

namespace {

constexpr QSize graphSize(1000, 800);
constexpr int warmUpPaints = 50;
constexpr int measuredPaints = 1000;
constexpr double boundMicroseconds = 2000;

/// A minute of measurements in which both fans go round on the graph.
void FillTrails(ztm::test::ClockDouble &clock) {
    ztm::MonitoringEnabled = true;
    ztm::DeviceName = ztm::ZTM7720;
    for (size_t sample = 0; sample < ztm::MostRecentSamples; ++sample) {
        for (int channel = 0; channel < ztm::ChannelCount; ++channel) {
            ztm::ReadMeasurement(channel);
        }
        const double angle = 0.1 * static_cast<double>(sample);
        const auto celsius = static_cast<float>(60 + 30 * std::cos(angle));
        const auto rpm = static_cast<float>(4000 + 2000 * std::sin(angle));
        ztm::Measurements = {celsius, celsius + 20, 0, rpm, rpm - 500, 0};
        ztm::KeepRecentMeasurements();
        clock.Advance(ztm::RecentSpacingSeconds);
    }
}

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
    ztm::test::ClockDouble clock;
    FillTrails(clock);
    ztm::bench::Table::Heading(
        "automatic control graph, repaint of 1000 x 800, a point carried, trails, marks, bands");
    for (const bool eightPoints : {true, false}) {
        ztm::EightPointMode = eightPoints;
        for (int point = 0; point < ztm::LookupPoints; ++point) {
            ztm::TableInUse()[static_cast<size_t>(point)] = {
                15 * (point ^ 1) + 10, static_cast<int16_t>(900 * point + 500)}; // folded
        }
        ztm::LookupGraph graph;
        graph.resize(graphSize);
        graph.linear = eightPoints;
        graph.selectedPoint = 2;
        graph.ShowLive({ztm::LivePoint{0, 90, 4000, 5000}, ztm::LivePoint{1, 110, 3500, 5000}});
        table.AtMost(eightPoints ? "one curve, linear: median" : "two curves, steps: median",
                     MedianRepaint(graph), boundMicroseconds, "us");
    }
    return table.ExitCode();
}
