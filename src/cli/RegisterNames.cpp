#include "cli/RegisterNames.h"

#include "cli/ExitCodes.h"
#include "cli/Values.h"
#include "link/USBComms.h"
#include "regmap/RegMapStuff.h"

#include <algorithm>

namespace ztm::cli {
namespace {

constexpr int bits = 8;
constexpr std::string_view noLabel = "-";

const RegisterEntry *EntryAt(int32_t address) {
    const auto slot = FindRegisterByAddress(address);
    return slot ? &RegisterMap[static_cast<size_t>(*slot)] : nullptr;
}

[[noreturn]] void RefuseName(std::string_view text, const std::vector<std::string_view> &candidates,
                             const std::string &problem) {
    const std::string quoted = '"' + std::string(text) + "\" " + problem;
    throw Refused(candidates.empty() ? quoted + "; ztm dump lists the registers"
                                     : quoted + ": " + Listed(candidates));
}

int32_t FindByName(std::string_view text) {
    const std::string wanted = Folded(text);
    std::vector<RegisterEntry> beginning;
    std::vector<std::string_view> containing;
    for (const RegisterEntry &entry : Registers()) {
        const std::string name = Folded(entry.Name);
        if (name == wanted) {
            return entry.Address;
        }
        if (name.starts_with(wanted)) {
            beginning.push_back(entry);
        } else if (name.find(wanted) != std::string::npos) {
            containing.push_back(entry.Name);
        }
    }
    if (wanted.empty() || beginning.empty()) {
        RefuseName(text, wanted.empty() ? std::vector<std::string_view>() : containing,
                   "is no register of this chip");
    }
    if (beginning.size() > 1) {
        std::vector<std::string_view> candidates;
        std::ranges::transform(beginning, std::back_inserter(candidates), &RegisterEntry::Name);
        RefuseName(text, candidates, "is ambiguous");
    }
    return beginning.front().Address;
}

/// The labels of a register from bit 7 down; empty for bits without one, and those that number the
/// bits of a value.
std::array<std::string_view, bits> LabelsOf(int32_t address) {
    std::array<std::string_view, bits> labels{};
    const RegisterEntry *entry = EntryAt(address);
    std::string_view rest = entry != nullptr ? entry->BitLabels : std::string_view();
    for (std::string_view &label : labels) {
        const std::string_view text = rest.substr(0, rest.find(':'));
        rest.remove_prefix(std::min(text.size() + 1, rest.size()));
        const bool isNumber = text.find_first_not_of("0123456789") == std::string_view::npos;
        label = text == noLabel || isNumber ? std::string_view() : text;
    }
    return labels;
}

/// The bits of a label, as a mask.
int32_t MaskOf(const std::array<std::string_view, bits> &labels, std::string_view label) {
    int32_t mask = 0;
    for (size_t i = 0; i < labels.size(); ++i) {
        if (!labels[i].empty() && Folded(labels[i]) == Folded(label)) {
            mask |= 0x80 >> i;
        }
    }
    return mask;
}

/// The labels of a register, each once.
std::vector<std::string_view> DistinctLabels(int32_t address) {
    std::vector<std::string_view> distinct;
    for (const std::string_view label : LabelsOf(address)) {
        if (!label.empty() && std::ranges::find(distinct, label) == distinct.end()) {
            distinct.push_back(label);
        }
    }
    return distinct;
}

int32_t ParseBits(int32_t address, std::string_view bit) {
    if (bit.size() == 1 && bit[0] >= '0' && bit[0] < '0' + bits) {
        return 1 << (bit[0] - '0');
    }
    const int32_t mask = MaskOf(LabelsOf(address), bit);
    if (mask == 0) {
        const std::string labels = Listed(DistinctLabels(address));
        throw Refused('"' + std::string(bit) + "\" is no bit of " +
                      std::string(NameOfRegister(address)) + ": 7 to 0" +
                      (labels.empty() ? "" : ", " + labels));
    }
    return mask;
}

} // namespace

int32_t ParseRegister(std::string_view text) {
    if (const auto address = HexNumber(Folded(text))) {
        if (*address > LastRegister) {
            throw Refused('"' + std::string(text) + "\" is no register: 00 to FF");
        }
        return *address;
    }
    return FindByName(text);
}

WriteTarget ParseTarget(std::string_view text) {
    const size_t point = text.rfind('.');
    const int32_t address = ParseRegister(text.substr(0, point));
    if (point == std::string_view::npos) {
        return {address, {}};
    }
    return {address, RegisterField{address, ParseBits(address, text.substr(point + 1))}};
}

std::string_view NameOfRegister(int32_t address) {
    const RegisterEntry *entry = EntryAt(address);
    return entry != nullptr && !entry->Name.empty() ? entry->Name : "Unknown";
}

std::string BitsText(int32_t address, int32_t value) {
    const auto labels = LabelsOf(address);
    std::string text;
    for (const std::string_view label : DistinctLabels(address)) {
        const RegisterField field{address, MaskOf(labels, label)};
        text.append(text.empty() ? "" : " ").append(label).append("=");
        text += std::to_string(field.In(value));
    }
    return text;
}

} // namespace ztm::cli
