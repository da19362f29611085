// The adapter library on the real libusb and a virtual bus: what it sends, and what it makes of
// everything that a device can do wrong.

#include "adapter/usb/UsbAdapter.h"
#include "support/AdapterDouble.h"
#include "support/FileRights.h"
#include "support/HexRecords.h"
#include "support/TemporaryFile.h"
#include "support/VirtualAdapter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cerrno>
#include <numeric>
#include <sys/stat.h>
#include <umockdev.h>
#include <unistd.h>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using usb::UsbAdapter;
using namespace std::chrono_literals;
using Then = Answer::Then;

constexpr usb::Bounds shortBounds{
    .request = 300ms, .load = {300ms, 600ms}, .comeBack = 800ms, .look = 20ms};

/// Two runs of data: with holding and starting the CPU, a load of four transfers.
const std::string smallFirmware = ":03001000AABBCCBC\n:0200400011228B\n:00000001FF\n";

const std::string running = IdText(usb::runningAdapter);
const std::string loading = IdText(usb::loadingAdapter);

constexpr uint8_t untouched = 0xA5; ///< what is in a buffer before a request

std::chrono::steady_clock::duration TimeOf(auto action) {
    const auto start = std::chrono::steady_clock::now();
    action();
    return std::chrono::steady_clock::now() - start;
}

/// A virtual bus, an adapter that can be plugged into it, and the adapter library.
class UsbTest : public testing::Test {
protected:
    static constexpr int failed = -1;

    static int16_t Send(UsbAdapter &adapter, const Call &call, uint8_t *buffer) {
        return adapter.VendorIORequest(call.request, call.value, call.index, call.direction,
                                       call.length, buffer);
    }
    /// The register's value, which is its address + 1, or `failed`.
    static int ReadAt(UsbAdapter &adapter, int32_t address) {
        uint8_t value = 0;
        return Send(adapter, Read(address), &value) == 0 ? value : failed;
    }
    int ReadAt(int32_t address) { return ReadAt(adapter, address); }

    bool Start() { return adapter.LoadFirmWare(firmware.c_str()) == 0; }

    /// Starts the adapter, which must fail, and returns what that wrote to standard error.
    std::string ReasonOfFailedStart(const std::string &path) {
        testing::internal::CaptureStderr();
        EXPECT_LT(adapter.LoadFirmWare(path.c_str()), 0) << path;
        return testing::internal::GetCapturedStderr();
    }

    /// The answer to the transfer of that number is replaced by another.
    void Replace(size_t transfer, const Answer &answer) {
        device.ForgetTransfers();
        device.SetFault([=](size_t number, const Transfer &) {
            return number == transfer ? std::optional(answer) : std::nullopt;
        });
    }

    /// How many sessions with libusb are open: each has a timer, and nothing else here has one.
    static int OpenSessions() {
        int timers = 0;
        for (const auto &file : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code closedMeanwhile;
            const auto what = std::filesystem::read_symlink(file.path(), closedMeanwhile);
            timers += what == "anon_inode:[timerfd]" ? 1 : 0;
        }
        return timers;
    }

    VirtualUsb bus;
    VirtualAdapter device{bus};
    TemporaryFolder folder;
    const std::string firmware = folder.Put("firmware.hex", smallFirmware);
    UsbAdapter adapter{shortBounds};
};

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
    ASSERT_TRUE(Start());
    for (const auto &[call, onTheWire, reply] : cases) {
        Replace(0, {.reply = reply});
        std::vector<uint8_t> buffer(reply.size() + 1, untouched);
        EXPECT_EQ(Send(adapter, call, buffer.data()), 0) << call;
        EXPECT_THAT(device.Transfers(), ElementsAre(onTheWire));
        EXPECT_EQ(buffer.back(), untouched);
        buffer.pop_back();
        EXPECT_EQ(buffer, reply) << call;
    }
}

TEST_F(UsbTest, FieldsThatDoNotFitAreRefusedAndNotSent) {
    const Call cases[] = {{-1, 0, 0, 0, 0},       {0x100, 0, 0, 0, 0}, {0xDE, -1, 0, 1, 1},
                          {0xDE, 65536, 0, 1, 1}, {0xDE, 0, -1, 0, 0}, {0xDE, 0, 65536, 0, 0},
                          {0xDE, 0, 0, 2, 0},     {0xDE, 0, 0, -1, 1}, {0xDE, 0, 0, 0, 1},
                          {0xDA, 0, 0, 1, -1},    {0xDA, 0, 0, 1, 65}};
    device.PlugRunning();
    ASSERT_TRUE(Start());
    for (const Call &call : cases) {
        std::array<uint8_t, 100> buffer{};
        EXPECT_NE(Send(adapter, call, buffer.data()), 0) << call;
    }
    EXPECT_NE(Send(adapter, Read(0), nullptr), 0);
    EXPECT_EQ(Send(adapter, Handshake, nullptr), 0);
    EXPECT_EQ(device.TransferCount(), 1);
}

