#include "support/VirtualUsb.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <iterator>
#include <linux/ioctl.h>
#include <linux/usbdevice_fs.h>
#include <ostream>
#include <set>
#include <stdexcept>
#include <sys/stat.h>
#include <umockdev.h>
#include <unistd.h>

namespace ztm::test {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds untilItHasLeft{3};
constexpr milliseconds untilItIsBack{20};
constexpr milliseconds longestClose{2000};

constexpr int setupBytes = 8;
constexpr uint8_t fromDevice = 0x80;

std::string Format(const char *format, auto... values) {
    char text[600];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

/// How libusb and the testbed are told of the device. Its descriptors, as hexadecimal digits: one
/// configuration, whose interface 0 is vendor specific and has no end points.
std::string Description(UsbId id, int number, const std::string &file) {
    return Format(
        "P: /devices/usb1\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: BUSNUM=001\nE: DEVNUM=%03d\n"
        "E: DEVNAME=%s\nA: dev=189:%d\nA: busnum=1\\n\nA: devnum=%d\\n\n"
        "A: bConfigurationValue=1\\n\nA: speed=12\\n\n"
        "H: descriptors=12010002FF000040%02X%02X%02X%02X000100000001"
        "0902120001010080320904000000FF000000\n",
        number, file.c_str(), number - 1, number, id.vendor & 0xFF, id.vendor >> 8,
        id.product & 0xFF, id.product >> 8);
}

/// A piece of the memory of a program that uses the bus.
using Memory = std::shared_ptr<UMockdevIoctlData>;

Memory Resolve(UMockdevIoctlData *from, size_t offset, size_t length) {
    return {umockdev_ioctl_data_resolve(from, offset, length, nullptr), g_object_unref};
}

/// A transfer that a program has handed in; `ticket` tells it from others at the same address.
struct Urb {
    int ticket;
    UMockdevIoctlClient *owner;
    Memory data, buffer;
    bool isDone = false;

    usbdevfs_urb &Fields() const { return *reinterpret_cast<usbdevfs_urb *>(data->data); }
    Transfer Setup() const {
        const uint8_t *bytes = buffer->data;
        const auto word = [bytes](int at) {
            return static_cast<uint16_t>(bytes[at] | bytes[at + 1] << 8);
        };
        Transfer setup{bytes[0], bytes[1], word(2), word(4), word(6), {}};
        if ((setup.type & fromDevice) == 0) {
            setup.data.assign(bytes + setupBytes, bytes + setupBytes + setup.length);
        }
        return setup;
    }
};

} // namespace

std::ostream &operator<<(std::ostream &out, const Transfer &setup) {
    return out << std::hex << "{type 0x" << int{setup.type} << ", request 0x" << int{setup.request}
               << ", value 0x" << setup.value << ", index 0x" << setup.index << std::dec
               << ", length " << setup.length << "}";
}

/// One stay of a device on the virtual bus, from plugging in to leaving: answers what libusb asks
/// of the device's file. The file is a FIFO that is full while there is nothing to collect, so that
/// a waiting libusb sleeps. Lives as long as the process.
class VirtualPort {
public:
    /// `number` is the device's number on the bus, a new one for every stay.
    VirtualPort(VirtualUsb &bus, int number, UsbId id)
        : bus(bus), file(Format("/dev/bus/usb/001/%03d", number)) {
        UMockdevIoctlBase *base = umockdev_ioctl_base_new();
        g_signal_connect(base, "client-connected", G_CALLBACK(OnConnected), this);
        g_signal_connect(base, "handle-ioctl", G_CALLBACK(OnIoctl), this);
        umockdev_testbed_attach_ioctl(bus.testbed, file.c_str(), base, nullptr);

        const std::filesystem::path node = bus.Folder() + file;
        std::filesystem::create_directories(node.parent_path());
        if (mkfifo(node.c_str(), 0666) != 0 ||
            (fifo = open(node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC)) < 0 ||
            fcntl(fifo, F_SETPIPE_SZ, 4096) < 0 || write(fifo, "", 1) != 1 ||
            !umockdev_testbed_add_from_string(bus.testbed, Description(id, number, file).c_str(),
                                              nullptr)) {
            throw std::runtime_error("no device file: " + node.string());
        }
    }

