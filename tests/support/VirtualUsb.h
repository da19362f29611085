#pragma once

#include "adapter/usb/UsbIds.h"

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

typedef struct _UMockdevTestbed UMockdevTestbed;

namespace ztm::test {

using usb::UsbId;

/// A control transfer as it reaches a device.
struct Transfer {
    uint8_t type = 0;
    uint8_t request = 0;
    uint16_t value = 0;
    uint16_t index = 0;
    uint16_t length = 0;
    std::vector<uint8_t> data; ///< of a transfer to the device

    bool operator==(const Transfer &) const = default;
};
std::ostream &operator<<(std::ostream &out, const Transfer &setup);

/// What a device does about a transfer.
struct Answer {
    /// What becomes of the device. One that leaves is gone at once for those who hold it open; the
    /// bus tells of it when the device is unplugged or comes back.
    enum class Then { Stays, LeavesInFlight, LeavesAfterwards };

    std::vector<uint8_t> reply = {}; ///< of a transfer from the device; cut to the length asked for
    int error = 0;                   ///< errno with which the transfer ends; 0 for none
    std::chrono::milliseconds delay{0}; ///< a negative one: no answer at all
    Then then = Then::Stays;
    std::optional<UsbId> comesBackAs = std::nullopt; ///< soon
};

inline constexpr int stall = 32; ///< EPIPE
inline constexpr std::chrono::milliseconds never{-1};

class VirtualPort;

/// A USB bus with room for one device, for this process and for those that it starts with
/// libumockdev-preload in their LD_PRELOAD: libusb finds it in place of the machine's own. The
/// program that uses it is linked with libumockdev-preload. One at a time; whatever uses it must
/// have been closed before its end. A device's answers are asked for on a thread of the bus, one
/// after the other.
class VirtualUsb {
public:
    using Device = std::function<Answer(const Transfer &)>;

    VirtualUsb();
    ~VirtualUsb();

    /// Takes away what was plugged. The device keeps answering when it comes back under another id.
    void Plug(UsbId id, Device device);
    /// Ends what is in flight and takes the device away; without effect when there is none.
    void Unplug();
    /// Whether every program has closed the device, soon if not at once.
    bool IsClosedByAll();
    /// Where on this machine the file of the device is kept.
    std::string Node() const;

private:
    friend class VirtualPort;
    /// The folder that the bus is kept in.
    std::string Folder() const;
    void After(std::chrono::milliseconds delay, const std::function<void()> &action);
    void ComeBackAs(UsbId id);

    UMockdevTestbed *testbed;
    std::recursive_mutex busLock;
    std::vector<std::unique_ptr<VirtualPort>> ports; ///< past ones too; the last one may be plugged
    Device device;
    std::mutex timersLock;
    std::vector<std::jthread> timers;
};

} // namespace ztm::test
