#pragma once

#include <ctime>
#include <string>

namespace ztm {

/// The current local date and time in the format of the user's locale ("23.11.2026 14:05:09"),
/// UTF-8; as "2026-11-23 14:05:09" if files could not hold that, see AppendWindows1252.
std::string DateTimeText();

/// Sets the time source of DateTimeText, in seconds since the Unix epoch; nullptr restores the
/// machine's clock.
void SetDateTimeSource(std::time_t (*source)());

} // namespace ztm
