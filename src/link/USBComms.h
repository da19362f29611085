#pragma once

#include "link/Registers.h"

#include <cstdint>

namespace ztm {

/// Register operations, used for every access to the chip, and the other requests to the adapter.
/// All of them block until the adapter has answered; a failed register or heater request ends in
/// CommFailure.

/// Highest register address and highest register value.
inline constexpr int32_t LastRegister = 0xFF;
inline constexpr int32_t LargestRegisterValue = 0xFF;

/// The value of one register, 0 to 255. Without a medium, returns 0 and sends nothing. The same for
/// an address outside 0 to 255, so that no other register is read instead.
int16_t ReadRegister(int32_t address);

/// Writes one register and runs AfterRegisterWrite. Data is limited to 0 to 255. Without a medium
/// nothing is sent, but the hook runs. An address outside 0 to 255 does nothing at all, so that no
/// other register is written instead.
void WriteRegister(int32_t address, int32_t data);

/// Asks the adapter whether it is ready, every 0.2 s until it accepts, at most 1000 times; waits
/// 0.2 s after every request, including the accepted one. Sends nothing on a medium other than USB
/// or after a failed firmware download. Failures are silent.
void AdapterHandshake();

/// The same, but begins no further try, and cuts a wait short, after `longestSeconds`.
void AdapterHandshakeWithin(double longestSeconds);

/// Duty value that leaves a heater unchanged.
inline constexpr int32_t HeaterUnchanged = 255;

/// Writes a code into a field of a register and keeps the other bits (read, modify, write).
void WriteField(const RegisterField &field, int32_t code);

/// Sets the duties of both heaters in percent, 0 to 100, or HeaterUnchanged, and keeps them in
/// `Pwm` of both `Heaters`.
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

/// Sets the buttons for the hook; nullptr for none.
void SetFanControlButtons(FanControlButtons *buttons);

/// Runs after every write: updates the fan control buttons from register 0x01 and `EightPointMode`
/// from register 0x02, reading the register back. Does nothing for other addresses, and never
/// enables a button.
void AfterRegisterWrite(int32_t address);

} // namespace ztm
