#include "regmap/RegMapStuff.h"

#include "link/LinkState.h"
#include "regmap/RegisterTable.h"

#include <algorithm>

namespace ztm {

std::array<RegisterEntry, RegisterMapSize> RegisterMap;

static_assert(std::size(RegisterTable) <= RegisterMap.size());

namespace {

RegisterEntry EntryFor(const RegisterRow &row, ChipVariant variant) {
    return {.Address = row.Address,
            .Name = row.NameIn(variant),
            .Description = row.NameIn(variant),
            .BitLabels = row.BitLabelsIn(variant),
            .Default = row.Default,
            .Access = row.Access};
}

template <typename Predicate>
std::optional<int16_t> FirstSlot(Predicate matches) {
    const auto slot = std::ranges::find_if(RegisterMap, matches);
    if (slot == RegisterMap.end()) {
        return std::nullopt;
    }
    return static_cast<int16_t>(slot - RegisterMap.begin());
}

} // namespace

void BuildRegisterMap() {
    const auto variant = VariantNamed(DeviceName);
    if (!variant) {
        return;
    }
    auto slot = RegisterMap.begin();
    for (const RegisterRow &row : RegisterTable) {
        if (row.IsIn(*variant)) {
            *slot++ = EntryFor(row, *variant);
        }
    }
}

void ResetRegisterMap() {
    RegisterMap.fill({});
}

bool RegisterEntry::IsHighByte() const {
    return BitLabels == CountHighLabels || BitLabels == TemperatureHighLabels;
}

std::span<const RegisterEntry> Registers() {
    const auto variant = VariantNamed(DeviceName);
    if (!variant) {
        return {};
    }
    const auto count = std::ranges::count_if(
        RegisterTable, [variant](const RegisterRow &row) { return row.IsIn(*variant); });
    return {RegisterMap.begin(), static_cast<size_t>(count)};
}

std::string BitNames(const RegisterEntry &entry, int32_t bits) {
    std::string names;
    std::string_view labels = entry.BitLabels;
    std::string_view before;
    for (int bit = 7; bit >= 0; --bit) {
        const auto end = labels.find(':');
        const auto label = labels.substr(0, end);
        labels.remove_prefix(end == std::string_view::npos ? labels.size() : end + 1);
        if ((bits >> bit & 1) == 0) {
            continue;
        }
        if (label.empty() || label == "-") {
            names.append(names.empty() ? "" : " ").append("bit ").append(std::to_string(bit));
        } else if (label != before) {
            names.append(names.empty() ? "" : " ").append(label);
            before = label;
        }
    }
    return names;
}

std::optional<int16_t> FindRegisterByName(std::string_view name) {
    if (name.empty()) {
        return std::nullopt;
    }
    return FirstSlot([name](const RegisterEntry &entry) { return entry.Name == name; });
}

std::optional<int16_t> FindRegisterByAddress(int32_t address) {
    return FirstSlot([address](const RegisterEntry &entry) { return entry.Address == address; });
}

} // namespace ztm
