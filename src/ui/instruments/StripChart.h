#pragma once

#include "ui/instruments/StripChartDrag.h"
#include "ui/instruments/StripChartSetup.h"
#include "ui/instruments/TimeWindow.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <memory>
#include <optional>

class QCPAxis;
class QCPRange;
class QMenu;

namespace ztm {

class StripChartColumns;
class StripChartLabels;
class StripChartPlot;

/// A chart of measured values over time, drawn from a history that it shares with others and
/// that outlives it. It follows the newest sample until the user moves it away; while it is not
/// visible it costs nothing. Times of the history are seconds since a local midnight, and may go
/// on beyond a day.
///
/// Mouse: drag the arrows at the ends of an axis, or turn the wheel over it, to zoom that axis;
/// drag an axis or the plot to move it; the wheel over the plot zooms time at the pointer; a
/// double click returns to the newest sample. Keys: arrows and Page Up and Down move, + and -
/// zoom time, with Ctrl the values; Home fits the values, End returns to the newest sample, Ctrl
/// and left or right move the cursor, Escape takes it away.
class StripChart : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QStringList labels READ Labels)
    Q_PROPERTY(int traceCount READ TraceCount)
    Q_PROPERTY(bool live READ IsLive)

public:
    StripChart(const ChannelHistory &history, StripChartSetup setup, QWidget *parent = nullptr);
    ~StripChart() override;

    QStringList Labels() const;
    int TraceCount() const { return static_cast<int>(setup.traces.size()); }

    /// The entry must be one of the labels. A label of empty text is not seen.
    void SetLabel(int entry, const QString &text);
    /// The name of a trace in read-outs and files, where its label is empty.
    void SetTraceName(int trace, const QString &name);
    /// Moves the top of a label to that fraction of the chart's height; titles of axes stay.
    void SetLabelVerticalPosition(int entry, double fraction);
    double LabelVerticalPosition(int entry) const;

    /// The newest value of a trace; not-a-number when there is none.
    Q_INVOKABLE double LastValue(int trace) const;

    /// To be called after each Append() to, or Clear() of, the history.
    void HistoryChanged();

    bool IsLive() const { return timeWindow.IsLive(); }
    /// The times at the left and right edge, in seconds.
    double VisibleFrom() const;
    double VisibleTo() const;
    /// The range of a value axis; the left one when there is no right one.
    QCPRange ValueRange(bool rightAxis = false) const;

    /// Where a time and a value on an axis stand, in widget coordinates.
    QPointF PointOf(double time, double value, bool rightAxis = false) const;
    /// What the cursor says, a line each for the time and for every trace with values; empty
    /// while there is no cursor.
    QStringList CursorText() const;

    /// Value axes to the values in sight, with a little room.
    void Fit();
    /// Value axes as they were at the start.
    void RestoreScales();
    /// All that the history still has.
    void ShowWholeHistory();
    void BackToLive();
    void CopyPicture() const;
    /// Writes a PNG, SVG or PDF by the ending of the name; false when that did not succeed.
    bool SavePicture(const QString &path) const;
    /// Writes what is kept of the visible time as tab-separated text, a line per sample; false
    /// when that did not succeed.
    bool SaveVisibleRange(const QString &path) const;

    QSize sizeHint() const override { return {560, 320}; }
    QSize minimumSizeHint() const override { return {200, 140}; }

protected:
    void changeEvent(QEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void SetupAxes();
    void SetupTraces();
    void ApplyPalette();
    bool CanBeSeen() const;
    void Redraw();
    void Follow();
    void BeforeReplot();
    int ColumnCount() const;
    int64_t FirstColumn(double width, int count) const;
    void DescribeLastValues();

    QRectF PlotRect() const;
    StripChartPlace PlaceOf(QPointF point) const;
    QCPAxis *AxisOf(StripChartPlace place) const;
    void PanValues(double fraction);
    void ShowPointer(QPointF point);
    void MoveCursor(double pixels);
    bool MoveByKey(const QKeyEvent &event);

    bool UpdateCursor();
    void RedrawCursor();
    QString ReadingOf(const StripChartSetup::Trace &trace, int column) const;

    void FillMenu(QMenu &menu);
    void AskAndSavePicture();
    void AskAndSaveVisibleRange();

    const ChannelHistory &history;
    StripChartSetup setup;
    TimeWindow timeWindow;
    std::unique_ptr<StripChartColumns> columns;
    StripChartPlot *plot;
    std::unique_ptr<StripChartLabels> labels;
    QPointer<QMenu> menu;
    std::optional<StripChartDrag> drag;
    std::optional<double> cursorX; // pixels from the left of the plot
    QElapsedTimer sinceDescribed;
};

} // namespace ztm
