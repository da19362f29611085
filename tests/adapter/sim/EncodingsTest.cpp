#include "adapter/sim/Encodings.h"

#include <gtest/gtest.h>

#include <utility>

namespace ztm::sim {
namespace {

TEST(EncodingsTest, EncodesFullScaleRoundingAndLimits) {
    const struct {
        double celsius;
        int low, high;
    } temperatures[] = {{0, 0x00, 0x40},      {25.375, 0x60, 0x59}, {-0.125, 0xE0, 0x3F},
                        {25.38, 0x60, 0x59},  {-64, 0x00, 0x00},    {-70, 0x00, 0x00},
                        {191.97, 0xF8, 0xFF}, {500, 0xF8, 0xFF}};
    for (const auto &[celsius, low, high] : temperatures) {
        const RegisterPair pair = EncodeTemperature(TemperatureSteps(celsius));
        EXPECT_EQ(pair.low, low) << celsius;
        EXPECT_EQ(pair.high, high) << celsius;
        if (celsius > -65 && celsius < 192) {
            EXPECT_NEAR(DecodeTemperature(pair), celsius, 0.5 / stepsPerCelsius) << celsius;
        }
    }
    const std::pair<double, int> speeds[] = {{0, 0xFFFF},  {-1, 0xFFFF},   {10, 0xFFFF},
                                             {76, 0xFCA2}, {2000, 0x099A}, {1e9, 1}};
    for (const auto &[rpm, count] : speeds) {
        EXPECT_EQ(EncodeTach(rpm).high * 256 + EncodeTach(rpm).low, count) << rpm;
    }
    EXPECT_NEAR(DecodeTach(EncodeTach(2000)), 2000, 1);
    EXPECT_EQ(DecodeTach({0, 0}), 0);
    EXPECT_EQ(DecodeTach({0xFF, 0xFF}), 0);
}

} // namespace
} // namespace ztm::sim
