// The commands for fans, limits and heaters, in engineering terms.

#include "cli/Commands.h"
#include "cli/ExitCodes.h"
#include "cli/Values.h"
#include "common/At.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "fan/ControlSources.h"
#include "fan/FanCodes.h"
#include "fan/FanOutlook.h"
#include "fan/LookupCurve.h"
#include "fan/LookupTable.h"
#include "fan/ThermFields.h"
#include "link/GeneralSubs.h"
#include "link/Heaters.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"

#include <cmath>
#include <memory>
#include <optional>

namespace ztm::cli {
namespace {

using Words = std::vector<std::string>;

const std::vector<Column> fanColumns{{"fan", -3},   {"control", 9},   {"source", 10}, {"rpm", -7},
                                     {"poles", -5}, {"response", 16}, {"ramp", 13}};
const std::vector<Column> limitColumns{
    {"channel", 10}, {"low", -7}, {"high", -7}, {"therm", -7}, {"unit", 0}};
const std::vector<Column> heaterColumns{{"heater", -6}, {"percent", -7}};

constexpr const char *fanUsage =
    "fan, fan auto, fan manual, fan N rpm|poles|source|response|ramp VALUE, fan transition "
    "steps|linear, or fan points 4|8";
constexpr const char *limitsUsage =
    "limits, limits CHANNEL low|high|therm VALUE, or limits hysteresis CELSIUS";
constexpr const char *heaterUsage = "heater, or heater N PERCENT";

constexpr std::array<std::string_view, 2> controlTypes{"manual", "automatic"};
constexpr std::array<std::string_view, 2> transitions{"steps", "linear"};
constexpr std::array<std::string_view, 2> layouts{"4", "8"};

std::span<const ControlSource> Sources() {
    return HasOneFan() ? std::span<const ControlSource>(OneRemoteControlSources)
                       : std::span<const ControlSource>(ControlSources);
}

std::string_view SourceText(int32_t code) {
    return Sources()[PositionOf(Sources(), code)].Text;
}

// Fans

/// A setting of one fan: a field with its list of choices.
struct FanSetting {
    std::string_view name;
    std::array<RegisterField, 2> fields;
    int32_t (*parse)(std::string_view text);
};

int32_t ParsePoles(std::string_view text) {
    return PolesCode(At(FanPoles, ParseChoice(text, FanPoles, "number of poles")));
}
int32_t ParseSource(std::string_view text) {
    std::vector<std::string_view> names;
    for (const ControlSource &source : Sources()) {
        names.push_back(source.Text);
    }
    return Sources()[static_cast<size_t>(ParseChoice(text, names, "control source"))].Code;
}
int32_t ParseResponse(std::string_view text) {
    return ParseChoice(text, FanResponses, "response");
}
int32_t ParseRamp(std::string_view text) {
    return ParseChoice(text, RampRates, "ramp rate");
}

constexpr std::array<FanSetting, 4> fanSettings{{{"poles", FanPolesFields, ParsePoles},
                                                 {"source", ControlSourceFields, ParseSource},
                                                 {"response", FanResponseFields, ParseResponse},
                                                 {"ramp", RampRateFields, ParseRamp}}};

void ShowFans(Session &session) {
    const bool isAutomatic = ControlTypeField.In(ReadRegister(Configuration1)) != 0;
    session.Out.Heading(fanColumns);
    for (int fan = 0; fan < FanCount(); ++fan) {
        const auto codeOf = [fan](const std::array<RegisterField, 2> &fields) {
            const RegisterField &field = At(fields, fan);
            return field.In(ReadRegister(field.Register));
        };
        ReadMeasurement(SpeedChannel(fan));
        session.Out.Line(fanColumns,
                         {fan + 1, At(controlTypes, isAutomatic ? 1 : 0),
                          SourceText(codeOf(ControlSourceFields)),
                          Cell(static_cast<double>(At(Measurements, SpeedChannel(fan))), 0),
                          Cell(NumericValue(PolesText(codeOf(FanPolesFields))), 0),
                          At(FanResponses, codeOf(FanResponseFields)),
                          At(RampRates, codeOf(RampRateFields))});
    }
}

/// Says which fans would stop at the present temperature if the lookup table drove them.
void WarnOfStoppedFans() {
    AfterRegisterWrite(Configuration2); // the layout of the table
    const SpeedPoints points = ReadPoints();
    const bool isLinear = IsConfig2Bit2Set();
    const int32_t behaviour = ReadRegister(FanBehaviour);
    for (int fan = 0; fan < FanCount(); ++fan) {
        const auto channel = SourceChannel(behaviour, fan);
        if (!channel) {
            continue;
        }
        ReadMeasurement(*channel);
        const auto celsius = static_cast<double>(At(Measurements, *channel));
        if (DemandedRpm(points, CurveOfFan(fan, EightPointMode), isLinear, celsius) == 0) {
            Tell("fan " + std::to_string(fan + 1) + " stops: its lookup table gives no speed at " +
                 "the present " + Cell(celsius, 2).Text() + " °C of " +
                 std::string(ChannelName(*channel)));
        }
    }
}

void SetAutomatic(Session & /*session*/) {
    WarnOfStoppedFans();
    WriteField(ControlTypeField, 1);
}

void SetSpeed(int fan, int32_t rpm) {
    WriteRPM(ManualSpeedRegister(fan), rpm);
    if (ControlTypeField.In(ReadRegister(Configuration1)) != 0) {
        WriteField(ControlTypeField, 0);
        Tell("fan control is manual now");
    }
}

Step MakeFanStep(int fan, const std::string &name, const std::string &value) {
    if (name == "rpm") {
        const double rpm = ParseNumber(value, "a speed");
        if (rpm != std::trunc(rpm) || !IsLookupRpm(rpm)) {
            throw Refused(value + " RPM cannot be held: 0, or whole numbers from " +
                          std::to_string(SlowestLookupRpm) + " to " +
                          std::to_string(FastestLookupRpm));
        }
        return {[=](Session & /*session*/) { SetSpeed(fan, ToInt32(rpm)); }};
    }
    for (const FanSetting &setting : fanSettings) {
        if (setting.name == name) {
            const int32_t code = setting.parse(value);
            const RegisterField field = At(setting.fields, fan);
            return {[=](Session & /*session*/) { WriteField(field, code); }};
        }
    }
    throw Refused('"' + name + "\" is nothing of a fan: rpm, poles, source, response, ramp");
}

Step MakeFieldStep(const RegisterField &field, int32_t code) {
    return {[=](Session & /*session*/) { WriteField(field, code); }};
}

Step MakeFanStep(const Words &words) {
    if (words.empty()) {
        return {ShowFans};
    }
    const std::string &first = words.front();
    if (words.size() == 1 && first == "auto") {
        return {SetAutomatic};
    }
    if (words.size() == 1 && first == "manual") {
        return MakeFieldStep(ControlTypeField, 0);
    }
    if (words.size() == 2 && first == "transition") {
        return MakeFieldStep(TransitionField, ParseChoice(words[1], transitions, "transition"));
    }
    if (words.size() == 2 && first == "points") {
        if (HasOneFan()) {
            throw Refused("this chip has one fan, and one table of eight points");
        }
        return MakeFieldStep(TableLayoutField, ParseChoice(words[1], layouts, "number of points"));
    }
    if (words.size() == 3) {
        return MakeFanStep(ParseWhole(first, 1, FanCount(), "a fan") - 1, words[1], words[2]);
    }
    throw Refused(fanUsage);
}

// Limits

/// A limit of a channel, or none.
struct Limit {
    int32_t address = NoRegister;
    Quantity quantity = Quantity::Temperature;

