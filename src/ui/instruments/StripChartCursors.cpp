// The measuring cursors of a chart.

#include "ui/instruments/ChartCursors.h"
#include "ui/instruments/StripChart.h"
#include "ui/instruments/StripChartColumns.h"
#include "ui/instruments/StripChartPlot.h"

#include "common/At.h"

#include <cmath>
#include <limits>

namespace ztm {
namespace {

constexpr double reach = 4; // pixels beside a cursor where the mouse grabs it
constexpr double never = std::numeric_limits<double>::infinity();

/// The sample of what is drawn that is next to a time of the chart, on that side; itself at it.
double NextTo(const StripChartColumns &columns, double time, bool forward) {
    const double inHistory = time - columns.Shift();
    const ChannelHistory &history = columns.History();
    return columns.Shift() + (forward ? history.TimeFrom(inHistory)
                                      : history.TimeBefore(std::nextafter(inHistory, never)));
}

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

/// The time of the sample next to a place, if it is near, or else that of the place.
double StripChart::CatchTimeAt(double x) const {
    const double time = TimeAt(x);
    double distance = reach * (VisibleTo() - VisibleFrom()) / std::max(PlotRect().width(), 1.0);
    double caught = time;
    for (const auto *source : {columns.get(), overlaid.get()}) {
        for (const bool forward : {false, true}) {
            const double sample = source != nullptr ? NextTo(*source, time, forward) : never;
            if (std::abs(sample - time) < distance) {
                distance = std::abs(sample - time);
                caught = sample;
            }
        }
    }
    return caught;
}

/// Sets a cursor where the read-out is, or else in the middle.
void StripChart::PutCursor(int cursor) {
    if (cursors != nullptr && !history.IsEmpty()) {
        const QRectF rect = PlotRect();
        cursors->Set(cursor, cursorTime
                                 ? *cursorTime
                                 : CatchTimeAt(rect.left() + cursorX.value_or(rect.width() / 2)));
    }
}

/// Moves the read-out to the next sample, and the sample into sight.
void StripChart::StepCursor(bool forward) {
    const double from = cursorTime
                            ? *cursorTime
                            : TimeAt(PlotRect().left() + cursorX.value_or(PlotRect().width() / 2));
    const double beside = from + (forward ? sameMoment : -sameMoment);
    double sample = forward ? never : -never;
    for (const auto *source : {columns.get(), overlaid.get()}) {
        const double next = source != nullptr ? NextTo(*source, beside, forward) : sample;
        sample = forward ? std::fmin(sample, next) : std::fmax(sample, next);
    }
    if (!std::isfinite(sample)) {
        return;
    }
    if (sample < VisibleFrom() || sample >= VisibleTo()) {
        ShowTime(sample);
    }
    cursorTime = sample;
    Redraw();
}

/// Puts the read-out to a place of the plot, or removes it.
void StripChart::PutReadout(std::optional<double> x) {
    cursorX = x;
    cursorTime.reset();
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
