#include "files/SettingsCode.h"

#include "common/At.h"
#include "files/RegisterComparison.h"
#include "files/SnapshotFile.h"
#include "files/TransferText.h"
#include "link/LinkTest.h"
#include "support/TemporaryFile.h"

#include <cstdlib>

namespace ztm::test {
namespace {

using testing::ElementsAre;

class SettingsCode : public LinkTest {
protected:
    /// The exit status of a shell command.
    static int Run(const std::string &command) {
        const int status = std::system(command.c_str());
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    /// Runs the script with doubles of the two tools that note how they were called; the chip's ID
    /// is `id`, and register `refused` cannot be written.
    int RunScript(const std::string &id, const std::string &refused) const {
        folder.Put("i2cget",
                   "#!/bin/sh\necho get \"$@\" >>" + folder.Path("calls") + "; echo " + id + "\n");
        folder.Put("i2cset", "#!/bin/sh\necho set \"$@\" >>" + folder.Path("calls") +
                                 "\n[ $4 != " + refused + " ]\n");
        folder.Put("calls", "");
        folder.Put("script", SettingsAsScript(settings, 3, 0x2C));
        return Run("cd " + folder.Path("") + "; chmod +x i2c*; PATH=.:$PATH sh script 2>errors");
    }

    const std::vector<RegisterSetting> settings{{0x0B, 0x90}, {0x7F, 1}, {0x02, 0x8C}, {0x01, 5}};
    TemporaryFolder folder;
};

TEST_F(SettingsCode, CompilesAsCAndHandsOverTheSettingsInTheirOrder) {
    folder.Put("settings.c", SettingsAsC(settings));
    folder.Put("main.c", "#include <stdint.h>\n#include <stdio.h>\n"
                         "int write_settings(int (*)(uint8_t, uint8_t));\n"
                         "static int write(uint8_t a, uint8_t v)"
                         "{ return printf(\"%02X=%02X \", a, v) != 6 || a == 2; }\n"
                         "int main(void) { return write_settings(write); }\n");
    ASSERT_EQ(Run("cd " + folder.Path("") +
                  " && cc -Wall -Wextra -Werror -pedantic -o code settings.c main.c"),
              0);
    EXPECT_EQ(Run("cd " + folder.Path("") + " && ./code >out"), 1);
    EXPECT_EQ(BytesOf(folder.Path("out")), "0B=90 7F=01 02=8C ") << "stops at the first failure";
    EXPECT_THAT(BytesOf(folder.Path("settings.c")),
                testing::HasSubstr("{0x0B, 0x90}, /* Local High Limit */"));
}

TEST_F(SettingsCode, TheScriptWritesToThatChipAlone) {
    const std::string get = "get -y 3 0x2C 0x3D\n";
    const std::string upToRefused = get + "set -y 3 0x2C 0x0B 0x90\nset -y 3 0x2C 0x7F 0x01\n";
    const struct {
        const char *id, *refused;
        int exit;
        std::string calls, says;
    } cases[] = {
        {"0x34", "none", 0, upToRefused + "set -y 3 0x2C 0x02 0x8C\nset -y 3 0x2C 0x01 0x05\n", ""},
        {"0x33", "none", 1, get, "no ZTM7720 at address 0x2C of bus 3: its device ID is 0x33\n"},
        {"0x34", "0x7F", 1, upToRefused, "register 0x7F was not set to 0x01\n"},
    };
    for (const auto &[id, refused, exit, calls, says] : cases) {
        EXPECT_EQ(RunScript(id, refused), exit) << id << refused;
        EXPECT_EQ(BytesOf(folder.Path("calls")), calls);
        EXPECT_EQ(BytesOf(folder.Path("errors")), says);
    }
}

TEST_F(SettingsCode, TheSnapshotIsReadBack) {
    const Snapshot snapshot = ReadSnapshot(folder.Put("snapshot", SettingsAsSnapshot(settings)));
    EXPECT_EQ(snapshot.Registers, settings);
    EXPECT_EQ(snapshot.Variant, ZTM7720);
    EXPECT_EQ(snapshot.Problem, "");
    EXPECT_EQ(SettingsAsText(settings), "Address\tRegister\tValue\tDefault\n"
                                        "0x0B\tLocal High Limit\t0x90\t0x8B\n"
                                        "0x7F\tRegister 0x7F\t0x01\t\n"
                                        "0x02\tConfiguration2\t0x8C\t0x84\n"
                                        "0x01\tConfiguration1\t0x05\t0x01\n");
}

TEST_F(SettingsCode, WritesTheConfigurationLastAndNeverResets) {
    EXPECT_THAT(InWriteOrder({{1, 0x41}, {2, 0xFF}, {0x0C, 1}, {0x0B, 2}}),
                ElementsAre(RegisterSetting{0x0C, 1}, RegisterSetting{0x0B, 2},
                            RegisterSetting{2, 0xFE}, RegisterSetting{1, 0x41}));
    EXPECT_TRUE(Locks({{2, 0}, {1, 0x40}}));
    EXPECT_FALSE(Locks({{2, 0x40}, {1, 0xBF}}));
}

TEST_F(SettingsCode, TheMapIsReadOnceInStepsThatKeepPairsTogether) {
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        StartSession(variant);
        Adapter().script = [this](const Call &) {
            clock.Advance(0.003);
            return int16_t{0};
        };
        MapReader reader;
        Calls expected;
        for (const RegisterEntry &entry : Registers()) {
            if (entry.Address < 0x4F) {
                expected.push_back(Read(entry.Address));
            }
        }
        std::vector<size_t> ends; // of the steps
        while (reader.Step(0.003)) {
            ends.push_back(Adapter().calls.size());
        }
        EXPECT_EQ(Adapter().calls, expected);
        EXPECT_EQ(reader.Done(), MapReader::Total());
        for (const size_t end : ends) {
            if (end < expected.size()) {
                const auto slot = FindRegisterByAddress(expected[end].index);
                EXPECT_FALSE(At(RegisterMap, *slot).IsHighByte()) << expected[end];
            }
        }
        EXPECT_GT(ends.size(), 30U);
        EXPECT_FALSE(reader.Values()[0x4F]);
        EXPECT_EQ(reader.Values()[0x4E], 0);
    }
}

TEST_F(SettingsCode, ComparesWhatBothSidesHave) {
    RegisterValues left = DefaultValues();
    left[0x01] = 0x81;
    left[0x40] = 0x20;
    left[0x4F].reset();
    const RegisterValues right = ValuesOf({{0x01, 0x05}, {0x40, 0x00}, {0x0B, 0x8B}});
    const auto differences = CompareRegisters(left, right, true);
    ASSERT_EQ(differences.size(), 2U);
    EXPECT_EQ(differences[0].Register->Name, "Configuration1");
    EXPECT_EQ(differences[0].DifferingBits(), "TBL/SW TMR");
    EXPECT_TRUE(differences[0].CanBeWritten());
    EXPECT_FALSE(differences[1].CanBeWritten()) << "a read-only register";
    const auto all = CompareRegisters(left, right, false);
    EXPECT_EQ(all.size(), 69U);
    EXPECT_FALSE(all[0].CanBeWritten()) << "no value on the right";
}

TEST_F(SettingsCode, TransfersInWords) {
    RecordTransfer(TransferKind::WriteRegister, 0x01, {0x81}, true);
    clock.Advance(0.25);
    RecordTransfer(TransferKind::ReadRegister, 0x01, {0x01}, true);
    RecordTransfer(TransferKind::SetHeaters, 0, {40, 255}, true);
    RecordTransfer(TransferKind::Handshake, 0, {}, false);
    const Requester dialog("a dialog");
    RecordTransfer(TransferKind::ReadRegister, 0x52, {0}, false);
    EXPECT_EQ(TransfersAsText({0, 1, 2, 3, 4}),
              "Seconds\tWhat\tRegister\tValue\tChanged\tAsked by\n"
              "0.000000\twrite\t01 Configuration1\t0x81\t\t\n"
              "0.250000\tread\t01 Configuration1\t0x01\tTBL/SW\t\n"
              "0.250000\tset heaters\t\t40 %, unchanged\t\t\n"
              "0.250000\thandshake\t\tfailed\t\t\n"
              "0.250000\tread\t52 Register 0x52\tfailed\t\ta dialog\n");
    EXPECT_EQ(SettingOf(TransferAt(0)), (RegisterSetting{1, 0x81}));
    EXPECT_FALSE(SettingOf(TransferAt(1)));
}

} // namespace
} // namespace ztm::test
