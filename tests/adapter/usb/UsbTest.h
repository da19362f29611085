#pragma once

#include "adapter/usb/UsbAdapter.h"
#include "support/AdapterDouble.h"
#include "support/TemporaryFile.h"
#include "support/VirtualAdapter.h"

#include <filesystem>
#include <string>
#include <thread>

#include <gmock/gmock.h>

namespace ztm::test {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using usb::UsbAdapter;
using namespace std::chrono_literals;

inline constexpr usb::Bounds shortBounds{
    .request = 300ms, .loadTransfer = 300ms, .comeBack = 800ms, .look = 20ms};

/// Two runs of data: with holding and starting the CPU, a load of four transfers.
inline const std::string smallFirmware = ":03001000AABBCCBC\n:0200400011228B\n:00000001FF\n";

inline const std::string running = IdText(usb::runningAdapter);
inline const std::string loading = IdText(usb::loadingAdapter);

inline constexpr uint8_t untouched = 0xA5; ///< what is in a buffer before a request

/// A virtual bus, an adapter that can be plugged into it, and the adapter library.
class UsbTest : public testing::Test {
protected:
    static constexpr int failed = -1;

    int16_t Send(const Call &call, uint8_t *buffer) {
        return adapter.VendorIORequest(call.request, call.value, call.index, call.direction,
                                       call.length, buffer);
    }

    /// The register's value, which is its address + 1, or `failed`.
    int ReadAt(int32_t address) {
        uint8_t value = 0;
        return Send(Read(address), &value) == 0 ? value : failed;
    }

    /// Starts the adapter, which must fail, and returns what that wrote to standard error.
    std::string ReasonOfFailedStart(const std::string &path) {
        testing::internal::CaptureStderr();
        const int16_t result = adapter.LoadFirmWare(path.c_str());
        const std::string reason = testing::internal::GetCapturedStderr();
        EXPECT_LT(result, 0) << path;
        return reason;
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

} // namespace ztm::test
