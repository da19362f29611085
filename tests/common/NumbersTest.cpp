#include "common/Numbers.h"
#include "common/NumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace ztm {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr auto largest = std::numeric_limits<int32_t>::max();
constexpr auto smallest = std::numeric_limits<int32_t>::min();

TEST(Numbers, RoundsHalvesToEven) {
    EXPECT_EQ(RoundHalfToEven(127.5), 128);
    EXPECT_EQ(RoundHalfToEven(144.5), 144);
    EXPECT_EQ(RoundHalfToEven(-0.5), 0);
    EXPECT_EQ(RoundHalfToEven(-1.5), -2);
    EXPECT_EQ(ToInt32(2.5000001), 3);
    EXPECT_EQ(ToInt32(1e300), largest);
    EXPECT_EQ(ToInt32(-infinity), smallest);
    EXPECT_EQ(ToInt32(std::nan("")), 0);
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
    } cases[] = {
        {0, "0"},
        {-0.0, "0"},
        {0.5, ".5"},
        {-0.25, "-.25"},
        {25.38, "25.38"},
        {1200, "1200"},
        {0.001, ".001"},
        {1e-7, ".0000001"},
        {1e15, "1000000000000000"},
        {1.0 / 3, ".333333333333333"},
        {123456789012345678.0, "123456789012346000"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(NumberText(c.value), c.text);
    }
    EXPECT_EQ(NumberText(45.09804F), "45.09804");
    EXPECT_EQ(NumberText(0.1F), ".1");
    EXPECT_EQ(NumberText(191.97F), "191.97");
    EXPECT_EQ(NumberText(16777216.0F), "16777220");
}

TEST(NumberText, ReadsTheLongestLeadingNumber) {
    const struct {
        const char *text;
        double value;
    } cases[] = {
        {"", 0},
        {"x", 0},
        {"12x", 12},
        {" 1 2\t3\n4", 1234},
        {"+7", 7},
        {"-5.5e1z", -55},
        {".5", .5},
        {"5.", 5},
        {"-.", 0},
        {"1e", 1},
        {"1e+", 1},
        {"1E2", 100},
        {"1,5", 1},
        {"--1", 0},
        {"nan", 0},
        {"inf", 0},
        {"0x10", 0},
        {"1e999", infinity},
        {"-1e999", -infinity},
        {"1e-999", 0},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(NumericValue(c.text), c.value) << c.text;
    }
    EXPECT_EQ(NumericValue(std::string(400, '9')), infinity);
    const std::string zeros(400, '0');
    EXPECT_EQ(NumericValue("." + zeros + "1"), 0);
    EXPECT_EQ(NumericValue("." + zeros + "1e5"), 0);
    EXPECT_EQ(NumericValue("1" + zeros + "e-5"), infinity);
    EXPECT_EQ(NumericValue(zeros + "." + zeros + "1"), 0);
    EXPECT_EQ(NumericValue("1e-99999999999999999999"), 0);
    EXPECT_EQ(NumericValue("-1e+99999999999999999999"), -infinity);
    EXPECT_EQ(NumericValue("81e9223372036854775807"), infinity);
}

TEST(NumberText, ReadsHexadecimalBySixteenAndThirtyTwoBits) {
    const struct {
        const char *text;
        int32_t value;
    } cases[] = {
        {"", 0},
        {"xyz", 0},
        {"3d", 0x3D},
        {"3DH", 0x3D},
        {"1 F\t\n", 0x1F},
        {"7FFF", 0x7FFF},
        {"8000", -0x8000},
        {"FFFF", -1},
        {"0FFFF", 0xFFFF},
        {"FFFFFFFF", -1},
        {"00000000FF", 0xFF},
        {"0FFFFFFFF", -1},
        {"123456789", largest},
        {"-1", 0},
        {"&H1", 0},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(HexValue(c.text), c.value) << c.text;
    }
}

TEST(NumberText, WritesHexadecimalOfTheRoundedNumber) {
    const struct {
        double value;
        const char *text;
    } cases[] = {
        {0, "0"},         {61, "3D"},  {255.5, "100"},     {2.5, "2"},
        {-1, "FFFFFFFF"}, {-0.5, "0"}, {1e12, "7FFFFFFF"}, {-1e12, "80000000"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(HexText(c.value), c.text);
    }
}

} // namespace
} // namespace ztm
