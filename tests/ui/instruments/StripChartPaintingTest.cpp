#include "support/StripChartFixture.h"

#include <map>
#include <random>

namespace ztm::test {
namespace {

using testing::Each;
using testing::Gt;
using testing::IsEmpty;
using testing::Not;

class StripChartPaintingTest : public StripChartTest {
protected:
    /// Samples of noise with steps, spikes, gaps and pauses.
    void AppendAnything(int samples) {
        std::uniform_int_distribution<int> any(0, 99);
        std::normal_distribution<float> noise(0, 1);
        for (int sample = 0; sample < samples; ++sample) {
            const int event = any(random);
            level = event < 2 ? static_cast<float>(any(random)) : level;
            const float fan = event == 7 ? Extent::gap : 80 * level + 100 * noise(random);
            Append(event == 5 ? Extent::gap : event == 6 ? 95 : level + noise(random), fan);
            time += event == 8 ? 1.3 : 0;
        }
        Settle();
    }

    int ColumnCount() {
        return qRound(Plot()->axisRect()->width() * Plot()->bufferDevicePixelRatio());
    }

    /// The widths of the steps between columns.
    static std::vector<int> Steps(const std::vector<int> &columns) {
        std::vector<int> steps;
        for (size_t index = 1; index < columns.size(); ++index) {
            steps.push_back(columns[index] - columns[index - 1]);
        }
        return steps;
    }

