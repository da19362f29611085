// What every adapter library has to keep, seen through its two entries alone.

#include "adapter/AdapterContract.h"

#include "support/TemporaryFile.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ztm::test {
namespace {

constexpr uint8_t untouched = 0xA5;

/// The buffer of a request, longer than any reply so that a byte too many shows.
using Buffer = std::array<uint8_t, 16>;

struct Request {
    const char *what;
    int16_t code;
    int16_t direction;
    int16_t length;
};

constexpr Request readRegister = {"register read", 0xDE, 1, 1};
constexpr Request writeRegister = {"register write", 0xDE, 0, 0};
constexpr Request handshake = {"handshake", 0xDF, 0, 0};
constexpr Request setHeaters = {"set heaters", 0xDB, 0, 0};
constexpr Request readHeaters = {"read heaters", 0xDA, 1, 3};
constexpr Request known[] = {readRegister, writeRegister, handshake, setHeaters, readHeaters};

constexpr int32_t localHighLimit = 0x0B;
constexpr int32_t deviceID = 0x3D;
constexpr int32_t unchanged = 255;

/// What a user of the adapter can do.
class Session {
public:
    explicit Session(const AdapterUnderTest &adapter) : adapter(adapter) {}

    int16_t Send(const Request &request, int32_t value, int32_t index, uint8_t *buffer) const {
        return adapter.vendorIORequest(request.code, value, index, request.direction,
                                       request.length, buffer);
    }
    int16_t Send(const Request &request, int32_t value, int32_t index) const {
        Buffer buffer{};
        return Send(request, value, index, buffer.data());
    }
    /// The reply's bytes, and behind them what was in the buffer before.
    Buffer Reply(const Request &request, int32_t value, int32_t index) const {
        Buffer buffer;
        buffer.fill(untouched);
        EXPECT_EQ(Send(request, value, index, buffer.data()), 0) << request.what;
        EXPECT_EQ(std::count(buffer.begin() + request.length, buffer.end(), untouched),
                  std::ssize(buffer) - request.length)
            << request.what << " wrote more than its reply";
        return buffer;
    }
    int Read(int32_t address) const { return Reply(readRegister, adapter.address, address)[0]; }
    void Write(int32_t address, int32_t data) const {
        Reply(writeRegister, adapter.address, data * 256 + address);
    }
    std::pair<int, int> Heaters() const {
        const Buffer reply = Reply(readHeaters, 0, 0);
        return {reply[0], reply[1]};
    }

private:
    const AdapterUnderTest &adapter;
};

/// Expects a failure that leaves the buffer alone.
void ExpectFailure(const AdapterUnderTest &adapter, const Request &request) {
    Buffer buffer;
    buffer.fill(untouched);
    // The fields would change the heaters or the limit if the request were carried out.
    EXPECT_NE(
        Session(adapter).Send(request, adapter.address, 0x1200 + localHighLimit, buffer.data()), 0)
        << request.what;
    EXPECT_EQ(std::count(buffer.begin(), buffer.end(), untouched), std::ssize(buffer))
        << request.what;
}

} // namespace

TEST_P(AdapterContract, FailsEveryRequestUntilItsFirmwareIsLoaded) {
    for (const Request &request : known) {
        ExpectFailure(GetParam(), request);
    }
    Start();
    EXPECT_EQ(Session(GetParam()).Send(handshake, 0, 0), 0);
}

TEST_P(AdapterContract, RefusesFirmwareThatIsNotThereOrNotSound) {
    const TemporaryFolder folder;
    const std::string empty = folder.Put("empty.Hex", "");
    const std::string badChecksum = folder.Put("broken.Hex", ":03001000AABBCCBD\n:00000001FF\n");
    for (const std::string &path :
         {empty, badChecksum, folder.Path("missing.Hex"), folder.Path("."), std::string()}) {
        EXPECT_LT(Load(path), 0) << path;
        ExpectFailure(GetParam(), handshake);
    }
    Start();
    EXPECT_EQ(Session(GetParam()).Send(handshake, 0, 0), 0) << "after good firmware";
}

TEST_P(AdapterContract, TakesAHandshakeAnyNumberOfTimes) {
    Start();
    const Session session(GetParam());
    for (int i = 0; i < 3; ++i) {
        session.Reply(handshake, 0, 0);
    }
}

