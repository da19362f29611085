#include "fan/FanCodes.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "common/Numbers.h"

#include <algorithm>
#include <iterator>

namespace ztm {
namespace {

template <class List>
int32_t PositionOf(std::string_view text, const List &list) {
    const auto found = std::find(list.begin(), list.end(), text);
    return found != list.end() ? static_cast<int32_t>(std::distance(list.begin(), found)) : 0;
}

constexpr std::array<std::string_view, 16> numbers{"0", "1", "2",  "3",  "4",  "5",  "6",  "7",
                                                   "8", "9", "10", "11", "12", "13", "14", "15"};

} // namespace

int32_t SetFanResponse(std::string_view response) {
    return PositionOf(response, FanResponses);
}

int32_t SetRampRate(std::string_view rampRate) {
    return PositionOf(rampRate, RampRates);
}

int32_t PolesCode(std::string_view text) {
    return ToInt32(NumericValue(text));
}

std::string_view PolesText(int32_t code) {
    const int32_t item = ToInt32(code / 2.0 - 1);
    const bool listed = code > 0 && item < static_cast<int32_t>(FanPoles.size());
    return listed ? At(FanPoles, item) : numbers[static_cast<size_t>(code) % numbers.size()];
}

} // namespace ztm
