#pragma once

#include <vector>

namespace ztm {

/// The marks of a scale.
struct ScaleMarks {
    std::vector<double> numbered; ///< both ends and the round values between them, ascending
    std::vector<double> small;    ///< the divisions between the numbered ones, ascending
};

/// About seven round intervals from `from` to `to`, meeting both ends if possible. A number too
/// close to an end to be readable beside the end's is left out. A scale of zero length has a single
/// mark.
ScaleMarks MarksFor(double from, double to);

} // namespace ztm
