// The adapter library on a virtual I2C bus: what it sends, and what it makes of everything that a
// bus can do wrong.

#include "adapter/i2c/I2cAdapter.h"
#include "support/AdapterDouble.h"
#include "support/FileRights.h"
#include "support/TemporaryFile.h"
#include "support/VirtualI2c.h"

#include <gmock/gmock.h>

#include <cerrno>
#include <fstream>
#include <grp.h>
#include <linux/i2c.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace ztm::test {
namespace {

using i2c::BusChoice;
using i2c::I2cAdapter;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::chrono_literals;

constexpr int address = 0x2C;
constexpr int anotherAddress = 0x4A;
constexpr int deviceId = 0x3D;
constexpr BusChoice choice{VirtualI2c::number, address};
constexpr i2c::Bounds shortBounds{.stuckSeconds = 0.02, .betweenTries = 0.0001};
constexpr auto stuck = 40ms;

constexpr ByteTransfer ReadOf(int registerAddress, int at = address) {
    return {at, true, static_cast<uint8_t>(registerAddress), 0};
}

/// A virtual bus on which a chip answers everywhere: reads with the register's address + 1.
class I2cTest : public testing::Test {
protected:
    static constexpr int failed = -1;
    using Fault = std::function<std::optional<BusAnswer>(size_t number, const ByteTransfer &)>;

    I2cTest() { Plug(); }

    void Plug() {
        bus.Plug([this](size_t number, const ByteTransfer &transfer) {
            const std::lock_guard guard(lock);
            const auto replaced = fault ? fault(number, transfer) : std::nullopt;
            const bool isId = transfer.registerAddress == deviceId;
            return replaced.value_or(BusAnswer{
                .data = isId ? identity : static_cast<uint8_t>(transfer.registerAddress + 1)});
        });
    }

    void Identify(int id) {
        const std::lock_guard guard(lock);
        identity = static_cast<uint8_t>(id);
    }
    void SetFault(Fault newFault) {
        const std::lock_guard guard(lock);
        fault = std::move(newFault);
    }
    void AnswerAll(const BusAnswer &answer) {
        SetFault([answer](auto...) { return std::optional(answer); });
    }
    void AnswerAt(size_t transfer, const BusAnswer &answer) {
        bus.ForgetTransfers();
        SetFault([=](size_t number, const ByteTransfer &) {
            return number == transfer ? std::optional(answer) : std::nullopt;
        });
    }

    static int16_t Send(I2cAdapter &adapter, const Call &call, uint8_t *buffer) {
        return adapter.VendorIORequest(call.request, call.value, call.index, call.direction,
                                       call.length, buffer);
    }
    static int ReadAt(I2cAdapter &adapter, int32_t registerAddress, int32_t selector = 0x50) {
        uint8_t value = 0;
        return Send(adapter, Read(registerAddress, selector), &value) == 0 ? value : failed;
    }
    int ReadAt(int32_t registerAddress) { return ReadAt(adapter, registerAddress); }

    bool Start() { return adapter.LoadFirmWare(firmware.c_str()) == 0; }
    bool StartAnew() {
        adapter.Choose({});
        adapter.Choose(choice);
        return Start();
    }
    std::string ObstacleOf(const BusChoice &chosen) {
        adapter.Choose(chosen);
        const i2c::BusReport report = adapter.Look();
        EXPECT_EQ(report.isReady, report.obstacle.empty());
        return report.obstacle;
    }

    static size_t OpenFiles() {
        const std::filesystem::directory_iterator all("/proc/self/fd");
        return static_cast<size_t>(std::distance(begin(all), end(all)));
    }

