#include "ui/instruments/TimeWindow.h"

#include <gtest/gtest.h>

#include <functional>

namespace ztm::test {
namespace {

TEST(TimeWindow, EndsAtTheNewestSampleUntilItIsMovedAway) {
    ChannelHistory history;
    TimeWindow empty(history, 60);
    EXPECT_EQ(empty.End(), 60) << "without a sample";
    for (int second = 100; second <= 1100; ++second) {
        history.Append(second, {});
    }
    const struct {
        const char *what;
        std::function<void(TimeWindow &)> action;
        bool live;
        double end, span;
    } cases[] = {
        {"as it begins", [](auto &) {}, true, 1100, 60},
        {"back", [](auto &w) { w.Pan(-30); }, false, 1070, 60},
        {"far back", [](auto &w) { w.Pan(-1e6); }, false, 100, 60},
        {"and live again", [](auto &w) { w.Pan(-30), w.GoLive(); }, true, 1100, 60},
        {"zoomed in on its end", [](auto &w) { w.Zoom(0.5); }, true, 1100, 30},
        {"zoomed in on its middle", [](auto &w) { w.Zoom(0.5, 0.5); }, false, 1085, 30},
        {"zoomed out", [](auto &w) { w.Zoom(2, 0.5); }, true, 1100, 120},
        {"moved and zoomed", [](auto &w) { w.Pan(-500), w.Zoom(2); }, false, 630, 120},
        {"too short", [](auto &w) { w.SetSpan(0); }, true, 1100, 1},
        {"too long", [](auto &w) { w.SetSpan(1e9); }, true, 1100, 172800},
        {"live, its right end dragged", [](auto &w) { w.Set(500, 90); }, true, 1100, 90},
        {"all of it", [](auto &w) { w.Pan(-9), w.ShowAll(501); }, true, 1100, 1002},
    };
    for (const auto &c : cases) {
        TimeWindow window(history, 60);
        c.action(window);
        EXPECT_EQ(window.IsLive(), c.live) << c.what;
        EXPECT_DOUBLE_EQ(window.End(), c.end) << c.what;
        EXPECT_DOUBLE_EQ(window.Span(), c.span) << c.what;
    }
}

} // namespace
} // namespace ztm::test
