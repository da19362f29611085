#include "regmap/RegisterTree.h"

#include "common/At.h"
#include "link/LinkState.h"
#include "regmap/RegMapStuff.h"
#include "regmap/RegisterTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace ztm {

int16_t SelectedRegisterIndex = 0;

void ResetSelectedRegister() {
    SelectedRegisterIndex = 0;
}

namespace {

/// Registers shown under one group node, by address. Unused places are 0: the register at 0x00 has
/// no node.
using GroupAddresses = std::array<int32_t, 16>;

struct TreeGroup {
    std::string_view Root;
    std::string_view Text;
    GroupAddresses Addresses;
};

/// The tree of the whole chip family in display order; groups of the same root are neighbours.
constexpr auto TreeGroups = std::to_array<TreeGroup>({
    {"General", "Configuration", {0x01, 0x02, 0x03, 0x04, 0x05}},
    {"General", "Interrupt", {0x08, 0x09, 0x0A, 0x4F, 0x50, 0x51, 0x06}},
    {"General", "ID/Revision", {0x3D, 0x3E, 0x3F}},
    {"General", "THERM", {0x19, 0x1A, 0x4E}},
    {"Temperature", "Local", {0x0B, 0x0C, 0x0D, 0x16, 0x41, 0x40}},
    {"Temperature", "Remote1", {0x0E, 0x0F, 0x10, 0x17, 0x43, 0x42}},
    {"Temperature", "Remote2", {0x11, 0x12, 0x13, 0x18, 0x45, 0x44}},
    {"Fans", "Control", {0x3B, 0x3C, 0x07, 0x3A}},
    {"Fans", "Tach", {0x4A, 0x4B, 0x4C, 0x4D}},
    {"Fans", "Temp Lookup Tables", {0x22, 0x23, 0x24, 0x25, 0x26, 0x27, 0x28, 0x29}},
    {"Fans",
     "RPM Lookup Tables",
     {0x2A, 0x2B, 0x2C, 0x2D, 0x2E, 0x2F, 0x30, 0x31, 0x32, 0x33, 0x34, 0x35, 0x36, 0x37, 0x38,
      0x39}},
});

bool HasNode(int32_t address, ChipVariant variant) {
    const RegisterRow *row = FindRegisterRow(address);
    return address != 0 && row != nullptr && row->IsIn(variant);
}

std::string_view MapName(int32_t address) {
    const std::optional<int16_t> index = FindRegisterByAddress(address);
    return index ? At(RegisterMap, *index).Name : std::string_view{};
}

} // namespace

std::vector<TreeNode> RegisterTreeNodes() {
    std::vector<TreeNode> nodes;
    const auto variant = VariantNamed(DeviceName);
    if (!variant) {
        return nodes;
    }

    const auto isShown = [&](int32_t address) { return HasNode(address, *variant); };
    std::string_view root;
    for (const TreeGroup &group : TreeGroups) {
        if (std::ranges::none_of(group.Addresses, isShown)) {
            continue;
        }
        if (group.Root != root) {
            nodes.push_back({TreeLevel::Root, root = group.Root});
        }
        nodes.push_back({TreeLevel::Group, group.Text});
        for (const int32_t address : group.Addresses) {
            if (isShown(address)) {
                nodes.push_back({TreeLevel::Register, MapName(address)});
            }
        }
    }
    return nodes;
}

} // namespace ztm
