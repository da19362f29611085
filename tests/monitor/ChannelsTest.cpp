#include "monitor/Channels.h"

#include "link/LinkTest.h"

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using ChannelsTest = LinkTest;

TEST_F(ChannelsTest, TemperaturesAreRoundedToTwoDecimals) {
    const struct {
        int high, low;
        double celsius;
    } cases[] = {{0x59, 0x60, 25.38}, {0x59, 0xE0, 25.88}, {0x59, 0x20, 25.12}, {0x40, 0x00, 0},
                 {0x3F, 0xE0, -0.12}, {0x00, 0x00, -64},   {0xFF, 0xF8, 191.97}};
    for (const auto &c : cases) {
        EXPECT_EQ(TemperatureReading(c.high, c.low), c.celsius);
    }
}

TEST_F(ChannelsTest, LimitBytesRoundHalvesToEvenAndStayInRange) {
    const struct {
        double celsius;
        int32_t value;
    } temperatures[] = {{-64, 0}, {0, 64}, {80.5, 144}, {191, 255}, {-1000, 0}, {1000, 255}};
    for (const auto &c : temperatures) {
        EXPECT_EQ(TemperatureByte(c.celsius), c.value) << c.celsius;
    }
    EXPECT_EQ(CelsiusOfByte(0x55), 21);
    const struct {
        double percent;
        int32_t value;
    } percents[] = {{0, 0}, {50, 128}, {100, 255}, {100.5, 255}, {-1, 0}};
    for (const auto &c : percents) {
        EXPECT_EQ(PercentByte(c.percent), c.value) << c.percent;
    }
    EXPECT_EQ(PercentOfByte(255), 100);
}

TEST_F(ChannelsTest, EachChannelReadsItsRegistersInOrder) {
    Adapter().registers[0x40] = 0x60;
    Adapter().registers[0x41] = 0x59;
    Adapter().registers[0x4C] = 0x9A;
    Adapter().registers[0x4D] = 0x09;
    Adapter().registers[0x4E] = 115;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        ReadMeasurement(channel);
    }
    EXPECT_THAT(Adapter().calls,
                ElementsAre(Read(0x40), Read(0x41), Read(0x42), Read(0x43), Read(0x44), Read(0x45),
                            Read(0x4A), Read(0x4B), Read(0x4C), Read(0x4D), Read(0x4E)));
    EXPECT_THAT(Measurements, ElementsAre(25.38F, -64, -64, 0, 2000, testing::FloatEq(45.09804F)));
}

TEST_F(ChannelsTest, WhatTheVariantLacksIsLeftAlone) {
    DeviceName = ZTM7710;
    Measurements.fill(7);
    for (const int channel : {2, 4, 6, -1}) {
        ReadMeasurement(channel);
    }
    EXPECT_THAT(Adapter().calls, IsEmpty());
    EXPECT_THAT(Measurements, testing::Each(7));
}

TEST_F(ChannelsTest, AlertsAreReadOnlyWhileTheChipSignalsOne) {
    Adapter().registers[0x4F] = 0xFF;
    Adapter().registers[0x51] = 0xFE;
    EXPECT_THAT(ReadAlerts(), testing::Each(false));
    EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x51)));

    const struct {
        int status1, status2, status3, channel;
    } causes[] = {{0x80, 0, 0, 0},    {0x40, 0, 0, 0}, {0, 0x80, 0, 0}, {0x20, 0, 0, 1},
                  {0x10, 0, 0, 1},    {0x08, 0, 0, 1}, {0, 0x40, 0, 1}, {0x04, 0, 0, 2},
                  {0x02, 0, 0, 2},    {0x01, 0, 0, 2}, {0, 0x20, 0, 2}, {0, 0, 0x80, 3},
                  {0, 0, 0x40, 3},    {0, 0, 0x20, 4}, {0, 0, 0x10, 4}, {0, 0x10, 0, 5},
                  {0, 0x0F, 0x0E, -1}};
    for (const auto &c : causes) {
        Adapter().registers[0x4F] = static_cast<uint8_t>(c.status1);
        Adapter().registers[0x50] = static_cast<uint8_t>(c.status2);
        Adapter().registers[0x51] = static_cast<uint8_t>(c.status3 | 0x01);
        std::array<bool, ChannelCount> alarms{};
        EXPECT_THAT(CallsOf([&] { alarms = ReadAlerts(); }),
                    ElementsAre(Read(0x51), Read(0x4F), Read(0x50)));
        for (int channel = 0; channel < ChannelCount; ++channel) {
            EXPECT_EQ(alarms[static_cast<size_t>(channel)], channel == c.channel)
                << channel << ": " << c.status1 << ' ' << c.status2 << ' ' << c.status3;
        }
    }
}

} // namespace
} // namespace ztm::test
