#include "fan/LookupGraphScale.h"

namespace ztm {

namespace {

constexpr float defaultGraphRpmRange = 8000;

} // namespace

float GraphRpmRange = defaultGraphRpmRange;

void ResetLookupGraphScale() {
    GraphRpmRange = defaultGraphRpmRange;
}

double TempX(double celsius) {
    return celsius * GraphWidth / GraphCelsius;
}

double RPMY(double rpm) {
    return GraphHeight - rpm * GraphRangeHeight / static_cast<double>(GraphRpmRange);
}

double X2Temp(double x) {
    return x * GraphCelsius / GraphWidth;
}

double Y2RPM(double y) {
    return (GraphHeight - y) * static_cast<double>(GraphRpmRange) / GraphRangeHeight;
}

} // namespace ztm