    /// Ends what is in flight as a device does that is gone, and tells of its departure. Without
    /// effect when it has already left.
    void Leave() {
        {
            const std::lock_guard guard(lock);
            if (!announced) {
                return;
            }
            SetGone();
            announced = false;
            close(fifo); // stays as ready as it is for those who hold it open
        }
        const std::string path = "/sys/devices/usb1";
        umockdev_testbed_uevent(bus.testbed, path.c_str(), "remove");
        umockdev_testbed_remove_device(bus.testbed, path.c_str());
        umockdev_testbed_detach_ioctl(bus.testbed, file.c_str(), nullptr);
        unlink((bus.Folder() + file).c_str());
    }
    bool IsClosed() {
        const std::lock_guard guard(lock);
        return clients.empty();
    }

    VirtualUsb &bus;
    const std::string file;

private:
    static void OnConnected(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client, void *port) {
        auto *self = static_cast<VirtualPort *>(port);
        const std::lock_guard guard(self->lock);
        self->clients.insert(client);
        g_object_weak_ref(G_OBJECT(client), OnClosed, self);
    }

    static void OnClosed(void *port, GObject *object) {
        auto *self = static_cast<VirtualPort *>(port);
        auto *client = reinterpret_cast<UMockdevIoctlClient *>(object);
        const std::lock_guard guard(self->lock);
        std::erase_if(self->urbs, [=](const Urb &urb) { return urb.owner == client; });
        self->clients.erase(client);
        self->Release(client);
    }

    static gboolean OnIoctl(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client, void *port) {
        const int error = static_cast<VirtualPort *>(port)->Handle(client);
        umockdev_ioctl_client_complete(client, error ? -1 : 0, error);
        return TRUE;
    }

    /// The result of an ioctl: 0, or the errno with which it fails.
    int Handle(UMockdevIoctlClient *client) {
        const std::lock_guard guard(lock);
        UMockdevIoctlData *argument = umockdev_ioctl_client_get_arg(client);
        const gulong request = umockdev_ioctl_client_get_request(client);
        if (request == USBDEVFS_REAPURB || request == USBDEVFS_REAPURBNDELAY) {
            return Reap(client, argument);
        }
        if (gone) {
            return ENODEV;
        }
        switch (request) {
        case USBDEVFS_GET_CAPABILITIES:
            *reinterpret_cast<uint32_t *>(Resolve(argument, 0, sizeof(uint32_t))->data) =
                USBDEVFS_CAP_REAP_AFTER_DISCONNECT;
            return 0;
        case USBDEVFS_CLAIMINTERFACE:
            if (holder) {
                return EBUSY;
            }
            holder = client;
            return 0;
        case USBDEVFS_RELEASEINTERFACE:
            Release(client);
            return 0;
        case USBDEVFS_SUBMITURB:
            Submit(client, argument);
            return 0;
        case USBDEVFS_DISCARDURB:
            return Discard(*reinterpret_cast<gulong *>(argument->data));
        default:
            return ENOTTY;
        }
    }

    void Release(const UMockdevIoctlClient *client) {
        holder = holder == client ? nullptr : holder;
    }

    void Submit(UMockdevIoctlClient *client, UMockdevIoctlData *argument) {
        Urb urb{++tickets, client, Resolve(argument, 0, sizeof(usbdevfs_urb)), nullptr};
        urb.buffer = Resolve(urb.data.get(), offsetof(usbdevfs_urb, buffer),
                             static_cast<size_t>(urb.Fields().buffer_length));
        urbs.push_back(urb);

        const Answer answer = bus.device(urb.Setup());
        const auto finish = [this, ticket = urb.ticket, answer] {
            Finish(ticket, -answer.error, answer.reply);
        };
        if (answer.then == Answer::Then::LeavesInFlight) {
            SetGone();
        } else if (answer.delay.count() == 0) {
            finish();
        } else if (answer.delay.count() > 0) {
            bus.After(answer.delay, finish);
        }
        if (answer.then == Answer::Then::LeavesAfterwards) {
            SetGone();
        }
        if (answer.comesBackAs) {
            bus.ComeBackAs(*answer.comesBackAs);
        }
    }

