#pragma once

#include <qcustomplot.h>

#include <QStaticText>

#include <array>

namespace ztm {

/// What is drawn above the traces: the cursor (a line at a time and a box with the readings) and a
/// notice. The plot paints it on the screen; the library paints it only into saved pictures,
/// without the notice.
class StripChartOverlay final : public QCPLayerable {
public:
    struct Row {
        QString name;
        QString reading;
        QColor colour;

        bool operator==(const Row &) const = default;
    };

    /// A text on the plot: at its top where the user has to notice it, or instead of traces.
    struct Notice {
        enum class Place { Top, Middle };
        Place place = Place::Top;
        QString text;

        bool operator==(const Notice &) const = default;
    };

    /// A trace whose newest value is beyond its axis.
    struct Mark {
        QString name;
        QColor colour;
        bool above;
        bool rightAxis;
    };

    explicit StripChartOverlay(QCustomPlot *plot);

    /// Shows the cursor at `x` pixels from the left of the plot; none without rows. Returns whether
    /// that changed anything.
    bool ShowCursor(double x, std::vector<Row> readings);
    const std::vector<Row> &Rows() const { return rows; }
    /// An empty text for none. Returns whether that changed anything.
    bool SetNotice(const Notice &shown);
    /// Shows the measuring cursors A and B at `x` pixels from the left of the plot, where that is
    /// within it. Returns whether that changed anything.
    bool ShowMeasuringCursors(const std::array<double, 2> &x);
    void SetMarks(std::vector<Mark> shown) { marks = std::move(shown); }
    /// The mark at a point of the plot's widget; nullptr if there is none.
    const Mark *MarkAt(QPointF point) const;
    /// Where on the time axis there are ticks, in pixels from the left of the plot, in order.
    void SetTicks(std::vector<int> shown) { ticks = std::move(shown); }
    /// The part of the plot's widget that ticks are painted in.
    QRect TickBand() const;
    void SetPalette(const QPalette &colours, const QFont &textFont);

    /// Paints what is within `part` of the plot's widget.
    void Paint(QPainter &painter, const QRect &part) const;

protected:
    void applyDefaultAntialiasingHint(QCPPainter *painter) const override;
    void draw(QCPPainter *painter) override;

private:
    QRectF Plot() const { return mParentPlot->axisRect()->rect(); }
    void PaintCursor(QPainter &painter) const;
    void PaintReadings(QPainter &painter, QRectF line, double indent) const;
    void PaintNotice(QPainter &painter) const;
    std::vector<QRectF> PlacesOfMarks() const;
    void PaintMarks(QPainter &painter) const;
    void PaintMeasuringCursors(QPainter &painter) const;
    void PaintTicks(QPainter &painter, const QRect &part) const;

    QPalette palette;
    QFont font;
    double position = 0; // pixels from the left of the plot
    std::vector<Row> rows;
    Notice notice;
    std::vector<Mark> marks;
    std::array<double, 2> measuringCursors{-1, -1};
    std::array<QStaticText, 2> letters{QStaticText(QStringLiteral("A")),
                                       QStaticText(QStringLiteral("B"))};
    std::vector<int> ticks;
};

} // namespace ztm
