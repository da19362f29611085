#include "regmap/RegMapStuff.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "link/LinkState.h"
#include "regmap/RegisterTree.h"
#include "support/TemporaryFile.h"

#include <gtest/gtest.h>

#include <string>

namespace ztm {
namespace {

void StartSessionOf(std::string_view deviceName) {
    ResetLinkState();
    ResetRegisterMap();
    DeviceName = deviceName;
    BuildRegisterMap();
}

/// The lines that a variant's file holds.
std::string Golden(const char *kind, std::string_view variant) {
    return test::BytesOf(std::string(ZTM_REGISTER_TEXTS) + kind + std::string(variant) + ".txt");
}

std::string TwoDigits(int value) {
    return (value < 0x10 ? "0" : "") + HexText(value);
}

/// The filled slots of the map, a line each: address, default, name, bit labels and access.
std::string MapText() {
    const char *access[] = {"", " | read only", " | reading clears"};
    std::string text;
    for (const RegisterEntry &entry : RegisterMap) {
        if (!entry.Name.empty()) {
            EXPECT_EQ(entry.Name, entry.Description);
            text += TwoDigits(entry.Address) + ' ' + TwoDigits(entry.Default) + ' ' +
                    std::string(entry.Name) + " | " + std::string(entry.BitLabels) +
                    At(access, entry.Access) + '\n';
        }
    }
    return text;
}

/// The nodes of the tree, a line each, indented by their level.
std::string TreeText() {
    std::string text;
    for (const TreeNode &node : RegisterTreeNodes()) {
        const auto indent = 2 * static_cast<size_t>(node.Level);
        text += std::string(indent, ' ') + std::string(node.Text) + '\n';
    }
    return text;
}

TEST(RegMapStuffTest, MapAndTreeOfBothVariants) {
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        StartSessionOf(variant);
        EXPECT_EQ(MapText(), Golden("registers-", variant));
        EXPECT_EQ(TreeText(), Golden("tree-", variant));
    }
    for (const char *other : {"", "ztm7720", "ZTM77", "ZTM7730"}) {
        StartSessionOf(other);
        EXPECT_EQ(MapText(), "") << other;
        EXPECT_EQ(TreeText(), "") << other;
    }
}

TEST(RegMapStuffTest, NamesBits) {
    const struct {
        const char *name;
        int32_t bits;
        const char *names;
    } cases[] = {
        {"Configuration1", 0x81, "TBL/SW MON/SB"}, {"Configuration1", 0, ""},
        {"Configuration2", 0x19, "LUT bit 3 RST"}, {"Configuration3", 0x81, "#FP2 #FP1"},
        {"Fan Response", 0x77, "F2 F1"},           {"RPM1(MSB)", 0x81, "15 8"},
    };
    StartSessionOf(ZTM7720);
    EXPECT_EQ(Registers().size(), 69);
    for (const auto &[name, bits, names] : cases) {
        EXPECT_EQ(BitNames(At(RegisterMap, *FindRegisterByName(name)), bits), names) << name;
    }
}

TEST(RegMapStuffTest, DoesNotClearTheSlotsItDoesNotFill) {
    StartSessionOf(ZTM7720);
    DeviceName = ZTM7710;
    BuildRegisterMap();
    EXPECT_EQ(0x51, RegisterMap[60].Address);
    EXPECT_EQ("Tach1 Low", RegisterMap[61].Name);
    EXPECT_EQ(Registers().size(), 61);
    DeviceName.clear();
    BuildRegisterMap();
    EXPECT_EQ("Fan Behavior", RegisterMap[7].Name);
}

TEST(RegMapStuffTest, FindsTheFirstMatch) {
    StartSessionOf("");
    EXPECT_EQ(0, FindRegisterByAddress(0)) << "an empty slot has address 0";
    StartSessionOf(ZTM7710);
    EXPECT_EQ(60, FindRegisterByAddress(0x51));
    EXPECT_EQ(std::nullopt, FindRegisterByAddress(0x18));
    EXPECT_EQ(52, FindRegisterByName("Local Temperature(MSB)"));
    EXPECT_EQ(std::nullopt, FindRegisterByName("Remote2 Offset"));
    EXPECT_EQ(std::nullopt, FindRegisterByName("")) << "empty slots have no name";
    RegisterMap[30].Name = "Status3";
    EXPECT_EQ(30, FindRegisterByName("Status3"));
    RegisterMap[1].Name = "Renamed";
    EXPECT_NE(TreeText().find("Renamed"), std::string::npos) << "read from the map each time";
}

} // namespace
} // namespace ztm
