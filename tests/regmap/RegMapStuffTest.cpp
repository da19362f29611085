#include "regmap/RegMapStuff.h"

#include "link/LinkState.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <utility>

namespace ztm {
namespace {

using AddressSet = std::set<int32_t>;

auto FreshMap(std::string_view deviceName) {
    ResetLinkState();
    ResetRegisterMap();
    DeviceName = deviceName;
    BuildRegisterMap();
    return RegisterMap;
}

bool IsEmpty(const RegisterEntry &entry) {
    return entry.Address == 0 && entry.Name.empty() && entry.BitLabels.empty();
}

TEST(RegMapStuffTest, FillsTheVariantsSlotsInOrderAndLeavesTheRestEmpty) {
    for (const auto &[deviceName, count] :
         {std::pair{ZTM7720, 69}, {ZTM7710, 61}, {"", 0}, {"ztm7720", 0}, {"ZTM7730", 0}}) {
        const auto map = FreshMap(deviceName);
        EXPECT_TRUE(std::all_of(map.begin() + count, map.end(), IsEmpty)) << deviceName;
        int32_t previous = -1;
        std::set<std::string_view> names;
        for (auto entry = map.begin(); entry != map.begin() + count; ++entry) {
            EXPECT_LT(std::exchange(previous, entry->Address), entry->Address);
            EXPECT_TRUE(names.insert(entry->Name).second) << entry->Name;
            EXPECT_EQ(entry->Name, entry->Description);
            EXPECT_EQ(7, std::ranges::count(entry->BitLabels, ':')) << entry->Name;
            EXPECT_EQ(std::string::npos,
                      (std::string(1, ':') + std::string(entry->BitLabels) + ":").find("::"));
        }
    }
}

TEST(RegMapStuffTest, PutsRegistersIntoTheirSlots) {
    const auto text = [](const RegisterEntry &entry) {
        return std::string(entry.Name) + " " + std::string(entry.BitLabels) + " " +
               std::to_string(entry.Address) + " " + std::to_string(entry.Default);
    };
    const auto larger = FreshMap(ZTM7720);
    EXPECT_EQ("#Bytes/BlockRead 7:6:5:4:3:2:1:0 0 32", text(larger[0]));
    EXPECT_EQ("Configuration3 #FP2:#FP2:#FP2:#FP2:#FP1:#FP1:#FP1:#FP1 3 68", text(larger[3]));
    EXPECT_EQ("Fan Behaviour -:-:-:-:D2B:D2B:D1B:D1B 7 9", text(larger[7]));
    EXPECT_EQ("RPM1(MSB) 15:14:13:12:11:10:9:8 43 255", text(larger[34]));
    EXPECT_EQ("Device ID 7:6:5:4:3:2:1:0 61 52", text(larger[52]));
    EXPECT_EQ("Local Temperature 4:3:2:1:0:-:-:- 64 0", text(larger[55]));
    const auto smaller = FreshMap(ZTM7710);
    EXPECT_EQ("Configuration3 #FP1:#FP1:#FP1:#FP1:-:-:-:- 3 68", text(smaller[3]));
    EXPECT_EQ("Fan Behavior -:-:-:-:-:-:D1B:D1B 7 9", text(smaller[7]));
    EXPECT_EQ("Device ID 7:6:5:4:3:2:1:0 61 52", text(smaller[48]));
    EXPECT_EQ("Local Temperature(MSB) 12:11:10:9:8:7:6:5 65 0", text(smaller[52]));
}

TEST(RegMapStuffTest, SmallerVariantLacksTheSecondFanAndRemoteChannel) {
    const auto larger = FreshMap(ZTM7720);
    const auto smaller = FreshMap(ZTM7710);
    AddressSet missing, otherName, otherLabels;
    for (const RegisterEntry &entry : larger) {
        const auto other = std::ranges::find(smaller, entry.Address, &RegisterEntry::Address);
        if (other == smaller.end()) {
            missing.insert(entry.Address);
        } else if (!IsEmpty(entry)) {
            EXPECT_EQ(entry.Default, other->Default) << entry.Name;
            if (entry.Name != other->Name) {
                otherName.insert(entry.Address);
            }
            if (entry.BitLabels != other->BitLabels) {
                otherLabels.insert(entry.Address);
            }
            for (const std::string_view label : {"R2", "F2", "D2B", "%T2", "#FP2"}) {
                EXPECT_EQ(std::string_view::npos, other->BitLabels.find(label)) << other->Name;
            }
        }
    }
    EXPECT_EQ((AddressSet{0x11, 0x12, 0x13, 0x18, 0x44, 0x45, 0x4C, 0x4D}), missing);
    EXPECT_EQ((AddressSet{0x07}), otherName);
    EXPECT_EQ((AddressSet{0x03, 0x04, 0x07, 0x08, 0x0A, 0x3C, 0x4F, 0x50, 0x51}), otherLabels);
}

TEST(RegMapStuffTest, DoesNotClearTheSlotsItDoesNotFill) {
    FreshMap(ZTM7720);
    DeviceName = ZTM7710;
    BuildRegisterMap();
    EXPECT_EQ(0x51, RegisterMap[60].Address);
    EXPECT_EQ("Tach1 Low", RegisterMap[61].Name);
    DeviceName.clear();
    BuildRegisterMap();
    EXPECT_EQ("Fan Behavior", RegisterMap[7].Name);
}

TEST(RegMapStuffTest, FindsTheFirstMatch) {
    FreshMap("");
    EXPECT_EQ(0, FindRegisterByAddress(0)) << "an empty slot has address 0";
    FreshMap(ZTM7710);
    EXPECT_EQ(60, FindRegisterByAddress(0x51));
    EXPECT_EQ(std::nullopt, FindRegisterByAddress(0x18));
    EXPECT_EQ(52, FindRegisterByName("Local Temperature(MSB)"));
    EXPECT_EQ(std::nullopt, FindRegisterByName("Remote2 Offset"));
    EXPECT_EQ(std::nullopt, FindRegisterByName("")) << "empty slots have no name";
    RegisterMap[30].Name = "Status3";
    EXPECT_EQ(30, FindRegisterByName("Status3"));
}

} // namespace
} // namespace ztm
