#include "link/USBComms.h"

#include "link/CommFailure.h"
#include "link/GeneralSubs.h"
#include "link/Heaters.h"
#include "link/LinkState.h"
#include "link/USBFunctions.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"

#include <gmock/gmock.h>

namespace ztm {
namespace {

using test::Adapter;
using test::Call;
using test::Read;
using test::Write;
using testing::ElementsAre;
using testing::IsEmpty;

class USBComms : public testing::Test {
protected:
    USBComms() {
        test::ResetCore();
        CommsMedium = MediumUSB;
        USBDeviceAddress = 0x50;
    }

    test::ClockDouble clock;
};

/// Notes which buttons the hook disables, in order.
struct ButtonsDouble final : FanControlButtons {
    ButtonsDouble() { SetFanControlButtons(this); }
    ~ButtonsDouble() override { SetFanControlButtons(nullptr); }
    void DisableAuto() override { disabled.emplace_back("cmdAuto"); }
    void DisableSetLookups() override { disabled.emplace_back("cmdSetLookups"); }
    void DisableManual() override { disabled.emplace_back("cmdManual"); }
    std::vector<std::string> disabled;
};

TEST_F(USBComms, RegisterRequestsCarryDeviceAddressAndPackedIndex) {
    USBDeviceAddress = 0x51;
    Adapter().answersAt = 0x51;
    Adapter().registers[0x3D] = 0x34;
    EXPECT_EQ(ReadRegister(0x3D), 0x34);
    WriteRegister(0x0B, 0x8B);
    WriteRegister(0x19, 300);
    WriteRegister(0x19, -1);
    EXPECT_THAT(Adapter().calls,
                ElementsAre(Call{0xDE, 0x51, 0x3D, 1, 1}, Call{0xDE, 0x51, 0x8B0B, 0, 0},
                            Call{0xDE, 0x51, 0xFF19, 0, 0}, Call{0xDE, 0x51, 0x0019, 0, 0}));
}

TEST_F(USBComms, NoRegisterIsTouchedOutsideTheAddressRange) {
    for (const int16_t medium : {MediumUSB, MediumSMBus, MediumNone}) {
        CommsMedium = medium;
        for (const int32_t address : {-1, 256, 0x101, -0x8000, 0x7FFFFFFF}) {
            EXPECT_EQ(ReadRegister(address), 0);
            WriteRegister(address, 1);
        }
    }
    EXPECT_THAT(Adapter().calls, IsEmpty());
    EXPECT_EQ(clock.TotalSeconds(), 0);
}

TEST_F(USBComms, OnBoardSmbusReadsZeroAndWaitsAfterEachAccess) {
    CommsMedium = MediumSMBus;
    Adapter().registers.fill(0xFF);
    EXPECT_EQ(ReadRegister(0x3D), 0);
    EXPECT_NEAR(clock.TotalSeconds(), 0.020, 0.001);
    WriteRegister(0x0B, 1);
    EXPECT_NEAR(clock.TotalSeconds(), 0.040, 0.001);
    SmbusDelayEnabled = false;
    WriteRegister(0x0B, 1);
    EXPECT_NEAR(clock.TotalSeconds(), 0.040, 0.001);
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(USBComms, WithoutAMediumOnlyTheHookRuns) {
    CommsMedium = MediumNone;
    const ButtonsDouble buttons;
    EXPECT_EQ(ReadRegister(0x01), 0);
    WriteRegister(0x01, 0x80);
    EXPECT_THAT(buttons.disabled, ElementsAre("cmdAuto", "cmdSetLookups"));
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(USBComms, HookFollowsConfiguration1ReadBack) {
    const struct {
        int data;
        std::vector<std::string> disabled;
    } cases[] = {{0x7F, {"cmdAuto", "cmdSetLookups"}}, {0x80, {"cmdManual"}}};
    for (const auto &c : cases) {
        Adapter().calls.clear();
        const ButtonsDouble buttons;
        WriteRegister(0x01, c.data);
        EXPECT_EQ(buttons.disabled, c.disabled);
        EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x01, c.data), Read(0x01)));
    }
}

TEST_F(USBComms, HookKeepsEightPointMode) {
    const struct {
        std::string_view device;
        int data;
        bool eightPoints;
    } cases[] = {{ZTM7720, 0x08, true}, {ZTM7720, 0xF7, false}, {ZTM7710, 0xF7, true}};
    for (const auto &c : cases) {
        DeviceName = c.device;
        Adapter().calls.clear();
        WriteRegister(0x02, c.data);
        EXPECT_EQ(EightPointMode, c.eightPoints) << c.device << " " << c.data;
        EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x02, c.data), Read(0x02)));
    }
    Adapter().calls.clear();
    AfterRegisterWrite(3);
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(USBComms, HandshakeRepeatsUntilAcceptedAndWaitsAfterEachTry) {
    int refusals = 3;
    Adapter().script = [&](const Call &) { return static_cast<int16_t>(refusals-- > 0); };
    AdapterHandshake();
    EXPECT_THAT(Adapter().calls,
                ElementsAre(test::Handshake, test::Handshake, test::Handshake, test::Handshake));
    EXPECT_NEAR(clock.TotalSeconds(), 0.8, 0.001);
}

