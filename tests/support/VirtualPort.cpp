#include "support/VirtualPort.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <linux/ioctl.h>
#include <linux/usbdevice_fs.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>

namespace ztm::test {
namespace {

constexpr const char *devicePath = "/devices/usb1";
constexpr int setupBytes = 8;
constexpr uint8_t fromDevice = 0x80;

usbdevfs_urb &UrbOf(UMockdevIoctlData *data) {
    return *reinterpret_cast<usbdevfs_urb *>(data->data);
}

Transfer TransferOf(UMockdevIoctlData *buffer) {
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

std::string Format(const char *format, auto... values) {
    char text[600];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

/// Device and configuration descriptor as hexadecimal digits: one configuration, whose interface 0
/// is vendor specific and has no end points.
std::string Descriptors(UsbId id) {
    return Format("12010002FF000040%02X%02X%02X%02X000100000001", id.vendor & 0xFF, id.vendor >> 8,
                  id.product & 0xFF, id.product >> 8) +
           "09021200010100803209040000"
           "00FF000000";
}

} // namespace

VirtualPort::VirtualPort(VirtualUsb &bus, int number, UsbId id)
    : bus(bus)
    , number(number)
    , file(Format("/dev/bus/usb/001/%03d", number))
    , base(umockdev_ioctl_base_new()) {
    g_signal_connect(base, "client-connected", G_CALLBACK(OnConnected), this);
    g_signal_connect(base, "handle-ioctl", G_CALLBACK(OnIoctl), this);
    umockdev_testbed_attach_ioctl(bus.testbed, file.c_str(), base, nullptr);

    const std::filesystem::path node = bus.Node(file);
    std::filesystem::create_directories(node.parent_path());
    if (mkfifo(node.c_str(), 0666) != 0 ||
        (fifo = open(node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC)) < 0 ||
        fcntl(fifo, F_SETPIPE_SZ, 4096) < 0 || write(fifo, "", 1) != 1) {
        throw std::runtime_error("no device file: " + node.string());
    }
    Announce(id);
}

void VirtualPort::Announce(UsbId id) {
    const std::string text =
        Format("P: %s\nE: SUBSYSTEM=usb\nE: DEVTYPE=usb_device\nE: BUSNUM=001\nE: DEVNUM=%03d\n"
               "E: DEVNAME=%s\nA: dev=189:%d\nA: busnum=1\\n\nA: devnum=%d\\n\n"
               "A: bConfigurationValue=1\\n\nA: speed=12\\n\nH: descriptors=%s\n",
               devicePath, number, file.c_str(), number - 1, number, Descriptors(id).c_str());
    GError *error = nullptr;
    if (!umockdev_testbed_add_from_string(bus.testbed, text.c_str(), &error)) {
        throw std::runtime_error(error->message);
    }
}

void VirtualPort::Leave() {
    {
        const std::lock_guard guard(lock);
        if (!announced) {
            return;
        }
        SetGone();
        announced = false;
        close(fifo); // stays as ready as it is for those who hold it open
    }
    const std::string path = Format("/sys%s", devicePath);
    umockdev_testbed_uevent(bus.testbed, path.c_str(), "remove");
    umockdev_testbed_remove_device(bus.testbed, path.c_str());
    umockdev_testbed_detach_ioctl(bus.testbed, file.c_str(), nullptr);
    unlink(bus.Node(file).c_str());
}

size_t VirtualPort::OpenHandles() {
    const std::lock_guard guard(lock);
    return clients.size();
}

void VirtualPort::OnConnected(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client,
                              void *port) {
    auto *self = static_cast<VirtualPort *>(port);
    const std::lock_guard guard(self->lock);
    self->clients[client];
    ++self->bus.opened;
    g_object_weak_ref(G_OBJECT(client), OnClosed, self);
}

void VirtualPort::OnClosed(void *port, GObject *client) {
    auto *self = static_cast<VirtualPort *>(port);
    const std::lock_guard guard(self->lock);
    const auto closed = self->clients.find(reinterpret_cast<UMockdevIoctlClient *>(client));
    for (const auto &urbs : {closed->second.inFlight, closed->second.done}) {
        for (const Urb &urb : urbs) {
            g_object_unref(urb.buffer);
            g_object_unref(urb.data);
        }
    }
    self->clients.erase(closed);
}

gboolean VirtualPort::OnIoctl(UMockdevIoctlBase * /*base*/, UMockdevIoctlClient *client,
                              void *port) {
    const int error = static_cast<VirtualPort *>(port)->Handle(client);
    umockdev_ioctl_client_complete(client, error ? -1 : 0, error);
    return TRUE;
}

int VirtualPort::Handle(UMockdevIoctlClient *caller) {
    const std::lock_guard guard(lock);
    UMockdevIoctlData *argument = umockdev_ioctl_client_get_arg(caller);
    Client &client = clients.at(caller);
    const gulong request = umockdev_ioctl_client_get_request(caller);
    if (request == USBDEVFS_REAPURB || request == USBDEVFS_REAPURBNDELAY) {
        return Reap(client, argument);
    }
    if (gone) {
        return ENODEV;
    }
    switch (request) {
    case USBDEVFS_GET_CAPABILITIES: {
        UMockdevIoctlData *place = umockdev_ioctl_data_resolve(argument, 0, 4, nullptr);
        const uint32_t capabilities = USBDEVFS_CAP_REAP_AFTER_DISCONNECT;
        std::memcpy(place->data, &capabilities, sizeof capabilities);
        g_object_unref(place);
        return 0;
    }
    case USBDEVFS_CLAIMINTERFACE:
        return Claim(client);
    case USBDEVFS_RELEASEINTERFACE:
        client.claimed = false;
        return 0;
    case USBDEVFS_SUBMITURB:
        return Submit(caller, argument);
    case USBDEVFS_DISCARDURB:
        return Discard(client, argument);
    default:
        return ENOTTY;
    }
}

int VirtualPort::Claim(Client &client) {
    for (const auto &[other, state] : clients) {
        if (state.claimed && &state != &client) {
            return EBUSY;
        }
    }
    client.claimed = true;
    return 0;
}

int VirtualPort::Submit(UMockdevIoctlClient *caller, UMockdevIoctlData *argument) {
    UMockdevIoctlData *data =
        umockdev_ioctl_data_resolve(argument, 0, sizeof(usbdevfs_urb), nullptr);
    UMockdevIoctlData *buffer =
        umockdev_ioctl_data_resolve(data, offsetof(usbdevfs_urb, buffer),
                                    static_cast<gsize>(UrbOf(data).buffer_length), nullptr);
    const int ticket = ++tickets;
    clients.at(caller).inFlight.push_back({ticket, data, buffer});

    const Answer answer = bus.device(TransferOf(buffer));
    if (answer.then == Answer::Then::LeavesInFlight) {
        SetGone();
    } else if (answer.delay.count() == 0) {
        Finish(ticket, -answer.error, answer.reply);
    } else if (answer.delay.count() > 0) {
        bus.After(answer.delay,
                  [this, ticket, answer] { Finish(ticket, -answer.error, answer.reply); });
    }
    if (answer.then == Answer::Then::LeavesAfterwards) {
        SetGone();
    }
    if (answer.comesBackAs) {
        bus.ComeBackAs(*answer.comesBackAs);
    }
    return 0;
}

int VirtualPort::Reap(Client &client, UMockdevIoctlData *argument) {
    if (client.done.empty()) {
        return gone ? ENODEV : EAGAIN;
    }
    const Urb urb = client.done.front();
    client.done.pop_front();
    UMockdevIoctlData *place = umockdev_ioctl_data_resolve(argument, 0, sizeof(void *), nullptr);
    umockdev_ioctl_data_set_ptr(place, 0, urb.data);
    g_object_unref(place);
    g_object_unref(urb.buffer);
    g_object_unref(urb.data);
    ShowReadiness();
    return 0;
}

int VirtualPort::Discard(Client &client, UMockdevIoctlData *argument) {
    const gulong address = *reinterpret_cast<gulong *>(argument->data);
    for (const Urb &urb : client.inFlight) {
        if (urb.data->client_addr == address) {
            Finish(urb.ticket, -ENOENT, {});
            return 0;
        }
    }
    return EINVAL;
}

/// Ends the transfer of that ticket, if it is still in flight, and keeps it to be collected.
void VirtualPort::Finish(int ticket, int status, const std::vector<uint8_t> &reply) {
    const std::lock_guard guard(lock);
    for (auto &[address, client] : clients) {
        const auto found = std::find_if(client.inFlight.begin(), client.inFlight.end(),
                                        [=](const Urb &urb) { return urb.ticket == ticket; });
        if (found == client.inFlight.end()) {
            continue;
        }
        const Transfer setup = TransferOf(found->buffer);
        usbdevfs_urb &urb = UrbOf(found->data);
        urb.status = status;
        urb.actual_length = status != 0 ? 0 : setup.length;
        if (status == 0 && (setup.type & fromDevice) != 0) {
            const size_t length = std::min<size_t>(setup.length, reply.size());
            std::copy_n(reply.begin(), length, found->buffer->data + setupBytes);
            urb.actual_length = static_cast<int>(length);
        }
        client.done.push_back(*found);
        client.inFlight.erase(found);
        break;
    }
    ShowReadiness();
}

void VirtualPort::SetGone() {
    gone = true;
    for (auto &[address, client] : clients) {
        while (!client.inFlight.empty()) {
            Finish(client.inFlight.front().ticket, -ESHUTDOWN, {});
        }
    }
    ShowReadiness();
}

/// The device's file can be written to while there is something to collect, or nobody any more.
void VirtualPort::ShowReadiness() {
    const bool wanted = gone || std::any_of(clients.begin(), clients.end(), [](const auto &entry) {
                            return !entry.second.done.empty();
                        });
    if (wanted == ready) {
        return;
    }
    ready = wanted;
    char byte = 0;
    if ((ready ? read(fifo, &byte, 1) : write(fifo, &byte, 1)) != 1) {
        std::abort();
    }
}

} // namespace ztm::test
