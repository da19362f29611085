#pragma once

#include "adapter/i2c/Bus.h"
#include "adapter/i2c/BusControl.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace ztm::i2c {

struct Bounds {
    double stuckSeconds = 0.2;   ///< an error that took longer than that at the start refuses it
    double betweenTries = 0.001; ///< seconds from an unacknowledged transfer to the next try
};

/// A chip on a bus of the machine's own: everything behind the functions of link/USBFunctions.h and
/// BusControl.h, as described in docs/adapters.md. Sends nothing but byte reads and writes to the
/// one address that was chosen, and no write before one of the two chips has identified itself
/// there. Not thread-safe.
class I2cAdapter {
public:
    explicit I2cAdapter(const Bounds &bounds = {}) : bounds(bounds) {}

    void Choose(const BusChoice &wanted);
    BusReport Look();

    /// Claims what was chosen, if it is not claimed already, and reads the Device ID once to see
    /// that the bus moves. The Intel HEX file at `path` must be sound, though nothing is done with
    /// it. Returns 0 on success; otherwise negative, with the reason in a line on standard error
    /// and in the report, and nothing left open.
    int16_t LoadFirmWare(const char *path);

    /// Carries out one request and returns 0; any other result means that it failed, with nothing
    /// written to `buffer`. A bus that has left is closed and stays closed until the next
    /// LoadFirmWare. Says on standard error why a transfer failed.
    int16_t VendorIORequest(int16_t request, int32_t value, int32_t index, int16_t direction,
                            int16_t length, uint8_t *buffer);

private:
    struct Command;
    static const Command commands[];

    /// What an address has shown since the start.
    struct Past {
        bool hasAnswered = false; ///< anything at all
        bool hasChip = false;     ///< one of the two chips has identified itself
    };

    std::string Claim();
    std::string OpenBus();
    std::string Start(const char *path);
    void Close();
    void Lose();
    void LoseIfGone();
    std::string Explain(int error) const;

    bool IsChosen(int32_t value) const;
    bool ReadRegister(int32_t value, int32_t index, uint8_t *reply);
    bool WriteRegister(int32_t value, int32_t index, uint8_t *reply);
    bool Accept(int32_t value, int32_t index, uint8_t *reply);
    bool ReadHeaterDuty(int32_t value, int32_t index, uint8_t *reply);
    bool Transfer(bool isRead, uint8_t registerAddress, uint8_t &data);
    int TryTransfer(bool isRead, uint8_t registerAddress, uint8_t &data);
    /// Whether an address with that past is taken for empty after the error, which then is none.
    static bool IsEmpty(const Past &past, int error);
    Past &PastOfAddress() { return pasts[static_cast<size_t>(choice.address)]; }

    Bounds bounds;
    BusChoice choice;
    std::string identity; ///< of the bus that was chosen
    Bus bus;
    bool isClaimed = false; ///< the address
    bool isStarted = false;
    std::array<Past, 128> pasts{};
    BusReport report; ///< except what Look finds out
};

} // namespace ztm::i2c
