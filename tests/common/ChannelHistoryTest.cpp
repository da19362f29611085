#include "common/ChannelHistory.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::FloatEq;
using testing::Lt;

constexpr double interval = 0.030;
constexpr float gap = Extent::gap;

/// A sample with that value in channel `at` and 0 elsewhere.
ChannelHistory::Values Only(size_t at, float value) {
    ChannelHistory::Values values{};
    values[at] = value;
    return values;
}

void Fill(ChannelHistory &history, int samples, double start = 0) {
    for (int index = 0; index < samples; ++index) {
        history.Append(start + index * interval, Only(0, static_cast<float>(index)));
    }
}

TEST(ChannelHistoryTest, SaysNothingWhileEmpty) {
    const ChannelHistory history;
    EXPECT_TRUE(history.IsEmpty());
    EXPECT_TRUE(std::isnan(history.FirstTime()));
    EXPECT_TRUE(std::isnan(history.LastTime()));
    EXPECT_TRUE(std::isnan(history.LastValue(0)));
    EXPECT_TRUE(std::isnan(history.ValueAt(0, 1)));
    EXPECT_TRUE(std::isnan(history.TimeBefore(1)));
    EXPECT_TRUE(std::isnan(history.TimeFrom(1)));
    EXPECT_FALSE(history.MinMax(0, 0, 10).any);
}

TEST(ChannelHistoryTest, GapsAreNeverAValue) {
    ChannelHistory history;
    history.Append(1, Only(0, 5));
    history.Append(2, Only(0, gap));
    history.Append(3, Only(0, std::numeric_limits<float>::infinity()));
    history.Append(4, Only(0, 7));
    const Extent inside = history.MinMax(0, 2, 4);
    EXPECT_TRUE(inside.any);
    EXPECT_FALSE(history.MinMax(0, 3, 3).any || history.MinMax(0, 4, 2).any);
    EXPECT_TRUE(std::isnan(inside.low) && std::isnan(inside.high));
    const Extent around = history.MinMax(0, 2, 5);
    EXPECT_EQ(around.low, 7);
    EXPECT_TRUE(std::isnan(around.first));
    EXPECT_EQ(around.last, 7);
    EXPECT_TRUE(std::isnan(history.ValueAt(0, 3.5)));
    EXPECT_EQ(history.ValueAt(0, 1.5), 5);
    EXPECT_TRUE(history.HasValues(0));
}

TEST(ChannelHistoryTest, TimeNeverRunsBackAndIsNeverMissing) {
    ChannelHistory history;
    history.Append(10, Only(0, 1));
    history.Append(4, Only(0, 2));
    history.Append(std::nan(""), Only(0, 3));
    EXPECT_EQ(history.SampleCount(), 2U);
    EXPECT_EQ(history.LastTime(), 10);
    EXPECT_EQ(history.LastValue(0), 2);
    EXPECT_EQ(history.MinMax(0, 10, 11).first, 1);
}

TEST(ChannelHistoryTest, ManySamplesAtOneTimeAreAllCounted) {
    ChannelHistory history;
    for (int index = 0; index < 140000; ++index) {
        history.Append(5, Only(0, static_cast<float>(index)));
    }
    EXPECT_EQ(history.MinMax(0, 0, 6).low, 0);
    EXPECT_EQ(history.MinMax(0, 0, 6).high, 139999);
}

/// A spike of one sample is found from the raw samples first and from its bin after an hour,
/// in the whole, and in any query no narrower than a bin around it.
TEST(ChannelHistoryTest, ASpikeOutlivesItsSample) {
    ChannelHistory history;
    Fill(history, 1000);
    const double spikeTime = history.LastTime() + interval;
    history.Append(spikeTime, Only(2, 99));
    Fill(history, 100, spikeTime + interval);
    EXPECT_EQ(history.MinMax(2, spikeTime, spikeTime + interval / 2).high, 99);
    EXPECT_TRUE(history.IsRawFrom(0));

    Fill(history, 400000, history.LastTime() + interval);
    EXPECT_FALSE(history.IsRawFrom(spikeTime));
    EXPECT_EQ(history.FirstTime(), 0);
    for (const double width : {0.01, 2.0, 60.0, 3600.0, 86400.0}) {
        EXPECT_EQ(history.MinMax(2, spikeTime - width / 2, spikeTime + width / 2).high, 99)
            << width;
    }
    EXPECT_EQ(history.MinMax(2, spikeTime + 2, spikeTime + 9).high, 0);
    EXPECT_NEAR(history.TimeOfReaching(2, 0, history.LastTime(), 0, 50), spikeTime, 2);
    EXPECT_EQ(history.TimeOfReaching(2, spikeTime, history.LastTime(), 0, 50), spikeTime);
    EXPECT_TRUE(std::isnan(history.TimeOfReaching(2, spikeTime + 2, history.LastTime(), 0, 50)));
    EXPECT_EQ(history.MinMax(2, 0, spikeTime - 2).high, 0);
}

