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

/// A plot with a title and units instead of handles, until it goes.
class Picture {
public:
    Picture(QCustomPlot &drawn, const PictureTexts &texts)
        : plot(drawn)
        , leftLabel(plot.yAxis->label())
        , rightLabel(plot.yAxis2->label())
        , handle(plot.xAxis->upperEnding())
        , title(new QCPTextElement(&plot, texts.title + QLatin1Char('\n') + texts.source,
                                   plot.xAxis->labelFont())) {
        title->setTextColor(plot.xAxis->labelColor());
        plot.plotLayout()->insertRow(0);
        plot.plotLayout()->addElement(0, 0, title);
        SetHandles(QCPLineEnding::esNone);
        SetLabel(*plot.yAxis, leftLabel, texts.leftUnits);
        SetLabel(*plot.yAxis2, rightLabel, texts.rightUnits);
    }

    ~Picture() {
        SetHandles(handle);
        plot.yAxis->setLabel(leftLabel);
        plot.yAxis2->setLabel(rightLabel);
        plot.plotLayout()->remove(title);
        plot.plotLayout()->simplify();
        plot.replot(QCustomPlot::rpQueuedRefresh); // places everything as before at once
    }

    Picture(const Picture &) = delete;
    Picture &operator=(const Picture &) = delete;

    /// That of the plot on the screen, and the title with its distance.
    QSize Size() const {
        const int titleHeight =
            static_cast<const QCPLayoutElement *>(title)->minimumOuterSizeHint().height() +
            plot.plotLayout()->rowSpacing();
        return plot.size() + QSize(0, titleHeight);
    }

    QPixmap Pixels() const {
        return plot.toPixmap(Size().width(), Size().height(), plot.bufferDevicePixelRatio());
    }

    /// Draws lines and texts.
    bool Draw(QPaintDevice &device) const {
        QCPPainter painter;
        if (!painter.begin(&device)) {
            return false;
        }
        painter.setWindow(QRect(QPoint(), Size()));
        painter.setMode(QCPPainter::pmVectorized);
        plot.toPainter(&painter, Size().width(), Size().height());
        return painter.end();
    }

private:
    void SetHandles(const QCPLineEnding &ending) const {
        for (QCPAxis *axis : {plot.xAxis, plot.yAxis, plot.yAxis2}) {
            axis->setLowerEnding(ending);
            axis->setUpperEnding(ending);
        }
    }

    static void SetLabel(QCPAxis &axis, const QString &label, const QString &units) {
        if (!label.isEmpty()) {
            axis.setLabel(QStringLiteral("%1 [%2]").arg(label, units));
        }
    }

    QCustomPlot &plot;
    QString leftLabel;
    QString rightLabel;
    QCPLineEnding handle;
    QCPTextElement *title;
};

bool DrawPdf(const Picture &picture, int dotsPerInch, QIODevice &file) {
    QPdfWriter writer(&file);
    writer.setResolution(dotsPerInch); // texts as large as on the screen
    writer.setPageSize(
        QPageSize(picture.Size(), QPageSize::Point, QString(), QPageSize::ExactMatch));
    writer.setPageMargins({});
    return picture.Draw(writer);
}

#ifdef QT_SVG_LIB
bool DrawSvg(const Picture &picture, int dotsPerInch, QIODevice &file) {
    QSvgGenerator generator;
    generator.setOutputDevice(&file);
    generator.setSize(picture.Size());
    generator.setResolution(dotsPerInch); // texts as large as on the screen
    generator.setViewBox(QRect(QPoint(), picture.Size()));
    return picture.Draw(generator);
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

QPixmap PictureOf(QCustomPlot &plot, const PictureTexts &texts) {
    return Picture(plot, texts).Pixels();
}

bool SavePicture(QCustomPlot &plot, const PictureTexts &texts, const QString &path) {
    const Picture picture(plot, texts);
    const QString ending = path.section(QLatin1Char('.'), -1).toLower();
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    bool isDrawn = false;
    if (ending == QLatin1String("png")) {
        isDrawn = picture.Pixels().save(&bytes, "PNG");
    } else if (ending == QLatin1String("pdf")) {
        isDrawn = DrawPdf(picture, plot.logicalDpiX(), bytes);
    }
#ifdef QT_SVG_LIB
    else if (ending == QLatin1String("svg")) {
        isDrawn = DrawSvg(picture, plot.logicalDpiX(), bytes);
    }
#endif
    return isDrawn && Save(bytes.data(), path);
}

bool SaveRange(const ChannelHistory &history, const SavedRange &range,
               const std::vector<SavedTrace> &traces, const QString &path) {
    const bool single = history.IsRawFrom(range.from);
    QString header = range.source + QStringLiteral("\nSeconds") +
                     (range.elapsed ? QString() : QStringLiteral("\tTime"));
    for (const SavedTrace &trace : traces) {
        for (const char *which : single ? std::vector{""} : std::vector{" low", " high"}) {
            header +=
                QStringLiteral("\t%1%2 [%3]").arg(trace.name, QLatin1String(which), trace.unit);
        }
    }
    const bool hasEvents = range.events.history != nullptr;
    QByteArray text = header.toUtf8() + (hasEvents ? "\tEvent\n" : "\n");
    QByteArray line;
    double since = range.from;
    const auto addLine = [&](double until) {
        if (line.isEmpty()) {
            return; // before the first sample
        }
        if (hasEvents) {
            const QStringList happened = range.events.Between(since, until);
            line += '\t' + happened.join(QStringLiteral("; ")).toUtf8();
        }
        text += line + '\n';
        since = until;
    };
    history.Visit(range.from, range.to, [&](double time, const auto &lows, const auto &highs) {
        addLine(time);
        line = QByteArray::number(time, 'f', 3);
        if (!range.elapsed) {
            line += '\t' + DateText(time).toLatin1() + ' ' +
                    TimeOfDayText(time, QLatin1Char(':'), 3).toLatin1();
        }
        for (const SavedTrace &trace : traces) {
            line += '\t' + Number(At(lows, trace.channel));
            if (!single) {
                line += '\t' + Number(At(highs, trace.channel));
            }
        }
    });
    addLine(range.to);
    return Save(text, path);
}

} // namespace ztm
