#pragma once

#include "common/ChannelHistory.h"

#include <QColor>
#include <QElapsedTimer>
#include <QPointF>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <optional>
#include <vector>

class QCPAxis;
class QCPItemText;
class QCPRange;
class QMenu;

namespace ztm {

class StripChartColumns;
class StripChartPlot;

/// What a strip chart shows.
struct StripChartSetup {
    struct Trace {
        int channel = 0; ///< of the history
        QString name;
        QColor colour; ///< made lighter or darker where the ground asks for it
        bool rightAxis = false;
        QString unit;
        int decimals = 1; ///< of read-outs
        int label = -1;   ///< the label entry whose text, where not empty, stands for the name
    };
    struct ValueAxis {
        double minimum = 0;
        double maximum = 100;
    };
    struct Label {
        enum class Place { AtPosition, LeftAxisTitle, RightAxisTitle };

        QString text;
        Place place = Place::AtPosition;
        /// Top left corner in fractions of the chart's width and height. Where there is little
        /// room the label keeps to the plot.
        QPointF position;
        QColor colour; ///< invalid: that of the chart's text
    };

    std::vector<Trace> traces;
    ValueAxis left;
    std::optional<ValueAxis> right;
    std::vector<Label> labels;
    double visibleSeconds = 60;
};

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

    bool IsLive() const { return live; }
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
    enum class Part { None, Plot, TimeAxis, LeftAxis, RightAxis };
    enum class Grip { Middle, LowerEnd, UpperEnd };

    struct Place {
        Part part = Part::None;
        Grip grip = Grip::Middle;
    };

    /// What a drag began with.
    struct Drag {
        Place place;
        QPointF start;
        bool moved = false;
        double end = 0;
        double span = 0;
        double lower = 0;
        double upper = 0;
    };

    void SetupAxes();
    void SetupTraces();
    void SetupLabels();
    void PlaceLabels();
    void ApplyPalette();
    bool CanBeSeen() const;
    void Redraw();
    void Follow();
    void BeforeReplot();
    int ColumnCount() const;
    int64_t FirstColumn(double width, int count) const;
    void DescribeLastValues();

    // The time in sight
    double LiveEnd() const;
    void SetWindow(double end, double span);
    void ZoomTimeAt(double factor, double fraction);
    void ZoomTime(double factor);
    void PanTime(double seconds);
    static double ValueSpan(double span);
    void ZoomValues(QCPAxis *axis, double factor, double fraction);
    void PanValues(double fraction);

    // Input
    QRectF PlotRect() const;
    Place PlaceAt(QPointF point) const;
    QCPAxis *AxisOf(Part part) const;
    QPointF FractionOf(QPointF point) const;
    void DragTo(QPointF point);
    void DragTime(QPointF point);
    void DragValues(QPointF point);
    void ShowPointer(QPointF point);
    void MoveCursor(double pixels);
    bool MoveByKey(const QKeyEvent &event);

    // The read-out
    bool UpdateCursor();
    void RedrawCursor();
    QString NameOf(const StripChartSetup::Trace &trace) const;
    QString ReadingOf(const StripChartSetup::Trace &trace, int column) const;

    // The menu
    void FillMenu(QMenu &menu);
    void AskAndSavePicture();
    void AskAndSaveVisibleRange();

    const ChannelHistory &history;
    StripChartSetup setup;
    std::unique_ptr<StripChartColumns> columns;
    StripChartPlot *plot;
    std::vector<QCPItemText *> labelItems; // owned by the plot; nullptr for the title of an axis
    QRectF labelRoom;                      // the plot that the labels have been placed in
    QPointer<QMenu> menu;
    std::optional<Drag> drag;
    std::optional<double> cursorX; // pixels from the left of the plot
    QElapsedTimer sinceDescribed;
    double windowEnd = 0;
    double windowSpan;
    bool live = true;
};

} // namespace ztm
