#pragma once

#include <vector>

namespace ztm {

/// The marks of a scale.
struct ScaleMarks {
    std::vector<double> numbered; ///< both ends and the round values between them, ascending
    std::vector<double> small;    ///< the divisions between the numbered ones, ascending
};

/// About seven round intervals from `from` to `to`, which meet both ends if possible. A mark too
/// near to an end for its number to be read beside the end's is left out. A scale without a
/// length has a single mark.
ScaleMarks MarksFor(double from, double to);

} // namespace ztm
