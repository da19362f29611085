#pragma once

#include <cstddef>
#include <utility>

namespace ztm {

/// The element of a number that is known to be in range: channels, fans, heaters and points are
/// numbered with int, which containers do not take without a cast.
template <class Container>
constexpr decltype(auto) At(Container &&container, int number) {
    return std::forward<Container>(container)[static_cast<std::size_t>(number)];
}

} // namespace ztm
