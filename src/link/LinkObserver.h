#pragma once

#include "link/USBComms.h"

#include <array>
#include <cstdint>

namespace ztm {

/// Learns what passes by on its way to the chip and the board. It may ask for nothing.
class LinkObserver {
public:
    virtual ~LinkObserver() = default;
    virtual void RegisterWritten(int32_t address, int32_t data) = 0;
    /// Whether the chip drives the fans by its lookup table, as it has just been read.
    virtual void ControlTypeRead(bool isAutomatic) = 0;
    /// In percent, or HeaterUnchanged.
    virtual void HeaterDutiesSet(const std::array<int32_t, 2> &duties) = 0;
};

/// Sets the observer; nullptr for none.
void SetLinkObserver(LinkObserver *observer);

} // namespace ztm
