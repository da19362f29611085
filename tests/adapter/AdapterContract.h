#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <ostream>
#include <string>
#include <utility>

#include <gtest/gtest.h>

namespace ztm::test {

/// An adapter library as the contract tests see it: its two entries and what they need. A test
/// program states the libraries that it holds to the contract with
/// INSTANTIATE_TEST_SUITE_P(name, AdapterContract, testing::Values(...)).
struct AdapterUnderTest {
    std::string name = "adapter"; ///< as the test's name shows it

    int16_t (*loadFirmWare)(const char *path);
    int16_t (*vendorIORequest)(int16_t request, int32_t value, int32_t index, int16_t direction,
                               int16_t length, uint8_t *buffer);

    /// A sound firmware file, as the program would pass its path on.
    std::string firmware;

    /// The address at which a chip of either variant answers, and one where nothing does.
    int32_t address = 0x50;
    int32_t emptyAddress = 0x51;

    /// One without accepts the requests for them, and reads 0.
    bool hasHeaters = true;

    /// Puts an adapter behind the entries that has just been plugged in: without firmware, and
    /// with a chip that nobody has written to since its power-on.
    std::function<void()> plugIn;

    /// Pulls the adapter out while the library is in use.
    std::function<void()> unplug;
};

inline void PrintTo(const AdapterUnderTest &adapter, std::ostream *out) {
    *out << adapter.name;
}

/// A request as it is always sent, but for its value and index.
struct Request {
    int16_t code;
    int16_t direction;
    int16_t length;

    bool operator==(const Request &) const = default;
    friend std::ostream &operator<<(std::ostream &out, const Request &request) {
        return out << request.code << ", " << request.direction << ", " << request.length;
    }
};

/// The suite. Each test begins with an adapter that has just been plugged in.
class AdapterContract : public testing::TestWithParam<AdapterUnderTest> {
protected:
    /// The buffer of a request, longer than any reply so that a byte too many shows.
    using Buffer = std::array<uint8_t, 16>;

    AdapterContract() { GetParam().plugIn(); }

    int16_t Load(const char *path) const { return GetParam().loadFirmWare(path); }
    void Start() const { ASSERT_GE(Load(GetParam().firmware.c_str()), 0); }

    int16_t Send(const Request &request, int32_t value, int32_t index, uint8_t *buffer) const;
    /// The reply's bytes, and behind them what was in the buffer before.
    Buffer Reply(const Request &request, int32_t value, int32_t index) const;
    /// Expects a failure that leaves the buffer alone.
    void ExpectFailure(const Request &request) const;

    int Read(int32_t address) const;
    void Write(int32_t address, int32_t data) const;
    std::pair<int, int> Heaters() const;
    /// What an adapter reads after it was given these duties.
    static std::pair<int, int> OfThose(std::pair<int, int> duties);
};

} // namespace ztm::test
