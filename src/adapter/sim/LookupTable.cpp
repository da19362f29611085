#include "adapter/sim/LookupTable.h"

#include "adapter/sim/Encodings.h"

namespace ztm::sim {
namespace {

// Configuration2
constexpr uint8_t linearBit = 0x04;
constexpr uint8_t eightPointBit = 0x08;

constexpr size_t allPoints = 8;
constexpr size_t pointsOfAFan = 4;

struct Point {
    double celsius;
    double rpm;
};

Point ReadPoint(const RegisterFile &registers, size_t point) {
    const auto temperature = static_cast<uint8_t>(LookupTemperature1 + point);
    const auto speed = static_cast<uint8_t>(LookupSpeed1 + 2 * point);
    return {CelsiusOfSteps(StepsOfLimit(registers.Read(temperature))),
            DecodeTach(registers.ReadPair(speed))};
}

} // namespace

double LookUpRpm(const RegisterFile &registers, size_t fan, double celsius) {
    const bool isOneTable = registers.GetVariant() == Variant::ZTM7710 ||
                            registers.IsSet(Configuration2, eightPointBit);
    const size_t first = isOneTable ? 0 : fan * pointsOfAFan;
    const size_t end = isOneTable ? allPoints : first + pointsOfAFan;

    Point below = ReadPoint(registers, first);
    if (celsius < below.celsius) {
        return 0;
    }
    for (size_t point = first + 1; point < end; ++point) {
        const Point next = ReadPoint(registers, point);
        if (celsius < next.celsius) {
            const double share = (celsius - below.celsius) / (next.celsius - below.celsius);
            return registers.IsSet(Configuration2, linearBit)
                       ? below.rpm + (next.rpm - below.rpm) * share
                       : below.rpm;
        }
        below = next;
    }
    return below.rpm;
}

} // namespace ztm::sim