    std::mt19937 random{11};
    float level = 40;
};

TEST_F(StripChartPaintingTest, WhatIsPaintedInStepsLooksAsIfPaintedAtOnce) {
    const std::tuple<const char *, std::function<void()>> cases[] = {
        {"from the start", [] {}},
        {"once round", [this] { AppendAnything(3000); }},
        {"values zoomed", [this] { Press("Ctrl++"); }},
        {"time zoomed out", [this] { Press("-"); }},
        {"moved away", [this] { Press("Left"); }},
        {"and on", [this] { Press("Right"); }},
        {"live again", [this] { Press("End"); }},
        {"resized", [this] { chart.resize(611, 377); }},
        {"hidden", [this] { chart.hide(); }},
        {"shown again", [this] { chart.show(); }},
        {"cleared", [this] { Clear(); }},
        {"moved away from nothing",
         [this] {
             Clear();
             Press("Left");
             time = 20;
             AppendMany(1, level);
             time += 5;
         }},
    };
    for (const auto &[name, change] : cases) {
        level = 40;
        change();
        Settle();
        for (int round = 0; round < 4; ++round) {
            for (int step = 0; step < 12; ++step) {
                AppendAnything(step % 3);
            }
            const QImage steps = OnScreen(chart);
            ASSERT_EQ(steps, SeenAnew()) << name;
        }
        ASSERT_THAT(ColumnsWith(temperatureColour, 25, 75), Not(IsEmpty())) << name;
    }
}

TEST_F(StripChartPaintingTest, PaintsNothingWhileNoColumnChangesOrHidden) {
    while (Span() < 3000) {
        Press("-");
    }
    AppendMany(400, 50); // over a column of five seconds
    PaintCounter counter(*Plot());
    AppendMany(10, 50);
    EXPECT_EQ(counter.paints, 0);
    AppendMany(10, 60);
    EXPECT_EQ(counter.paints, 1);
    EXPECT_LT(counter.pixels, 10 * Plot()->height()) << "the newest column";
    chart.hide();
    Settle();
    AppendMany(1000, 70);
    EXPECT_EQ(counter.paints, 1);
    chart.show();
    Settle();
    EXPECT_GT(counter.paints, 1);
    EXPECT_NEAR(chart.VisibleTo(), history.LastTime(), Span() / ColumnCount());
}

TEST_F(StripChartPaintingTest, ASpikeOfOneSampleIsSeenAtEveryZoomAsAClosedLine) {
    AppendMany(60'000, 20);
    Append(80);
    const double spikeTime = time - interval;
    AppendMany(10, 20);
    for (int zoom = 0; zoom < 60; ++zoom) {
        ASSERT_THAT(ColumnsWith(temperatureColour, 79, 81), Not(IsEmpty())) << Span();
        for (int value = 22; value < 79 && Span() > 50; value += 8) {
            // One column for the way to the spike, and one for the way back from it.
            ASSERT_THAT(ColumnsWith(temperatureColour, value, value + 0.5).size(),
                        testing::AnyOf(1, 2))
                << value << " at " << Span();
        }
        ASSERT_LT(chart.VisibleFrom(), spikeTime);
        Press(zoom < 20 ? "+" : "-");
    }
    EXPECT_GT(Span(), 1800);
}

/// Samples many columns apart, up and down: each column touches the next one.
TEST_F(StripChartPaintingTest, AJoinedLineHasNoHoles) {
    for (int sample = 0; sample < 40; ++sample) {
        Append(sample % 2 == 0 ? 10.0F : 90.0F);
        time += 2;
        Settle();
    }
    const QImage seen = OnScreen(chart);
    std::map<int, std::pair<int, int>> columns; // from the top to the bottom pixel
    for (const QPoint pixel : PixelsOf(seen, temperatureColour)) {
        const auto found = columns.try_emplace(pixel.x(), pixel.y(), pixel.y()).first;
        found->second.second = pixel.y();
    }
    ASSERT_THAT(columns, testing::SizeIs(Gt(400U)));
    for (auto next = std::next(columns.begin()); next != columns.end(); ++next) {
        const auto &[x, rows] = *std::prev(next);
        ASSERT_EQ(next->first, x + 1);
        ASSERT_LE(next->second.first, rows.second + 1) << x;
        ASSERT_GE(next->second.second, rows.first - 1) << x;
    }
}

TEST_F(StripChartPaintingTest, AGapStaysOpenAndASlowTraceIsJoined) {
    AppendMany(500, 50);
    time += 10;
    AppendMany(301, 50); // 10 s without a sample: joined
    Append(Extent::gap);
    time += 10;
    AppendMany(300, 50); // the same around a gap: open
    auto steps = Steps(ColumnsWith(temperatureColour, 48, 52));
    std::erase(steps, 1);
    ASSERT_THAT(steps, testing::SizeIs(1));
    EXPECT_NEAR(steps[0], 10 * ColumnCount() / Span(), 3);
}

TEST_F(StripChartPaintingTest, ColumnsDoNotShimmerWhileScrolling) {
    for (int sample = 0; sample < 4000; ++sample) {
        Append(sample % 7 == 0 ? 70.0F : 30.0F);
    }
    Settle();
    auto before = ColumnsWith(temperatureColour, 60, 75);
    const double start = chart.VisibleFrom();
    AppendMany(40, 30);
    const double moved = (chart.VisibleFrom() - start) * ColumnCount() / Span();
    const auto shift = static_cast<int>(std::lround(moved));
    EXPECT_NEAR(moved, shift, 1e-3) << "moves in whole columns";
    ASSERT_GT(shift, 3);
    auto after = ColumnsWith(temperatureColour, 60, 75);
    std::for_each(after.begin(), after.end(), [shift](int &column) { column += shift; });
    std::erase_if(before, [shift](int column) { return column < shift; });
    EXPECT_EQ(after, before);
}

/// A picture that is not copied pixel for pixel would drop columns, or double some.
TEST_F(StripChartPaintingTest, EveryColumnIsSeenOnceAndInThePlotWhereverTheRingBegins) {
    const double width = Span() / ColumnCount();
    for (int column = -2; column < ColumnCount() + 2; ++column) {
        time = noon + (column + 0.5) * width; // noon begins a column whose number is a multiple
        Append(column % 2 == 0 ? 80.0F : Extent::gap, 5000);
        if (column >= ColumnCount() - 3) {
            Settle();
            ASSERT_LE(PixelsOf(OnScreen(chart), fanColour).back().x(),
                      InPixels(PlotRect()).right());
            const auto seen = ColumnsWith(temperatureColour, 70, 90);
            ASSERT_GT(seen.size(), ColumnCount() / 2 - 3) << column;
            ASSERT_THAT(Steps(seen), Each(2)) << column;
        }
    }
    for (const float value : {20.0F, 80.0F}) {
        time += width - interval;
        AppendMany(1, value);
    }
    EXPECT_THAT(ColumnsWith(temperatureColour, 45, 55), testing::SizeIs(1)) << "a closed line";
}

TEST_F(StripChartPaintingTest, ALabelStandsWhereItIsPutAndKeepsToThePlot) {
    const auto label = [this] { return PixelsOf(OnScreen(chart), fanColour).boundingRect(); };
    const double ratio = chart.devicePixelRatioF();
    chart.SetLabel(3, "Fan1");
    Settle();
    const QSize whole = label().size();
    const std::tuple<int, int, double> cases[] = {
        {200, 140, 0.2}, {200, 140, 0.95}, {300, 200, 0.2}, {1200, 700, 0.12}};
    for (const auto &[width, height, top] : cases) {
        chart.resize(width, height);
        chart.SetLabelVerticalPosition(3, top);
        Settle();
        EXPECT_TRUE(InPixels(PlotRect()).contains(label())) << width << " " << top;
        EXPECT_NEAR(label().width(), whole.width(), 2) << width;
        EXPECT_NEAR(label().height(), whole.height(), 2) << width;
    }
    EXPECT_NEAR(label().left(), 0.8 * 1200 * ratio, 8 * ratio);
    EXPECT_NEAR(label().top(), 0.12 * 700 * ratio, 10 * ratio);
    chart.SetLabel(3, QString());
    Settle();
    EXPECT_TRUE(label().isEmpty());
}

TEST_F(StripChartPaintingTest, ValuesAtTheEndsOfAnAxisAreSeenUntilTheHistoryIsCleared) {
    for (const float value : {0.0F, 100.0F}) {
        AppendMany(300, value);
        EXPECT_THAT(ColumnsWith(temperatureColour), Not(IsEmpty())) << value;
        Clear();
        Settle();
        EXPECT_THAT(ColumnsWith(temperatureColour), IsEmpty());
    }
}

TEST_F(StripChartPaintingTest, FollowsThePalette) {
    AppendMany(500, 50);
    QPalette dark = chart.palette();
    dark.setColor(QPalette::Base, QColor(20, 20, 20));
    dark.setColor(QPalette::Text, Qt::white);
    chart.setPalette(dark);
    Settle();
    EXPECT_THAT(ColumnsWith(QColor(20, 20, 20)), Not(IsEmpty()));
    EXPECT_THAT(ColumnsWith(temperatureColour), IsEmpty()) << "too dark to be read";
}

} // namespace
} // namespace ztm::test
