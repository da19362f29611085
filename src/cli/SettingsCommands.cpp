// The commands that keep the chip's settings: in files, and as code.

#include "cli/Commands.h"
#include "cli/ExitCodes.h"
#include "cli/FileCommand.h"
#include "cli/RegisterNames.h"
#include "cli/Values.h"
#include "common/At.h"
#include "files/RegisterComparison.h"
#include "files/SettingsCode.h"
#include "files/SnapshotFile.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "regmap/RegisterValues.h"

#include <limits>
#include <memory>

namespace ztm::cli {
namespace {

const std::vector<Column> recallColumns{{"address", 7}, {"register", 24}, {"now", 4}, {"file", 4}};
const std::vector<Column> diffColumns{
    {"address", 7}, {"register", 24}, {"now", 4}, {"file", 4}, {"bits", 0}};
const std::vector<Column> exportColumns{{"format", 0}, {"text", 0}};

constexpr double withoutPause = std::numeric_limits<double>::infinity();

void SaveSettings(Session & /*session*/, const FileWords &words) {
    const Snapshot saved = SaveSnapshot(words.File);
    if (!saved.Problem.empty()) {
        FailFile(words.File, saved.Problem);
    }
}

/// The registers of a file that is sound; says when it is of the other variant.
std::vector<RegisterSetting> ReadSettings(const std::string &path) {
    const Snapshot snapshot = ReadSnapshot(path);
    if (!snapshot.Problem.empty()) {
        FailFile(path, snapshot.Problem);
    }
    if (!snapshot.Variant.empty() && snapshot.Variant != DeviceName) {
        Tell(path + " was saved from a " + snapshot.Variant + ", this is a " + DeviceName);
    }
    return snapshot.Registers;
}

void RecallSettings(Session &session, const FileWords &words) {
    const auto settings = ReadSettings(words.File);
    if (words.IsDryRun) {
        session.Out.Heading(recallColumns);
    }
    for (const auto &[address, value] : settings) {
        if (words.IsDryRun) {
            session.Out.Line(recallColumns, {Cell::Hex(address), NameOfRegister(address),
                                             Cell::Hex(ReadRegister(address)), Cell::Hex(value)});
        } else {
            WriteRegister(address, value);
        }
    }
}

RegisterValues ReadChip() {
    MapReader reader;
    while (reader.Step(withoutPause)) {
    }
    return reader.Values();
}

/// The registers that can be written and differ; what is measured would always do.
std::vector<ComparedRegister> Differences(const RegisterValues &left, const RegisterValues &right) {
    auto rows = CompareRegisters(left, right, true);
    std::erase_if(rows, [](const ComparedRegister &row) { return !row.CanBeWritten(); });
    return rows;
}

/// A file names what differed from its default when it was saved; the others were at theirs.
void DiffSettings(Session &session, const FileWords &words) {
    RegisterValues inFile = ValuesOf(ReadSettings(words.File));
    const RegisterValues defaults = DefaultValues();
    for (size_t address = 0; address < inFile.size(); ++address) {
        inFile[address] = inFile[address] ? inFile[address] : defaults[address];
    }
    const auto rows = Differences(ReadChip(), inFile);
    for (const ComparedRegister &row : rows) {
        session.Out.Heading(diffColumns);
        session.Out.Line(diffColumns,
                         {Cell::Hex(row.Register->Address), row.Register->Name,
                          Cell::Hex(*row.Left), Cell::Hex(*row.Right), row.DifferingBits()});
    }
    if (!rows.empty()) {
        session.Out.Flush();
        throw Failure(AnswerIsNo,
                      std::to_string(rows.size()) +
                          (rows.size() == 1 ? " register differs" : " registers differ") +
                          " from " + words.File);
    }
}

/// What is typed behind "export".
struct ExportWords {
    std::string format;
    std::string bus;
    std::string address;
};

enum class Format { C, I2cset, Tsv };
constexpr std::array<std::string_view, 3> formats{"c", "i2cset", "tsv"};

struct Place {
    std::optional<int32_t> bus;
    std::optional<int32_t> address;
};

void Export(Session &session, Format format, const Place &place) {
    std::vector<RegisterSetting> settings;
    for (const ComparedRegister &row : Differences(DefaultValues(), ReadChip())) {
        settings.push_back({row.Register->Address, *row.Right});
    }
    settings = InWriteOrder(settings);
    const std::string text = format == Format::C ? SettingsAsC(settings)
                             : format == Format::Tsv
                                 ? SettingsAsText(settings)
                                 : SettingsAsScript(settings, *place.bus, *place.address);
    if (session.Out.HowWritten() == Form::Json) {
        session.Out.Line(exportColumns, {At(formats, format), text});
    } else {
        session.Out.Print(text);
    }
}

Step MakeExport(const ExportWords &words) {
    const auto format = static_cast<Format>(ParseChoice(words.format, formats, "format"));
    Place place;
    if (!words.bus.empty()) {
        place.bus = ParseWhole(words.bus, 0, std::numeric_limits<int32_t>::max(), "a bus");
    }
    if (!words.address.empty()) {
        place.address = ParseI2cAddress(words.address);
    }
    const auto choose = [=](const Options &settings) {
        const Place chosen{place.bus ? place.bus : settings.Bus,
                           place.address ? place.address : settings.Address};
        if (format == Format::I2cset && (!chosen.bus || !chosen.address)) {
            throw Refused("export i2cset needs the bus and the address that the script is for: "
                          "--to-bus N --to-address 0xNN");
        }
        return chosen;
    };
    return {[=](Session &session) { Export(session, format, choose(session.Settings)); },
            {},
            [=](const Options &settings) { choose(settings); }};
}

} // namespace

void AddSnapshot(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("snapshot", "Save, recall and compare settings");
    command->require_subcommand(1);
    AddFileCommand(*command, made,
                   {"save", "Save what differs from the defaults", true, false, SaveSettings});
    AddFileCommand(*command, made,
                   {"recall", "Write the registers of a file", false, true, RecallSettings});
    AddFileCommand(*command, made,
                   {"diff", "Print what differs from a file", false, false, DiffSettings});
}

void AddExport(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("export", "Print the settings as code");
    const auto words = std::make_shared<ExportWords>();
    command->add_option("FORMAT", words->format, "c, i2cset or tsv")->required();
    command->add_option("--to-bus", words->bus, "Bus that an i2cset script is for");
    command->add_option("--to-address", words->address, "7-bit address that it is for");
    command->callback([&made, words] { made = [words] { return MakeExport(*words); }; });
}

} // namespace ztm::cli
