#include "files/LogFile.h"

#include "support/TemporaryFile.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace ztm::test {
namespace {

const std::string heading = "Started At: 23.11.2026 14:05:09\r\n\tLocal\tTHERM%\r\n";

TEST(LogFileTest, ReadsCompleteRowsAndSaysWhichLineIsNoneOfALog) {
    const struct {
        std::string text;
        std::vector<double> times;
        bool isCutOff;
        const char *problem;
    } cases[] = {
        {heading, {}, false, ""},
        {heading + "-.3\t25.38\xB0\x43\t45.1%\r\n .5\t-.25\xB0\x43\t0%\r\n", {-.3, .5}, false, ""},
        {heading + " 1\t2\xB0\x43\t3%\r\n 2\t2\xB0\x43\t3%", {1}, true, ""},
        {"Started At: now\r\n\tRemote\tFan\t\r\n 0\t5\xB0\x43\t6RPM\t\r\n", {0}, false, ""},
        {"Started At: now\n\t\n .5\t\n", {.5}, false, ""},
        {"", {}, false, "line 1: the file ends before the rows of a log"},
        {"Started At: now\r\n\tLoc", {}, true, "line 2: the file ends before the rows of a log"},
        {"Address, Data\r\n", {}, false, "line 1: a log begins with \"Started At: \""},
        {"Started At: \r\nLocal\t\r\n", {}, false, "line 2: no names of columns"},
        {"Started At: \r\n\tFan1\tLocal\t\r\n", {}, false, "line 2: a column that no log has"},
        {"Started At: \r\n\tLocal\r\n", {}, false, "line 2: no tab behind a name"},
        {heading + "\r\n", {}, false, "line 3: no elapsed time"},
        {heading + " 1e3\t2\xB0\x43\t3%\r\n", {}, false, "line 3: no elapsed time"},
        {heading + " 9999999999\t2\xB0\x43\t3%\r\n", {}, false, "line 3: no elapsed time"},
        {heading + " 1\tnan\xB0\x43\t3%\r\n", {}, false, "line 3: no value of Local"},
        {heading + " 1\t2RPM\t3%\r\n", {}, false, "line 3: no value of Local"},
        {heading + " 1\t2\xB0\x43\t3\r\n", {}, false, "line 3: no value of THERM%"},
        {heading + " 1\t2\xB0\x43\t3%\t\r\n", {}, false, "line 3: more values than columns"},
        {heading + " 2\t2\xB0\x43\t3%\r\n 1\t2\xB0\x43\t3%\r\n",
         {2},
         false,
         "line 4: the time goes back"},
        {heading + std::string(2000, ' '), {}, false, "line 3: too long for a log"},
    };
    for (const auto &[text, times, isCutOff, problem] : cases) {
        for (const size_t slice : {text.size() + 1, size_t{1}}) {
            ChannelHistory rows;
            LogReader reader(rows);
            bool isLog = true;
            for (size_t at = 0; at < text.size() && isLog; at += slice) {
                isLog = reader.Feed(text.substr(at, slice));
            }
            EXPECT_EQ(isLog && reader.Finish(), *problem == '\0') << text;
            EXPECT_EQ(reader.Problem(), problem) << text;
            EXPECT_EQ(reader.Contents().IsCutOff, isCutOff) << text;
            std::vector<double> read;
            rows.Visit(-10, 10, [&](double time, auto &, auto &) {
                read.push_back(time);
                return true;
            });
            EXPECT_EQ(read, times) << text;
        }
    }
}

TEST(LogFileTest, KeepsAMillionRowsOneByOneAndLeavesOutWhatComesAfter) {
    std::string text = heading;
    for (uint64_t row = 0; row < MostLogRows + 5; ++row) {
        text += ' ' + std::to_string(row) + "\t1\xB0\x43\t2%\r\n";
    }
    const TemporaryFolder folder;
    ChannelHistory rows(MostLogRows);
    LogFile log(rows);
    auto state = log.Open(folder.Put("log", text));
    int steps = 0;
    for (; state == LogFile::State::Reading; ++steps) {
        EXPECT_LE(log.Progress(), 1);
        state = log.Step(0);
    }
    EXPECT_GT(steps, 100);
    EXPECT_EQ(log.Contents().Rows, MostLogRows);
    EXPECT_TRUE(log.Contents().IsTooLong);
    EXPECT_TRUE(rows.IsRawFrom(0));
    EXPECT_EQ(rows.LastTime(), MostLogRows - 1);
}

TEST(LogFileTest, WaitsForNoFifo) {
    const TemporaryFolder folder;
    mkfifo(folder.Path("fifo").c_str(), 0600);
    for (const auto &[name, reason] :
         {std::pair{"fifo", "no regular file"}, {"none", "No such file or directory"}}) {
        ChannelHistory rows;
        LogFile log(rows);
        EXPECT_EQ(log.Open(folder.Path(name)), LogFile::State::Failed);
        EXPECT_EQ(log.Problem(), reason);
    }
}

} // namespace
} // namespace ztm::test
