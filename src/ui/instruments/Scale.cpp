#include "ui/instruments/Scale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace ztm {
namespace {

struct Steps {
    double numbered;
    int divisions;
};

bool Divides(double step, double value) {
    return std::abs(value / step - std::round(value / step)) < 1e-9;
}

/// Round steps for a scale: about seven of them, meeting its ends if possible.
Steps StepsFor(double from, double to) {
    constexpr double wantedCount = 7;
    constexpr double faultOfAMissedEnd = 0.25;
    struct Candidate {
        double factor;
        int divisions;
    };
    constexpr std::array candidates{Candidate{1, 5}, Candidate{2, 4}, Candidate{2.5, 5},
                                    Candidate{5, 5}};
    const double range = to - from;
    const double decade = std::pow(10, std::floor(std::log10(range / wantedCount)));
    Steps best{range, 1};
    double leastFault = INFINITY;
    for (const Candidate &candidate : candidates) {
        const double step = candidate.factor * decade;
        double fault = std::abs(std::log2(range / step / wantedCount));
        fault += Divides(step, from) ? 0 : faultOfAMissedEnd;
        fault += Divides(step, to) ? 0 : faultOfAMissedEnd;
        if (fault < leastFault) {
            leastFault = fault;
            best = {step, candidate.divisions};
        }
    }
    return best;
}

} // namespace

ScaleMarks MarksFor(double from, double to) {
    // A number or tick closer to an end of the scale than this share of its step is left out in
    // favour of the end's.
    constexpr double leastApart = 0.6;
    ScaleMarks marks{{from}, {}};
    if (to <= from) {
        return marks;
    }
    const auto [step, divisions] = StepsFor(from, to);
    const double division = step / divisions;
    const auto first = static_cast<int64_t>(std::ceil(from / division));
    const auto last = static_cast<int64_t>(std::floor(to / division));
    for (int64_t index = first; index <= last; ++index) {
        const double value = static_cast<double>(index) * division;
        const double fromEnd = std::min(value - from, to - value);
        if (index % divisions == 0 && fromEnd >= leastApart * step) {
            marks.numbered.push_back(value);
        } else if (fromEnd >= leastApart * division) {
            marks.small.push_back(value);
        }
    }
    marks.numbered.push_back(to);
    return marks;
}

} // namespace ztm
