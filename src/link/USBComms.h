#pragma once

#include "link/Registers.h"

#include <cstdint>

namespace ztm {

/// The register operations through which every access to the chip passes, and the other
/// requests to the adapter. All of them block until the adapter has answered; a failed
/// register or heater request ends in CommFailure.

/// Highest register address and highest register value.
inline constexpr int32_t LastRegister = 0xFF;
inline constexpr int32_t LargestRegisterValue = 0xFF;

/// The value of one register, 0 to 255. On no medium the result is 0 and nothing is asked.
/// There is no register outside 0 to 255: such an address asks nothing and yields 0, so that
/// no other register is read in its place.
int16_t ReadRegister(int32_t address);

/// Writes one register and runs AfterRegisterWrite. Data above 255 is written as 255, data
/// below 0 as 0. On no medium nothing is sent, but the hook runs. An address outside 0 to 255
/// does nothing at all, so that no other register is written in its place.
void WriteRegister(int32_t address, int32_t data);

/// Asks the adapter whether it is up, every 0.2 s until it accepts, 1000 times at most; waits
/// 0.2 s after every request, the accepted one included. Sends nothing on another medium than
/// USB or after a failed firmware download. Failures are silent.
void AdapterHandshake();

/// A duty that leaves its heater as it is.
inline constexpr int32_t HeaterUnchanged = 255;

/// Puts a code into a field of a register, whose other bits stay: reads and writes it.
void WriteField(const RegisterField &field, int32_t code);

/// Sets the duties of both heaters in percent, 0 to 100, or HeaterUnchanged.
void SetHeaterDuty(int32_t duty1, int32_t duty2);

/// Asks the adapter for the heater duties and stores them in `Pwm` of both `Heaters`. Returns
/// the third byte of the reply.
uint8_t ReadHeaterDuty();

/// The buttons of the main window that the after-write hook switches off.
class FanControlButtons {
public:
    virtual ~FanControlButtons() = default;
    virtual void DisableAuto() = 0;
    virtual void DisableSetLookups() = 0;
    virtual void DisableManual() = 0;
};

/// Tells the hook which buttons there are; nullptr when there are none.
void SetFanControlButtons(FanControlButtons *buttons);

/// The hook behind every write: keeps the fan control buttons in step with register 0x01 and
/// `EightPointMode` with register 0x02, which it reads back. Does nothing for other addresses,
/// and never enables a button.
void AfterRegisterWrite(int32_t address);

} // namespace ztm
