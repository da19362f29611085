#pragma once

#include "support/VirtualUsb.h"

#include <functional>
#include <mutex>
#include <vector>

namespace ztm::test {

/// How the program writes an id: the digits of vendor and product, as in 1209:0001.
std::string IdText(UsbId id);

/// A USB adapter on a virtual bus, built from docs/adapters.md alone. Behind it stands a
/// board with the signature of VendorIORequest.
class VirtualAdapter {
public:
    using Board = std::function<int16_t(int16_t request, int32_t value, int32_t index,
                                        int16_t direction, int16_t length, uint8_t *buffer)>;
    /// Asked before each transfer, with its number from 0 on; an answer replaces the adapter's.
    using Fault = std::function<std::optional<Answer>(size_t number, const Transfer &setup)>;

    /// A board that answers reads with the low byte of the index + 1 and accepts all else.
    static int16_t PlainBoard(int16_t request, int32_t value, int32_t index, int16_t direction,
                              int16_t length, uint8_t *buffer);

    explicit VirtualAdapter(VirtualUsb &bus, Board board = PlainBoard)
        : bus(bus), board(std::move(board)) {}

    /// Plugs it in with its firmware running, or waiting for it.
    void PlugRunning();
    void PlugLoading();
    /// The same adapter is asked from another angle from now on; nullptr for no faults.
    void SetFault(Fault fault);

    std::vector<Transfer> Transfers();
    size_t TransferCount() { return Transfers().size(); }
    void ForgetTransfers();

private:
    Answer Take(const Transfer &setup);
    Answer WriteRam(const Transfer &setup);
    Answer AskBoard(const Transfer &setup);

    VirtualUsb &bus;
    Board board;
    Fault fault;
    std::mutex lock;
    std::vector<Transfer> transfers;
    bool runs = false;
    bool cpuHeld = false;
};

} // namespace ztm::test