    int Reap(const UMockdevIoctlClient *client, UMockdevIoctlData *argument) {
        const auto done = std::find_if(urbs.begin(), urbs.end(), [=](const Urb &urb) {
            return urb.owner == client && urb.isDone;
        });
        if (done == urbs.end()) {
            return gone ? ENODEV : EAGAIN;
        }
        umockdev_ioctl_data_set_ptr(Resolve(argument, 0, sizeof(void *)).get(), 0,
                                    done->data.get());
        urbs.erase(done);
        ShowReadiness();
        return 0;
    }

    int Discard(gulong address) {
        const auto found = std::find_if(urbs.begin(), urbs.end(), [=](const Urb &urb) {
            return urb.data->client_addr == address && !urb.isDone;
        });
        if (found == urbs.end()) {
            return EINVAL;
        }
        Finish(found->ticket, -ENOENT, {});
        return 0;
    }

    /// Ends the transfer of that ticket, if it is still in flight, and keeps it to be collected.
    void Finish(int ticket, int status, const std::vector<uint8_t> &reply) {
        const std::lock_guard guard(lock);
        for (Urb &urb : urbs) {
            if (urb.ticket != ticket || urb.isDone) {
                continue;
            }
            const Transfer setup = urb.Setup();
            const bool isReply = (setup.type & fromDevice) != 0;
            const size_t length = status != 0 ? 0
                                  : isReply   ? std::min<size_t>(setup.length, reply.size())
                                              : setup.length;
            std::copy_n(reply.begin(), isReply ? length : 0, urb.buffer->data + setupBytes);
            urb.Fields().status = status;
            urb.Fields().actual_length = static_cast<int>(length);
            urb.isDone = true;
        }
        ShowReadiness();
    }

    void SetGone() {
        gone = true;
        for (const Urb &urb : urbs) {
            Finish(urb.ticket, -ESHUTDOWN, {});
        }
        ShowReadiness();
    }

    /// The device's file can be written to while there is something to collect, or nobody any more.
    void ShowReadiness() {
        const bool wanted = gone || std::any_of(urbs.begin(), urbs.end(),
                                                [](const Urb &urb) { return urb.isDone; });
        char byte = 0;
        if (wanted != ready && (wanted ? read(fifo, &byte, 1) : write(fifo, &byte, 1)) != 1) {
            std::abort();
        }
        ready = wanted;
    }

    int fifo = -1;
    std::recursive_mutex lock;
    std::set<const UMockdevIoctlClient *> clients; ///< one for each open handle
    const UMockdevIoctlClient *holder = nullptr;   ///< that has claimed the interface
    std::vector<Urb> urbs;
    int tickets = 0;
    bool gone = false;
    bool ready = false;
    bool announced = true;
};

VirtualUsb::VirtualUsb() : testbed(umockdev_testbed_new()) {}

VirtualUsb::~VirtualUsb() {
    timers.clear(); // waits for them
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
    const int number = static_cast<int>(ports.size()) + 2; // 1 is the hub
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
    const auto isClosed = [](const auto &port) { return port->IsClosed(); };
    while (std::chrono::steady_clock::now() < end) {
        {
            const std::lock_guard guard(busLock);
            if (std::all_of(ports.begin(), ports.end(), isClosed)) {
                return true;
            }
        }
        std::this_thread::sleep_for(milliseconds(1));
    }
    return false;
}

std::string VirtualUsb::Node() const {
    return Folder() + ports.back()->file;
}

std::string VirtualUsb::Folder() const {
    char *root = umockdev_testbed_get_root_dir(testbed);
    std::string folder = root;
    g_free(root);
    return folder;
}

void VirtualUsb::After(milliseconds delay, const std::function<void()> &action) {
    const std::lock_guard guard(timersLock);
    timers.emplace_back([=] {
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
