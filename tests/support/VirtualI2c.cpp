#include "support/VirtualI2c.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>
#include <map>
#include <mutex>
#include <set>
#include <stdexcept>
#include <thread>
#include <umockdev.h>
#include <unistd.h>

namespace ztm::test {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds longestClose{2000};
constexpr int largestAddress = 0x7F;
constexpr unsigned long everyByteTransfer =
    I2C_FUNC_SMBUS_BYTE_DATA | I2C_FUNC_SMBUS_BYTE | I2C_FUNC_SMBUS_QUICK;

const char node[] = "/dev/i2c-7";
const char parent[] = "/sys/devices/platform/i2c-7";

/// The bus and its device file, which add_from_string would make a terminal; a plain file is closer
/// to a device.
const std::string description = std::string("P: /devices/platform/i2c-7\nE: SUBSYSTEM=i2c\nA: "
                                            "name=") +
                                VirtualI2c::name +
                                "\\n\n\n"
                                "P: /devices/platform/i2c-7/i2c-dev/i2c-7\nE: SUBSYSTEM=i2c-dev\n"
                                "E: DEVNAME=/dev/i2c-7\nA: dev=89:7\\n\nA: name=" +
                                VirtualI2c::name + "\\n\nL: device=../../../i2c-7\n";

/// A piece of the memory of a program that uses the bus.
class Pointed {
public:
    Pointed(UMockdevIoctlData *from, size_t offset, size_t length)
        : data(umockdev_ioctl_data_resolve(from, offset, length, nullptr)) {}
    ~Pointed() { g_object_unref(data); }
    Pointed(const Pointed &) = delete;
    Pointed &operator=(const Pointed &) = delete;

    template <class Value>
    Value &As() const {
        return *reinterpret_cast<Value *>(data->data);
    }

    UMockdevIoctlData *const data;
};

} // namespace

std::ostream &operator<<(std::ostream &out, const ByteTransfer &transfer) {
    return out << std::hex << (transfer.isRead ? "read" : "write") << " at 0x" << transfer.address
               << ", register 0x" << int{transfer.registerAddress} << ", data 0x"
               << int{transfer.data} << std::dec;
}

/// What the threads of the bus and of the test both use.
struct VirtualI2c::Shared {
    std::mutex lock;
    unsigned long functions = everyByteTransfer;
    std::set<int> bound; ///< addresses with a kernel driver
    std::vector<ByteTransfer> transfers;
    size_t unwanted = 0;
};

/// One stay of the bus. Lives as long as the process, since umockdev tells on a thread of its own
/// that a handle was closed, at times after everything else.
class VirtualI2cPort {
public:
    VirtualI2cPort(VirtualI2c &bus, VirtualI2c::Chips chips)
        : shared(*bus.shared), chips(std::move(chips)) {
        UMockdevIoctlBase *base = umockdev_ioctl_base_new();
        g_signal_connect(base, "client-connected", G_CALLBACK(OnConnected), this);
        g_signal_connect(base, "handle-ioctl", G_CALLBACK(OnIoctl), this);
        umockdev_testbed_attach_ioctl(bus.testbed, node, base, nullptr);
    }

    void Leave() {
        const std::lock_guard guard(lock);
        gone = true;
    }
    bool IsClosed() {
        const std::lock_guard guard(lock);
        return addresses.empty();
    }

private:
    static void OnConnected(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client, void *port) {
        auto *self = static_cast<VirtualI2cPort *>(port);
        const std::lock_guard guard(self->lock);
        self->addresses[client] = 0;
        g_object_weak_ref(G_OBJECT(client), OnClosed, self);
    }

    static void OnClosed(void *port, GObject *object) {
        auto *self = static_cast<VirtualI2cPort *>(port);
        const std::lock_guard guard(self->lock);
        self->addresses.erase(reinterpret_cast<UMockdevIoctlClient *>(object));
    }

    static gboolean OnIoctl(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client, void *port) {
        const int error = static_cast<VirtualI2cPort *>(port)->Handle(client);
        umockdev_ioctl_client_complete(client, error != 0 ? -1 : 0, error);
        return TRUE;
    }

    /// The result of an ioctl: 0, or the errno with which it fails.
    int Handle(UMockdevIoctlClient *client) {
        const std::lock_guard guard(lock);
        UMockdevIoctlData *argument = umockdev_ioctl_client_get_arg(client);
        switch (umockdev_ioctl_client_get_request(client)) {
        case I2C_FUNCS: {
            const std::lock_guard sharedGuard(shared.lock);
            Pointed(argument, 0, sizeof shared.functions).As<unsigned long>() = shared.functions;
            return 0;
        }
        case I2C_SLAVE:
            return Select(addresses[client], *reinterpret_cast<gulong *>(argument->data));
        case I2C_SMBUS:
            return Smbus(addresses[client], argument);
        default: {
            const std::lock_guard sharedGuard(shared.lock);
            ++shared.unwanted;
            return ENOTTY;
        }
        }
    }

