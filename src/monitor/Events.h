#pragma once

#include "common/Clock.h"
#include "common/EventHistory.h"
#include "monitor/Channels.h"

#include <array>
#include <string>

namespace ztm {

/// What has happened in the session besides the measurements, on their time axis. It is noted where
/// it passes by; nothing is asked of the chip for it.
const EventHistory &Events();

/// An event that is about no channel.
inline constexpr int NoChannel = -1;

/// Notes what has happened.
void AddEvent(std::string text, int channel = NoChannel, double time = RunningSeconds());

/// Notes which channels have gone into or out of alarm since the last call. None was in alarm
/// before the first.
void NoteAlarms(const std::array<bool, ChannelCount> &alarms);

/// Forgets all events. From now on they are noted, those of what is sent to chip and board too.
void ResetEvents();

} // namespace ztm
