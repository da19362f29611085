#include "files/RegisterComparison.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "link/Registers.h"

#include <algorithm>

namespace ztm {
namespace {

std::vector<KeptState> keptStates;

/// Larger for what is written later.
int WriteRank(const RegisterSetting &setting) {
    return setting.Address == Configuration1 ? 2 : (setting.Address == Configuration2 ? 1 : 0);
}

} // namespace

std::string ComparedRegister::DifferingBits() const {
    return Differs() ? BitNames(*Register, *Left ^ *Right) : std::string();
}

std::vector<ComparedRegister> CompareRegisters(const RegisterValues &left,
                                               const RegisterValues &right, bool onlyDifferences) {
    std::vector<ComparedRegister> rows;
    for (const RegisterEntry &entry : Registers()) {
        const ComparedRegister row{&entry, At(left, entry.Address), At(right, entry.Address)};
        if (row.Differs() || !onlyDifferences) {
            rows.push_back(row);
        }
    }
    return rows;
}

std::string ComparisonAsText(const std::vector<ComparedRegister> &rows) {
    const auto textOf = [](std::optional<uint8_t> value) {
        return value ? HexByte(*value) : std::string("–");
    };
    std::string text = "Address\tRegister\tLeft\tRight\tBits\n";
    for (const ComparedRegister &row : rows) {
        text += HexByte(row.Register->Address) + '\t' + std::string(row.Register->Name) + '\t' +
                textOf(row.Left) + '\t' + textOf(row.Right) + '\t' + row.DifferingBits() + '\n';
    }
    return text;
}

std::vector<KeptState> &KeptStates() {
    return keptStates;
}

void ResetKeptStates() {
    keptStates.clear();
}

std::vector<RegisterSetting> InWriteOrder(std::vector<RegisterSetting> settings) {
    std::ranges::stable_sort(settings, {}, WriteRank);
    for (RegisterSetting &setting : settings) {
        if (setting.Address == Configuration2) {
            setting.Value &= ~ResetBit;
        }
    }
    return settings;
}

bool Locks(const std::vector<RegisterSetting> &settings) {
    return std::ranges::any_of(settings, [](const RegisterSetting &setting) {
        return setting.Address == Configuration1 && (setting.Value & LockBit) != 0;
    });
}

} // namespace ztm
