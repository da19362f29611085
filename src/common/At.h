#pragma once

#include <cstddef>
#include <utility>

namespace ztm {

/// Element access by an int that is known to be in range. Channels, fans, heaters and points are
/// numbered with int, which containers do not take without a cast.
template <class Container, class Number>
constexpr decltype(auto) At(Container &&container, Number number) {
    return std::forward<Container>(container)[static_cast<std::size_t>(number)];
}

} // namespace ztm
