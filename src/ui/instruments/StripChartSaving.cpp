#include "ui/instruments/StripChartSaving.h"

#include "common/At.h"
#include "ui/instruments/StripChartPlottable.h"

#include <QSaveFile>

#ifdef QT_SVG_LIB
#include <QSvgGenerator>
#endif

#include <cmath>

namespace ztm {
namespace {

#ifdef QT_SVG_LIB
bool SaveSvg(QCustomPlot &plot, const QString &path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    QSvgGenerator generator;
    generator.setOutputDevice(&file);
    generator.setSize(plot.size());
    generator.setResolution(plot.logicalDpiX()); // texts as large as on the screen
    generator.setViewBox(QRect(QPoint(), plot.size()));
    QCPPainter painter;
    if (!painter.begin(&generator)) {
        return false;
    }
    painter.setMode(QCPPainter::pmVectorized);
    plot.toPainter(&painter, plot.width(), plot.height());
    painter.end();
    return file.commit();
}
#endif

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
    if (ending == QLatin1String("pdf")) {
        return plot.savePdf(path, plot.width(), plot.height());
    }
#ifdef QT_SVG_LIB
    if (ending == QLatin1String("svg")) {
        return SaveSvg(plot, path);
    }
#endif
    return ending == QLatin1String("png") &&
           plot.savePng(path, plot.width(), plot.height(), plot.bufferDevicePixelRatio());
}

bool SaveRange(const ChannelHistory &history, double from, double to,
               const std::vector<SavedTrace> &traces, const QString &path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return false;
    }
    const bool single = history.IsRawFrom(from);
    QByteArray line = "Seconds\tTime";
    for (const SavedTrace &trace : traces) {
        const QByteArray name = trace.name.toUtf8();
        line += '\t' + (single ? name : name + " low\t" + name + " high");
    }
    file.write(line + '\n');
    history.Visit(from, to, [&](double time, const auto &lows, const auto &highs) {
        line = QByteArray::number(time, 'f', 3) + '\t' +
               TimeOfDayText(time, QLatin1Char(':'), 3).toLatin1();
        for (const SavedTrace &trace : traces) {
            line += '\t' + Number(At(lows, trace.channel));
            if (!single) {
                line += '\t' + Number(At(highs, trace.channel));
            }
        }
        file.write(line + '\n');
    });
    return file.commit();
}

} // namespace ztm
