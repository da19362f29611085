#include "monitor/Events.h"

#include "link/Heaters.h"
#include "link/LinkTest.h"
#include "link/USBComms.h"
#include "monitor/HeaterRamp.h"
#include "monitor/MeasurementHistory.h"
#include "monitor/MeasurementLog.h"
#include "support/TemporaryFile.h"

namespace ztm::test {
namespace {

using EventsTest = LinkTest;

/// What has happened since the last call, as in "Alarm on 0, Log started".
std::string News() {
    static size_t known = 0;
    std::string news;
    for (known = std::min(known, Events().Size()); known < Events().Size(); ++known) {
        const Event &event = Events()[known];
        EXPECT_EQ(event.time, RunningSeconds());
        news += (news.empty() ? "" : ", ") + event.text +
                (event.channel < 0 ? "" : " " + std::to_string(event.channel));
    }
    return news;
}

TEST_F(EventsTest, WhatPassesByIsNotedAndNothingIsAskedForIt) {
    const TemporaryFolder folder;
    HeaterRamp ramp(1);
    const auto alarm = [](uint8_t status1, uint8_t status3) {
        return [=] {
            Adapter().registers[0x4F] = status1;
            Adapter().registers[0x51] = status3;
            ReadAlerts();
        };
    };
    const auto write = [](int32_t address, int32_t data) {
        return [=] { WriteRegister(address, data); };
    };
    const auto control = [](uint8_t now) {
        return [=] {
            Adapter().registers[0x01] = now;
            AfterRegisterWrite(0x01);
        };
    };
    const auto rampIs = [&](bool on) {
        return [=, &ramp] {
            Heaters[1].SoftwareControl = Heaters[1].StartPending = on;
            ramp.Step(RunningSeconds());
        };
    };
    const struct {
        const char *news;
        std::function<void()> action;
        size_t calls;
    } cases[] = {
        {"", alarm(0, 0), 1},
        {"Alarm on 0, Alarm on 2", alarm(0x82, 1), 3},
        {"", alarm(0x82, 1), 3},
        {"Alarm off 0, Alarm off 2, Alarm on 4", alarm(0, 0x11), 3},
        {"Alarm off 4", alarm(0, 0x10), 1},
        {"High limit 70°C 0", write(0x0B, 134), 1},
        {"Low limit -64°C 2", write(0x12, -1), 1},
        {"High limit 45.1% 5", write(0x19, 115), 1},
        {"THERM limit 85°C 1", write(0x10, 149), 1},
        {"", write(0x3B, 3), 1},
        {"", control(0x80), 1}, // at the start
        {"Manual control", control(0), 1},
        {"", control(1), 1},
        {"Automatic control", control(0x80), 1},
        {"Heater 1: 30%, Heater 2: 0%", [] { SetHeaterDuty(30, 0); }, 1},
        {"Heater 2: ramp started, 20 to 80%", rampIs(true), 1},
        {"Heater 1: 40%", [] { SetHeaterDuty(40, 50); }, 1},
        {"", [&] { ramp.Step(RunningSeconds()); }, 2},
        {"Heater 2: ramp ended", rampIs(false), 0},
        {"Log started", [&] { StartLog(folder.Path("log"), {}); }, 0},
        {"Log stopped", StopLog, 0},
        {"", StopLog, 0},
        {"", RecordMeasurements, 0},
        {"Measured again after 60 s", [&] { clock.Advance(59), RecordMeasurements(); }, 0},
    };
    EXPECT_EQ(News(), "");
    for (const auto &c : cases) {
        clock.Advance(1);
        EXPECT_EQ(CallsOf(c.action).size(), c.calls) << c.news;
        EXPECT_EQ(News(), c.news);
    }
    CommsMedium = MediumNone;
    WriteRegister(0x0B, 134);
    EXPECT_EQ(News(), "") << "nothing was written";
}

TEST_F(EventsTest, TheNewestAreKeptInOrderOfTheirTimes) {
    EventHistory events;
    for (int second = 0; second < 12'000; ++second) {
        events.Add(second, NoChannel, "");
    }
    const uint64_t before = events.Version();
    events.Add(5000.5, NoChannel, "of the user");
    EXPECT_NE(events.Version(), before);
    EXPECT_EQ(events.Size(), 10'000U);
    EXPECT_EQ(events[0].time, 2001);
    EXPECT_EQ(events.FirstFrom(5000.1), 3000U);
    EXPECT_EQ(events[3000].text, "of the user");
    EXPECT_EQ(events.FirstFrom(12'000), events.Size());
    events.Add(1, NoChannel, "");
    EXPECT_EQ(events[0].time, 2001) << "older than all that are kept";
}

} // namespace
} // namespace ztm::test
