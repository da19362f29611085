#pragma once

#include <functional>

namespace ztm {

/// Called when an adapter request fails. The program installs a handler that tells the user, closes
/// all windows and ends the process; a test installs one that throws. If the handler returns, the
/// process ends with a failure code.
using CommFailureHandler = std::function<void()>;

/// Installs the handler; with an empty one the process ends silently.
void SetCommFailureHandler(CommFailureHandler handler);

/// Reports that a request to the adapter failed. Never returns.
[[noreturn]] void CommFailure();

} // namespace ztm
