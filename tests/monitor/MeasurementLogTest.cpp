#include "monitor/MeasurementLog.h"

#include "common/At.h"
#include "common/DateTimeText.h"
#include "files/LogFile.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"
#include "support/TemporaryFile.h"

#include <gmock/gmock.h>

namespace ztm {
namespace {

constexpr double noon = 43200;

class MeasurementLogTest : public testing::Test {
protected:
    MeasurementLogTest() { test::ResetCore(); }

    static std::string LineAfter(double elapsed, double startTime = noon) {
        const test::ClockDouble clock(startTime + elapsed);
        BuildLogLine(startTime);
        return LogLine;
    }
};

TEST_F(MeasurementLogTest, ElapsedTimeHasThreeDecimalsAndABlankForItsSign) {
    const struct {
        double elapsed;
        const char *line;
    } cases[] = {
        {12.345, " 12.345\t"},     {0.1, " .1\t"}, {-0.3, "-.3\t"},
        {-0.5, "-.5\t"},           {0, " 0\t"},    {-0.0004, " 0\t"},
        {0.0005, " .001\t"},       {1, " 1\t"},    {3599.9996, " 3600\t"},
        {20000.25, " 20000.25\t"},
    };
    for (const auto &[elapsed, line] : cases) {
        EXPECT_EQ(LineAfter(elapsed), line) << elapsed;
    }
}

TEST_F(MeasurementLogTest, TimeGoesOnOverEveryMidnight) {
    test::ClockDouble clock(86399.75);
    const double start = 86400; // the nearest whole second to the first entry
    std::vector<std::string> lines;
    for (const double step : {0.0, 0.5, 3 * 86400 - 0.25, 1.0}) {
        clock.Advance(step);
        BuildLogLine(start);
        lines.push_back(LogLine);
    }
    EXPECT_THAT(lines, testing::ElementsAre("-.25\t", " .25\t", " 259200\t", " 259201\t"));
}

TEST_F(MeasurementLogTest, AFileHoldsTheSelectedChannelsInTheirOrder) {
    Measurements = {25.38F, -0.25F, 0.75F, 2000, 15360, 45.098038F};
    const struct {
        std::array<bool, ChannelCount> selected;
        const char *header;
        const char *values;
    } cases[] = {
        {{}, "\t", ""},
        {{true, false, false, true, false, true},
         "\tLocal\tFan1\tTHERM%",
         "25.38\xB0\x43\t2000RPM\t45.09804%"},
        {{true, true, true, true, true, true},
         "\tLocal\tRemote1\tRemote2\tFan1\tFan2\tTHERM%",
         "25.38\xB0\x43\t-.25\xB0\x43\t.75\xB0\x43\t2000RPM\t15360RPM\t45.09804%"},
        {{false, false, false, false, false, true}, "\tTHERM%", "45.09804%"},
        {{false, true, true, false, false, false},
         "\tRemote1\tRemote2\t",
         "-.25\xB0\x43\t.75\xB0\x43\t"},
        {{false, false, false, false, true, false}, "\tFan2\t", "15360RPM\t"},
    };
    SetDateTimeSource([] { return std::time_t{0}; });
    const test::TemporaryFolder folder;
    const std::string path = folder.Path("log");
    for (const auto &[selected, header, values] : cases) {
        const test::ClockDouble clock(noon + 0.5);
        EXPECT_EQ(StartLog(path, {selected, 250, 7}), "");
        WriteLogEntry(noon);
        WriteLogEntry(noon);
        StopLog();
        const std::string entry = std::string("\r\n .5\t").append(values);
        EXPECT_EQ(test::BytesOf(path), std::string("Started At: ")
                                           .append(DateTimeText())
                                           .append("\r\n")
                                           .append(header)
                                           .append(entry)
                                           .append(entry)
                                           .append("\r\n"));
        EXPECT_EQ(LogEntryCount, 2);
        ChannelHistory rows;
        LogFile log(rows);
        log.Open(path);
        EXPECT_EQ(log.Step(1), LogFile::State::Read) << log.Problem();
        EXPECT_EQ(log.Contents().HasColumn, selected);
        for (int channel = 0; channel < ChannelCount; ++channel) {
            EXPECT_EQ(rows.HasValues(channel), At(selected, channel));
            EXPECT_THAT(rows.LastValue(channel),
                        testing::NanSensitiveFloatEq(
                            At(selected, channel) ? At(Measurements, channel) : Extent::gap));
        }
    }
}

} // namespace
} // namespace ztm
