#pragma once

#include <QString>

namespace ztm {

/// Something that went wrong in this session, also for those who look at another page.
struct Problem {
    QString Text;    ///< empty if nothing went wrong
    double Time = 0; ///< RunningSeconds

    bool operator==(const Problem &) const = default;
};

/// Tells a problem as a sentence of its own; the place where it occurred shows it as well.
void TellProblem(const QString &text);

/// The problem that was told last.
const Problem &LastProblem();

/// Forgets it, for a new session.
void ResetProblems();

} // namespace ztm
