#include "ui/instruments/StripChartSaving.h"

#include "common/At.h"
#include "common/WholeFile.h"
#include "ui/instruments/StripChartPlottable.h"

#include <QBuffer>
#include <QPdfWriter>

#ifdef QT_SVG_LIB
#include <QSvgGenerator>
#endif

#include <cmath>

namespace ztm {
namespace {

/// Draws a plot as lines and texts.
bool Draw(QCustomPlot &plot, QPaintDevice &device) {
    QCPPainter painter;
    if (!painter.begin(&device)) {
        return false;
    }
    painter.setWindow(QRect(QPoint(), plot.size()));
    painter.setMode(QCPPainter::pmVectorized);
    plot.toPainter(&painter, plot.width(), plot.height());
    return painter.end();
}

bool DrawPdf(QCustomPlot &plot, QIODevice &file) {
    QPdfWriter writer(&file);
    writer.setResolution(plot.logicalDpiX()); // texts as large as on the screen
    writer.setPageSize(QPageSize(plot.size(), QPageSize::Point, QString(), QPageSize::ExactMatch));
    writer.setPageMargins({});
    return Draw(plot, writer);
}

#ifdef QT_SVG_LIB
bool DrawSvg(QCustomPlot &plot, QIODevice &file) {
    QSvgGenerator generator;
    generator.setOutputDevice(&file);
    generator.setSize(plot.size());
    generator.setResolution(plot.logicalDpiX()); // texts as large as on the screen
    generator.setViewBox(QRect(QPoint(), plot.size()));
    return Draw(plot, generator);
}
#endif

bool Save(const QByteArray &bytes, const QString &path) {
    return SaveFile(QFile::encodeName(path).toStdString(),
                    {bytes.data(), static_cast<size_t>(bytes.size())})
        .empty();
}

QByteArray Number(float value) {
    return std::isnan(value) ? QByteArray() : QByteArray::number(value, 'g', 7);
}

} // namespace

QString PictureKinds() {
    QString kinds = QObject::tr("PNG picture (*.png);;PDF document (*.pdf)");
#ifdef QT_SVG_LIB
    kinds += QObject::tr(";;SVG drawing (*.svg)");
#endif
    return kinds;
}

bool SavePicture(QCustomPlot &plot, const QString &path) {
    const QString ending = path.section(QLatin1Char('.'), -1).toLower();
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    bool isDrawn = false;
    if (ending == QLatin1String("png")) {
        isDrawn = plot.toPixmap(plot.width(), plot.height(), plot.bufferDevicePixelRatio())
                      .save(&bytes, "PNG");
    } else if (ending == QLatin1String("pdf")) {
        isDrawn = DrawPdf(plot, bytes);
    }
#ifdef QT_SVG_LIB
    else if (ending == QLatin1String("svg")) {
        isDrawn = DrawSvg(plot, bytes);
    }
#endif
    return isDrawn && Save(bytes.data(), path);
}

bool SaveRange(const ChannelHistory &history, double from, double to,
               const std::vector<SavedTrace> &traces, const QString &path) {
    const bool single = history.IsRawFrom(from);
    QByteArray line = "Seconds\tTime";
    for (const SavedTrace &trace : traces) {
        const QByteArray name = trace.name.toUtf8();
        line += '\t' + (single ? name : name + " low\t" + name + " high");
    }
    QByteArray text = line + '\n';
    history.Visit(from, to, [&](double time, const auto &lows, const auto &highs) {
        line = QByteArray::number(time, 'f', 3) + '\t' +
               TimeOfDayText(time, QLatin1Char(':'), 3).toLatin1();
        for (const SavedTrace &trace : traces) {
            line += '\t' + Number(At(lows, trace.channel));
            if (!single) {
                line += '\t' + Number(At(highs, trace.channel));
            }
        }
        text += line + '\n';
    });
    return Save(text, path);
}

} // namespace ztm
