#pragma once

#include "common/ChannelHistory.h"

#include <cmath>

namespace ztm {

/// The span of time that a chart shows of a history. While live it ends at the newest sample; once
/// the user has moved it back, it stays where it is. It ends within the history, and its span is
/// 1 s to 48 h, or to twice what the history has kept if that is more.
class TimeWindow {
public:
    /// Starts live. The history must outlive it.
    TimeWindow(const ChannelHistory &shown, double spanSeconds);

    bool IsLive() const { return live; }
    double Span() const { return span; }
    /// The time at the right edge; the span itself if there is no sample.
    double End() const { return live ? LiveEnd() : end; }
    /// The same while live: the newest time that there is.
    double LiveEnd() const { return history->IsEmpty() ? span : Latest(); }

    void GoLive() { live = true; }
    void SetSpan(double seconds) { Set(End(), seconds); }

    /// Sets the span and its end, limited to the history. A live window keeps its end.
    void Set(double endTime, double seconds);
    /// The same, and live only if that end is not before the newest sample.
    void MoveTo(double endTime, double seconds);

    /// Multiplies the span; the time at that fraction from the left stays there. A live window
    /// stays live unless it is zoomed in on something older.
    void Zoom(double factor, double fraction);
    /// Zooms at the right edge of a live window, otherwise in the middle.
    void Zoom(double factor) { Zoom(factor, live ? 1.0 : 0.5); }

    /// Moves by that many seconds, back in time if negative. A live window cannot move forward.
    void Pan(double seconds);

    /// From now on all that there is reaches over that time too: of what is drawn besides.
    void Include(double from, double to) {
        otherFirst = from;
        otherLast = to;
    }

    /// Shows all that the history still has, live. The newest of `columns` columns may reach beyond
    /// the newest sample.
    void ShowAll(int columns);

private:
    double Limited(double seconds) const;
    double Earliest() const { return std::fmin(history->FirstTime(), otherFirst); }
    double Latest() const { return std::fmax(history->LastTime(), otherLast); }

    const ChannelHistory *history;
    double otherFirst = std::numeric_limits<double>::quiet_NaN();
    double otherLast = std::numeric_limits<double>::quiet_NaN();
    double end = 0; // while not live
    double span;
    bool live = true;
};

} // namespace ztm
