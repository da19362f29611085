// What every adapter library has to keep, seen through its two entries alone.

#include "adapter/AdapterContract.h"

#include "support/TemporaryFile.h"

#include <algorithm>

namespace ztm::test {
namespace {

constexpr uint8_t untouched = 0xA5;

constexpr Request readRegister = {0xDE, 1, 1};
constexpr Request writeRegister = {0xDE, 0, 0};
constexpr Request handshake = {0xDF, 0, 0};
constexpr Request setHeaters = {0xDB, 0, 0};
constexpr Request readHeaters = {0xDA, 1, 3};
constexpr Request known[] = {readRegister, writeRegister, handshake, setHeaters, readHeaters};

constexpr int32_t localHighLimit = 0x0B;
constexpr int32_t deviceID = 0x3D;
constexpr int32_t unchanged = 255;

} // namespace

int16_t AdapterContract::Send(const Request &request, int32_t value, int32_t index,
                              uint8_t *buffer) const {
    return GetParam().vendorIORequest(request.code, value, index, request.direction, request.length,
                                      buffer);
}

AdapterContract::Buffer AdapterContract::Reply(const Request &request, int32_t value,
                                               int32_t index) const {
    Buffer buffer;
    buffer.fill(untouched);
    EXPECT_EQ(Send(request, value, index, buffer.data()), 0) << request;
    EXPECT_EQ(std::count(buffer.begin() + request.length, buffer.end(), untouched),
              std::ssize(buffer) - request.length)
        << request << " wrote more than its reply";
    return buffer;
}

void AdapterContract::ExpectFailure(const Request &request) const {
    Buffer buffer;
    buffer.fill(untouched);
    // The fields would change the heaters or the limit if the request were carried out.
    EXPECT_NE(Send(request, GetParam().address, 0x1200 + localHighLimit, buffer.data()), 0)
        << request;
    EXPECT_EQ(std::count(buffer.begin(), buffer.end(), untouched), std::ssize(buffer)) << request;
}

int AdapterContract::Read(int32_t address) const {
    return Reply(readRegister, GetParam().address, address)[0];
}

void AdapterContract::Write(int32_t address, int32_t data) const {
    Reply(writeRegister, GetParam().address, data * 256 + address);
}

std::pair<int, int> AdapterContract::Heaters() const {
    const Buffer reply = Reply(readHeaters, 0, 0);
    return {reply[0], reply[1]};
}

std::pair<int, int> AdapterContract::OfThose(std::pair<int, int> duties) {
    return GetParam().hasHeaters ? duties : std::pair(0, 0);
}

TEST_P(AdapterContract, FailsEveryRequestUntilItsFirmwareIsLoaded) {
    for (const Request &request : known) {
        ExpectFailure(request);
    }
    Start();
    for (int i = 0; i < 3; ++i) { // a handshake may come at any time
        Reply(handshake, 0, 0);
    }
}

TEST_P(AdapterContract, RefusesFirmwareThatIsNotThereOrNotSound) {
    const TemporaryFolder folder;
    const std::string badChecksum = folder.Put("broken.Hex", ":03001000AABBCCBD\n:00000001FF\n");
    const std::string missing = folder.Path("missing.Hex");
    const char *const paths[] = {badChecksum.c_str(), missing.c_str(), "", nullptr};
    for (const char *path : paths) {
        EXPECT_LT(Load(path), 0) << (path ? path : "no path");
        ExpectFailure(handshake);
    }
    Start();
    Reply(handshake, 0, 0);
}

TEST_P(AdapterContract, ReadsAndWritesOneRegisterOfTheChip) {
    Start();
    const int identity = Read(deviceID);
    EXPECT_TRUE(identity == 0x33 || identity == 0x34) << identity;
    for (const int value : {0x00, 0x01, 0x8B, 0xFF}) {
        Write(localHighLimit, value);
        Write(localHighLimit + 1, value ^ 0x55);
        EXPECT_EQ(Read(localHighLimit), value);
        EXPECT_EQ(Read(localHighLimit + 1), value ^ 0x55);
    }
    Write(deviceID, 0x12);
    EXPECT_EQ(Read(deviceID), identity) << "a read-only register";
}

TEST_P(AdapterContract, PassesTheAddressOnSoThatAnEmptyOneShowsNoChip) {
    Start();
    const int before = Read(localHighLimit);
    Buffer buffer{};
    // A library may report the missing answer as a failure or as what an open bus reads.
    const int16_t result = Send(readRegister, GetParam().emptyAddress, deviceID, buffer.data());
    EXPECT_TRUE(result != 0 || buffer[0] == 0xFF) << result << ", " << int{buffer[0]};
    Send(writeRegister, GetParam().emptyAddress, 0x1200 + localHighLimit, buffer.data());
    EXPECT_EQ(Read(localHighLimit), before);
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
        {101, 254, {100, 100}},
        {0, 1, {0, 1}},
        {unchanged, unchanged, {0, 1}},
    };
    Start();
    for (const auto &[first, second, expected] : steps) {
        Reply(setHeaters, first, second);
        EXPECT_EQ(Heaters(), OfThose(expected)) << first << ", " << second;
    }
}

TEST_P(AdapterContract, FailsMalformedRequestsWithoutAnyEffect) {
    Start();
    Reply(setHeaters, 20, 80);
    const int limit = Read(localHighLimit);
    for (const int16_t code : std::to_array<int16_t>({-0x22, 0, 0xDA, 0xDB, 0xDC, 0xDE, 0xDF})) {
        for (int16_t direction = -1; direction <= 2; ++direction) {
            for (int16_t length = -1; length <= 4; ++length) {
                const Request request{code, direction, length};
                if (std::find(std::begin(known), std::end(known), request) == std::end(known)) {
                    ExpectFailure(request);
                }
            }
        }
    }
    EXPECT_NE(Send(readRegister, GetParam().address, deviceID, nullptr), 0) << "no buffer";
    EXPECT_EQ(Heaters(), OfThose({20, 80}));
    EXPECT_EQ(Read(localHighLimit), limit);
}

TEST_P(AdapterContract, FailsEveryRequestOnceItIsUnpluggedAndWorksAgainAfterANewStart) {
    Start();
    GetParam().unplug();
    for (const Request &request : known) {
        ExpectFailure(request);
    }
    EXPECT_LT(Load(GetParam().firmware.c_str()), 0) << "no adapter to load";
    GetParam().plugIn();
    ExpectFailure(handshake);
    Start();
    Reply(handshake, 0, 0);
}

} // namespace ztm::test
