#pragma once

#include "fan/LookupCurve.h"

#include <string>
#include <string_view>
#include <vector>

namespace ztm {

/// Lookup points as text, as spreadsheets copy and paste them: a line for each point, its
/// temperature in °C and its speed in RPM, apart by a tab.

std::string PointsAsText(const SpeedPoints &points);

/// The points of a text, or why it was refused.
struct ParsedPoints {
    std::vector<SpeedPoint> Points; ///< 1 to 8; none if the text was refused
    int FaultyLine = 0;             ///< from 1; 0 if all lines are points
    bool AreTooMany = false;        ///< the faulty line is behind the eighth point
};

/// Takes 1 to 8 lines, each of two finite decimal numbers apart by a tab. Lines end in LF, CR LF or
/// CR; one empty line may follow the last point. Blanks around a number do not matter. With the
/// first line that is no point, the whole text is refused.
ParsedPoints ParsePoints(std::string_view text);

} // namespace ztm
