#pragma once

#include "ui/instruments/StripChartColumns.h"
#include "ui/kit/Text.h"

#include <qcustomplot.h>

namespace ztm {

/// Labels a time axis in seconds since a midnight with "HH MM SS" of the time of day.
class TimeOfDayTicker final : public QCPAxisTickerTime {
protected:
    double getTickStep(const QCPRange &range) override;
    QString getTickLabel(double tick, const QLocale &locale, QChar format, int precision) override;
};

/// Labels a time axis with the seconds since a start.
class ElapsedTicker final : public QCPAxisTicker {
protected:
    QString getTickLabel(double tick, const QLocale &locale, QChar format, int precision) override;
};

/// Whether the painter paints to a file or the clipboard, not to the screen.
bool IsExport(const QCPPainter &painter);

/// The plot in whole device pixels.
QRect DevicePlotRect(const QCPAxisRect &rect, double ratio);

/// One trace: in every pixel column a line from the lowest to the highest value, extended to where
/// the previous column ended. Gaps stay open; samples further apart than a column are joined by
/// straight lines. On the screen its picture shows it; the library draws it only when saving.
class StripChartPlottable final : public QCPAbstractPlottable {
public:
    StripChartPlottable(QCPAxis *timeAxis, QCPAxis *valueAxis, const StripChartColumns &columns,
                        int channel);

    /// Draws a dashed line from now on.
    void SetDashed() { dashed = true; }

    double selectTest(const QPointF &point, bool onlySelectable, QVariant *details) const override;
    QCPRange getKeyRange(bool &found, QCP::SignDomain domain) const override;
    QCPRange getValueRange(bool &found, QCP::SignDomain domain,
                           const QCPRange &keys) const override;

    /// Positions of values in device pixels.
    struct ValueScale {
        QRect rect; ///< of the plot
        int thickness = 1;
        double highest = 0;       ///< value at the top
        double pixelsPerUnit = 0; ///< 0 where nothing can be drawn
    };
    ValueScale Scale() const;

    /// Paints the columns from index `from` on, in device pixels with the origin at the top left of
    /// the plot. Column `index` is at (origin + index) modulo the number of columns. The column
    /// before `from`, if there is one, must have samples.
    void Paint(QPainter &painter, int from, int origin);

protected:
    QRect clipRect() const override;
    void draw(QCPPainter *painter) override;
    void drawLegendIcon(QCPPainter *painter, const QRectF &rect) const override;

private:
    /// The end of a trace's line so far.
    struct Pen {
        int column = 0;
        float value = Extent::gap;
    };

    Pen PenBefore(int column) const;
    int IndexOf(double time) const;
    void CollectSegments(int from);
    double Join(int from, double fromValue, int to, double toValue);
    void AddDashes(const QRect &segment, int column);
    void AddSegment(int column, double low, double high);

    const StripChartColumns &columns;
    const int channel;
    bool dashed = false;
    QVector<QRect> segments; // in device pixels of the plot; kept to avoid allocation
    ValueScale scale;        // of the current painting, like the next two
    int firstColumn = 0;
    int originColumn = 0;
};

} // namespace ztm
