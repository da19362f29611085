// The commands for the lookup table.

#include "cli/Commands.h"
#include "cli/ExitCodes.h"
#include "cli/FileCommand.h"
#include "cli/Values.h"
#include "common/At.h"
#include "common/NumberText.h"
#include "fan/LookupTable.h"
#include "files/LutFile.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"

#include <cmath>
#include <memory>

namespace ztm::cli {
namespace {

const std::vector<Column> recallColumns{{"address", 7}, {"register", 24}, {"now", 4}, {"file", 4}};
const std::vector<Column> pointColumns{{"point", -5}, {"fan", -3}, {"celsius", -7}, {"rpm", -7}};

/// The session knows the layout of the table from now on.
void ReadTableLayout() {
    AfterRegisterWrite(Configuration2);
}

void ShowTable(Session &session) {
    ReadTableLayout();
    const SpeedPoints points = ReadPoints();
    session.Out.Heading(pointColumns);
    for (int point = 0; point < LookupPoints; ++point) {
        const int fan = point / PointsPerFan + 1;
        session.Out.Line(pointColumns,
                         {point + 1, EightPointMode ? Cell("") : Cell(fan),
                          Cell(At(points, point).Celsius, 0), Cell(At(points, point).Rpm, 0)});
    }
}

void SaveTable(Session & /*session*/, const FileWords &typed) {
    const SpeedPoints points = ReadPoints();
    std::array<LutPoint, LutPoints> texts;
    for (size_t point = 0; point < texts.size(); ++point) {
        // What reads as this speed cannot be written by it, but by 0.
        const double rpm = points[point].Rpm == StoppedLookupRpm ? 0 : points[point].Rpm;
        texts[point] = {NumberText(points[point].Celsius), NumberText(rpm)};
    }
    if (const std::string problem = SaveLut(typed.File, texts); !problem.empty()) {
        FailFile(typed.File, problem);
    }
}

/// A temperature and a speed that the chip can hold as they are; otherwise says what is wrong.
std::string PointProblem(const SpeedPoint &point) {
    const auto isWhole = [](double number) { return number == std::trunc(number); };
    if (!isWhole(point.Celsius) || point.Celsius < lowestCelsius ||
        point.Celsius > highestCelsius) {
        return NumberText(point.Celsius) + " °C cannot be held: whole degrees from " +
               std::to_string(lowestCelsius) + " to " + std::to_string(highestCelsius);
    }
    if (!isWhole(point.Rpm) || !IsLookupRpm(point.Rpm)) {
        return NumberText(point.Rpm) + " RPM cannot be held: 0, or whole numbers from " +
               std::to_string(SlowestLookupRpm) + " to " + std::to_string(FastestLookupRpm);
    }
    return {};
}

SpeedPoints ReadTableFile(const std::string &path) {
    std::string problem;
    const auto texts = ReadLut(path, problem);
    if (!texts) {
        FailFile(path, problem);
    }
    SpeedPoints points;
    for (size_t point = 0; point < points.size(); ++point) {
        const LutPieces pieces = PiecesOf((*texts)[point]);
        const std::string speed = pieces.RPM.value_or("");
        const auto isNumber = [](const std::string &text) {
            return IsNumber(text) && HasNumber(text) && std::isfinite(NumericValue(text));
        };
        points[point] = {NumericValue(pieces.Temperature), NumericValue(speed)};
        const std::string fault = !isNumber(pieces.Temperature) ? "no temperature"
                                  : !isNumber(speed)            ? "no speed"
                                                                : PointProblem(points[point]);
        if (!fault.empty()) {
            FailFile(path, "point " + std::to_string(point + 1) + ": " + fault);
        }
    }
    return points;
}

void LoadTable(Session & /*session*/, const FileWords &typed) {
    WritePoints(ReadTableFile(typed.File));
}

void AddTableSet(CLI::App &parent, StepMaker &made) {
    auto *command = parent.add_subcommand("set", "Write one point");
    const auto words = std::make_shared<std::array<std::string, 3>>();
    constexpr std::array names{"N", "CELSIUS", "RPM"};
    for (size_t i = 0; i < names.size(); ++i) {
        command->add_option(names[i], (*words)[i])->required();
    }
    command->callback([&made, words] {
        made = [words] {
            const int point = ParseWhole((*words)[0], 1, LookupPoints, "a point") - 1;
            const SpeedPoint number{ParseNumber((*words)[1], "CELSIUS"),
                                    ParseNumber((*words)[2], "RPM")};
            if (const std::string problem = PointProblem(number); !problem.empty()) {
                throw Refused(problem);
            }
            return Step{[=](Session & /*session*/) {
                WritePointTemperature(point, number.Celsius);
                WritePointRpm(point, number.Rpm);
            }};
        };
    });
}

} // namespace

void AddTable(CLI::App &grammar, StepMaker &made) {
    auto *command = grammar.add_subcommand("table", "The lookup table of automatic control");
    command->require_subcommand(1);
    command->add_subcommand("show", "Print the points")->callback([&made] {
        made = [] { return Step{ShowTable}; };
    });
    AddFileCommand(*command, made, {"save", "Save the points to a file", true, false, SaveTable});
    AddFileCommand(*command, made, {"load", "Write the points of a file", false, false, LoadTable});
    AddTableSet(*command, made);
}

} // namespace ztm::cli
