#pragma once

#include <QWidget>

#include <optional>

class QLabel;
class QTableWidget;

namespace ztm {

class ChartCursors;

/// What the measuring cursors come to: a line with the span of time, and a table with a row per
/// channel of the chart. Values are those of the history, never of pixels; "≈" marks where only
/// extremes are left of older samples. Shown while both cursors are set.
class MeasurementPanel final : public QWidget {
    Q_OBJECT

public:
    MeasurementPanel(ChartCursors &cursors, QWidget *parent);

    /// Call when the history has grown, or other channels are shown.
    void HistoryChanged();

private:
    void ShowMeasurement();
    void ShowRow(int row, int channel);
    void ShowSpan();
    void Copy() const;

    ChartCursors &cursors;
    QLabel *lblSpan;
    QTableWidget *tblMeasurement;
    double shownUntil = 0; // RunningSeconds, of the next time that a growing span is shown
};

} // namespace ztm
