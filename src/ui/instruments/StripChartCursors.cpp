// The measuring cursors of a chart.

#include "ui/instruments/ChartCursors.h"
#include "ui/instruments/StripChart.h"
#include "ui/instruments/StripChartPlot.h"

#include "common/At.h"

#include <cmath>

namespace ztm {
namespace {

constexpr double reach = 4; // pixels beside a cursor where the mouse grabs it

} // namespace

void StripChart::ShareCursors(ChartCursors &shared) {
    cursors = &shared;
    connect(cursors, &ChartCursors::Changed, this, [this] {
        if (ShowMeasuringCursors()) {
            plot->update();
        }
    });
}

/// Returns whether the lines have moved.
bool StripChart::ShowMeasuringCursors() {
    std::array<double, ChartCursors::count> places{};
    for (int cursor = 0; cursor < ChartCursors::count; ++cursor) {
        const auto time = cursors != nullptr ? cursors->Time(cursor) : std::nullopt;
        At(places, cursor) = time ? PointOf(*time, 0).x() - PlotRect().left() : -1;
    }
    return plot->Overlay().ShowMeasuringCursors(places);
}

double StripChart::TimeAt(double x) const {
    const QRectF rect = PlotRect();
    return VisibleFrom() +
           (x - rect.left()) / std::max(rect.width(), 1.0) * (VisibleTo() - VisibleFrom());
}

/// Sets a cursor where the read-out is, or else in the middle.
void StripChart::PutCursor(int cursor) {
    if (cursors != nullptr && !history.IsEmpty()) {
        const QRectF rect = PlotRect();
        cursors->Set(cursor, TimeAt(rect.left() + cursorX.value_or(rect.width() / 2)));
    }
}

/// The cursor near a point of the plot.
std::optional<int> StripChart::MeasuringCursorAt(QPointF point) const {
    for (int cursor = 0; cursor < ChartCursors::count; ++cursor) {
        const auto time = cursors != nullptr ? cursors->Time(cursor) : std::nullopt;
        if (time && PlotRect().contains(point) &&
            std::abs(PointOf(*time, 0).x() - point.x()) <= reach) {
            return cursor;
        }
    }
    return std::nullopt;
}

bool StripChart::HasMeasuringCursor() const {
    return cursors != nullptr && (cursors->Time(0) || cursors->Time(1));
}

} // namespace ztm
