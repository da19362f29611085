#include "fan/ControlSources.h"

#include <algorithm>

namespace ztm {

int32_t CodeOf(std::span<const ControlSource> sources, std::string_view text) {
    const auto found = std::ranges::find(sources, text, &ControlSource::Text);
    return found != sources.end() ? found->Code : 0;
}

int32_t ControlSourceCode(std::string_view text) {
    return CodeOf(ControlSources, text);
}

size_t PositionOf(std::span<const ControlSource> sources, int32_t code) {
    const auto next = std::ranges::upper_bound(sources, code, {}, &ControlSource::Code);
    return static_cast<size_t>(std::distance(sources.begin(), next)) - 1;
}

} // namespace ztm