TEST_F(UsbTest, ATransferThatGoesWrongFailsAndTheNextIsSentAsUsual) {
    const struct {
        const char *what;
        Answer answer;
        bool succeeds = false;
        std::chrono::milliseconds atLeast{0};
    } cases[] = {
        {"stall", {.error = EPIPE}},
        {"bus error", {.error = EPROTO}},
        {"lost synchronisation", {.error = EILSEQ}},
        {"too long a reply", {.error = EOVERFLOW}},
        {"short reply", {.reply = {1, 2}}},
        {"no reply bytes", {}},
        {"late reply", {.reply = {1, 2, 3}, .delay = 50ms}, true, 50ms},
        {"reply after the time-out", {.reply = {1, 2, 3}, .delay = 700ms}, false, 300ms},
        {"no reply", {.delay = never}, false, 300ms},
    };
    device.PlugRunning();
    ASSERT_TRUE(Start());
    for (const auto &c : cases) {
        SCOPED_TRACE(c.what);
        Replace(0, c.answer);
        std::vector<uint8_t> buffer(3, untouched);
        int16_t result = 0;
        const auto took = TimeOf([&] {
            result = Send(adapter, {0xDA, 0, 0, 1, 3}, buffer.data());
        });
        EXPECT_EQ(result == 0, c.succeeds);
        EXPECT_GE(took, c.atLeast);
        EXPECT_LT(took, 650ms);
        EXPECT_EQ(buffer, c.succeeds ? c.answer.reply : std::vector<uint8_t>(3, untouched));
        EXPECT_EQ(ReadAt(0x20), 0x21);
    }
}

