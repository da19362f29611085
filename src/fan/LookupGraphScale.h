#pragma once

namespace ztm {

/// The automatic-control graph: temperature to the right, speed upwards, in twips (1/1440 inch).

inline constexpr double GraphWidth = 4935;
inline constexpr double GraphHeight = 3735;
inline constexpr double GraphCelsius = 150;      ///< across the whole width
inline constexpr double GraphRangeHeight = 3600; ///< of `GraphRpmRange`, from the bottom edge

/// Top of the speed scale of the automatic-control graph in RPM.
extern float GraphRpmRange;

/// Restores the start-of-session value.
void ResetLookupGraphScale();

double TempX(double celsius);
double RPMY(double rpm);
double X2Temp(double x);
double Y2RPM(double y);

} // namespace ztm
