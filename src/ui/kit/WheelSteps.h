#pragma once

#include <QWheelEvent>

namespace ztm {

/// Turns of the wheel as whole steps, up when positive. What is left of a step waits for the next
/// turn.
class WheelSteps {
public:
    int Take(const QWheelEvent &event) {
        angle += event.angleDelta().y();
        const int steps = angle / QWheelEvent::DefaultDeltasPerStep;
        angle -= steps * QWheelEvent::DefaultDeltasPerStep;
        return steps;
    }

private:
    int angle = 0; // turned but not yet taken
};

} // namespace ztm