    std::mutex lock; ///< of the two that follow, which the bus uses on its thread
    uint8_t identity = 0x34;
    Fault fault;
    VirtualI2c bus;
    TemporaryFolder folder;
    const std::string firmware = folder.Put("firmware.hex", ":00000001FF\n");
    I2cAdapter adapter{shortBounds};
};

TEST_F(I2cTest, SendsByteTransfersToTheChosenAddressAloneAndNoneForAChoice) {
    EXPECT_EQ(i2c::ListBuses(),
              (std::vector<i2c::ListedBus>{{VirtualI2c::number, VirtualI2c::name}}));
    EXPECT_EQ(ObstacleOf({VirtualI2c::number, anotherAddress}), "");
    EXPECT_EQ(ObstacleOf(choice), "");
    EXPECT_EQ(ReadAt(0), failed) << "not started";
    EXPECT_THAT(bus.Transfers(), IsEmpty());
    ASSERT_TRUE(Start());
    EXPECT_EQ(ReadAt(0x0B), 0x0C);
    EXPECT_EQ(ReadAt(adapter, 0xFF), 0);
    EXPECT_EQ(ReadAt(adapter, 0x0B, 0x51), 0xFF);
    EXPECT_EQ(Send(adapter, Write(0x19, 0xFE), nullptr), 0);
    EXPECT_EQ(Send(adapter, Write(0x19, 0xFE, 0x51), nullptr), 0);
    uint8_t unused = 0;
    EXPECT_NE(Send(adapter, {0xDE, 0x50, 0x100, 1, 1}, &unused), 0);
    EXPECT_NE(Send(adapter, {0xDE, 0x50, 0x10000, 0, 0}, nullptr), 0);
    EXPECT_THAT(bus.Transfers(), ElementsAre(ReadOf(deviceId), ReadOf(0x0B), ReadOf(0xFF),
                                             ByteTransfer{address, false, 0x19, 0xFE}));
    EXPECT_EQ(adapter.Look().transfers, 4);
    EXPECT_EQ(adapter.Look().errors, 0);
    EXPECT_TRUE(adapter.Look().hasChip);

    // Another address has to identify itself anew before it is written to.
    bus.ForgetTransfers();
    EXPECT_EQ(ObstacleOf({VirtualI2c::number, anotherAddress}), "");
    EXPECT_FALSE(adapter.Look().hasChip);
    EXPECT_EQ(Send(adapter, Write(0x19, 0xFE), nullptr), 0);
    Identify(0x41);
    EXPECT_EQ(ReadAt(deviceId), 0x41);
    EXPECT_EQ(Send(adapter, Write(0x19, 0xFE), nullptr), 0);
    EXPECT_THAT(bus.Transfers(), ElementsAre(ReadOf(deviceId, anotherAddress)));
    EXPECT_EQ(bus.UnwantedRequests(), 0);
}

TEST_F(I2cTest, TakesAnErrorForAnEmptyAddressOnlyWhereNoChipCanBeMeant) {
    constexpr int asEmpty = 0;
    // How often the transfer is tried until the request fails, if it does, at an address where
    // nothing, another chip or one of ours has answered.
    const struct {
        int error;
        int nothing, another, ours;
    } cases[] = {
        {ENXIO, asEmpty, asEmpty, 3},
        {EREMOTEIO, asEmpty, asEmpty, 3},
        {EIO, asEmpty, 1, 1},
        {ETIMEDOUT, asEmpty, 1, 1},
        {EAGAIN, 1, 1, 1},
        {EPROTO, 1, 1, 1},
        {EBUSY, 1, 1, 1},
    };
    for (const auto &c : cases) {
        for (const auto &[id, tries] :
             {std::pair(0, c.nothing), {0x41, c.another}, {0x33, c.ours}}) {
            SCOPED_TRACE(testing::Message() << strerror(c.error) << ", id " << id);
            Identify(id);
            SetFault(nullptr);
            if (id == 0) {
                AnswerAll({.error = c.error});
            }
            const bool starts = StartAnew();
            EXPECT_EQ(starts, id != 0 || tries == asEmpty);
            if (!starts) {
                EXPECT_TRUE(bus.IsClosedByAll());
                continue;
            }
            AnswerAll({.error = c.error});
            bus.ForgetTransfers();
            EXPECT_EQ(ReadAt(0x0B), tries == asEmpty ? 0xFF : failed);
            EXPECT_EQ(bus.Transfers().size(), std::max(tries, 1));
            bus.ForgetTransfers();
            EXPECT_EQ(Send(adapter, Write(0x0B, 1), nullptr) == 0, id != 0x33);
            EXPECT_EQ(bus.Transfers().size(), id == 0x33 ? tries : 0);
            EXPECT_EQ(Send(adapter, Handshake, nullptr), 0);
            bus.ForgetTransfers();
            SetFault([&c, id = id](size_t number, const ByteTransfer &) {
                const size_t withoutAnswer = id == 0x33 && c.ours == 3 ? 2 : 0;
                return number < withoutAnswer ? std::optional(BusAnswer{.error = c.error})
                                              : std::nullopt;
            });
            EXPECT_EQ(ReadAt(0x0B), 0x0C) << "at the last try, or the next request";
        }
    }
    EXPECT_EQ(adapter.Look().lastError, "the address or the bus is busy");
}

TEST_F(I2cTest, StartsOnASlowBusAndRefusesAStuckOne) {
    AnswerAt(0, {.data = 0x34, .delay = stuck});
    EXPECT_TRUE(StartAnew());
    for (const int error : {ENXIO, ETIMEDOUT}) {
        AnswerAt(0, {.error = error, .delay = stuck});
        EXPECT_FALSE(StartAnew());
        EXPECT_THAT(adapter.Look().obstacle, HasSubstr("held low"));
    }
}

/// A session cut off at every transfer and after them.
TEST_F(I2cTest, WhereverTheBusLeavesItIsClosedAtOnceUntilTheNextStart) {
    constexpr size_t all = 4;
    for (size_t index = 0; index <= all; ++index) {
        SCOPED_TRACE(index);
        AnswerAt(index, {.leaves = true});
        if (StartAnew()) {
            for (int request = 1; request < static_cast<int>(all); ++request) {
                ReadAt(request);
            }
        }
        if (index == all) {
            bus.Unplug();
            EXPECT_EQ(adapter.Look().obstacle, "i2c-7 is not there any more.");
            EXPECT_FALSE(adapter.Look().isReady);
        }
        EXPECT_TRUE(bus.IsClosedByAll());
        EXPECT_EQ(ReadAt(0), failed);
        Plug();
        EXPECT_EQ(ReadAt(0), failed) << "plugged in again, not started";
        SetFault(nullptr);
        EXPECT_TRUE(Start());
        EXPECT_EQ(ReadAt(0), 1);
    }
}

TEST_F(I2cTest, SaysWhatStandsInTheWayAndWhatCuresIt) {
    const std::string node = bus.File("/dev/i2c-7");
    const std::string noPermission = "You have no permission to use /dev/i2c-7. ";
    bus.SetFunctions(I2C_FUNC_SMBUS_READ_BYTE_DATA);
    EXPECT_THAT(ObstacleOf(choice), HasSubstr("cannot transfer single bytes"));
    bus.SetFunctions(I2C_FUNC_SMBUS_BYTE_DATA);
    bus.Bind(address, "fanwatch");
    EXPECT_EQ(ObstacleOf(choice),
              "i2c-7, address 0x2C, belongs to the kernel driver \"fanwatch\". Take it away: echo "
              "7-002c | sudo tee /sys/bus/i2c/drivers/fanwatch/unbind");
    bus.Bind(address, "");
    {
        const FileRightsHold rights;
        ASSERT_EQ(chmod(node.c_str(), 0600), 0);
        ASSERT_EQ(chown(node.c_str(), 12345, 0), 0);
        EXPECT_THAT(ObstacleOf(choice), HasSubstr("sudo apt install i2c-tools && sudo adduser "));
        const group *joinable = getgrnam("plugdev");
        ASSERT_NE(joinable, nullptr);
        ASSERT_EQ(chmod(node.c_str(), 0660), 0);
        ASSERT_EQ(chown(node.c_str(), 12345, joinable->gr_gid), 0);
        EXPECT_THAT(ObstacleOf(choice), testing::AllOf(testing::StartsWith(noPermission),
                                                       testing::EndsWith(" plugdev")));
    }
    ASSERT_EQ(chown(node.c_str(), 0, 0), 0);
    I2cAdapter other;
    other.Choose(choice);
    EXPECT_EQ(ObstacleOf(choice), "i2c-7, address 0x2C, is in use by another ztm-eval-i2c or "
                                  "ztm: close it.");
    EXPECT_EQ(ObstacleOf({VirtualI2c::number, anotherAddress}), "");
    other.Choose({});
    EXPECT_EQ(ObstacleOf(choice), "");
    EXPECT_THAT(bus.Transfers(), IsEmpty());

    // Another bus has taken the number since it was chosen.
    std::ofstream(bus.File("/sys/devices/platform/i2c-7/i2c-dev/i2c-7/name")) << "Another\n";
    adapter.Choose(choice);
    bus.Unplug();
    EXPECT_FALSE(adapter.Look().isReady);
    Plug();
    EXPECT_FALSE(Start());
    EXPECT_EQ(adapter.Look().obstacle, "i2c-7 is not there any more.");
    bus.Unplug();
    adapter.Choose({});
    EXPECT_THAT(adapter.Look().obstacle, HasSubstr("lists no I2C bus"));
}

TEST_F(I2cTest, SendsNothingMoreOnceAKernelDriverHasTakenTheAddress) {
    ASSERT_TRUE(StartAnew());
    bus.ForgetTransfers();
    bus.Bind(address, "fanwatch");
    testing::internal::CaptureStderr();
    EXPECT_EQ(ReadAt(0x0B), failed);
    EXPECT_THAT(testing::internal::GetCapturedStderr(),
                HasSubstr("the kernel driver \"fanwatch\""));
    EXPECT_EQ(Send(adapter, Write(0x0B, 1), nullptr) == 0, false);
    EXPECT_THAT(bus.Transfers(), IsEmpty());
    bus.Bind(address, "");
    EXPECT_EQ(ReadAt(0x0B), 0x0C);
}

TEST_F(I2cTest, AThousandStartsLeaveNothingOpen) {
    size_t files = 0;
    for (int round = 0; round < 1000; ++round) {
        ASSERT_TRUE(StartAnew());
        adapter.Choose({});
        files = round == 0 ? OpenFiles() : files;
    }
    EXPECT_TRUE(bus.IsClosedByAll());
    EXPECT_LE(OpenFiles(), files);
}

} // namespace
} // namespace ztm::test
