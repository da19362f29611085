#include "ui/kit/Problems.h"

#include "common/Clock.h"

namespace ztm {
namespace {

Problem last;

} // namespace

void TellProblem(const QString &text) {
    last = {text, RunningSeconds()};
}

const Problem &LastProblem() {
    return last;
}

void ResetProblems() {
    last = {};
}

} // namespace ztm