/// Every way from a start to the end of a few requests, cut off at every transfer and after them.
TEST_F(UsbTest, WhereverItIsUnpluggedItFailsAtOnceAndStaysClosedUntilTheNextStart) {
    constexpr size_t all = 8; // 4 of the load, 4 requests
    const Answer departures[] = {{.then = Then::LeavesInFlight},
                                 {.error = EPROTO, .then = Then::LeavesAfterwards},
                                 {.reply = {0}, .then = Then::LeavesAfterwards}};
    for (const Answer &departure : departures) {
        for (size_t index = 0; index <= all; ++index) {
            SCOPED_TRACE(index);
            Replace(index, departure);
            device.PlugLoading();
            if (Start()) {
                EXPECT_EQ(OpenSessions(), 1);
                for (int request = 0; request < 4; ++request) {
                    ReadAt(request);
                }
            }
            if (index == all) {
                EXPECT_EQ(device.TransferCount(), all);
                bus.Unplug();
            }
            EXPECT_LT(TimeOf([this] { EXPECT_EQ(ReadAt(0), failed); }), shortBounds.request);
            EXPECT_TRUE(bus.IsClosedByAll());

            device.PlugRunning();
            EXPECT_EQ(ReadAt(0x20), failed) << "plugged in again, not started";
            device.SetFault(nullptr);
            EXPECT_TRUE(Start());
            EXPECT_EQ(ReadAt(0x20), 0x21);
            bus.Unplug();
            EXPECT_FALSE(Start());
            EXPECT_EQ(OpenSessions(), 0);
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
        EXPECT_EQ(ReadAt(first, 0x20), 0x21);
    }
    EXPECT_TRUE(Start());
    EXPECT_EQ(ReadAt(0x20), 0x21);
}

TEST_F(UsbTest, SaysWhatHelpsWhenThereIsNoAdapterOrNoPermission) {
    EXPECT_EQ(ReasonOfFailedStart(firmware),
              "ztm-eval: no USB adapter " + running + " or " + loading + " is plugged in\n");

    device.PlugRunning();
    ASSERT_EQ(chmod(bus.Node().c_str(), 0), 0);
    const std::string reason = [this] {
        const FileRightsHold rights;
        return ReasonOfFailedStart(firmware);
    }();

    const size_t rule = std::min(reason.find("SUBSYSTEM"), reason.size());
    EXPECT_EQ(reason.substr(0, rule),
              "ztm-eval: no permission to open the USB adapter " + running +
                  "; as root, put the following line into /etc/udev/rules.d/70-ztm-eval.rules, "
                  "run \"udevadm control --reload\", and plug the adapter in again: ");
    EXPECT_THAT(reason.substr(rule), EndsWith("\n"));
    EXPECT_THAT(BytesOf(ZTM_UDEV_RULES), EndsWith(reason.substr(rule)));
}

TEST_F(UsbTest, FirmwareIsLoadedWithTheCpuHeldAndTheAdapterComesBack) {
    const auto write = [](uint16_t address, const std::vector<uint8_t> &data) {
        return Transfer{0x40, 0xA0, address, 0, static_cast<uint16_t>(data.size()), data};
    };
    std::vector<uint8_t> data(70);
    std::iota(data.begin(), data.end(), uint8_t{1});
    const auto path =
        folder.Put("long.hex", Record(0, 0xE5FF, {9}) + Record(0, 0x10, data) + endOfFile);
    // The device may be gone before the CPU's start is answered.
    for (const Then then : {Then::LeavesAfterwards, Then::LeavesInFlight}) {
        Replace(4, {.then = then, .comesBackAs = usb::runningAdapter});
        device.PlugLoading();
        UsbAdapter patient({.comeBack = 10s, .look = 10s}); // only an event ends that wait early
        EXPECT_LT(TimeOf([&] { EXPECT_EQ(patient.LoadFirmWare(path.c_str()), 0); }), 5s);
        EXPECT_THAT(device.Transfers(),
                    ElementsAre(write(0xE600, {1}), write(0x10, {data.begin(), data.begin() + 64}),
                                write(0x50, {data.begin() + 64, data.end()}), write(0xE5FF, {9}),
                                write(0xE600, {0})));
        EXPECT_EQ(ReadAt(patient, 0x20), 0x21);
    }
}

/// Whether a load ends well and soon on a bus that tells of no arrival, as umockdev's does in a
/// process that has asked for it before there is a bus.
bool LoadsWithoutEvents() {
    umockdev_in_mock_environment();
    VirtualUsb bus;
    VirtualAdapter device(bus);
    const TemporaryFolder folder;
    device.PlugLoading();
    UsbAdapter adapter({.comeBack = 10s, .look = 20ms});
    const auto path = folder.Put("firmware.hex", smallFirmware);
    bool isLoaded = false;
    return TimeOf([&] { isLoaded = adapter.LoadFirmWare(path.c_str()) == 0; }) < 5s && isLoaded;
}

TEST(UsbAdapterTest, ReturnsWithoutAnEventAreFoundByLooking) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(std::exit(LoadsWithoutEvents() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST_F(UsbTest, AFailedLoadEndsInTimeWithNothingOpen) {
    const std::string notLoaded =
        "the firmware could not be loaded into the USB adapter " + loading + ": ";
    const std::string notBack =
        "the USB adapter did not come back as " + running + " after its firmware was loaded\n";
    const Answer unchanged{.then = Then::LeavesAfterwards, .comesBackAs = usb::loadingAdapter};
    const struct {
        const char *what;
        size_t transfer; ///< the answer to this one is replaced
        Answer answer;
        std::string reason;
    } cases[] = {
        {"reset refused", 0, {.error = stall}, notLoaded},
        {"data refused", 1, {.error = stall}, notLoaded},
        {"data not answered", 2, {.delay = never}, notLoaded},
        {"start refused", 3, {.error = stall}, notLoaded},
        {"never back", 3, {.then = Then::LeavesInFlight}, notBack},
        {"never gone", 3, {}, notBack},
        {"back unchanged", 3, unchanged, notBack},
    };
    for (const auto &[what, transfer, answer, reason] : cases) {
        Replace(transfer, answer);
        device.PlugLoading();
        EXPECT_THAT(ReasonOfFailedStart(firmware), HasSubstr("ztm-eval: " + reason)) << what;
        EXPECT_TRUE(bus.IsClosedByAll()) << what;
        EXPECT_EQ(ReadAt(0x20), failed) << what;
    }
    device.SetFault([](auto...) { return Answer{.delay = 250ms}; });
    device.PlugLoading();
    EXPECT_THAT(ReasonOfFailedStart(firmware), HasSubstr("ztm-eval: " + notLoaded)) << "all slow";
}

TEST_F(UsbTest, AFileThatIsNoFirmwareIsRefusedWithNothingSent) {
    const char unfit[] = "the data does not fit into the adapter's RAM";
    const std::pair<std::string, const char *> files[] = {
        {folder.Path("missing.hex"), "No such file or directory"},
        {folder.Put("empty.hex", ""), "no end-of-file record"},
        {folder.Put("control.hex", Record(0, 0xE5FF, {1, 0}) + endOfFile), unfit},
        {folder.Put("beyond.hex", Record(4, 0, {0, 1}) + Record(0, 0, {1}) + endOfFile), unfit},
    };
    for (const bool isLoaded : {false, true}) {
        isLoaded ? device.PlugRunning() : device.PlugLoading();
        for (const auto &[file, reason] : files) {
            EXPECT_EQ(ReasonOfFailedStart(file),
                      "ztm-eval: the firmware file \"" + file + "\": " + reason + "\n");
        }
    }
    EXPECT_EQ(device.TransferCount(), 0);
}

} // namespace
} // namespace ztm::test
