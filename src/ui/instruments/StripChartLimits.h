#pragma once

#include <QColor>

#include <array>
#include <optional>

class QCPAxis;
class QCPItemLine;
class QCustomPlot;

namespace ztm {

/// The limits of one channel, in the unit of its values.
struct LimitLines {
    int channel = -1; ///< none
    std::optional<double> low{};
    std::optional<double> high{};

    bool operator==(const LimitLines &) const = default;
};

/// Thin dashed lines at the limits of a trace, below the traces.
class StripChartLimits {
public:
    /// The plot, which must outlive it, owns the lines.
    explicit StripChartLimits(QCustomPlot &plot);

    /// Shows what there is of `lines` on that axis.
    void Show(const LimitLines &lines, QCPAxis &axis, const QColor &colour);
    void Hide();

private:
    std::array<QCPItemLine *, 2> items; // low, high
};

} // namespace ztm
