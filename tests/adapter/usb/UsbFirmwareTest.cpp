// Loading firmware into a USB adapter that waits for it, and the files that are refused.

#include "adapter/usb/UsbTest.h"
#include "support/HexRecords.h"

#include <numeric>
#include <sstream>
#include <sys/stat.h>
#include <umockdev.h>

namespace ztm::test {
namespace {

using Then = Answer::Then;

TEST_F(UsbTest, FirmwareIsLoadedWithTheCpuHeldAndTheAdapterComesBack) {
    const auto write = [](uint16_t address, const std::vector<uint8_t> &data) {
        return Transfer{0x40, 0xA0, address, 0, static_cast<uint16_t>(data.size()), data};
    };
    std::vector<uint8_t> data(70);
    std::iota(data.begin(), data.end(), uint8_t{1});
    const auto path =
        folder.Put("long.hex", Record(0, 0xE5FF, {9}) + Record(0, 0x10, data) + endOfFile);
    for (const bool leavesInFlight : {false, true}) {
        device.LeaveBeforeTheLastAnswer(leavesInFlight);
        device.PlugLoading();
        device.ForgetTransfers();
        UsbAdapter patient({.comeBack = 10s, .look = 10s}); // only an event ends that wait early
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(patient.LoadFirmWare(path.c_str()), 0);
        EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
        EXPECT_THAT(device.Transfers(),
                    ElementsAre(write(0xE600, {1}), write(0x10, {data.begin(), data.begin() + 64}),
                                write(0x50, {data.begin() + 64, data.end()}), write(0xE5FF, {9}),
                                write(0xE600, {0})));
        uint8_t value = 0;
        EXPECT_EQ(patient.VendorIORequest(0xDE, 0x50, 0x20, 1, 1, &value), 0);
        EXPECT_EQ(value, 0x21);
        bus.Unplug();
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
    const auto start = std::chrono::steady_clock::now();
    return adapter.LoadFirmWare(path.c_str()) == 0 && std::chrono::steady_clock::now() - start < 5s;
}

TEST(UsbAdapterTest, ReturnsWithoutAnEventAreFoundByLooking) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(std::exit(LoadsWithoutEvents() ? 0 : 1), testing::ExitedWithCode(0), "");
}

TEST_F(UsbTest, AFailedLoadEndsInTimeWithNothingOpen) {
    // The answer to one transfer is replaced by another.
    const auto expectFailure = [this](const char *what, size_t transfer, const Answer &answer,
                                      const std::string &reason) {
        device.ForgetTransfers();
        device.SetFault([&](size_t number, const Transfer &) {
            return number == transfer ? std::optional(answer) : std::nullopt;
        });
        device.PlugLoading();
        EXPECT_THAT(ReasonOfFailedStart(firmware), HasSubstr(reason)) << what;
        EXPECT_TRUE(bus.IsClosedByAll()) << what;
        EXPECT_EQ(ReadAt(0x20), failed) << what;
        bus.Unplug();
    };
    const std::string notBack = "did not come back as " + running;
    expectFailure("reset refused", 0, {.error = stall},
                  "could not be loaded into the USB adapter " + loading);
    expectFailure("data refused", 1, {.error = stall}, "could not be loaded");
    expectFailure("data not answered", 2, {.delay = never}, "could not be loaded");
    expectFailure("start refused", 3, {.error = stall}, "could not be loaded");
    expectFailure("never back", 3, {.then = Then::LeavesInFlight}, notBack);
    expectFailure("never gone", 3, {}, notBack);
    expectFailure("back unchanged", 3,
                  {.then = Then::LeavesAfterwards, .comesBackAs = usb::loadingAdapter}, notBack);
}

TEST_F(UsbTest, AFileThatIsNoFirmwareIsRefusedWithNothingSent) {
    const auto pipe = folder.Path("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const std::string files[] = {
        folder.Path("missing.hex"),
        folder.Path(""),
        pipe,
        folder.Put("empty.hex", ""),
        folder.Put("cut.hex", smallFirmware.substr(0, smallFirmware.size() - 5)),
        folder.Put("overlap.hex", Record(0, 0, {1, 2}) + Record(0, 1, {3}) + endOfFile),
        folder.Put("control.hex", Record(0, 0xE5FF, {1, 0}) + endOfFile),
        folder.Put("beyond.hex", ":020000040001F9\n" + Record(0, 0, {1}) + endOfFile),
    };
    for (const bool isLoaded : {false, true}) {
        isLoaded ? device.PlugRunning() : device.PlugLoading();
        for (const std::string &file : files) {
            EXPECT_THAT(ReasonOfFailedStart(file),
                        StartsWith("ztm-eval: the firmware file \"" + file + "\": "))
                << file;
        }
        EXPECT_NE(adapter.LoadFirmWare(nullptr), 0);
        bus.Unplug();
    }
    EXPECT_THAT(device.Transfers(), IsEmpty());
    EXPECT_EQ(bus.Opened(), 0);
}

/// Whether every line of the file is a record whose bytes sum up to 0.
bool IsValidByItsChecksums(const std::string &file) {
    std::istringstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        const bool isRecord = line.size() % 2 == 1 && line[0] == ':' &&
                              line.find_first_not_of("0123456789ABCDEFabcdef", 1) == line.npos;
        unsigned sum = 0;
        for (size_t at = 1; isRecord && at < line.size(); at += 2) {
            sum += static_cast<unsigned>(std::stoul(line.substr(at, 2), nullptr, 16));
        }
        if (!line.empty() && (!isRecord || sum % 256 != 0)) {
            return false;
        }
    }
    return true;
}

TEST_F(UsbTest, NoSingleChangedByteOfTheFirmwareIsLoadedUnnoticed) {
    const std::string sound = ":01001000AB44\r\n" + endOfFile;
    device.PlugLoading();
    ASSERT_EQ(adapter.LoadFirmWare(folder.Put("f.hex", sound).c_str()), 0);
    const auto loaded = device.Ram();
    ASSERT_EQ(loaded.size(), 1);
    device.PlugLoading();
    size_t accepted = 0;
    testing::internal::CaptureStderr(); // one line for every refused file
    const auto tryFile = [&](const std::string &changed) {
        const std::string path = folder.Put("f.hex", changed);
        const size_t sentBefore = device.TransferCount();
        if (adapter.LoadFirmWare(path.c_str()) == 0) {
            ++accepted;
            EXPECT_TRUE(IsValidByItsChecksums(changed)) << changed;
            EXPECT_EQ(device.Ram(), loaded) << changed;
            device.PlugLoading();
        } else {
            EXPECT_EQ(device.TransferCount(), sentBefore) << changed;
        }
    };
    for (size_t at = 0; at < sound.size(); ++at) {
        for (int byte = 0; byte < 256; ++byte) {
            std::string changed = sound;
            changed[at] = static_cast<char>(byte);
            if (changed != sound) {
                tryFile(changed);
            }
        }
    }
    testing::internal::GetCapturedStderr();
    EXPECT_GT(accepted, 0);
}

} // namespace
} // namespace ztm::test
