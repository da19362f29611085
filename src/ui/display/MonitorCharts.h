#pragma once

#include <QWidget>

namespace ztm {

class StripChart;

/// The three strip charts of the measurements, of which `GraphType` shows one: temperatures and
/// fan speeds, temperatures, fan speeds. They draw from the session's one history.
class MonitorCharts final : public QWidget {
    Q_OBJECT

public:
    /// Distances between the rows of text labels, as fractions of a chart's height.
    struct LabelRows {
        double combined;    ///< in the chart of temperatures and fan speeds
        double temperature; ///< in the others
    };

    MonitorCharts(const LabelRows &rows, QWidget *parent);

    /// Shows the chart that `GraphType` asks for; any other value changes nothing.
    void ShowGraphType();

    /// Gives the labels the names of the session's variant and closes the gaps between them.
    void LayOutForVariant();

    /// To be called when the history has grown.
    void HistoryChanged();

private:
    StripChart *stpTempFan;
    StripChart *stpTemp;
    StripChart *stpFan;
};

} // namespace ztm
