// The adapter library on the real libusb and a virtual bus: what it sends, and what it makes of
// everything that a device can do wrong.

#include "adapter/usb/UsbTest.h"

#include <algorithm>
#include <cerrno>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ztm::test {
namespace {

using Then = Answer::Then;

TEST_F(UsbTest, RequestsTravelAsTheProtocolSays) {
    const struct {
        Call call;
        Transfer onTheWire;
        std::vector<uint8_t> reply;
    } cases[] = {
        {Read(0x0B), {0xC0, 0xDE, 0x50, 0x0B, 1, {}}, {0x8B}},
        {Read(0xFF, 0x51), {0xC0, 0xDE, 0x51, 0xFF, 1, {}}, {0x00}},
        {Write(0x19, 0xFF), {0x40, 0xDE, 0x50, 0xFF19, 0, {}}, {}},
        {Handshake, {0x40, 0xDF, 0, 0, 0, {}}, {}},
        {{0xDB, 100, 255, 0, 0}, {0x40, 0xDB, 100, 255, 0, {}}, {}},
        {{0xDA, 0, 0, 1, 3}, {0xC0, 0xDA, 0, 0, 3, {}}, {1, 2, 3}},
        {{0, 0, 0xFFFF, 1, 64}, {0xC0, 0, 0, 0xFFFF, 64, {}}, std::vector<uint8_t>(64, 7)},
        {{0xFF, 0xFFFF, 0, 1, 0}, {0xC0, 0xFF, 0xFFFF, 0, 0, {}}, {}},
    };
    device.PlugRunning();
    ASSERT_EQ(adapter.LoadFirmWare(firmware.c_str()), 0);
    for (const auto &c : cases) {
        device.ForgetTransfers();
        device.SetFault([&c](size_t, const Transfer &) { return Answer{.reply = c.reply}; });
        std::vector<uint8_t> buffer(c.reply.size() + 1, untouched);
        EXPECT_EQ(Send(c.call, buffer.data()), 0) << c.call;
        EXPECT_THAT(device.Transfers(), ElementsAre(c.onTheWire));
        EXPECT_EQ(buffer.back(), untouched);
        buffer.pop_back();
        EXPECT_EQ(buffer, c.reply) << c.call;
    }
}

TEST_F(UsbTest, FieldsThatDoNotFitAreRefusedAndNotSent) {
    const Call cases[] = {{-1, 0, 0, 0, 0},       {0x100, 0, 0, 0, 0}, {0xDE, -1, 0, 1, 1},
                          {0xDE, 65536, 0, 1, 1}, {0xDE, 0, -1, 0, 0}, {0xDE, 0, 65536, 0, 0},
                          {0xDE, 0, 0, 2, 0},     {0xDE, 0, 0, -1, 1}, {0xDE, 0, 0, 0, 1},
                          {0xDA, 0, 0, 1, -1},    {0xDA, 0, 0, 1, 65}};
    device.PlugRunning();
    ASSERT_EQ(adapter.LoadFirmWare(firmware.c_str()), 0);
    for (const Call &call : cases) {
        std::array<uint8_t, 100> buffer{};
        EXPECT_NE(Send(call, buffer.data()), 0) << call;
    }
    EXPECT_NE(Send(Read(0), nullptr), 0);
    EXPECT_EQ(Send(Handshake, nullptr), 0);
    EXPECT_EQ(device.TransferCount(), 1);
}

TEST_F(UsbTest, ATransferThatGoesWrongFailsAndTheNextIsSentAsUsual) {
    const struct {
        const char *what;
        Answer answer;
        bool succeeds;
        std::chrono::milliseconds atLeast;
    } cases[] = {
        {"stall", {.error = EPIPE}, false, 0ms},
        {"bus error", {.error = EPROTO}, false, 0ms},
        {"lost synchronisation", {.error = EILSEQ}, false, 0ms},
        {"too long a reply", {.error = EOVERFLOW}, false, 0ms},
        {"short reply", {.reply = {1, 2}}, false, 0ms},
        {"no reply bytes", {}, false, 0ms},
        {"late reply", {.reply = {1, 2, 3}, .delay = 50ms}, true, 50ms},
        {"reply after the time-out", {.reply = {1, 2, 3}, .delay = 700ms}, false, 300ms},
        {"no reply", {.delay = never}, false, 300ms},
    };
    device.PlugRunning();
    ASSERT_EQ(adapter.LoadFirmWare(firmware.c_str()), 0);
    for (const auto &c : cases) {
        device.SetFault([&c](size_t, const Transfer &) { return c.answer; });
        std::vector<uint8_t> buffer(3, untouched);
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(Send({0xDA, 0, 0, 1, 3}, buffer.data()) == 0, c.succeeds) << c.what;
        const auto took = std::chrono::steady_clock::now() - start;
        EXPECT_GE(took, c.atLeast) << c.what;
        EXPECT_LT(took, 650ms) << c.what;
        const std::vector<uint8_t> kept(3, untouched);
        EXPECT_EQ(buffer, c.succeeds ? c.answer.reply : kept) << c.what;
        device.SetFault(nullptr);
        EXPECT_EQ(ReadAt(0x20), 0x21) << "after " << c.what;
    }
}

TEST_F(UsbTest, AnUnpluggedAdapterFailsAtOnceAndStaysClosedUntilTheNextStart) {
    const struct {
        const char *what;
        std::optional<Answer> fault; ///< none: unplugged while idle
    } cases[] = {
        {"idle", std::nullopt},
        {"in flight", Answer{.then = Then::LeavesInFlight}},
        {"in flight, with a bus error first",
         Answer{.error = EPROTO, .then = Then::LeavesAfterwards}},
    };
    for (const auto &c : cases) {
        device.PlugRunning();
        ASSERT_EQ(adapter.LoadFirmWare(firmware.c_str()), 0);
        if (c.fault) {
            device.SetFault([&c](size_t, const Transfer &) { return c.fault; });
            EXPECT_EQ(ReadAt(0x20), failed) << c.what;
            device.SetFault(nullptr);
        } else {
            bus.Unplug();
        }
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(ReadAt(0x20), failed) << c.what;
        EXPECT_LT(std::chrono::steady_clock::now() - start, shortBounds.request) << c.what;
        EXPECT_TRUE(bus.IsClosedByAll()) << c.what;

        device.PlugRunning();
        EXPECT_EQ(ReadAt(0x20), failed) << "plugged in again, not started";
        EXPECT_EQ(adapter.LoadFirmWare(firmware.c_str()), 0);
        EXPECT_EQ(ReadAt(0x20), 0x21) << "started again after: " << c.what;
        bus.Unplug();
    }
}

/// Every way from a start to the end of a few requests, cut off at every transfer.
TEST_F(UsbTest, NothingStaysOpenWhereverItIsUnplugged) {
    constexpr size_t all = 8; // 4 of the load, 4 requests
    const auto run = [this] {
        if (adapter.LoadFirmWare(firmware.c_str()) == 0) {
            for (int request = 0; request < 4; ++request) {
                ReadAt(request);
            }
        }
    };
    const Answer departures[] = {{.then = Then::LeavesInFlight},
                                 {.error = EPROTO, .then = Then::LeavesAfterwards},
                                 {.reply = {0}, .then = Then::LeavesAfterwards}};
    device.PlugLoading();
    run();
    ASSERT_EQ(device.TransferCount(), all);
    ASSERT_EQ(OpenSessions(), 1);
    bus.Unplug();
    for (const Answer &departure : departures) {
        for (size_t index = 0; index < all; ++index) {
            device.ForgetTransfers();
            device.SetFault([&](size_t number, const Transfer &) {
                return number == index ? std::optional(departure) : std::nullopt;
            });
            device.PlugLoading();
            run();
            bus.Unplug();
            EXPECT_EQ(ReadAt(0), failed) << index;
            EXPECT_TRUE(bus.IsClosedByAll()) << index;
            EXPECT_NE(adapter.LoadFirmWare(firmware.c_str()), 0) << index;
            EXPECT_EQ(OpenSessions(), 0) << index;
        }
    }
}

TEST_F(UsbTest, ASecondProgramIsRefusedAndTheFirstGoesOn) {
    device.PlugRunning();
    {
        UsbAdapter first;
        ASSERT_EQ(first.LoadFirmWare(firmware.c_str()), 0);
        EXPECT_EQ(ReasonOfFailedStart(firmware),
                  "ztm-eval: the USB adapter " + running + " is in use by another program\n");
        EXPECT_EQ(ReadAt(0x20), failed);
        uint8_t value = 0;
        EXPECT_EQ(first.VendorIORequest(0xDE, 0x50, 0x20, 1, 1, &value), 0);
        EXPECT_EQ(value, 0x21);
    }
    EXPECT_EQ(adapter.LoadFirmWare(firmware.c_str()), 0);
    EXPECT_EQ(ReadAt(0x20), 0x21);
}

/// While it lives the access rights of files hold for this thread even when it is root's.
class AccessRightsHold {
public:
    AccessRightsHold() {
        syscall(SYS_capget, &header, before);
        __user_cap_data_struct without[2] = {before[0], before[1]};
        without[0].effective &= ~(1U << CAP_DAC_OVERRIDE | 1U << CAP_DAC_READ_SEARCH);
        syscall(SYS_capset, &header, without);
    }
    ~AccessRightsHold() { syscall(SYS_capset, &header, before); }
    AccessRightsHold(const AccessRightsHold &) = delete;
    AccessRightsHold &operator=(const AccessRightsHold &) = delete;

private:
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct before[2] = {};
};

TEST_F(UsbTest, SaysWhatHelpsWhenThereIsNoAdapterOrNoPermission) {
    EXPECT_EQ(ReasonOfFailedStart(firmware),
              "ztm-eval: no USB adapter " + running + " or " + loading + " is plugged in\n");

    device.PlugRunning();
    ASSERT_EQ(chmod(bus.Node().c_str(), 0), 0);
    std::string reason;
    {
        const AccessRightsHold guard;
        reason = ReasonOfFailedStart(firmware);
    }
    EXPECT_THAT(reason,
                StartsWith("ztm-eval: no permission to open the USB adapter " + running + ";"));
    const std::string rule = reason.substr(std::min(reason.find("SUBSYSTEM"), reason.size()));
    EXPECT_THAT(rule, EndsWith("\n"));
    EXPECT_THAT(BytesOf(ZTM_UDEV_RULES), EndsWith(rule));
    EXPECT_EQ(std::count(reason.begin(), reason.end(), '\n'), 1);
}

} // namespace
} // namespace ztm::test
