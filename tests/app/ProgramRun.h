#pragma once

#include <functional>

namespace ztm::test {

/// Runs the whole program, once per process, on a fresh recording adapter with a ZTM7720 and a
/// clock that nobody has to wait for. `user` acts once the wizard is up. Returns the exit code
/// of a run that ends with its last window.
int RunWith(const std::function<void()> &user);

/// From the wizard to the main window.
void StartSession();

} // namespace ztm::test
