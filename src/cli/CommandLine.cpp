#include "cli/CommandLine.h"

#include "adapter/i2c/BusControl.h"
#include "cli/ExitCodes.h"
#include "cli/Values.h"
#include "link/LinkState.h"

#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <limits>

namespace ztm::cli {
namespace {

/// What is typed before the command, as texts.
struct Typed {
    std::string adapter = "usb";
    std::string bus;
    std::string address;
    std::string variant;
};

void AddOptions(CLI::App &grammar, Typed &typed, Options &options) {
    grammar.add_option("--adapter", typed.adapter, "usb, sim or i2c")->capture_default_str();
    grammar.add_option("--bus", typed.bus, "Number of the I2C bus");
    grammar.add_option("--address", typed.address, "7-bit address on the I2C bus, as in 0x2C");
    grammar.add_flag("--memory-address", options.MemoryAddress,
                     "Allow addresses of memory modules");
    grammar.add_option("--variant", typed.variant, "ZTM7710 or ZTM7720");
    grammar.add_flag("--json", options.Json, "One JSON object a line");
    grammar.add_flag("--fast", options.Fast, "Let the simulated board's time jump");
    grammar.add_flag("--keep-heaters", options.KeepHeaters,
                     "Leave heaters on when the run ends before its time");
}

std::string ParseVariant(const std::string &text) {
    constexpr std::array variants{ZTM7710, ZTM7720};
    return text.empty() ? text
                        : std::string(variants.at(
                              static_cast<size_t>(ParseChoice(text, variants, "variant"))));
}

int32_t ParseAddress(const Typed &typed, bool isMemoryAllowed) {
    const int32_t address = ParseI2cAddress(typed.address);
    if (i2c::IsOfMemory(address) && !isMemoryAllowed) {
        throw Refused("--address " + typed.address +
                      ": memory modules live there, and a write can destroy one; "
                      "--memory-address allows it");
    }
    return address;
}

void ParseOptions(const Typed &typed, Options &options, bool isForBuses) {
    constexpr std::array<std::string_view, 3> adapters{"usb", "sim", "i2c"};
    options.Adapter =
        adapters.at(static_cast<size_t>(ParseChoice(typed.adapter, adapters, "adapter")));
    options.Variant = ParseVariant(typed.variant);
    if (options.Fast && options.Adapter != "sim") {
        throw Refused("--fast is for --adapter sim");
    }
    const bool isI2c = options.Adapter == "i2c";
    if (!isI2c && !(typed.bus.empty() && typed.address.empty())) {
        throw Refused("--bus and --address are for --adapter i2c");
    }
    if (isI2c && !isForBuses) {
        if (typed.bus.empty() || typed.address.empty()) {
            throw Refused("--adapter i2c needs --bus and --address; ztm buses lists the buses");
        }
        options.Bus = ParseWhole(typed.bus, 0, std::numeric_limits<int32_t>::max(), "a bus");
        options.Address = ParseAddress(typed, options.MemoryAddress);
    }
}

} // namespace

Request ParseCommandLine(int argumentCount, char *arguments[]) {
    Request request;
    Typed typed;
    CLI::App grammar("Bring up, watch and control a ZTM7710/20 from shells and scripts.", "ztm");
    grammar.fallthrough(); // the options stand behind a command too
    grammar.set_version_flag("--version", "ztm " ZTM_VERSION);
    AddOptions(grammar, typed, request.Settings);
    for (const Command &command : Commands()) {
        command.Add(grammar, request.Command);
    }
    auto *buses = grammar.add_subcommand("buses", "List the I2C buses");
    auto *run = grammar.add_subcommand("run", "Run a script, or lines from standard input");
    std::string script;
    run->add_option("FILE", script, "The script; - for standard input")->required();
    grammar.require_subcommand(1);
    try {
        grammar.parse(argumentCount, arguments);
    } catch (const CLI::Success &success) {
        std::ostringstream text;
        grammar.exit(success, text, text);
        request.Text = text.str();
        return request;
    } catch (const CLI::ParseError &error) {
        throw Refused(ProblemOf(grammar, error) + "; ztm --help tells more");
    }
    request.IsForBuses = buses->parsed();
    if (run->parsed()) {
        request.Script = script;
    }
    ParseOptions(typed, request.Settings, request.IsForBuses);
    return request;
}

} // namespace ztm::cli
