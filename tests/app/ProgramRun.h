#pragma once

#include "ui/session/Program.h"

#include <QString>

#include <functional>
#include <string>

namespace ztm::test {

/// How a run of the program came to its end.
struct Outcome {
    int exitCode = -1; ///< −1 when it was killed by a signal
    std::string said;  ///< see Say
};

/// Runs the whole program in a process of its own, with a clock that nobody has to wait for.
/// `user` acts in it once the first window is up. A failure is said and answered, and "ended" is
/// said after an end with the last window.
Outcome RunProgramWith(const std::function<void()> &user, CompanionMaker companion = nullptr,
                       Opening opening = Opening::Wizard);

/// Tells the test something from the process of the program; a ";" comes behind it.
void Say(const std::string &text);

/// Takes steps in the windows on screen, apart by "; ": "cmdOK" clicks, "txtDec=5" types or chooses
/// an item, "Limits(0)+Up" presses a key, "ticks 5" lets the monitor tick 50 ms apart, "tab
/// Control" and "close frmMain" do that, "?lblDecVal" says a text, "signal 15" sends the
/// program one, and "later " before a step leaves it to whatever lets events run.
void Do(const QString &steps);

} // namespace ztm::test