/// Once round both rings: no query misses an extreme, and none reaches further than a bin, or
/// than its own samples where they are still there.
TEST(ChannelHistoryTest, ExtremesAreThoseOfAScanOfAllSamples) {
    constexpr double spacing = 0.5;
    constexpr size_t samples = 300'000;
    ChannelHistory history;
    std::mt19937 random(5);
    std::normal_distribution<float> value;
    std::vector<float> all;
    while (all.size() < samples) {
        all.push_back(all.size() % 97 == 0 ? gap : value(random));
        history.Append(static_cast<double>(all.size() - 1) * spacing, Only(1, all.back()));
    }
    ASSERT_GT(history.FirstTime(), 0);
    const auto scan = [&](double from, double to) {
        std::pair<float, float> extremes{1e9F, -1e9F};
        const double end = std::min(std::ceil(to / spacing), double{samples});
        for (auto index = static_cast<size_t>(std::ceil(from / spacing));
             static_cast<double>(index) < end; ++index) {
            extremes.first = std::fmin(extremes.first, all[index]);
            extremes.second = std::fmax(extremes.second, all[index]);
        }
        return extremes;
    };
    const double oldestSample = (samples - 131'072) * spacing;
    std::uniform_real_distribution<double> nearby(-20, 20);
    for (const double place :
         {history.FirstTime() + 20, oldestSample, history.LastTime() - 9000, history.LastTime()}) {
        for (int round = 0; round < 300; ++round) {
            std::exponential_distribution<double> length(round % 2 == 0 ? 0.01 : 0.0002);
            const double from = std::max(history.FirstTime(), place + nearby(random));
            const double to = from + 1 + length(random);
            const double bin = history.IsRawFrom(from) ? 0 : 2;
            const Extent extent = history.MinMax(1, from, to);
            const auto inside = scan(from, to);
            const auto around = scan(from - bin, to + bin);
            if (inside.first <= inside.second) {
                ASSERT_TRUE(extent.low <= inside.first && extent.high >= inside.second)
                    << from << " to " << to;
                ASSERT_TRUE(extent.low >= around.first && extent.high <= around.second)
                    << from << " to " << to;
            }
        }
    }
}

TEST(ChannelHistoryTest, StatisticsAreThoseOfAPlainComputation) {
    for (unsigned seed = 0; seed < 10; ++seed) {
        ChannelHistory history;
        std::mt19937 random(seed);
        std::normal_distribution<float> value(40, 15);
        std::vector<float> all;
        while (all.size() < 20'000) {
            all.push_back(all.size() % 53 == seed ? gap : value(random));
            history.Append(static_cast<double>(all.size() - 1), Only(2, all.back()));
        }
        std::uniform_int_distribution<int> any(0, 19'999);
        for (int round = 0; round < 100; ++round) {
            const auto [from, to] = std::minmax({any(random), any(random)});
            Statistics plain;
            double sum = 0;
            double reached = gap;
            for (int index = from; index <= to; ++index) {
                const float sample = all[static_cast<size_t>(index)];
                plain.low = std::fmin(plain.low, sample);
                plain.high = std::fmax(plain.high, sample);
                sum += std::isnan(sample) ? 0 : sample;
                plain.count += std::isnan(sample) ? 0 : 1;
                reached = std::isnan(reached) && sample <= 5 ? index : reached;
            }
            const Statistics found = history.StatisticsOf(2, from, to);
            ASSERT_TRUE(found.isExact);
            ASSERT_EQ(found.count, plain.count);
            ASSERT_EQ(std::isnan(found.mean), plain.count == 0);
            if (plain.count > 0) {
                ASSERT_EQ(found.low, plain.low);
                ASSERT_EQ(found.high, plain.high);
                ASSERT_NEAR(found.mean, sum / static_cast<double>(plain.count), 40e-6);
            }
            const double time = history.TimeOfReaching(2, from, to, 40, 5);
            ASSERT_TRUE(time == reached || (std::isnan(time) && std::isnan(reached)));
        }
    }
}

TEST(ChannelHistoryTest, KeepsADayWithinItsMemoryAndNoMore) {
    ChannelHistory history;
    EXPECT_THAT(history.Bytes(), Lt(100'000U));
    constexpr int samplesOfADay = 2'880'000;
    Fill(history, samplesOfADay + 120'000);
    EXPECT_THAT(history.Bytes(), Lt(40'000'000U));
    EXPECT_EQ(history.FirstTime(), 0);
    EXPECT_TRUE(history.IsRawFrom(history.LastTime() - 3600));

    Fill(history, samplesOfADay, history.LastTime() + interval);
    const size_t full = history.Bytes();
    EXPECT_GT(history.FirstTime(), 0);
    EXPECT_LT(history.FirstTime(), history.LastTime() - 25 * 3600);
    Fill(history, 10'000, history.LastTime() + interval);
    EXPECT_EQ(history.Bytes(), full);
    EXPECT_THAT(full, Lt(40'000'000U));
    EXPECT_TRUE(std::isnan(history.ValueAt(0, history.FirstTime() - 1)));
}

TEST(ChannelHistoryTest, KeepsADayAtAnyRate) {
    ChannelHistory history;
    for (int second = 0; second < 100'000; ++second) {
        history.Append(second, Only(0, 1));
    }
    EXPECT_EQ(history.FirstTime(), 0);
}

TEST(ChannelHistoryTest, FindsTheSamplesBesideATime) {
    ChannelHistory history;
    Fill(history, 200'000); // the oldest only as bins
    const double last = history.LastTime();
    EXPECT_TRUE(std::isnan(history.TimeBefore(0)));
    EXPECT_DOUBLE_EQ(history.TimeBefore(last), last - interval);
    EXPECT_DOUBLE_EQ(history.TimeFrom(last - 0.01), last);
    EXPECT_TRUE(std::isnan(history.TimeFrom(last + 1)));
    EXPECT_NEAR(history.TimeFrom(100), 101, 1);
    EXPECT_NEAR(history.TimeBefore(100), 99, 1);
    EXPECT_NEAR(history.ValueAt(0, 100), 100 / interval, 64);
}

TEST(ChannelHistoryTest, VisitsInOrderOfTime) {
    ChannelHistory history;
    Fill(history, 200'000);
    double previous = -1;
    size_t bins = 0;
    size_t samples = 0;
    history.Visit(0, history.LastTime() + 1, [&](double time, const auto &lows, const auto &highs) {
        EXPECT_GT(time, previous);
        previous = time;
        ++(lows[0] < highs[0] ? bins : samples);
        return true;
    });
    EXPECT_EQ(samples, 131'072U);
    EXPECT_NEAR(static_cast<double>(bins), (200'000 - 131'072) / 64.0, 30);
    std::vector<float> few;
    history.Visit(history.LastTime() - interval * 2.5, history.LastTime() + 1,
                  [&](double, const auto &lows, const auto &) {
                      few.push_back(lows[0]);
                      return few.size() < 2;
                  });
    EXPECT_THAT(few, ElementsAre(FloatEq(199'997), FloatEq(199'998)));
}

TEST(ChannelHistoryTest, ClearForgetsAndStartsAgain) {
    ChannelHistory history;
    Fill(history, 5000, 1000);
    const auto generation = history.Generation();
    const auto bytes = history.Bytes();
    history.Clear();
    EXPECT_TRUE(history.IsEmpty());
    EXPECT_FALSE(history.HasValues(0));
    EXPECT_NE(history.Generation(), generation);
    EXPECT_LT(history.Bytes(), bytes);
    Fill(history, 10, 3);
    EXPECT_EQ(history.FirstTime(), 3);
    EXPECT_EQ(history.MinMax(0, 0, 10).high, 9);
}

} // namespace
} // namespace ztm::test
