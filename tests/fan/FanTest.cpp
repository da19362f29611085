#include "fan/ControlSources.h"
#include "fan/EditHistory.h"
#include "fan/FanCodes.h"
#include "fan/FanOutlook.h"
#include "fan/LookupGraphScale.h"
#include "fan/LookupTable.h"
#include "fan/PointText.h"
#include "link/LastSeen.h"
#include "link/LinkTest.h"
#include "link/USBComms.h"
#include "monitor/MonitorSettings.h"
#include "monitor/RecentMeasurements.h"

#include <cmath>

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

constexpr SpeedPoints rising{
    {{30, 1000}, {40, 2000}, {50, 3000}, {60, 4000}, {20, 75}, {40, 5000}, {35, 6000}, {80, 4000}}};

TEST(LookupCurve, DemandsWhatTheWalkAlongItComesTo) {
    const struct {
        int fan;
        bool isOneTable, isLinear;
        double celsius, rpm;
    } cases[] = {
        {0, true, false, 29.99, 0},                               // below the first point
        {0, true, false, 30, 1000}, {0, true, false, 39.9, 1000}, // level up to the next point
        {0, true, true, 35, 1500},  {0, true, false, 60, 6000},   // the walk ends at 80 °C
        {0, true, true, 80, 4000},  {0, false, true, 61, 4000},   // two tables
        {1, false, false, 19, 0},   {1, false, false, 30, 0},     // the largest count stops it
        {1, false, true, 30, 2500}, {1, false, true, 100, 4000},
        {1, true, false, 45, 2000}, // both fans follow the one table
    };
    for (const auto &c : cases) {
        EXPECT_EQ(DemandedRpm(rising, CurveOfFan(c.fan, c.isOneTable), c.isLinear, c.celsius),
                  c.rpm)
            << c.fan << c.isOneTable << c.isLinear << ' ' << c.celsius;
    }
}

TEST(LookupCurve, FoldsAndCliffsAreToldApart) {
    const struct {
        SpeedPoint from, to;
        SegmentFault fault;
    } cases[] = {
        {{30, 1000}, {40, 2000}, SegmentFault::None}, {{30, 1000}, {30, 1000}, SegmentFault::None},
        {{30, 1000}, {29, 2000}, SegmentFault::Fold}, {{30, 1000}, {29, 500}, SegmentFault::Fold},
        {{30, 1000}, {31, 999}, SegmentFault::Cliff}, {{30, 1000}, {30, 999}, SegmentFault::Cliff},
        {{30, 75}, {31, 0}, SegmentFault::None}, // both stop the fan
    };
    for (const auto &c : cases) {
        EXPECT_EQ(FaultBetween(c.from, c.to), c.fault) << c.to.Celsius << ' ' << c.to.Rpm;
    }
}

TEST(LookupCurve, ApplyLimitsOrDropsWhatTheChipCannotHold) {
    constexpr double huge = std::numeric_limits<double>::infinity();
    const struct {
        SpeedPoint entered;
        std::optional<SpeedPoint> held;
        SpeedPoint written;
        const char *what; // of temperature limited, speed limited, speed dropped
    } cases[] = {
        {{30, 1000}, {{1, 2000}}, {30, 1000}, "---"},
        {{191, 76}, {}, {191, 76}, "---"},
        {{192, 4915201}, {}, {191, 4915200}, "TL-"},
        {{-huge, -huge}, {}, {-64, 0}, "TL-"},
        {{-64.5, 0.5}, {}, {-64, 0}, "---"}, // halves to even
        {{30, 75}, {{30, 75}}, {30, 75}, "---"},
        {{30, 75}, {{30, 2000}}, {30, 2000}, "--D"},
        {{30, 1}, {}, {30, 75}, "--D"},
    };
    for (const auto &c : cases) {
        const PointFate fate = FateOf(c.entered, c.held);
        EXPECT_EQ(fate.Written, c.written) << c.entered.Celsius << ' ' << c.entered.Rpm;
        const std::string what = {fate.IsTemperatureLimited ? 'T' : '-',
                                  fate.IsSpeedLimited ? 'L' : '-', fate.IsSpeedDropped ? 'D' : '-'};
        EXPECT_EQ(what, c.what) << c.entered.Celsius << ' ' << c.entered.Rpm;
    }
}

TEST(PointText, GoesToASpreadsheetAndBackOrIsRefusedWithItsLine) {
    const std::string all = PointsAsText(rising);
    EXPECT_EQ(all.substr(0, 15), "30\t1000\n40\t2000");
    const struct {
        std::string text;
        size_t points;
        int faultyLine;
        bool areTooMany = false;
    } cases[] = {
        {all, 8, 0},
        {all + "\n", 8, 0},
        {all + "1\t2", 0, 9, true},
        {"1\t2", 1, 0},
        {"1\t2\r\n3\t4\r\n", 2, 0},
        {"1\t2\r3\t4", 2, 0},
        {" -1.5 \t 2e3 ", 1, 0},
        {"", 0, 1},
        {"\n1\t2", 0, 1},
        {"1\t2\n\n3\t4", 0, 2},
        {"1\t2\n\n\n", 0, 2},
        {"1\t2\n3;4", 0, 2},
        {"T\tRPM\n1\t2", 0, 1},
        {"1\t2\t3", 0, 1},
        {"1\t", 0, 1},
        {"1\t1e999", 0, 1},
        {"1\t2 RPM", 0, 1},
    };
    for (const auto &c : cases) {
        const ParsedPoints parsed = ParsePoints(c.text);
        EXPECT_EQ(parsed.Points.size(), c.points) << c.text;
        EXPECT_EQ(parsed.FaultyLine, c.faultyLine) << c.text;
        EXPECT_EQ(parsed.AreTooMany, c.areTooMany) << c.text;
    }
    EXPECT_EQ(ParsePoints("-1.5\t2e3").Points[0], (SpeedPoint{-1.5, 2000}));
}

