#include "common/DateTimeText.h"

#include "common/EightBitText.h"

#include <array>

namespace ztm {
namespace {

std::time_t MachineTime() {
    return std::time(nullptr);
}

std::time_t (*dateTimeSource)() = MachineTime;

std::string Formatted(const std::tm &time, const char *format) {
    std::array<char, 128> text{};
    return {text.data(), std::strftime(text.data(), text.size(), format, &time)};
}

} // namespace

std::string DateTimeText() {
    const std::time_t now = dateTimeSource();
    std::tm local{};
    localtime_r(&now, &local);
    const std::string text = Formatted(local, "%x %X");
    std::string inFiles;
    const bool isReadable = AppendWindows1252(inFiles, text) && !text.empty();
    return isReadable ? text : Formatted(local, "%F %T");
}

void SetDateTimeSource(std::time_t (*source)()) {
    dateTimeSource = source != nullptr ? source : MachineTime;
}

} // namespace ztm
