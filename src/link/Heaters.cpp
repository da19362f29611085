#include "link/Heaters.h"

namespace ztm {

std::array<HeaterSettings, 2> Heaters;

void ResetHeaters() {
    Heaters.fill(HeaterSettings{});
}

} // namespace ztm
