#include "ui/instruments/TimeWindow.h"

#include <algorithm>

namespace ztm {
namespace {

constexpr double shortestSpan = 1;             // seconds
constexpr double leastLongestSpan = 48 * 3600; // seconds

} // namespace

TimeWindow::TimeWindow(const ChannelHistory &shown, double spanSeconds)
    : history(&shown), span(spanSeconds) {}

/// A slow monitor fills the history with much more than two days.
double TimeWindow::Limited(double seconds) const {
    const double kept = history->IsEmpty() ? 0 : Latest() - Earliest();
    return std::clamp(seconds, shortestSpan, std::max(leastLongestSpan, 2 * kept));
}

void TimeWindow::Set(double endTime, double seconds) {
    span = Limited(seconds);
    const double earliest = history->IsEmpty() ? 0 : Earliest();
    end = std::clamp(endTime, std::min(earliest, LiveEnd()), LiveEnd());
}

void TimeWindow::MoveTo(double endTime, double seconds) {
    live = endTime >= LiveEnd();
    Set(endTime, seconds);
}

void TimeWindow::Zoom(double factor, double fraction) {
    // Zooming out of the live view would reach into the future; it stays live instead.
    constexpr double atTheEnd = 0.005; // of the span
    const double zoomed = Limited(span * factor);
    const double pivot = End() - span * (1 - fraction);
    const double newEnd = pivot + zoomed * (1 - fraction);
    live = live && newEnd >= End() - zoomed * atTheEnd;
    Set(newEnd, zoomed);
}

void TimeWindow::Pan(double seconds) {
    if (!live || seconds <= 0) {
        MoveTo(End() + seconds, span);
    }
}

void TimeWindow::ShowAll(int columns) {
    if (history->IsEmpty()) {
        return;
    }
    live = true;
    const double count = std::max(columns, 2);
    SetSpan((Latest() - Earliest()) * count / (count - 1));
}

} // namespace ztm
