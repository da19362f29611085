#include "support/VirtualUsb.h"

#include "support/VirtualPort.h"

#include <algorithm>
#include <iterator>
#include <ostream>

namespace ztm::test {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds untilItHasLeft{3};
constexpr milliseconds untilItIsBack{20};
constexpr milliseconds longestClose{2000};
constexpr int firstNumber = 2;
constexpr size_t numberCount = 126;

} // namespace

std::ostream &operator<<(std::ostream &out, const Transfer &setup) {
    return out << std::hex << "{type 0x" << int{setup.type} << ", request 0x" << int{setup.request}
               << ", value 0x" << setup.value << ", index 0x" << setup.index << std::dec
               << ", length " << setup.length << "}";
}

VirtualUsb::VirtualUsb() : testbed(umockdev_testbed_new()) {}

VirtualUsb::~VirtualUsb() {
    for (;;) { // an action may lead to further ones
        std::vector<std::thread> running;
        {
            const std::lock_guard guard(timersLock);
            running.swap(timers);
        }
        if (running.empty()) {
            break;
        }
        for (std::thread &timer : running) {
            timer.join();
        }
    }
    Unplug();
    // umockdev tells on a thread of its own that a handle was closed, at times after all of this.
    static auto &keptForGood = *new std::vector<std::unique_ptr<VirtualPort>>;
    std::move(ports.begin(), ports.end(), std::back_inserter(keptForGood));
    g_object_unref(testbed);
}

void VirtualUsb::Plug(UsbId id, Device answering) {
    const std::lock_guard guard(busLock);
    if (answering) {
        device = std::move(answering);
    }
    Unplug();
    const int number = firstNumber + static_cast<int>(ports.size() % numberCount);
    ports.push_back(std::make_unique<VirtualPort>(*this, number, id));
}

void VirtualUsb::Unplug() {
    const std::lock_guard guard(busLock);
    if (!ports.empty()) {
        ports.back()->Leave();
    }
}

bool VirtualUsb::IsClosedByAll() {
    const auto end = std::chrono::steady_clock::now() + longestClose;
    for (;;) {
        size_t handles = 0;
        {
            const std::lock_guard guard(busLock);
            for (const auto &port : ports) {
                handles += port->OpenHandles();
            }
        }
        if (handles == 0 || std::chrono::steady_clock::now() > end) {
            return handles == 0;
        }
        std::this_thread::sleep_for(milliseconds(1));
    }
}

std::string VirtualUsb::Folder() const {
    char *root = umockdev_testbed_get_root_dir(testbed);
    std::string folder = root;
    g_free(root);
    return folder;
}

std::string VirtualUsb::Node(const std::string &file) const {
    return Folder() + (file.empty() ? ports.back()->File() : file);
}

void VirtualUsb::After(milliseconds delay, std::function<void()> action) {
    const std::lock_guard guard(timersLock);
    timers.emplace_back([delay, action = std::move(action)] {
        std::this_thread::sleep_for(delay);
        action();
    });
}

void VirtualUsb::ComeBackAs(UsbId id) {
    After(untilItHasLeft, [this, id] {
        Unplug();
        std::this_thread::sleep_for(untilItIsBack);
        Plug(id, nullptr);
    });
}

} // namespace ztm::test
