#include "files/SettingsCode.h"

#include "common/NumberText.h"
#include "discovery/DeviceScan.h"
#include "files/SnapshotFile.h"
#include "link/LinkState.h"
#include "link/Registers.h"
#include "regmap/RegMapStuff.h"

#include <algorithm>

namespace ztm {
namespace {

const RegisterEntry *EntryAt(int32_t address) {
    const auto registers = Registers();
    const auto entry = std::ranges::find(registers, address, &RegisterEntry::Address);
    return entry == registers.end() ? nullptr : &*entry;
}

std::string CountText(size_t count) {
    return std::to_string(count) + (count == 1 ? " register setting" : " register settings");
}

} // namespace

std::string RegisterName(int32_t address) {
    const RegisterEntry *entry = EntryAt(address);
    return entry == nullptr ? "Register " + HexByte(address) : std::string(entry->Name);
}

std::string SettingsAsC(const std::vector<RegisterSetting> &settings) {
    std::string text = "/* " + DeviceName + ": " + CountText(settings.size()) + R"(. */

#include <stddef.h>
#include <stdint.h>

struct register_setting {
    uint8_t address;
    uint8_t value;
};

static const struct register_setting settings[] = {
)";
    for (const auto &[address, value] : settings) {
        text += "    {" + HexByte(address) + ", " + HexByte(value) + "}, /* " +
                RegisterName(address) + " */\n";
    }
    return text + R"(};

int write_settings(int (*write_register)(uint8_t address, uint8_t value));

/* Writes the settings in their order. Stops at the first failure, a result of write_register other
   than 0, and returns it. */
int write_settings(int (*write_register)(uint8_t address, uint8_t value)) {
    size_t i;

    for (i = 0; i < sizeof settings / sizeof settings[0]; ++i) {
        const int result = write_register(settings[i].address, settings[i].value);

        if (result != 0)
            return result;
    }
    return 0;
}
)";
}

std::string SettingsAsScript(const std::vector<RegisterSetting> &settings, int bus, int address) {
    const std::string id = HexByte(DeviceIdOf(DeviceName).value_or(0));
    std::string text = "#!/bin/sh\n# " + DeviceName + ": " + CountText(settings.size()) +
                       ".\nset -eu\nPATH=$PATH:/usr/sbin:/sbin\n\nbus=" + std::to_string(bus) +
                       "\naddress=" + HexByte(address) + R"(

set_register() {
    if ! i2cset -y "$bus" "$address" "$1" "$2"; then
        echo "register $1 was not set to $2" >&2
        exit 1
    fi
}

id=$(i2cget -y "$bus" "$address" )" +
                       HexByte(DeviceId) + ")\nif [ \"$id\" != " + id + " ]; then\n    echo \"no " +
                       DeviceName +
                       " at address $address of bus $bus: its device ID is $id\" >&2\n"
                       "    exit 1\nfi\n\n";
    for (const RegisterSetting &setting : settings) {
        text += "set_register " + HexByte(setting.Address) + ' ' + HexByte(setting.Value) + " # " +
                RegisterName(setting.Address) + '\n';
    }
    return text;
}

std::string SettingsAsSnapshot(const std::vector<RegisterSetting> &settings) {
    std::string text = SnapshotHeader();
    for (const RegisterSetting &setting : settings) {
        text += SnapshotLine(setting, RegisterName(setting.Address));
    }
    return text + "\r\n";
}

std::string SettingsAsText(const std::vector<RegisterSetting> &settings) {
    std::string text = "Address\tRegister\tValue\tDefault\n";
    for (const RegisterSetting &setting : settings) {
        const RegisterEntry *entry = EntryAt(setting.Address);
        text += HexByte(setting.Address) + '\t' + RegisterName(setting.Address) + '\t' +
                HexByte(setting.Value) + '\t' +
                (entry == nullptr ? std::string() : HexByte(entry->Default)) + '\n';
    }
    return text;
}

} // namespace ztm
