#pragma once

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <numeric>
#include <vector>

namespace ztm::bench {

inline double Microseconds(clockid_t clock) {
    timespec now{};
    clock_gettime(clock, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

inline double CpuMicroseconds() {
    return Microseconds(CLOCK_PROCESS_CPUTIME_ID);
}

/// Times of pieces of work in microseconds: CPU time unless another clock is given.
class Times {
public:
    explicit Times(clockid_t timesClock = CLOCK_PROCESS_CPUTIME_ID) : clock(timesClock) {}

    template <class Work>
    void Take(const Work &work) {
        const double start = Microseconds(clock);
        work();
        times.push_back(Microseconds(clock) - start);
    }

    double Median() const { return Quantile(0.5); }
    double Mean() const {
        return std::accumulate(times.begin(), times.end(), 0.0) / static_cast<double>(times.size());
    }
    double Quantile(double share) const {
        std::vector<double> sorted = times;
        std::sort(sorted.begin(), sorted.end());
        return sorted[static_cast<size_t>(share * static_cast<double>(sorted.size() - 1))];
    }

private:
    clockid_t clock;
    std::vector<double> times;
};

/// The rows of the benchmark table: figures, with their bounds if they have one, and whether all of
/// them keep these.
class Table {
public:
    static void Heading(const char *what) { std::printf("%s\n", what); }

    static void Figure(const char *what, double value, const char *unit) {
        std::printf("  %-58s %9.2f %s\n", what, value, unit);
    }

    void AtMost(const char *what, double value, double bound, const char *unit) {
        Print(what, value, "at most", bound, unit, value <= bound);
    }
    void AtLeast(const char *what, double value, double bound, const char *unit) {
        Print(what, value, "at least", bound, unit, value >= bound);
    }

    int ExitCode() const { return missed == 0 ? 0 : 1; }

private:
    void Print(const char *what, double value, const char *side, double bound, const char *unit,
               bool ok) {
        std::printf("  %-58s %9.2f %-4s  %-8s %7.2f  %s\n", what, value, unit, side, bound,
                    ok ? "ok" : "MISSED");
        missed += ok ? 0 : 1;
    }

    int missed = 0;
};

} // namespace ztm::bench
