#include "regmap/RegisterTree.h"

#include "link/LinkState.h"
#include "regmap/RegMapStuff.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>

namespace ztm {
namespace {

std::vector<TreeNode> FreshTree(std::string_view deviceName) {
    ResetLinkState();
    ResetRegisterMap();
    DeviceName = deviceName;
    BuildRegisterMap();
    return RegisterTreeNodes();
}

/// The names of the registers under the group.
std::string Group(const std::vector<TreeNode> &nodes, std::string_view group) {
    std::string names;
    auto node = std::ranges::find(nodes, group, &TreeNode::Text);
    while (node != nodes.end() && ++node != nodes.end() && node->Level == TreeLevel::Register) {
        names += std::string(node->Text) + "; ";
    }
    return names;
}

/// The roots, one a line, each followed by its groups.
std::string Outline(const std::vector<TreeNode> &nodes) {
    std::string outline;
    for (const TreeNode &node : nodes) {
        if (node.Level != TreeLevel::Register) {
            outline += (node.Level == TreeLevel::Root ? "\n" : ", ") + std::string(node.Text);
        }
    }
    return outline;
}

TEST(RegisterTreeTest, RootsAndGroupsStandInDisplayOrder) {
    const std::string general = "\nGeneral, Configuration, Interrupt, ID/Revision, THERM";
    const std::string fans = "\nFans, Control, Tach, Temp Lookup Tables, RPM Lookup Tables";
    EXPECT_EQ(general + "\nTemperature, Local, Remote1, Remote2" + fans,
              Outline(FreshTree(ZTM7720)));
    EXPECT_EQ(general + "\nTemperature, Local, Remote1" + fans, Outline(FreshTree(ZTM7710)));
}

TEST(RegisterTreeTest, ShowsEveryRegisterOnceButTheFirst) {
    for (const auto &[deviceName, count] :
         {std::pair{ZTM7720, 82u}, {ZTM7710, 73u}, {"", 0u}, {"ZTM77", 0u}}) {
        const auto nodes = FreshTree(deviceName);
        EXPECT_EQ(count, nodes.size()) << deviceName;
        for (const RegisterEntry &entry : RegisterMap) {
            EXPECT_EQ(entry.Address == 0 ? 0 : 1,
                      std::ranges::count(nodes, entry.Name, &TreeNode::Text))
                << entry.Name;
        }
    }
}

TEST(RegisterTreeTest, GroupsHoldTheirRegistersInDisplayOrder) {
    const auto larger = FreshTree(ZTM7720);
    EXPECT_EQ("Mask1; Mask2; Mask3; Status1; Status2; Status3; Fault Queue; ",
              Group(larger, "Interrupt"));
    EXPECT_EQ("Remote2 High Limit; Remote2 Low Limit; Remote2 Therm Limit; Remote2 Offset; "
              "Remote2 Temperature(MSB); Remote2 Temperature; ",
              Group(larger, "Remote2"));
    EXPECT_EQ("Tach1 Low; Tach1 High; Tach2 Low; Tach2 High; ", Group(larger, "Tach"));
    const auto smaller = FreshTree(ZTM7710);
    EXPECT_EQ("Tach1 Low; Tach1 High; ", Group(smaller, "Tach"));
    EXPECT_EQ("Enhance Acoustics; Fan Response; Fan Behavior; Lookup Hysteresis; ",
              Group(smaller, "Control"));
}

TEST(RegisterTreeTest, TakesRegisterTextsFromTheMapAtTheMoment) {
    FreshTree(ZTM7710);
    RegisterMap[1].Name = "Renamed";
    EXPECT_TRUE(Group(RegisterTreeNodes(), "Configuration").starts_with("Renamed; Configuration2"));
}

} // namespace
} // namespace ztm
