#pragma once

#include <cstddef>
#include <utility>

namespace ztm {

/// The element of a number that is known to be in range. Channels, fans, heaters and points are
/// numbered with int or an enumeration, which containers do not take without a cast.
template <class Container, class Number>
constexpr decltype(auto) At(Container &&container, Number number) {
    return std::forward<Container>(container)[static_cast<std::size_t>(number)];
}

} // namespace ztm
