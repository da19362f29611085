#include "files/TransferText.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "files/SettingsCode.h"
#include "link/USBComms.h"
#include "regmap/RegMapStuff.h"

#include <array>
#include <charconv>

namespace ztm {
namespace {

constexpr std::array<const char *, 5> kindTexts{"read", "write", "set heaters", "read heaters",
                                                "handshake"};

bool IsAboutRegister(const Transfer &transfer) {
    return transfer.Kind == TransferKind::ReadRegister ||
           transfer.Kind == TransferKind::WriteRegister;
}

std::string DutyText(uint8_t duty) {
    return duty == HeaterUnchanged ? "unchanged" : std::to_string(duty) + " %";
}

} // namespace

std::string KindText(const Transfer &transfer) {
    return At(kindTexts, transfer.Kind);
}

std::string RegisterText(const Transfer &transfer) {
    return IsAboutRegister(transfer)
               ? HexByte(transfer.Address).substr(2) + ' ' + RegisterName(transfer.Address)
               : std::string();
}

std::string ValueText(const Transfer &transfer) {
    if (!transfer.IsDone) {
        return "failed";
    }
    if (IsAboutRegister(transfer)) {
        return HexByte(transfer.Data[0]);
    }
    return transfer.Kind == TransferKind::Handshake
               ? std::string()
               : DutyText(transfer.Data[0]) + ", " + DutyText(transfer.Data[1]);
}

std::string ChangedBits(const Transfer &transfer) {
    if (transfer.Before == NotSeen) {
        return {};
    }
    const int32_t changed = transfer.Before ^ transfer.Data[0];
    const auto slot = FindRegisterByAddress(transfer.Address);
    return BitNames(slot ? At(RegisterMap, *slot) : RegisterEntry{}, changed);
}

std::optional<RegisterSetting> SettingOf(const Transfer &transfer) {
    if (transfer.Kind != TransferKind::WriteRegister || !transfer.IsDone) {
        return std::nullopt;
    }
    return RegisterSetting{transfer.Address, transfer.Data[0]};
}

std::string TransfersAsText(const std::vector<uint64_t> &numbers) {
    std::string text = "Seconds\tWhat\tRegister\tValue\tChanged\tAsked by\n";
    for (const uint64_t number : numbers) {
        const Transfer &transfer = TransferAt(number);
        std::array<char, 32> seconds;
        const auto end = std::to_chars(seconds.begin(), seconds.end(),
                                       transfer.Time - TransferAt(numbers.front()).Time,
                                       std::chars_format::fixed, 6);
        text.append(seconds.begin(), end.ptr)
            .append("\t")
            .append(KindText(transfer))
            .append("\t")
            .append(RegisterText(transfer))
            .append("\t")
            .append(ValueText(transfer))
            .append("\t")
            .append(ChangedBits(transfer))
            .append("\t")
            .append(transfer.Requester)
            .append("\n");
    }
    return text;
}

} // namespace ztm
