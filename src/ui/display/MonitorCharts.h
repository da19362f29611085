#pragma once

#include <QWidget>

namespace ztm {

class MeasurementPanel;
class StripChart;
struct LimitLines;
struct StripChartSetup;

/// The traces, axes and labels of the chart of temperatures and fan speeds.
StripChartSetup CombinedChartSetup(double rowHeight);

/// The three strip charts of the measurements: temperatures and fan speeds, temperatures, fan
/// speeds. `GraphType` selects the one shown. All draw from the session's one history and share two
/// measuring cursors, below which stands what they measure.
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

    /// Moves a time to the middle of the charts, if the history has it, and the cursor there.
    void ShowTime(double time);

signals:
    /// The user asks for the list of the events.
    void EventsWanted(MonitorCharts *opener);
    /// The user wants to see a recorded log.
    void OpenLogRequested();

private:
    void ClearHistory();

    StripChart *stpTempFan;
    StripChart *stpTemp;
    StripChart *stpFan;
    MeasurementPanel *measurement;
};

} // namespace ztm
