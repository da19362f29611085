#include "fan/ControlSources.h"
#include "fan/FanCodes.h"
#include "fan/LookupGraphScale.h"
#include "fan/LookupTable.h"
#include "link/LinkTest.h"

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using LookupTable = LinkTest;

TEST(FanCodes, AListTextStandsForItsCodeAndAnyOtherForNone) {
    EXPECT_EQ(SetFanResponse("1.25 updates/sec"), 0);
    EXPECT_EQ(SetFanResponse("160 updates/sec"), 7);
    EXPECT_EQ(SetFanResponse("160 Updates/sec"), 0);
    EXPECT_EQ(SetRampRate("35 counts/sec"), 7);
    EXPECT_EQ(SetRampRate("160 updates/sec"), 0);
    EXPECT_EQ(ControlSourceCode("Remote2"), 2);
    EXPECT_EQ(ControlSourceCode("Full Speed"), 3);
    EXPECT_EQ(ControlSourceCode("Remote"), 0);
    EXPECT_EQ(CodeOf(OneRemoteControlSources, "Remote"), 1);
    EXPECT_EQ(CodeOf(OneRemoteControlSources, "Full Speed"), 3);
    EXPECT_EQ(CodeOf(OneRemoteControlSources, "Remote1"), 0);
}

TEST(FanCodes, AnyPolesFieldHasAText) {
    const char *texts[] = {"0", "2", "2",  "2",  "4",  "6",  "6",  "6",
                           "8", "9", "10", "11", "12", "13", "14", "15"};
    for (int32_t field = 0; field < 16; ++field) {
        EXPECT_EQ(PolesText(field), texts[field]) << field;
    }
}

TEST(GraphCoordinates, AreTwipsOfTheGraph) {
    ResetLookupGraphScale();
    EXPECT_EQ(TempX(150), 4935);
    EXPECT_EQ(RPMY(0), 3735);
    EXPECT_EQ(RPMY(8000), 135);
    EXPECT_EQ(RPMY(4000), 3735 - 1800);
    EXPECT_EQ(Y2RPM(3735 - 900), 2000);
    EXPECT_NEAR(X2Temp(2000), 60.79, 0.005);
    GraphRpmRange = 1000;
    EXPECT_EQ(RPMY(1000), 135);
    EXPECT_EQ(Y2RPM(135), 1000);
    ResetLookupGraphScale();
}

TEST_F(LookupTable, NumbersWithoutAnEncodingAreLimitedAndNeverWrap) {
    for (const auto &[rpm, stored] : {std::pair{32767.0, 32767},
                                      {32768.0, 32767},
                                      {1e12, 32767},
                                      {-5.0, -5},
                                      {-70000.0, -32768},
                                      {2.5, 2}}) {
        EXPECT_EQ(PointRpm(rpm), stored) << rpm;
    }
    const struct {
        double celsius;
        int32_t byte;
    } temperatures[] = {{30, 94},   {-10, 54},  {-64, 0}, {-1000, 0},
                        {191, 255}, {1e9, 255}, {0.5, 64}};
    for (const auto &c : temperatures) {
        EXPECT_THAT(CallsOf([&] { WritePointTemperature(7, c.celsius); }),
                    ElementsAre(Write(0x29, c.byte)))
            << c.celsius;
    }
    const struct {
        double rpm;
        int32_t high, low;
    } speeds[] = {{4800, 0x04, 0x00},
                  {0, 0xFF, 0xFF},
                  {-20, 0xFF, 0xFF},
                  {76, 0xFC, 0xA2},
                  {1e9, 0x00, 0x01}};
    for (const auto &c : speeds) {
        EXPECT_THAT(CallsOf([&] { WritePointRpm(1, c.rpm); }),
                    ElementsAre(Write(0x2D, c.high), Write(0x2C, c.low)))
            << c.rpm;
    }
    EXPECT_THAT(CallsOf([] { WritePointRpm(1, 75); }), IsEmpty()) << "has no count";
}

TEST_F(LookupTable, DemandsWhatThePointsSay) {
    const PointNumbers points{{{30, 1000},
                               {40, 2000},
                               {50, 75},
                               {60, 4000},
                               {20, 500},
                               {25, 800},
                               {70, 5000},
                               {80, 6000}}};
    const struct {
        bool isOneTable;
        int fan;
        double celsius, steps, linear;
    } cases[] = {{true, 0, 29.9, 0, 0},      {true, 1, 30, 1000, 1000}, {true, 1, 35, 1000, 1500},
                 {true, 0, 45, 2000, 1000},  {true, 0, 55, 0, 2000},    {true, 0, 90, 6000, 6000},
                 {false, 0, 90, 4000, 4000}, {false, 1, 19, 0, 0},      {false, 1, 22.5, 500, 650},
                 {false, 1, 75, 5000, 5500}};
    for (const auto &c : cases) {
        EightPointMode = c.isOneTable;
        EXPECT_EQ(DemandedRpm(points, c.fan, false, c.celsius), c.steps) << c.fan << c.celsius;
        EXPECT_EQ(DemandedRpm(points, c.fan, true, c.celsius), c.linear) << c.fan << c.celsius;
    }
}

} // namespace
} // namespace ztm::test
