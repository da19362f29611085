// The commands that read and write registers.

#include "cli/Commands.h"
#include "cli/ExitCodes.h"
#include "cli/RegisterNames.h"
#include "cli/Values.h"
#include "common/At.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"
#include "regmap/RegMapStuff.h"

#include <algorithm>
#include <memory>

namespace ztm::cli {
namespace {

const std::vector<Column> registerColumns{
    {"address", 4}, {"register", 24}, {"hex", 4, false}, {"value", -5}};
const std::vector<Column> dumpColumns{{"address", 7}, {"register", 24}, {"value", 5},
                                      {"default", 7}, {"changed", 7},   {"bits", 0}};
const std::vector<Column> chipColumns{{"variant", 7}, {"address", 4}};
const std::vector<Column> alertColumns{{"channel", 7}, {"alarm", 0}};

void ShowRegister(Output &out, int32_t address, int32_t value) {
    out.Line(registerColumns,
             {Cell::Hex(address), NameOfRegister(address), Cell::Hex(value), value});
}

/// The value that a write makes of the present one.
int32_t NewValue(const WriteTarget &target, int32_t value) {
    return target.Bits ? target.Bits->With(ReadRegister(target.Address), value) : value;
}

void Write(Session &session, const WriteTarget &target, int32_t value, bool isVerified) {
    const int32_t written = NewValue(target, value);
    WriteRegister(target.Address, written);
    const int32_t held = isVerified ? ReadRegister(target.Address) : written;
    if (session.Out.HowWritten() == Form::Json) {
        ShowRegister(session.Out, target.Address, held);
    }
    if (held != written) {
        throw Failure(AnswerIsNo, std::string(NameOfRegister(target.Address)) + " holds " +
                                      Cell::Hex(held).Text() + ", not " +
                                      Cell::Hex(written).Text());
    }
}

void Dump(Session &session, bool isChangedOnly, bool isAll) {
    session.Out.Heading(dumpColumns);
    for (const RegisterEntry &entry : Registers()) {
        if (!isAll && entry.Access == RegisterAccess::ReadingClears) {
            continue;
        }
        const int32_t value = ReadRegister(entry.Address);
        const bool isChanged = value != entry.Default;
        if (isChanged || !isChangedOnly) {
            session.Out.Line(dumpColumns, {Cell::Hex(entry.Address), entry.Name, Cell::Hex(value),
                                           Cell::Hex(entry.Default), Cell::Bool(isChanged, "*", ""),
                                           BitsText(entry.Address, value)});
        }
    }
}

void ShowAlerts(Session &session) {
    const auto alarms = ReadAlerts();
    const bool isJson = session.Out.HowWritten() == Form::Json;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const bool isOn = At(alarms, channel);
        if (HasChannel(channel) && (isOn || isJson)) {
            session.Out.Line(alertColumns, {ChannelName(channel), Cell::Bool(isOn, "alarm", "")});
        }
    }
    if (!isJson && std::ranges::find(alarms, true) == alarms.end()) {
        Tell("no alarm is on");
    }
}

} // namespace

void AddScan(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("scan", "Find the chip; print its variant and address");
    command->callback([&made] {
        made = [] {
            return Step{[](Session &session) {
                session.Out.Line(
                    chipColumns,
                    {DeviceName, Cell::Hex(session.Settings.Address.value_or(USBDeviceAddress))});
            }};
        };
    });
}

void AddRead(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("read", "Read registers");
    const auto names = std::make_shared<std::vector<std::string>>();
    command->add_option("REG", *names, "Register: 01, 0x01, 01h, or a name")->required();
    command->callback([&made, names] {
        made = [names] {
            std::vector<int32_t> addresses;
            std::ranges::transform(*names, std::back_inserter(addresses), ParseRegister);
            return Step{[addresses](Session &session) {
                for (const int32_t address : addresses) {
                    ShowRegister(session.Out, address, ReadRegister(address));
                }
            }};
        };
    });
}

void AddWrite(CLI::App &grammar, StepMaker &made) {
    struct Typed {
        std::string target;
        std::string value;
        bool isVerified = false;
    };
    auto *command = grammar.add_subcommand("write", "Write a register, or bits of it");
    const auto typed = std::make_shared<Typed>();
    command->add_option("REG", typed->target, "Register, or REG.BIT: 7 to 0 or a label")
        ->required();
    command->add_option("VALUE", typed->value, "Decimal, or hexadecimal as in 0x1F or 1Fh")
        ->required();
    command->add_flag("--verify", typed->isVerified, "Read it back");
    command->callback([&made, typed] {
        made = [typed] {
            const WriteTarget target = ParseTarget(typed->target);
            const int32_t most =
                target.Bits ? target.Bits->In(LargestRegisterValue) : LargestRegisterValue;
            const int32_t value = ParseByte(typed->value, most, typed->target);
            return Step{
                [=](Session &session) { Write(session, target, value, typed->isVerified); }};
        };
    });
}

void AddDump(CLI::App &grammar, StepMaker &made) {
    struct Typed {
        bool isChangedOnly = false;
        bool isAll = false;
    };
    auto *command = grammar.add_subcommand("dump", "Print the register map");
    const auto typed = std::make_shared<Typed>();
    command->add_flag("--changed", typed->isChangedOnly, "Only what differs from its default");
    command->add_flag("--all", typed->isAll, "Registers that reading changes too");
    command->callback([&made, typed] {
        made = [typed] {
            return Step{
                [=](Session &session) { Dump(session, typed->isChangedOnly, typed->isAll); }};
        };
    });
}

void AddAlerts(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("alerts", "Print which alarms are on");
    command->callback([&made] { made = [] { return Step{ShowAlerts}; }; });
}

} // namespace ztm::cli
