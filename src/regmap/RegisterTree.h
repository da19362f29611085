#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace ztm {

enum class TreeLevel { Root, Group, Register };

/// One node of the register tree. Its parent is the last node before it that is one level up.
struct TreeNode {
    TreeLevel Level;
    std::string_view Text; ///< key and text; valid for the whole run
};

/// The nodes of the tree for the chip named by `DeviceName`, in display order: 82 for a ZTM7720, 73
/// for a ZTM7710, none for any other name. Every register of the chip except 0x00 has one node,
/// whose text is its name in `RegisterMap` at the time of the call (empty if the map does not have
/// it). A group without registers is left out.
std::vector<TreeNode> RegisterTreeNodes();

/// The `RegisterMap` index (0 to 69) of the register last chosen in the tree; 0 until the first
/// choice.
extern int16_t SelectedRegisterIndex;

/// Resets `SelectedRegisterIndex` to 0.
void ResetSelectedRegister();

} // namespace ztm
