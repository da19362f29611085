#pragma once

#include <qcustomplot.h>

namespace ztm {

/// What stands above the traces: the cursor, a line at a time and a box with the readings, and
/// a notice. The plot paints it on the screen; the library only into what is saved, where the
/// notice has no place.
class StripChartOverlay final : public QCPLayerable {
public:
    struct Row {
        QString name;
        QString reading;
        QColor colour;

        bool operator==(const Row &) const = default;
    };

    explicit StripChartOverlay(QCustomPlot *plot);

    /// The cursor at `x` pixels from the left of the plot; none without rows. Returns whether
    /// that changed anything.
    bool ShowCursor(double x, std::vector<Row> readings);
    const std::vector<Row> &Rows() const { return rows; }
    /// Empty when there is nothing to say.
    void SetNotice(const QString &text) { notice = text; }
    void SetPalette(const QPalette &colours, const QFont &textFont);

    void Paint(QPainter &painter) const;

protected:
    void applyDefaultAntialiasingHint(QCPPainter *painter) const override;
    void draw(QCPPainter *painter) override;

private:
    QRectF Plot() const { return mParentPlot->axisRect()->rect(); }
    void PaintCursor(QPainter &painter) const;
    void PaintReadings(QPainter &painter, QRectF line, double indent) const;
    void PaintNotice(QPainter &painter) const;

    QPalette palette;
    QFont font;
    double position = 0; // pixels from the left of the plot
    std::vector<Row> rows;
    QString notice;
};

} // namespace ztm