TEST(EditHistory, EditsOfAStepAreTakenBackAsOne) {
    EditHistory<int> history;
    history.Start(1);
    for (const auto &[state, step] : {std::pair{1, 1}, {2, 1}, {3, 1}, {4, 2}, {5, 3}, {4, 3}}) {
        history.Note(state, step); // the first is no edit, the last comes to nothing
    }
    EXPECT_EQ(history.Undo(), 3);
    EXPECT_EQ(history.Undo(), 1);
    EXPECT_FALSE(history.CanUndo());
    EXPECT_EQ(history.Redo(), 3);
    history.Note(6, 1);
    EXPECT_FALSE(history.CanRedo()) << "another edit";
    EXPECT_EQ(history.Undo(), 3) << "the step of before has ended";
    for (int state = 0; state < 2000; ++state) {
        history.Note(state + 10, state + 1);
    }
    int steps = 0;
    for (; history.CanUndo(); ++steps) {
        history.Undo();
    }
    EXPECT_EQ(steps, 1000);
}

TEST_F(LookupTable, TheOutlookIsMadeFromWhatPassedByAlone) {
    const auto outlook = [](int fan) {
        const FanPlan plan{.Points = SeenPoints().value_or(SpeedPoints{}),
                           .IsOneTable = EightPointMode,
                           .IsLinear = IsLinearSeen(),
                           .Behaviour = SeenBehaviour()};
        const FanOutlook seen = OutlookOf(plan, fan);
        return std::tuple(seen.Fate, seen.Channel, seen.Celsius, seen.DemandedRpm,
                          OperatingRpm(seen, fan).value_or(-1));
    };
    using Seen = decltype(outlook(0));
    EXPECT_EQ(outlook(0), Seen(FanFate::SourceUnknown, 0, 0, 0, -1));
    for (int point = 0; point < LookupPoints; ++point) {
        EXPECT_FALSE(SeenPoints()) << "not the whole table";
        WritePointTemperature(point, 10 * point + 30);
        WritePointRpm(point, 1024 * (point + 1));
    }
    EXPECT_EQ((*SeenPoints())[7], (SpeedPoint{100, 8192}));
    WriteRegister(FanBehaviour, 0x0E); // Remote2 and full speed
    EXPECT_EQ(outlook(0), Seen(FanFate::NotMeasured, 2, 30, 0, -1));
    EXPECT_EQ(outlook(1), Seen(FanFate::FullSpeed, 0, 0, 0, -1));
    EXPECT_FALSE(IsManualSeen());
    WriteRegister(Configuration1, 0);
    EXPECT_TRUE(IsManualSeen());
    MonitoringEnabled = true;
    SetMeasurements({20, 55, 45.5, 1800, 2000, 0});
    KeepRecentMeasurements();
    EXPECT_EQ(outlook(0), Seen(FanFate::Runs, 2, 45.5, 2048, 1800));
    WriteRegister(Configuration2, LinearBit); // and two tables
    EXPECT_EQ(outlook(0), Seen(FanFate::Runs, 2, 45.5, 2048 + 1024 * 0.55, 1800));
    WriteRegister(FanBehaviour, 0x04);
    EXPECT_EQ(outlook(0), Seen(FanFate::Stops, 0, 20, 0, 1800));
    EXPECT_EQ(outlook(1), Seen(FanFate::Stops, 1, 55, 0, 2000)) << "its table begins at 70 °C";
    EXPECT_THAT(CallsOf([&] { outlook(0); }), IsEmpty());
    clock.Advance(2.1);
    EXPECT_EQ(outlook(0), Seen(FanFate::Stops, 0, 20, 0, 1800)) << "a round of channels late";
    clock.Advance(0.1);
    EXPECT_EQ(outlook(0), Seen(FanFate::NotMeasured, 0, 30, 0, -1)) << "no longer measured";
    KeepRecentMeasurements();
    EXPECT_EQ(RecentCount(), 2U);
    EXPECT_EQ(RecentAt(0).Values[3], 1800);
    EXPECT_TRUE(std::isnan(RecentAt(1).Values[3]));
    DeviceName = ZTM7710;
    WriteRegister(FanBehaviour, 2);
    SetMeasurements({20, 55, 0, 1800, 0, 0});
    EXPECT_EQ(std::get<int>(outlook(0)), 1) << "the one remote channel";
    ResetLastSeen();
    EXPECT_FALSE(SeenPoints());
}

} // namespace
} // namespace ztm::test
