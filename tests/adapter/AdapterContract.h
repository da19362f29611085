#pragma once

#include <cstdint>
#include <functional>
#include <ostream>
#include <string>

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

    /// Puts an adapter behind the entries that has just been plugged in: without firmware, and
    /// with a chip that nobody has written to since its power-on.
    std::function<void()> plugIn;

    /// Pulls the adapter out while the library is in use.
    std::function<void()> unplug;
};

inline void PrintTo(const AdapterUnderTest &adapter, std::ostream *out) {
    *out << adapter.name;
}

/// The suite. Each test begins with an adapter that has just been plugged in.
class AdapterContract : public testing::TestWithParam<AdapterUnderTest> {
protected:
    AdapterContract() { GetParam().plugIn(); }

    int16_t Load(const std::string &path) const { return GetParam().loadFirmWare(path.c_str()); }
    void Start() const { ASSERT_GE(Load(GetParam().firmware), 0); }
};

} // namespace ztm::test
