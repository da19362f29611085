#pragma once

#include <QWidget>

#include <functional>
#include <vector>

class QLabel;
class QTableWidget;

namespace ztm {

class ChannelHistory;
class ChartCursors;

/// A trace that is measured: a channel of a history whose times come so many seconds later on the
/// chart.
struct MeasuredTrace {
    const ChannelHistory *history;
    int channel;
    QString name;
    double shift = 0;
};

/// What the measuring cursors come to: a line with the span of time, and a table with a row per
/// trace of the chart, in its unit. Values are those of the history, never of pixels; "≈" marks
/// where only extremes are left of older samples. Shown while both cursors are set.
class MeasurementPanel final : public QWidget {
    Q_OBJECT

public:
    /// `shownTraces` gives those of the chart that is shown, at any time.
    MeasurementPanel(ChartCursors &cursors, std::function<std::vector<MeasuredTrace>()> shownTraces,
                     QWidget *parent);

    /// Call when a history has grown, or other channels are shown.
    void HistoryChanged();
    /// Measures anew. Call when a history has been moved or replaced.
    void ShowMeasurement();

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void ShowRow(int row, const MeasuredTrace &trace);
    void FitTable();
    void ShowSpan();
    QString StepText(const MeasuredTrace &trace) const;
    void Copy() const;

    ChartCursors &cursors;
    const std::function<std::vector<MeasuredTrace>()> traces;
    QLabel *lblSpan;
    QTableWidget *tblMeasurement;
    double shownUntil = 0; // RunningSeconds, of the next time that a growing span is shown
};

} // namespace ztm
