#include "ui/instruments/StripChartSaving.h"

#include "common/At.h"
#include "common/WholeFile.h"
#include "ui/instruments/StripChartPlottable.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QPdfWriter>

#ifdef QT_SVG_LIB
#include <QSvgGenerator>
#endif

#include <algorithm>
#include <cmath>
#include <limits>

namespace ztm {
namespace {

constexpr qint64 millisecondsBetween = 3;
constexpr double sameTime = 0.0005; // seconds

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

/// Reads the samples of a history in a time span, some at a time: it may grow meanwhile.
class SampleReader {
public:
    SampleReader(const SavedHistory &source, const SavedRange &range)
        : saved(source)
        , from(range.from - source.shift - sameMoment)
        , to(range.to - source.shift + sameMoment)
        , isSingle(source.history.IsRawFrom(from)) {
        Fill();
    }

    bool IsAtEnd() const { return at == samples.size(); }
    /// Of the next sample, infinite at the end.
    double Time() const {
        return IsAtEnd() ? std::numeric_limits<double>::infinity() : samples[at].time + saved.shift;
    }

    QString Header() const {
        QString header;
        for (const SavedTrace &trace : saved.traces) {
            for (const char *which : isSingle ? std::vector{""} : std::vector{" low", " high"}) {
                header +=
                    QStringLiteral("\t%1%2 [%3]").arg(trace.name, QLatin1String(which), trace.unit);
            }
        }
        return header;
    }

    /// Adds the values of the next sample, if it is before a time, or else empty cells.
    void AddCells(QByteArray &line, double before) {
        const bool isNow = Time() < before;
        for (const SavedTrace &trace : saved.traces) {
            line += '\t' + (isNow ? Number(At(samples[at].lows, trace.channel)) : QByteArray());
            if (!isSingle) {
                line +=
                    '\t' + (isNow ? Number(At(samples[at].highs, trace.channel)) : QByteArray());
            }
        }
        if (isNow && ++at == samples.size()) {
            Fill();
        }
    }

private:
    struct Sample {
        double time;
        ChannelHistory::Values lows;
        ChannelHistory::Values highs;
    };

    /// Samples of the same time are kept together.
    void Fill() {
        constexpr size_t enough = 512;
        samples.clear();
        at = 0;
        const double begin = from;
        from = to;
        saved.history.Visit(begin, to, [&](double time, const auto &lows, const auto &highs) {
            if (samples.size() >= enough && time > samples.back().time) {
                from = time;
                return false;
            }
            // A bin may have begun earlier than it is asked for: only at the start it is new.
            if (isStarted && time < begin) {
                return true;
            }
            samples.push_back({time, lows, highs});
            return true;
        });
        isStarted = true;
    }

    const SavedHistory &saved;
    double from; // what has not been read yet
    double to;
    bool isSingle;
    bool isStarted = false;
    std::vector<Sample> samples;
    size_t at = 0;
};

QString HeaderOf(const std::vector<SampleReader> &readers, const SavedRange &range) {
    QString header = range.source + QStringLiteral("\nSeconds") +
                     (range.elapsed ? QString() : QStringLiteral("\tTime"));
    for (const SampleReader &reader : readers) {
        header += reader.Header();
    }
    return header;
}

QByteArray TimeCells(double time, bool isElapsed) {
    QByteArray cells = QByteArray::number(time, 'f', 3);
    if (!isElapsed) {
        cells += '\t' + DateText(time).toLatin1() + ' ' +
                 TimeOfDayText(time, QLatin1Char(':'), 3).toLatin1();
    }
    return cells;
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

bool SaveRange(const std::vector<SavedHistory> &histories, const SavedRange &range,
               const QString &path, const std::function<void()> &between) {
    std::vector<SampleReader> readers;
    for (const SavedHistory &saved : histories) {
        readers.emplace_back(saved, range);
    }
    const bool hasEvents = range.events.history != nullptr;
    QByteArray text = HeaderOf(readers, range).toUtf8() + (hasEvents ? "\tEvent\n" : "\n");
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
    QElapsedTimer working;
    working.start();
    while (std::any_of(readers.begin(), readers.end(), [](auto &one) { return !one.IsAtEnd(); })) {
        const double time =
            std::min_element(readers.begin(), readers.end(), [](auto &one, auto &other) {
                return one.Time() < other.Time();
            })->Time();
        addLine(time);
        line = TimeCells(time, range.elapsed);
        for (SampleReader &reader : readers) {
            reader.AddCells(line, time + sameTime);
        }
        if (working.hasExpired(millisecondsBetween)) {
            between();
            working.start();
        }
    }
    addLine(range.to);
    return Save(text, path);
}

} // namespace ztm
