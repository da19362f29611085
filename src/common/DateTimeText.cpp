#include "common/DateTimeText.h"

#include <array>

namespace ztm {
namespace {

std::time_t MachineTime() {
    return std::time(nullptr);
}

std::time_t (*dateTimeSource)() = MachineTime;

} // namespace

std::string DateTimeText() {
    const std::time_t now = dateTimeSource();
    std::tm local{};
    localtime_r(&now, &local);
    std::array<char, 128> text{};
    const size_t length = std::strftime(text.data(), text.size(), "%x %X", &local);
    return {text.data(), length};
}

void SetDateTimeSource(std::time_t (*source)()) {
    dateTimeSource = source != nullptr ? source : MachineTime;
}

} // namespace ztm
