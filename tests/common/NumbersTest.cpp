#include "common/Numbers.h"
#include "common/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>

namespace ztm {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr auto largest = std::numeric_limits<int32_t>::max();
constexpr auto smallest = std::numeric_limits<int32_t>::min();

TEST(Numbers, RoundsHalvesToEven) {
    for (const auto &[value, rounded] : {std::pair{127.5, 128},
                                         {144.5, 144},
                                         {-0.5, 0},
                                         {-1.5, -2},
                                         {2.5000001, 3},
                                         {1e300, largest},
                                         {-infinity, smallest},
                                         {std::nan(""), 0}}) {
        EXPECT_EQ(ToInt32(value), rounded) << value;
    }
    EXPECT_EQ(RoundHalfToEven(127.5), 128);
    EXPECT_EQ(RoundHalfToEven(144.5), 144);
}

TEST(Numbers, RoundsToDecimalsByTheExactValue) {
    EXPECT_EQ(RoundToDecimals(25.375, 2), 25.38);
    EXPECT_EQ(RoundToDecimals(25.125, 2), 25.12);
    EXPECT_EQ(RoundToDecimals(-0.125, 2), -0.12);
    EXPECT_EQ(RoundToDecimals(2.675, 2), 2.67) << "the nearest double is below the half";
    EXPECT_EQ(RoundToDecimals(45.098039, 1), 45.1);
}

TEST(NumberText, WritesPlainDecimalWithOnlyTheDigitsNeeded) {
    const struct {
        double value;
        const char *text;
    } cases[] = {{0, "0"},
                 {-0.0, "0"},
                 {0.5, ".5"},
                 {-0.25, "-.25"},
                 {25.38, "25.38"},
                 {1200, "1200"},
                 {0.001, ".001"},
                 {1e-7, ".0000001"},
                 {1e15, "1000000000000000"},
                 {1.0 / 3, ".333333333333333"},
                 {123456789012345678.0, "123456789012346000"}};
    for (const auto &c : cases) {
        EXPECT_EQ(NumberText(c.value), c.text);
    }
    EXPECT_EQ(NumberText(45.09804F), "45.09804");
    EXPECT_EQ(NumberText(0.1F), ".1");
    EXPECT_EQ(NumberText(191.97F), "191.97");
    EXPECT_EQ(NumberText(16777216.0F), "16777220");
}

TEST(NumberText, ReadsTheLongestLeadingNumber) {
    const std::string zeros(400, '0');
    const std::map<double, std::vector<std::string>> texts{
        {0,
         {"", "x", "-.", "--1", "nan", "inf", "0x10", "1e-999", "." + zeros + "1",
          "." + zeros + "1e5", zeros + "." + zeros + "1", "1e-99999999999999999999"}},
        {infinity, {"1e999", std::string(400, '9'), "1" + zeros + "e-5", "81e9223372036854775807"}},
        {-infinity, {"-1e999", "-1e+99999999999999999999"}},
        {1, {"1e", "1e+", "1,5"}},
        {12, {"12x"}},
        {1234, {" 1 2\t3\n4"}},
        {7, {"+7"}},
        {-55, {"-5.5e1z"}},
        {.5, {".5"}},
        {5, {"5."}},
        {100, {"1E2"}},
    };
    for (const auto &[value, written] : texts) {
        for (const std::string &text : written) {
            EXPECT_EQ(NumericValue(text), value) << text;
        }
    }
}

TEST(NumberText, ReadsHexadecimalBySixteenAndThirtyTwoBits) {
    const std::map<int32_t, std::vector<const char *>> texts{
        {0, {"", "xyz", "-1", "&H1"}}, {0x3D, {"3d", "3DH"}},
        {0x1F, {"1 F\t\n"}},           {0x7FFF, {"7FFF"}},
        {-0x8000, {"8000"}},           {-1, {"FFFF", "FFFFFFFF", "0FFFFFFFF"}},
        {0xFFFF, {"0FFFF"}},           {0xFF, {"00000000FF"}},
        {largest, {"123456789"}}};
    for (const auto &[value, written] : texts) {
        for (const char *text : written) {
            EXPECT_EQ(HexValue(text), value) << text;
        }
    }
}

TEST(NumberText, WritesHexadecimalOfTheRoundedNumber) {
    const struct {
        double value;
        const char *text;
    } cases[] = {{0, "0"},         {61, "3D"},  {255.5, "100"},     {2.5, "2"},
                 {-1, "FFFFFFFF"}, {-0.5, "0"}, {1e12, "7FFFFFFF"}, {-1e12, "80000000"}};
    for (const auto &c : cases) {
        EXPECT_EQ(HexText(c.value), c.text);
    }
}

} // namespace
} // namespace ztm
