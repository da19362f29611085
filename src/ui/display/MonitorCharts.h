#pragma once

#include <QWidget>

namespace ztm {

class StripChart;
struct LimitLines;
struct StripChartSetup;

/// The traces, axes and labels of the chart of temperatures and fan speeds.
StripChartSetup CombinedChartSetup(double rowHeight);

/// The three strip charts of the measurements: temperatures and fan speeds, temperatures, fan
/// speeds. `GraphType` selects the one shown. All draw from the session's one history.
class MonitorCharts final : public QWidget {
    Q_OBJECT

public:
    /// Distances between the rows of text labels, as fractions of a chart's height.
    struct LabelRows {
        double combined;    ///< in the chart of temperatures and fan speeds
        double temperature; ///< in the others
    };

    MonitorCharts(const LabelRows &rows, QWidget *parent);

    /// Shows the chart that `GraphType` selects; any other value changes nothing.
    void ShowGraphType();

    /// Gives the labels the names of the current variant and closes the gaps between them.
    void LayOutForVariant();

    /// Shows the limits of a channel in all charts.
    void ShowLimits(const LimitLines &lines);

    /// Call when the history has grown.
    void HistoryChanged();

signals:
    /// The user wants to see a recorded log.
    void OpenLogRequested();

private:
    StripChart *stpTempFan;
    StripChart *stpTemp;
    StripChart *stpFan;
};

} // namespace ztm
