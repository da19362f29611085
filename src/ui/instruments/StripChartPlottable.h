#pragma once

#include "ui/instruments/StripChartColumns.h"

#include <qcustomplot.h>

namespace ztm {

/// Time of day of a number of seconds since a midnight, "HH MM SS" or with any other separator.
QString TimeOfDayText(double seconds, QChar separator);
/// The same with decimals of a second, at least one.
QString TimeOfDayText(double seconds, QChar separator, int decimals);

/// Labels a time axis in seconds since a midnight with "HH MM SS" of the time of day.
class TimeOfDayTicker final : public QCPAxisTickerTime {
protected:
    double getTickStep(const QCPRange &range) override;
    QString getTickLabel(double tick, const QLocale &locale, QChar format, int precision) override;
};

/// One trace: in every pixel column a line from the least to the greatest value, reaching to
/// where the column before ended. Gaps stay open; samples further apart than a column are
/// joined by straight lines.
class StripChartPlottable final : public QCPAbstractPlottable {
public:
    StripChartPlottable(QCPAxis *timeAxis, QCPAxis *valueAxis, const StripChartColumns &columns,
                        int channel);

    double selectTest(const QPointF &point, bool onlySelectable, QVariant *details) const override;
    QCPRange getKeyRange(bool &found, QCP::SignDomain domain) const override;
    QCPRange getValueRange(bool &found, QCP::SignDomain domain,
                           const QCPRange &keys) const override;

protected:
    void draw(QCPPainter *painter) override;
    void drawLegendIcon(QCPPainter *painter, const QRectF &rect) const override;

private:
    void CollectSegments();
    void Join(int from, double fromValue, int to, double toValue);
    void AddSegment(int column, double low, double high);

    const StripChartColumns &columns;
    const int channel;
    QVector<QRect> segments; // in device pixels; kept to save the allocation
    double pixelsPerUnit = 1;
    double bottom = 0;
    double left = 0;
    double lowest = 0;
    double ceiling = 0;
    double thickness = 1;
};

/// What the cursor of a chart says: a line at a time, and a box with the readings.
class StripChartCursor final : public QCPLayerable {
public:
    struct Row {
        QString name;
        QString reading;
        QColor colour;
    };

    explicit StripChartCursor(QCustomPlot *plot);

    void Show(double x, std::vector<Row> readings);
    void Hide() { rows.clear(); }
    const std::vector<Row> &Rows() const { return rows; }

    QColor ground;
    QColor ink;

protected:
    void applyDefaultAntialiasingHint(QCPPainter *painter) const override;
    void draw(QCPPainter *painter) override;

private:
    double position = 0; // pixels from the left of the plot
    std::vector<Row> rows;
};

} // namespace ztm