    int Select(int &address, gulong wanted) {
        const std::lock_guard sharedGuard(shared.lock);
        if (wanted > largestAddress) {
            return EINVAL;
        }
        if (shared.bound.contains(static_cast<int>(wanted))) {
            return EBUSY;
        }
        address = static_cast<int>(wanted);
        return 0;
    }

    int Smbus(int address, UMockdevIoctlData *argument) {
        if (gone) {
            return ENODEV;
        }
        const Pointed call(argument, 0, sizeof(i2c_smbus_ioctl_data));
        const auto fields = call.As<i2c_smbus_ioctl_data>();
        if (fields.size != I2C_SMBUS_BYTE_DATA) {
            return EOPNOTSUPP;
        }
        const Pointed data(call.data, offsetof(i2c_smbus_ioctl_data, data), 1);
        auto &byte = data.As<uint8_t>();
        const bool isRead = fields.read_write == I2C_SMBUS_READ;
        const ByteTransfer transfer{address, isRead, fields.command, isRead ? uint8_t{0} : byte};
        size_t number = 0;
        {
            const std::lock_guard sharedGuard(shared.lock);
            number = shared.transfers.size();
            shared.transfers.push_back(transfer);
        }
        const BusAnswer answer = chips(number, transfer);
        std::this_thread::sleep_for(answer.delay);
        gone = gone || answer.leaves;
        if (gone) {
            return ENODEV;
        }
        byte = isRead && answer.error == 0 ? answer.data : byte;
        return answer.error;
    }

    VirtualI2c::Shared &shared;
    VirtualI2c::Chips chips;
    std::mutex lock;
    std::map<const UMockdevIoctlClient *, int> addresses; ///< that each open handle has selected
    bool gone = false;
};

VirtualI2c::VirtualI2c() : testbed(umockdev_testbed_new()), shared(std::make_unique<Shared>()) {}

VirtualI2c::~VirtualI2c() {
    Unplug();
    static auto &keptForGood =
        *new std::vector<std::pair<std::unique_ptr<Shared>, decltype(ports)>>;
    keptForGood.emplace_back(std::move(shared), std::move(ports));
    g_object_unref(testbed);
}

void VirtualI2c::Plug(Chips chips) {
    Unplug();
    plugged = new VirtualI2cPort(*this, std::move(chips));
    ports.push_back(plugged);
    std::filesystem::create_directories(File("/dev"));
    std::ofstream(File(node)).close();
    if (!umockdev_testbed_add_from_string(testbed, description.c_str(), nullptr)) {
        throw std::runtime_error("no virtual bus");
    }
}

void VirtualI2c::Unplug() {
    if (!plugged) {
        return;
    }
    plugged->Leave();
    plugged = nullptr;
    const std::string device = std::string(parent) + "/i2c-dev/i2c-7";
    umockdev_testbed_remove_device(testbed, device.c_str());
    umockdev_testbed_remove_device(testbed, parent);
    umockdev_testbed_detach_ioctl(testbed, node, nullptr);
    unlink(File(node).c_str());
}

void VirtualI2c::SetFunctions(unsigned long functions) {
    const std::lock_guard guard(shared->lock);
    shared->functions = functions;
}

void VirtualI2c::Bind(int address, const std::string &driver) {
    char device[32];
    std::snprintf(device, sizeof device, "/sys/bus/i2c/devices/7-%04x",
                  static_cast<unsigned>(address));
    std::filesystem::remove_all(File(device));
    if (!driver.empty()) {
        std::filesystem::create_directories(File(device));
        std::filesystem::create_symlink("../../drivers/" + driver, File(device) + "/driver");
    }
    const std::lock_guard guard(shared->lock);
    shared->bound.erase(address);
    if (!driver.empty()) {
        shared->bound.insert(address);
    }
}

std::vector<ByteTransfer> VirtualI2c::Transfers() {
    const std::lock_guard guard(shared->lock);
    return shared->transfers;
}

void VirtualI2c::ForgetTransfers() {
    const std::lock_guard guard(shared->lock);
    shared->transfers.clear();
}

size_t VirtualI2c::UnwantedRequests() {
    const std::lock_guard guard(shared->lock);
    return shared->unwanted;
}

bool VirtualI2c::IsClosedByAll() {
    const auto end = std::chrono::steady_clock::now() + longestClose;
    const auto isClosed = [](VirtualI2cPort *port) { return port->IsClosed(); };
    while (std::chrono::steady_clock::now() < end) {
        if (std::all_of(ports.begin(), ports.end(), isClosed)) {
            return true;
        }
        std::this_thread::sleep_for(milliseconds(1));
    }
    return false;
}

std::string VirtualI2c::File(const std::string &path) const {
    char *root = umockdev_testbed_get_root_dir(testbed);
    std::string file = root + path;
    g_free(root);
    return file;
}

} // namespace ztm::test
