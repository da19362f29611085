#include "fan/GraphSettings.h"

namespace ztm {

namespace {

constexpr float defaultGraphRpmRange = 8000;

} // namespace

float GraphRpmRange = defaultGraphRpmRange;

void ResetGraphSettings() {
    GraphRpmRange = defaultGraphRpmRange;
}

} // namespace ztm
