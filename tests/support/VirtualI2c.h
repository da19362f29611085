#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

typedef struct _UMockdevTestbed UMockdevTestbed;

namespace ztm::test {

/// An SMBus transfer of one byte with a register's address, as it reaches the bus.
struct ByteTransfer {
    int address = 0;
    bool isRead = false;
    uint8_t registerAddress = 0;
    uint8_t data = 0; ///< of a write

    bool operator==(const ByteTransfer &) const = default;
};
std::ostream &operator<<(std::ostream &out, const ByteTransfer &transfer);

/// What becomes of a transfer.
struct BusAnswer {
    uint8_t data = 0; ///< of a read
    int error = 0;    ///< errno with which it ends; 0 for none
    std::chrono::milliseconds delay{0};
    bool leaves = false; ///< the bus, before it answers: for those who have it open
};

class VirtualI2cPort;

/// The bus i2c-7 as the kernel shows it, for this process and for those that it starts with
/// libumockdev-preload in their LD_PRELOAD, which see none of the machine's own. The program that
/// uses it is linked with libumockdev-preload. One at a time; whatever uses it must have been
/// closed before its end. Answers are asked for on a thread of the bus, one after the other.
class VirtualI2c {
public:
    /// Answers every transfer; told its number from 0 on.
    using Chips = std::function<BusAnswer(size_t number, const ByteTransfer &transfer)>;

    static constexpr int number = 7;
    static constexpr const char *name = "Workbench bus";

    VirtualI2c();
    ~VirtualI2c();

    /// A bus that has just come, with these chips. Takes away the one before.
    void Plug(Chips chips);
    /// Without effect when there is none.
    void Unplug();
    /// What the bus says that it can do.
    void SetFunctions(unsigned long functions);
    /// A kernel driver takes an address, or gives it back when it has no name.
    void Bind(int address, const std::string &driver);

    /// Those of all buses that were plugged in.
    std::vector<ByteTransfer> Transfers();
    void ForgetTransfers();
    /// How often a program asked for what none may ask for.
    size_t UnwantedRequests();
    /// Whether every program has closed the bus, soon if not at once.
    bool IsClosedByAll();
    /// Where on this machine a file of the bus is kept.
    std::string File(const std::string &path) const;

private:
    friend class VirtualI2cPort;
    struct Shared;

    UMockdevTestbed *testbed;
    std::unique_ptr<Shared> shared;
    VirtualI2cPort *plugged = nullptr;
    std::vector<VirtualI2cPort *> ports; ///< past ones too
};

} // namespace ztm::test