TEST_F(USBComms, HandshakeGivesUpSilentlyAndIsNotSentInVain) {
    Adapter().script = [](const Call &) { return int16_t{-1}; };
    AdapterHandshake();
    EXPECT_EQ(Adapter().calls.size(), 1000U);
    EXPECT_NEAR(clock.TotalSeconds(), 200, 0.1);

    Adapter().calls.clear();
    AdapterFailed = true;
    AdapterHandshake();
    AdapterFailed = false;
    CommsMedium = MediumSMBus;
    AdapterHandshake();
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(USBComms, HeaterRequestsCarryDutiesAndStoreTheReply) {
    SetHeaterDuty(40, HeaterUnchanged);
    Adapter().heaterReply = {12, 34, 56};
    EXPECT_EQ(ReadHeaterDuty(), 56);
    EXPECT_EQ(Heaters[0].Pwm, 12);
    EXPECT_EQ(Heaters[1].Pwm, 34);
    EXPECT_THAT(Adapter().calls, ElementsAre(Call{0xDB, 40, 255, 0, 0}, Call{0xDA, 0, 0, 1, 3}));
}

TEST_F(USBComms, EveryFailedRequestButTheHandshakeIsACommFailure) {
    struct Failed {};
    SetCommFailureHandler([] { throw Failed{}; });
    Adapter().script = [](const Call &) { return int16_t{1}; };
    const ButtonsDouble buttons;
    EXPECT_THROW(ReadRegister(0x01), Failed);
    EXPECT_THROW(WriteRegister(0x01, 0), Failed);
    EXPECT_THROW(SetHeaterDuty(1, 1), Failed);
    EXPECT_THROW(ReadHeaterDuty(), Failed);
    EXPECT_EQ(Adapter().calls.size(), 4U);
    EXPECT_THAT(buttons.disabled, IsEmpty()) << "the hook ran after a failed write";
}

TEST_F(USBComms, CommFailureNeverReturns) {
    EXPECT_EXIT(CommFailure(), testing::ExitedWithCode(EXIT_FAILURE), "");
    SetCommFailureHandler([] {});
    EXPECT_EXIT(CommFailure(), testing::ExitedWithCode(EXIT_FAILURE), "");
}

TEST_F(USBComms, FanSpeedsAreCountsInARegisterPair) {
    const struct {
        uint8_t high, low;
        int32_t rpm;
    } counts[] = {{0x00, 0x00, 0},    {0xFF, 0xFF, 75},   {0x00, 0x01, 4915200},
                  {0x03, 0xE8, 4915}, {0x09, 0x9A, 2000}, {0xFC, 0xA2, 76}};
    for (const auto &c : counts) {
        Adapter().calls.clear();
        Adapter().registers[0x4A] = c.low;
        Adapter().registers[0x4B] = c.high;
        EXPECT_EQ(ReadRPM(0x4B), c.rpm);
        EXPECT_THAT(Adapter().calls, ElementsAre(Read(0x4A), Read(0x4B)));
    }
    const struct {
        int32_t rpm, high, low;
    } speeds[] = {{0, 0xFF, 0xFF}, {76, 0xFC, 0xA2}, {1000, 0x13, 0x33}, {2000, 0x09, 0x9A}};
    for (const auto &c : speeds) {
        Adapter().calls.clear();
        WriteRPM(0x2B, c.rpm);
        EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x2B, c.high), Write(0x2A, c.low)));
    }
    Adapter().calls.clear();
    for (const int32_t rpm : {1, 75, -1, -4915200, -10000000}) {
        WriteRPM(0x2B, rpm);
    }
    EXPECT_THAT(Adapter().calls, IsEmpty());
}

TEST_F(USBComms, Config2Bit2) {
    Adapter().registers[0x02] = 0xFB;
    EXPECT_FALSE(IsConfig2Bit2Set());
    Adapter().registers[0x02] = 0x04;
    EXPECT_TRUE(IsConfig2Bit2Set());
}

} // namespace
} // namespace ztm
