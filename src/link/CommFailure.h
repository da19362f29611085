#pragma once

#include <functional>

namespace ztm {

/// What a failed adapter request leads to. The program installs a handler that tells the user,
/// unloads every window and ends the process; a test installs one that throws. A handler that
/// returns ends the process with a failure.
using CommFailureHandler = std::function<void()>;

/// Installs the handler; an empty one ends the process without a word.
void SetCommFailureHandler(CommFailureHandler handler);

/// Reports that a request to the adapter failed. Never returns.
[[noreturn]] void CommFailure();

} // namespace ztm