    Cell InChip() const {
        if (address == NoRegister) {
            return {std::numeric_limits<double>::quiet_NaN(), 0};
        }
        const int32_t value = ReadRegister(address);
        return quantity == Quantity::Temperature ? Cell(CelsiusOfByte(value))
                                                 : Cell(PercentOfByte(value), 2);
    }
};

constexpr std::array<std::string_view, 3> limitNames{"low", "high", "therm"};

Limit LimitOf(int channel, std::string_view name) {
    const Channel &known = At(Channels, channel);
    const bool hasTherm = static_cast<size_t>(channel) < ThermLimits.size();
    const int32_t address = name == "low"    ? known.LowLimit
                            : name == "high" ? known.HighLimit
                            : hasTherm       ? At(ThermLimits, channel)
                                             : NoRegister;
    return {address, known.Measures};
}

bool HasLimits(int channel) {
    return HasChannel(channel) && At(Channels, channel).HighLimit != NoRegister;
}

void ShowLimits(Session &session) {
    session.Out.Heading(limitColumns);
    for (int channel = 0; channel < ChannelCount; ++channel) {
        if (HasLimits(channel)) {
            std::vector<Cell> cells{ChannelName(channel)};
            for (const std::string_view name : limitNames) {
                cells.push_back(LimitOf(channel, name).InChip());
            }
            cells.emplace_back(UnitOf(At(Channels, channel).Measures));
            session.Out.Line(limitColumns, cells);
        }
    }
    const Cell gap(std::numeric_limits<double>::quiet_NaN(), 0);
    session.Out.Line(limitColumns, {"hysteresis", gap, gap,
                                    ThermHysteresisField.In(ReadRegister(ThermHysteresis)),
                                    UnitOf(Quantity::Temperature)});
}

int32_t ParseLimit(const Limit &limit, const std::string &text) {
    if (limit.quantity == Quantity::Temperature) {
        return TemperatureByte(
            ParseWhole(text, lowestCelsius, highestCelsius, "a limit in whole °C"));
    }
    const double percent = ParseNumber(text, "a limit in %");
    if (percent < 0 || percent > 100) {
        throw Refused('"' + text + "\" is not a limit in %: 0 to 100");
    }
    return PercentByte(percent);
}

Step MakeLimitStep(const Words &words) {
    if (words.empty()) {
        return {ShowLimits};
    }
    if (words.size() == 2 && words[0] == "hysteresis") {
        const int32_t celsius = ParseWhole(
            words[1], 0, ThermHysteresisField.In(LargestRegisterValue), "a THERM hysteresis in °C");
        return MakeFieldStep(ThermHysteresisField, celsius);
    }
    if (words.size() != 3) {
        throw Refused(limitsUsage);
    }
    const int channel = ParseChannel(words[0]);
    const std::string_view name = At(limitNames, ParseChoice(words[1], limitNames, "limit"));
    const Limit limit = LimitOf(channel, name);
    if (limit.address == NoRegister) {
        throw Refused(std::string(ChannelName(channel)) + " has no " + std::string(name) +
                      " limit");
    }
    const int32_t value = ParseLimit(limit, words[2]);
    return {[=](Session & /*session*/) { WriteRegister(limit.address, value); }};
}

// Heaters

void ShowHeaters(Session &session) {
    ReadHeaterDuty();
    session.Out.Heading(heaterColumns);
    for (size_t heater = 0; heater < Heaters.size(); ++heater) {
        session.Out.Line(heaterColumns, {static_cast<int32_t>(heater + 1), Heaters[heater].Pwm});
    }
}

void SetHeater(Session &session, int heater, int32_t percent) {
    session.SetHeater(heater, percent);
    ReadHeaterDuty();
    if (At(Heaters, heater).Pwm != percent) {
        throw Failure(AnswerIsNo, "heater " + std::to_string(heater + 1) + " is at " +
                                      std::to_string(At(Heaters, heater).Pwm) + " %, not " +
                                      std::to_string(percent) +
                                      " %: does the adapter have heaters?");
    }
}

Step MakeHeaterStep(const Words &words) {
    if (words.empty()) {
        return {ShowHeaters};
    }
    if (words.size() != 2) {
        throw Refused(heaterUsage);
    }
    const int heater =
        ParseWhole(words[0], 1, static_cast<int32_t>(Heaters.size()), "a heater") - 1;
    const int32_t percent = ParseWhole(words[1], 0, FullDuty, "a duty in %");
    return {[=](Session &session) { SetHeater(session, heater, percent); }};
}

/// A command of free words.
void AddWordCommand(CLI::App &grammar, StepMaker &made, const char *name, const char *what,
                    const char *usage, Step (*make)(const Words &words)) {
    auto *command = grammar.add_subcommand(name, what);
    const auto words = std::make_shared<Words>();
    command->add_option("WORDS", *words, usage);
    command->callback([&made, words, make] { made = [=] { return make(*words); }; });
}

} // namespace

void AddFan(CLI::App &grammar, StepMaker &made) {
    AddWordCommand(grammar, made, "fan", "Show or set fan control", fanUsage, MakeFanStep);
}

void AddLimits(CLI::App &grammar, StepMaker &made) {
    AddWordCommand(grammar, made, "limits", "Show or set temperature and THERM limits", limitsUsage,
                   MakeLimitStep);
}

void AddHeater(CLI::App &grammar, StepMaker &made) {
    AddWordCommand(grammar, made, "heater", "Show or set the board's heaters", heaterUsage,
                   MakeHeaterStep);
}

} // namespace ztm::cli
