#pragma once

#include <QWheelEvent>

namespace ztm {

/// Wheel turns in whole steps, up if positive. The rest of a step is kept for the next turn.
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
