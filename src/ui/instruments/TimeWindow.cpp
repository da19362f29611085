#include "ui/instruments/TimeWindow.h"

#include <algorithm>

namespace ztm {
namespace {

constexpr double shortestSpan = 1;        // seconds
constexpr double longestSpan = 48 * 3600; // seconds

double Limited(double span) {
    return std::clamp(span, shortestSpan, longestSpan);
}

} // namespace

TimeWindow::TimeWindow(const ChannelHistory &shown, double spanSeconds)
    : history(&shown), span(spanSeconds) {}

void TimeWindow::Set(double endTime, double seconds) {
    span = Limited(seconds);
    const double earliest = history->IsEmpty() ? 0 : history->FirstTime();
    end = std::clamp(endTime, std::min(earliest, LiveEnd()), LiveEnd());
}

void TimeWindow::MoveTo(double endTime, double seconds) {
    live = false;
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
    SetSpan((history->LastTime() - history->FirstTime()) * count / (count - 1));
}

} // namespace ztm
