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

void WritePoints(const PointNumbers &points) {
    for (int point = 0; point < LookupPoints; ++point) {
        WritePointTemperature(point, At(points, point).Celsius);
    }
    for (int point = 0; point < LookupPoints; ++point) {
        WritePointRpm(point, At(points, point).Rpm);
    }
}

PointNumbers ReadPoints() {
    PointNumbers points;
    for (int point = 0; point < LookupPoints; ++point) {
        At(points, point).Celsius = ReadPointTemperature(point);
    }
    for (int point = 0; point < LookupPoints; ++point) {
        At(points, point).Rpm = ReadRPM(SpeedRegister(point));
    }
    return points;
}

double DemandedRpm(const PointNumbers &points, int fan, bool isLinear, double celsius) {
    const auto speedOf = [](const PointNumber &point) {
        return point.Rpm <= StoppedLookupRpm ? 0 : point.Rpm;
    };
    const auto *below = points.begin() + (EightPointMode ? 0 : fan * PointsPerFan);
    const auto *end = below + (EightPointMode ? LookupPoints : PointsPerFan);
    if (celsius < below->Celsius) {
        return 0;
    }
    for (const auto *next = below + 1; next != end; below = next++) {
        if (celsius < next->Celsius) {
            const double share = (celsius - below->Celsius) / (next->Celsius - below->Celsius);
            return speedOf(*below) + (isLinear ? share * (speedOf(*next) - speedOf(*below)) : 0);
        }
    }
    return speedOf(*below);
}

} // namespace ztm
