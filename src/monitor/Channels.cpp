#include "monitor/Channels.h"

#include "common/At.h"
#include "common/Clock.h"
#include "common/Numbers.h"
#include "link/GeneralSubs.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "monitor/Events.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace ztm {
namespace {

constexpr int degreesOffset = 64;
constexpr double fullScalePercent = 100;

constexpr int32_t status1 = 0x4F;
constexpr int32_t status2 = 0x50;
constexpr int32_t status3 = 0x51;
constexpr int alertBit = 0x01; // ALRT of Status3

/// The bits of each status register that belong to a channel.
struct AlertBits {
    int status1;
    int status2;
    int status3;
};
constexpr std::array<AlertBits, ChannelCount> alertBits{{
    {0xC0, 0x80, 0x00}, // LH LL, LT
    {0x38, 0x40, 0x00}, // R1H R1L R1D, R1T
    {0x07, 0x20, 0x00}, // R2H R2L R2D, R2T
    {0x00, 0x00, 0xC0}, // F1S F1A
    {0x00, 0x00, 0x30}, // F2S F2A
    {0x00, 0x10, 0x00}, // %T
}};

constexpr Extremes noExtremes{std::numeric_limits<float>::infinity(),
                              -std::numeric_limits<float>::infinity()};

constexpr double never = std::numeric_limits<double>::quiet_NaN();

std::array<double, ChannelCount> measuredTimes{never, never, never, never, never, never};
std::array<Extremes, ChannelCount> extremes = [] {
    std::array<Extremes, ChannelCount> none{};
    none.fill(noExtremes);
    return none;
}();

double Read(const Channel &channel) {
    switch (channel.Measures) {
    case Quantity::Temperature: {
        const int low = ReadRegister(channel.LowRegister);
        return TemperatureReading(ReadRegister(channel.HighRegister), low);
    }
    case Quantity::FanSpeed:
        return ReadRPM(channel.HighRegister);
    case Quantity::ThermPercent:
        break;
    }
    return PercentOfByte(ReadRegister(channel.HighRegister));
}

} // namespace

std::array<float, ChannelCount> Measurements{};
std::optional<AlertReading> LastAlerts;

std::string_view UnitOf(Quantity quantity) {
    constexpr std::array<std::string_view, 3> units{"°C", "RPM", "%"};
    return At(units, quantity);
}

void ResetMeasurements() {
    Measurements.fill(0);
    measuredTimes.fill(never);
    ResetExtremes();
    LastAlerts.reset();
}

Extremes ExtremesOf(int channel) {
    return At(extremes, channel);
}

void ResetExtremes() {
    extremes.fill(noExtremes);
}

bool IsMeasured(int channel) {
    return !std::isnan(MeasuredTime(channel));
}

double MeasuredTime(int channel) {
    return At(measuredTimes, channel);
}

bool HasChannel(int channel) {
    return channel >= 0 && channel < ChannelCount &&
           (!HasOneFan() || !At(Channels, channel).NameZTM7710.empty());
}

std::string_view ChannelName(int channel) {
    return HasOneFan() ? At(Channels, channel).NameZTM7710 : At(Channels, channel).Name;
}

void ReadMeasurement(int channel) {
    if (HasChannel(channel)) {
        const auto slot = static_cast<size_t>(channel);
        const auto value = static_cast<float>(Read(Channels[slot]));
        Measurements[slot] = value;
        measuredTimes[slot] = RunningSeconds();
        extremes[slot] = {std::min(extremes[slot].least, value),
                          std::max(extremes[slot].greatest, value)};
    }
}

double TemperatureReading(int high, int low) {
    return RoundToDecimals(high - degreesOffset + low / 256.0, 2);
}

int32_t TemperatureByte(double celsius) {
    return std::clamp(ToInt32(celsius + degreesOffset), 0, LargestRegisterValue);
}

int32_t CelsiusOfByte(int32_t value) {
    return value - degreesOffset;
}

int32_t PercentByte(double percent) {
    return std::clamp(ToInt32(percent * LargestRegisterValue / fullScalePercent), 0,
                      LargestRegisterValue);
}

double PercentOfByte(int32_t value) {
    return value * fullScalePercent / LargestRegisterValue;
}

std::array<bool, ChannelCount> ReadAlerts() {
    std::array<bool, ChannelCount> alarms{};
    const int third = ReadRegister(status3);
    if ((third & alertBit) != 0) {
        const int first = ReadRegister(status1);
        const int second = ReadRegister(status2);
        std::transform(alertBits.begin(), alertBits.end(), alarms.begin(),
                       [=](const AlertBits &bits) {
                           return (first & bits.status1) != 0 || (second & bits.status2) != 0 ||
                                  (third & bits.status3) != 0;
                       });
    }
    LastAlerts = {alarms, RunningSeconds()};
    NoteAlarms(alarms);
    return alarms;
}

} // namespace ztm
