#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace ztm {

/// The states that something edited has had, for undo and redo. A state is noted after each edit;
/// edits of the same step are taken back as one. The newest 1,000 steps are kept.
template <class State>
class EditHistory {
public:
    /// Forgets all steps.
    void Start(State state) {
        states.assign(1, std::move(state));
        now = 0;
        openStep = noStep;
    }

    /// Notes the state after an edit; `step` is above 0. One that has changed nothing is no step,
    /// nor is a step whose edits have come to nothing. What could be redone is forgotten.
    void Note(State state, int step) {
        if (state == states[now]) {
            return;
        }
        states.resize(now + 1);
        if (step != openStep) {
            states.push_back(std::move(state));
        } else if (state == states[now - 1]) {
            states.pop_back();
            step = noStep;
        } else {
            states[now] = std::move(state);
        }
        if (states.size() > mostSteps + 1) {
            states.erase(states.begin());
        }
        now = states.size() - 1;
        openStep = step;
    }

    bool CanUndo() const { return now > 0; }
    bool CanRedo() const { return now + 1 < states.size(); }

    /// The state to go to; only when it can be done.
    const State &Undo() { return GoTo(now - 1); }
    const State &Redo() { return GoTo(now + 1); }

private:
    static constexpr int noStep = 0;
    static constexpr size_t mostSteps = 1000;

    const State &GoTo(size_t state) {
        now = state;
        openStep = noStep;
        return states[now];
    }

    std::vector<State> states{State{}};
    size_t now = 0;
    int openStep = noStep; // to which states[now] belongs
};

} // namespace ztm
