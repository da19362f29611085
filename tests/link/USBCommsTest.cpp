#include "link/USBComms.h"

#include "link/CommFailure.h"
#include "link/GeneralSubs.h"
#include "link/Heaters.h"
#include "link/LinkTest.h"

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using USBComms = LinkTest;

/// Notes which buttons the hook disables, in order.
struct ButtonsDouble final : FanControlButtons {
    ButtonsDouble() { SetFanControlButtons(this); }
    ~ButtonsDouble() override { SetFanControlButtons(nullptr); }
    void DisableAuto() override { disabled += "cmdAuto "; }
    void DisableSetLookups() override { disabled += "cmdSetLookups "; }
    void DisableManual() override { disabled += "cmdManual "; }
    std::string disabled;
};

TEST_F(USBComms, RegisterAccessesAskJustWhatTheyMust) {
    const struct {
        int16_t medium;
        std::function<void()> access;
        Calls calls;
        double seconds;
        const char *disabled = "";
    } cases[] = {
        {MediumUSB, [] { EXPECT_EQ(ReadRegister(0x3D), 0x34); }, {{0xDE, 0x51, 0x3D, 1, 1}}, 0},
        {MediumUSB, [] { WriteRegister(0x0B, 0x8B); }, {{0xDE, 0x51, 0x8B0B, 0, 0}}, 0},
        {MediumUSB, [] { WriteRegister(0x19, 300); }, {{0xDE, 0x51, 0xFF19, 0, 0}}, 0},
        {MediumUSB, [] { WriteRegister(0x19, -1); }, {{0xDE, 0x51, 0x0019, 0, 0}}, 0},
        {MediumUSB,
         [] {
             WriteField({0x3D, 0x0F}, 0x15);
         },
         {Read(0x3D, 0x51), Write(0x3D, 0x35, 0x51)},
         0},
        {MediumSMBus, [] { EXPECT_EQ(ReadRegister(0x3D), 0); }, {}, 0.020},
        {MediumSMBus, [] { WriteRegister(0x0B, 1); }, {}, 0.020},
        {MediumSMBus,
         [] {
             SmbusDelayEnabled = false;
             WriteRegister(0x0B, 1);
         },
         {},
         0},
        {MediumNone, [] { EXPECT_EQ(ReadRegister(0x3D), 0); }, {}, 0},
        {MediumNone, [] { WriteRegister(0x01, 0x80); }, {}, 0, "cmdAuto cmdSetLookups "},
        {MediumUSB,
         [] { WriteRegister(0x01, 0x7F); },
         {Write(0x01, 0x7F, 0x51), Read(0x01, 0x51)},
         0,
         "cmdAuto cmdSetLookups "},
        {MediumUSB,
         [] { WriteRegister(0x01, 0x80); },
         {Write(0x01, 0x80, 0x51), Read(0x01, 0x51)},
         0,
         "cmdManual "},
        {MediumUSB, [] { AfterRegisterWrite(0x03); }, {}, 0},
    };
    for (const auto &[medium, access, calls, seconds, disabled] : cases) {
        SCOPED_TRACE(&access - &cases[0].access);
        StartSession();
        CommsMedium = medium;
        USBDeviceAddress = Adapter().answersAt = 0x51;
        Adapter().registers[0x3D] = 0x34;
        const ButtonsDouble buttons;
        const double start = clock.TotalSeconds();
        EXPECT_EQ(CallsOf(access), calls);
        EXPECT_NEAR(clock.TotalSeconds() - start, seconds, 0.001);
        EXPECT_EQ(buttons.disabled, disabled);
    }
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

TEST_F(USBComms, ACodeGoesIntoItsFieldAndNoOtherBit) {
    const struct {
        RegisterField field;
        int32_t before, code, after, codeAfter;
    } cases[] = {
        {{0, 0x70}, 0x8F, 5, 0xDF, 5}, {{0, 0x70}, 0xFF, 0, 0x8F, 0}, {{0, 0x70}, 0x8F, 9, 0x9F, 1},
        {{0, 0x01}, 0xFE, 3, 0xFF, 1}, {{0, 0x80}, 0x7F, 1, 0xFF, 1}, {{0, 0x80}, 0x7F, 2, 0x7F, 0},
    };
    for (const auto &[field, before, code, after, codeAfter] : cases) {
        EXPECT_EQ(field.With(before, code), after) << code;
        EXPECT_EQ(field.In(after), codeAfter) << code;
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
        EXPECT_THAT(CallsOf([&] { WriteRegister(0x02, c.data); }),
                    ElementsAre(Write(0x02, c.data), Read(0x02)));
        EXPECT_EQ(EightPointMode, c.eightPoints) << c.device << " " << c.data;
    }
}

TEST_F(USBComms, HandshakeRepeatsUntilAcceptedAndIsNotSentInVain) {
    const struct {
        int16_t medium;
        bool failed;
        int refusals;
        size_t tries;
    } cases[] = {{MediumUSB, false, 0, 1},
                 {MediumUSB, false, 3, 4},
                 {MediumUSB, false, 2000, 1000},
                 {MediumUSB, true, 0, 0},
                 {MediumSMBus, false, 0, 0}};
    for (const auto &[medium, failed, refusals, tries] : cases) {
        CommsMedium = medium;
        AdapterFailed = failed;
        Adapter().script = [left = refusals](const Call &) mutable {
            return static_cast<int16_t>(left-- > 0 ? -1 : 0);
        };
        const double start = clock.TotalSeconds();
        EXPECT_EQ(CallsOf(AdapterHandshake), Calls(tries, Handshake));
        EXPECT_NEAR(clock.TotalSeconds() - start, 0.2 * static_cast<double>(tries), 0.11);
    }
    CommsMedium = MediumUSB;
    AdapterFailed = false;
    Adapter().script = [](const Call &) { return int16_t{-1}; };
    const double start = clock.TotalSeconds();
    EXPECT_EQ(CallsOf([] { AdapterHandshakeWithin(0.5); }), Calls(3, Handshake));
    EXPECT_NEAR(clock.TotalSeconds() - start, 0.5, 1e-6);
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
    EXPECT_EQ(buttons.disabled, "") << "the hook ran after a failed write";
    SetCommFailureHandler([] {});
    EXPECT_EXIT(CommFailure(), testing::ExitedWithCode(EXIT_FAILURE), "") << "never returns";
    SetCommFailureHandler({});
    EXPECT_EXIT(CommFailure(), testing::ExitedWithCode(EXIT_FAILURE), "");
}

TEST_F(USBComms, FanSpeedsAreCountsInARegisterPair) {
    const struct {
        uint8_t high, low;
        int32_t rpm;
    } counts[] = {{0x00, 0x00, 0},    {0xFF, 0xFF, 75},   {0x00, 0x01, 4915200},
                  {0x03, 0xE8, 4915}, {0x09, 0x9A, 2000}, {0xFC, 0xA2, 76}};
    for (const auto &c : counts) {
        Adapter().registers[0x4A] = c.low;
        Adapter().registers[0x4B] = c.high;
        EXPECT_THAT(CallsOf([&] { EXPECT_EQ(ReadRPM(0x4B), c.rpm); }),
                    ElementsAre(Read(0x4A), Read(0x4B)));
    }
    const struct {
        int32_t rpm, high, low;
    } speeds[] = {{0, 0xFF, 0xFF}, {76, 0xFC, 0xA2}, {1000, 0x13, 0x33}, {2000, 0x09, 0x9A}};
    for (const auto &c : speeds) {
        EXPECT_THAT(CallsOf([&] { WriteRPM(0x2B, c.rpm); }),
                    ElementsAre(Write(0x2B, c.high), Write(0x2A, c.low)));
    }
    for (const int32_t rpm : {1, 75, -1, -4915200, -10000000}) {
        EXPECT_THAT(CallsOf([&] { WriteRPM(0x2B, rpm); }), IsEmpty()) << rpm;
    }
}

TEST_F(USBComms, Config2Bit2) {
    for (const auto &[value, isSet] : {std::pair{uint8_t{0xFB}, false}, {uint8_t{0x04}, true}}) {
        Adapter().registers[0x02] = value;
        EXPECT_EQ(IsConfig2Bit2Set(), isSet);
    }
}

} // namespace
} // namespace ztm::test
