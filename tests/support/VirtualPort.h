#pragma once

#include "support/VirtualUsb.h"

#include <deque>
#include <map>
#include <umockdev.h>

namespace ztm::test {

/// One stay of a device on the virtual bus, from plugging in to leaving: answers what libusb asks
/// of the device's file. The file is a FIFO that is full while there is nothing to collect, so that
/// a waiting libusb sleeps. Lives as long as the process.
class VirtualPort {
public:
    /// `number` is the device's number on the bus, 2 to 127, a new one for every stay.
    VirtualPort(VirtualUsb &bus, int number, UsbId id);
    VirtualPort(const VirtualPort &) = delete;
    VirtualPort &operator=(const VirtualPort &) = delete;

    /// Ends what is in flight as a device does that is gone, and tells of its departure. Without
    /// effect when it has already left.
    void Leave();
    size_t OpenHandles();
    const std::string &File() const { return file; }

private:
    /// A transfer that was handed in; `ticket` tells it from others at the same address.
    struct Urb {
        int ticket;
        UMockdevIoctlData *data;
        UMockdevIoctlData *buffer;
    };
    /// One open handle.
    struct Client {
        bool claimed = false;
        std::deque<Urb> inFlight;
        std::deque<Urb> done;
    };

    static void OnConnected(UMockdevIoctlBase *base, UMockdevIoctlClient *client, void *port);
    static void OnClosed(void *port, GObject *client);
    static gboolean OnIoctl(UMockdevIoctlBase *base, UMockdevIoctlClient *client, void *port);
    /// The result of an ioctl: 0, or the errno with which it fails.
    int Handle(UMockdevIoctlClient *client);
    int Submit(UMockdevIoctlClient *client, UMockdevIoctlData *argument);
    int Reap(Client &client, UMockdevIoctlData *argument);
    int Discard(Client &client, UMockdevIoctlData *argument);
    int Claim(Client &client);
    void Finish(int ticket, int status, const std::vector<uint8_t> &reply);
    void SetGone();
    void ShowReadiness();
    void Announce(UsbId id);

    VirtualUsb &bus;
    int number;
    std::string file;
    UMockdevIoctlBase *base;
    int fifo = -1;

    std::recursive_mutex lock;
    std::map<UMockdevIoctlClient *, Client> clients;
    int tickets = 0;
    bool gone = false;
    bool ready = false;
    bool announced = true;
};

} // namespace ztm::test
