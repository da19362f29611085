#pragma once

#include <ctime>
#include <string>

namespace ztm {

/// The current local date and time as the user's locale writes them ("23.11.2026 14:05:09"),
/// UTF-8.
std::string DateTimeText();

/// Where DateTimeText takes the time from, in seconds since the Unix epoch; nullptr brings the
/// machine's clock back.
void SetDateTimeSource(std::time_t (*source)());

} // namespace ztm
