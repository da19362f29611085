#pragma once

#include "ui/instruments/StripChartDrag.h"
#include "ui/instruments/StripChartEvents.h"
#include "ui/instruments/StripChartLimits.h"
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

class ChartCursors;
class StripChartColumns;
class StripChartLabels;
class StripChartPlot;
struct PictureTexts;

/// A chart of measured values over time, drawn from a shared history that must outlive it. It
/// follows the newest sample until the user moves it away; while it is not visible it costs
/// nothing. Times of the history are seconds since a local midnight, and may exceed a day.
///
/// Mouse: drag the arrows at the ends of an axis, or turn the wheel over it, to zoom that axis;
/// drag an axis or the plot to move it; the wheel over the plot zooms time at the pointer; a double
/// click returns to the newest sample. A trace whose newest value is beyond its axis has an arrow
/// with its name at that edge: a click on it fits the axis. Keys: arrows and Page Up and Down move,
/// + and - zoom time, with Ctrl the values; Home fits the values, End returns to the newest sample,
/// Ctrl and left or right move the read-out, Shift and left or right from sample to sample, Escape
/// removes it. 1 and 2 set the measuring cursors A and B at the read-out, to be dragged by the
/// mouse; they catch a sample that is near. Delete or Escape removes both. M asks for a mark at the
/// read-out, or at this moment where there is none.
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

    /// `entry` must be one of the labels. A label with an empty text is hidden.
    void SetLabel(int entry, const QString &text);
    /// The name of a trace in read-outs and files, used if its label is empty.
    void SetTraceName(int trace, const QString &name);
    /// Moves the top of a label to that fraction of the chart's height; axis titles stay.
    void SetLabelVerticalPosition(int entry, double fraction);
    double LabelVerticalPosition(int entry) const;

    /// Where the values come from, said in saved pictures and ranges.
    void SetDevice(const QString &name) { device = name; }

    /// The newest value of a trace; NaN if there is none.
    Q_INVOKABLE double LastValue(int trace) const;

    /// Shows and moves these cursors, which must outlive the chart, as other charts do.
    void ShareCursors(ChartCursors &shared);

    /// Shows the limits of a channel, if one of the traces is of it, as dashed lines of its colour.
    void SetLimits(const LimitLines &lines);

    /// Shows events as ticks above the time axis, which the cursor reads out, and lets the user ask
    /// for their list and for marks. The history of events must outlive the chart.
    void SetEvents(StripChartEvents shown);

    /// Draws another history over this one, dashed and in the same colours, with its times moved by
    /// so many seconds, in place of the last one; nullptr for none. It must outlive that and is not
    /// followed while it grows.
    void LayOver(const ChannelHistory *other, double shiftSeconds = 0);

    /// Call after each Append() to, or Clear() of, the history.
    void HistoryChanged();

    bool IsLive() const { return timeWindow.IsLive(); }
    /// The times at the left and right edge, in seconds.
    double VisibleFrom() const;
    double VisibleTo() const;
    /// The range of a value axis; the left one if there is no right one.
    QCPRange ValueRange(bool rightAxis = false) const;

    /// The point of a time and a value on an axis, in widget coordinates.
    QPointF PointOf(double time, double value, bool rightAxis = false) const;
    /// The read-out of the cursor: a line for the time and one for every trace with values; empty
    /// without a cursor.
    QStringList CursorText() const;

    /// Fits the value axes to the visible values, with a small margin.
    void Fit();
    void FitAxis(bool rightAxis);
    /// Restores the value axes and the time span of the set-up.
    void RestoreScales();
    /// Shows all that the history still has.
    void ShowWholeHistory();
    void BackToLive();
    /// Moves a time to the middle, as far as the history has it, and the cursor there. The chart
    /// then stands still.
    void ShowTime(double time);
    void CopyPicture() const;
    /// Writes a PNG, SVG or PDF according to the file extension, with a title, the device, the date
    /// and units; false on failure.
    bool SavePicture(const QString &path) const;
    /// Writes what is kept of the visible time as tab-separated text: a line with device and date,
    /// a header with units, and one line per sample; false on failure. Timers and other events, but
    /// none of the user, are served meanwhile.
    bool SaveVisibleRange(const QString &path) const;
    /// The same of the time between the cursors, which must both be set.
    bool SaveMeasuredSpan(const QString &path) const;
    /// Whether one of them is at work. The chart and what it shows must stay until it has ended.
    bool IsSaving() const { return saving; }

    QSize sizeHint() const override { return {560, 320}; }
    QSize minimumSizeHint() const override { return {200, 140}; }

signals:
    /// The user wants the history cleared.
    void ClearWanted();
    /// The user asks for the list of the events.
    void EventsWanted();
    /// A mark of the user's own, of one line.
    void MarkEntered(double time, const QString &text);
    /// The user wants to see a recorded log.
    void OpenLogRequested();

protected:
    bool event(QEvent *event) override;
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
    bool ShowNotice();
    bool ShowOutside(bool anew);
    void ShowLimits();
    bool ShowMeasuringCursors();
    double TimeAt(double x) const;
    double CatchTimeAt(double x) const;
    void PutCursor(int cursor);
    std::optional<int> MeasuringCursorAt(QPointF point) const;
    bool HasMeasuringCursor() const;
    void DescribeLastValues();

    QRectF PlotRect() const;
    StripChartPlace PlaceOf(QPointF point) const;
    QCPAxis *AxisOf(StripChartPlace place) const;
    void PanValues(double fraction);
    void ShowPointer(QPointF point);
    void MoveCursor(double pixels);
    void StepCursor(bool forward);
    void PutReadout(std::optional<double> x);
    bool MoveByKey(const QKeyEvent &event);

    bool UpdateCursor();
    void RedrawCursor();
    bool ShowTicks(bool anew);
    QStringList EventsAt(double x) const;
    void AskForMark();
    QString ReadingOf(const StripChartColumns &source, const StripChartSetup::Trace &trace,
                      int column) const;
    QString TimeText(double time, int decimals) const;

    PictureTexts TextsOfPicture() const;
    void FillMenu(QMenu &menu);
    void AskAndSavePicture();
    void AskAndSaveRange(const QString &title, bool (StripChart::*save)(const QString &) const);
    bool SaveBetween(double from, double to, const QString &path) const;
    QString SourceText(double from, double to) const;

    const ChannelHistory &history;
    StripChartSetup setup;
    QString device;
    TimeWindow timeWindow;
    std::unique_ptr<StripChartColumns> columns;
    std::unique_ptr<StripChartColumns> overlaid; // of what is laid over
    StripChartPlot *plot;
    std::unique_ptr<StripChartLabels> labels;
    StripChartLimits limitItems;
    LimitLines limits;
    StripChartEvents events;
    uint64_t shownEvents = 0;                                // the version whose ticks are shown
    std::array<int, ChannelHistory::channelCount> outside{}; // -1 below, 1 above its axis
    const QString notLiveNotice = tr("Not live: double click or End to return");
    QPointer<QMenu> menu;
    std::optional<StripChartDrag> drag;
    ChartCursors *cursors = nullptr;
    std::optional<int> heldCursor;    // A or B, by the mouse
    double heldFrom = 0;              // where it was grabbed
    std::optional<double> cursorX;    // pixels from the left of the plot
    std::optional<double> cursorTime; // of the sample that it has been put on
    mutable bool saving = false;
    QElapsedTimer sinceDescribed;
};

} // namespace ztm