TEST_P(AdapterContract, ReadsAndWritesOneRegisterOfTheChip) {
    Start();
    const Session session(GetParam());
    const int identity = session.Read(deviceID);
    EXPECT_TRUE(identity == 0x33 || identity == 0x34) << identity;
    for (const int value : {0x00, 0x01, 0x8B, 0xFF}) {
        session.Write(localHighLimit, value);
        session.Write(localHighLimit + 1, value ^ 0x55);
        EXPECT_EQ(session.Read(localHighLimit), value);
        EXPECT_EQ(session.Read(localHighLimit + 1), value ^ 0x55);
    }
    session.Write(deviceID, 0x12);
    EXPECT_EQ(session.Read(deviceID), identity) << "a read-only register";
}

TEST_P(AdapterContract, PassesTheAddressOnSoThatAnEmptyOneShowsNoChip) {
    Start();
    const Session session(GetParam());
    const int before = session.Read(localHighLimit);
    Buffer buffer{};
    // A library may report the missing answer as a failure or as what an open bus reads.
    const int16_t result =
        session.Send(readRegister, GetParam().emptyAddress, deviceID, buffer.data());
    EXPECT_TRUE(result != 0 || buffer[0] == 0xFF) << result << ", " << int{buffer[0]};
    session.Send(writeRegister, GetParam().emptyAddress, 0x1200 + localHighLimit);
    EXPECT_EQ(session.Read(localHighLimit), before);
}

TEST_P(AdapterContract, SetsAndReadsTheHeaters) {
    const struct {
        int32_t first, second;
        std::pair<int, int> expected; // on top of the line before
    } steps[] = {
        {0, 0, {0, 0}},
        {20, 80, {20, 80}},
        {unchanged, 30, {20, 30}},
        {100, unchanged, {100, 30}},
        {0, 1, {0, 1}},
        {unchanged, unchanged, {0, 1}},
    };
    Start();
    const Session session(GetParam());
    for (const auto &[first, second, expected] : steps) {
        session.Reply(setHeaters, first, second);
        EXPECT_EQ(session.Heaters(), expected) << first << ", " << second;
    }
}

TEST_P(AdapterContract, FailsMalformedRequestsWithoutAnyEffect) {
    const Request malformed[] = {
        {"code 0", 0, 0, 0},
        {"unknown code", 0xDC, 1, 1},
        {"negative code", -0x22, 1, 1},
        {"register read without a reply", 0xDE, 1, 0},
        {"register read of two", 0xDE, 1, 2},
        {"register read of a negative length", 0xDE, 1, -1},
        {"register write with a length", 0xDE, 0, 1},
        {"register request of no direction", 0xDE, 2, 0},
        {"register request of a negative direction", 0xDE, -1, 1},
        {"handshake that reads", 0xDF, 1, 0},
        {"handshake with a length", 0xDF, 0, 1},
        {"set heaters that reads", 0xDB, 1, 0},
        {"set heaters with a length", 0xDB, 0, 2},
        {"read heaters that writes", 0xDA, 0, 3},
        {"read heaters of two", 0xDA, 1, 2},
    };
    Start();
    const Session session(GetParam());
    session.Reply(setHeaters, 20, 80);
    const int limit = session.Read(localHighLimit);
    for (const Request &request : malformed) {
        ExpectFailure(GetParam(), request);
    }
    EXPECT_NE(session.Send(readRegister, GetParam().address, deviceID, nullptr), 0) << "no buffer";
    EXPECT_EQ(session.Heaters(), std::pair(20, 80));
    EXPECT_EQ(session.Read(localHighLimit), limit);
}

TEST_P(AdapterContract, FailsEveryRequestOnceItIsUnpluggedAndWorksAgainAfterANewStart) {
    Start();
    GetParam().unplug();
    for (const Request &request : known) {
        ExpectFailure(GetParam(), request);
    }
    EXPECT_LT(Load(GetParam().firmware), 0) << "no adapter to load";
    GetParam().plugIn();
    ExpectFailure(GetParam(), handshake);
    Start();
    EXPECT_EQ(Session(GetParam()).Send(handshake, 0, 0), 0);
}

} // namespace ztm::test
