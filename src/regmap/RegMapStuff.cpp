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
            .Default = row.Default};
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
