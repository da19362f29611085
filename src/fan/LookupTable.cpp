#include "fan/LookupTable.h"

#include "common/At.h"
#include "common/Numbers.h"
#include "link/GeneralSubs.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "monitor/Channels.h"

#include <algorithm>
#include <limits>

namespace ztm {

namespace {

bool eightPointsLoaded = false;
bool fourPointsLoaded = false;

} // namespace

LookupTable EightPointTable{};
LookupTable FourPointTable{};

LookupTable &TableInUse() {
    return EightPointMode ? EightPointTable : FourPointTable;
}

void LoadTableInUse(const LookupTable &points) {
    TableInUse() = points;
    (EightPointMode ? eightPointsLoaded : fourPointsLoaded) = true;
    if (!eightPointsLoaded) {
        EightPointTable = points;
    }
    if (!fourPointsLoaded) {
        FourPointTable = points;
    }
}

void ResetLookupTables() {
    EightPointTable = {};
    FourPointTable = {};
    eightPointsLoaded = false;
    fourPointsLoaded = false;
}

int16_t PointRpm(double rpm) {
    return static_cast<int16_t>(std::clamp<int32_t>(
        ToInt32(rpm), std::numeric_limits<int16_t>::min(), std::numeric_limits<int16_t>::max()));
}

int32_t ReadPointTemperature(int point) {
    return CelsiusOfByte(ReadRegister(TemperatureRegister(point)));
}

void WritePointTemperature(int point, double celsius) {
    WriteRegister(TemperatureRegister(point), TemperatureByte(celsius));
}

void WritePointRpm(int point, double rpm) {
    WriteRPM(SpeedRegister(point), std::clamp(ToInt32(rpm), 0, FastestLookupRpm));
}

void WritePoints(const SpeedPoints &points) {
    for (int point = 0; point < LookupPoints; ++point) {
        WritePointTemperature(point, At(points, point).Celsius);
    }
    for (int point = 0; point < LookupPoints; ++point) {
        WritePointRpm(point, At(points, point).Rpm);
    }
}

SpeedPoints ReadPoints() {
    SpeedPoints points;
    for (int point = 0; point < LookupPoints; ++point) {
        At(points, point).Celsius = ReadPointTemperature(point);
    }
    for (int point = 0; point < LookupPoints; ++point) {
        At(points, point).Rpm = ReadRPM(SpeedRegister(point));
    }
    return points;
}

} // namespace ztm
