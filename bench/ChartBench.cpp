// The cost of appending a sample of six channels and repainting a chart of 700 x 400 that shows 60
// s, an hour and a day: the strip chart, alone and with two cursors and 200 events in sight, a
// plain widget that paints the same picture, the plotting library's own graph fed with every sample
// and, if installed, another library fed with the columns. All in one run and in turns, since the
// ratios are stable when the times are not. Fails if the strip chart costs too much.

#include "Measure.h"
#include "ui/instruments/ChartCursors.h"
#include "ui/instruments/StripChart.h"
#include "ui/instruments/StripChartColumns.h"

#include <qcustomplot.h>

#include <QApplication>
#include <QPainter>

#ifdef ZTM_BENCH_QT_CHARTS
#include <QChart>
#include <QChartView>
#include <QLineSeries>
#include <QValueAxis>
#endif

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include <malloc.h>

namespace {

using ztm::ChannelHistory;
using ztm::Extent;
using ztm::bench::CpuMicroseconds;
using ztm::bench::Table;
using ztm::bench::Times;

constexpr int channelCount = ChannelHistory::channelCount;
constexpr double interval = 0.030;
constexpr QSize chartSize(700, 400);
constexpr int samplesOfADay = 2'880'000;
const QColor colours[channelCount] = {Qt::red,     Qt::green, Qt::blue,
                                      Qt::magenta, Qt::cyan,  Qt::yellow};

bool IsFan(int channel) {
    return channel == 3 || channel == 4;
}

/// Temperatures and fan speeds.
class Signal {
public:
    enum class Kind {
        Slow,  ///< swings over hours, like those of a board, with some noise
        Swings ///< swings from one end of the axis to the other at every sample
    };

    explicit Signal(Kind signalKind) : kind(signalKind) {}

    ChannelHistory::Values Next() {
        ChannelHistory::Values values{};
        for (int channel = 0; channel < channelCount; ++channel) {
            values[static_cast<size_t>(channel)] =
                static_cast<float>(kind == Kind::Slow ? Slow(channel) : Swinging(channel));
        }
        ++count;
        time += interval;
        return values;
    }

    double Time() const { return time; }
    void Skip(double seconds) { time += seconds; }

private:
    double Slow(int channel) {
        const double seconds = static_cast<double>(count) * interval;
        const double swing = std::sin(seconds / (2400.0 + 500 * channel));
        return IsFan(channel) ? 6000 + 3000 * swing + 100 * noise(random)
                              : 40 + 20 * swing + channel + 0.4 * noise(random);
    }

    double Swinging(int channel) const {
        const bool high = count % 2 == 0;
        return IsFan(channel) ? (high ? 14000 : 500) + channel : (high ? 120 : -50) + channel;
    }

    Kind kind;
    std::mt19937 random{3};
    std::normal_distribution<double> noise;
    double time = 43200;
    int64_t count = 0;
};

/// The reference: axes, labels and traces painted by hand, the traces from the same columns.
class PlainChart : public QWidget {
public:
    PlainChart(const ChannelHistory &source, double seconds)
        : history(source), columns(source), span(seconds) {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

protected:
    void paintEvent(QPaintEvent * /*event*/) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        const QRect plot = rect().adjusted(55, 12, -60, -30);
        const double width = span / plot.width();
        const auto begin =
            static_cast<int64_t>(std::floor(history.LastTime() / width)) + 1 - plot.width();
        columns.Update(width, begin, plot.width());
        PaintAxes(painter, plot, static_cast<double>(begin) * width);
        painter.setClipRect(plot);
        for (int channel = 0; channel < channelCount; ++channel) {
            PaintTrace(painter, plot, channel);
        }
        painter.setClipping(false);
        for (int label = 0; label < channelCount; ++label) {
            painter.setPen(colours[label]);
            painter.drawText(80, 40 + 20 * label, QStringLiteral("Channel"));
        }
    }

private:
    void PaintAxes(QPainter &painter, const QRect &plot, double start) {
        const QColor grid(210, 210, 210);
        painter.setPen(Qt::black);
        painter.drawRect(plot);
        for (int tick = 1; tick < 7; ++tick) {
            const int y = plot.bottom() - plot.height() * tick / 7;
            painter.setPen(grid);
            painter.drawLine(plot.left(), y, plot.right(), y);
            painter.setPen(Qt::black);
            painter.drawText(5, y, QString::number(tick * 20));
            painter.drawText(plot.right() + 5, y, QString::number(tick * 2000));
        }
        for (int tick = 0; tick < 6; ++tick) {
            const int x = plot.left() + plot.width() * tick / 6;
            const auto seconds = static_cast<int>(start + span * tick / 6) % 86400;
            painter.setPen(grid);
            painter.drawLine(x, plot.top(), x, plot.bottom());
            painter.setPen(Qt::black);
            painter.drawText(x - 20, plot.bottom() + 20,
                             QStringLiteral("%1 %2 %3")
                                 .arg(seconds / 3600)
                                 .arg(seconds / 60 % 60)
                                 .arg(seconds % 60));
        }
    }

    void PaintTrace(QPainter &painter, const QRect &plot, int channel) {
        const double scale = plot.height() / (IsFan(channel) ? 15000.0 : 182.0);
        const double lowest = IsFan(channel) ? 0 : -55;
        lines.clear();
        float last = Extent::gap;
        for (int column = 0; column < columns.Count(); ++column) {
            const Extent &extent = columns.At(channel, column);
            if (extent.low <= extent.high) {
                const int low = qRound((std::fmin(extent.low, last) - lowest) * scale);
                const int high = qRound((std::fmax(extent.high, last) - lowest) * scale);
                const int x = plot.left() + column;
                lines.append(QLine(x, plot.bottom() - low, x, plot.bottom() - high));
                last = extent.last;
            }
        }
        painter.setPen(colours[channel]);
        painter.drawLines(lines);
    }

    const ChannelHistory &history;
    ztm::StripChartColumns columns;
    double span;
    QVector<QLine> lines;
};

/// The plotting library's own graph with every sample.
class RawChart : public QCustomPlot {
public:
    explicit RawChart(double seconds) : span(seconds) {
        setPlottingHints(QCP::phCacheLabels);
        setNotAntialiasedElements(QCP::aeAll);
        yAxis->setRange(-55, 127);
        yAxis2->setRange(0, 15000);
        yAxis2->setVisible(true);
        for (int channel = 0; channel < channelCount; ++channel) {
            addGraph(xAxis, IsFan(channel) ? yAxis2 : yAxis)->setPen(QPen(colours[channel], 1));
            graph(channel)->setAdaptiveSampling(true);
        }
    }

    void Append(double time, const ChannelHistory::Values &values) {
        for (int channel = 0; channel < channelCount; ++channel) {
            graph(channel)->addData(time, values[static_cast<size_t>(channel)]);
            graph(channel)->data()->removeBefore(time - span);
        }
    }

    void Fill(Signal &source, int samples) {
        QVector<QCPGraphData> data[channelCount];
        for (int sample = 0; sample < samples; ++sample) {
            const double time = source.Time();
            const auto values = source.Next();
            for (size_t channel = 0; channel < channelCount; ++channel) {
                data[channel].append(QCPGraphData(time, values[channel]));
            }
        }
        for (int channel = 0; channel < channelCount; ++channel) {
            graph(channel)->data()->set(data[channel], true);
        }
    }

    void Follow(double time) { xAxis->setRange(time - span, time); }

private:
    double span;
};

ztm::StripChartSetup Setup(double seconds) {
    using Label = ztm::StripChartSetup::Label;
    ztm::StripChartSetup setup;
    setup.left = {-55, 127};
    setup.right = ztm::StripChartSetup::ValueAxis{0, 15000};
    setup.visibleSeconds = seconds;
    setup.labels.push_back({"Temperature", Label::Place::LeftAxisTitle, {}, {}});
    setup.labels.push_back({"Fan Speed", Label::Place::RightAxisTitle, {}, {}});
    for (int channel = 0; channel < channelCount; ++channel) {
        setup.traces.push_back({channel, "Channel", colours[channel], IsFan(channel), QString()});
        setup.labels.push_back(
            {"Channel", Label::Place::AtPosition, {0.15, 0.05 + 0.06 * channel}, colours[channel]});
    }
    return setup;
}

#ifdef ZTM_BENCH_QT_CHARTS
/// Lines that get the low and high of every column with each sample.
class LineSeriesChart : public QChartView {
public:
    LineSeriesChart(const ChannelHistory &source, double seconds)
        : history(source), columns(source), span(seconds) {
        auto *chart = new QChart; // the view takes ownership
        auto *temperature = new QValueAxis(chart);
        auto *fan = new QValueAxis(chart);
        time = new QValueAxis(chart);
        temperature->setRange(-55, 127);
        fan->setRange(0, 15000);
        chart->addAxis(time, Qt::AlignBottom);
        chart->addAxis(temperature, Qt::AlignLeft);
        chart->addAxis(fan, Qt::AlignRight);
        for (int channel = 0; channel < channelCount; ++channel) {
            auto *line = new QLineSeries(chart);
            line->setPen(QPen(colours[channel], 1));
            chart->addSeries(line);
            line->attachAxis(time);
            line->attachAxis(IsFan(channel) ? fan : temperature);
            lines.push_back(line);
        }
        setChart(chart);
        setRenderHint(QPainter::Antialiasing, false);
    }

    void Follow() {
        constexpr int count = 600;
        const double width = span / count;
        const auto begin = static_cast<int64_t>(std::floor(history.LastTime() / width)) + 1 - count;
        columns.Update(width, begin, count);
        for (int channel = 0; channel < channelCount; ++channel) {
            points.clear();
            for (int column = 0; column < count; ++column) {
                const Extent &extent = columns.At(channel, column);
                if (extent.low <= extent.high) {
                    points.append({columns.TimeOf(column), extent.low});
                    points.append({columns.TimeOf(column), extent.high});
                }
            }
            lines[static_cast<size_t>(channel)]->replace(points);
        }
        time->setRange(columns.TimeOf(0), columns.TimeOf(count));
    }

private:
    const ChannelHistory &history;
    ztm::StripChartColumns columns;
    double span;
    QValueAxis *time;
    std::vector<QLineSeries *> lines;
    QList<QPointF> points;
};
#endif

/// Flushes painting to the screen, or to the offscreen substitute.
void Flush() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

/// All charts of one span, filled with that much history.
class Contest {
public:
    Contest(std::string title, double seconds, Signal::Kind kind)
        : name(std::move(title))
        , span(seconds)
        , source(kind)
        , chart(history, Setup(seconds))
        , measuring(history, Setup(seconds))
        , plain(history, seconds)
        , raw(seconds)
#ifdef ZTM_BENCH_QT_CHARTS
        , lines(history, seconds)
#endif
    {
        const int samples = std::min(samplesOfADay, static_cast<int>(seconds / interval));
        for (int sample = 0; sample < samples; ++sample) {
            Append();
        }
        Signal rawSource(kind);
        raw.Fill(rawSource, samples);
        measuring.ShareCursors(cursors);
        measuring.SetEvents({&events, {}});
        std::vector<QWidget *> widgets{&chart, &measuring, &plain, &raw};
#ifdef ZTM_BENCH_QT_CHARTS
        widgets.push_back(&lines);
#endif
        for (QWidget *widget : widgets) {
            widget->resize(chartSize);
            widget->show();
        }
        Happen();
        for (int turn = 0; turn < 5; ++turn) {
            Flush();
        }
    }

    void Run(int rounds, int rawEvery) {
        for (int round = 0; round < rounds; ++round) {
            append.Take([this] { Append(); });
            PaintInTurns(round, charts, measurings, plains);
            if (round % rawEvery == 0) {
                raws.Take([this] {
                    raw.Append(time, values);
                    raw.Follow(time);
                    raw.replot(QCustomPlot::rpQueuedReplot);
                    Flush();
                });
            }
#ifdef ZTM_BENCH_QT_CHARTS
            if (round % 20 == 0) {
                series.Take([this] {
                    lines.Follow();
                    Flush();
                });
            }
#endif
        }
        // Then samples a column apart, so that the time axis moves with each.
        for (int round = 0; round < rounds; ++round) {
            source.Skip(span / 550);
            Append();
            PaintInTurns(round, movingCharts, movingMeasurings, movingPlains);
        }
    }

    void Report(Table &table) const {
        const double added = append.Median();
        const double own = Own();
        const double reference = plains.Median() + added;
        Table::Heading(name.c_str());
        Table::Figure("plain painter (the reference), median", reference, "us");
        Table::Figure("strip chart, median", own, "us");
        Table::Figure("strip chart, mean", charts.Mean() + added, "us");
        Table::Figure("strip chart, 99th percentile", charts.Quantile(0.99), "us");
        Table::Figure("plotting library's graph to reference, median", raws.Median() / reference,
                      "x");
#ifdef ZTM_BENCH_QT_CHARTS
        Table::Figure("Qt Charts, given columns only, to reference, median",
                      series.Median() / reference, "x");
#endif
        table.AtMost("strip chart to reference, median", MedianRatio(), 1, "x");
        table.AtMost("strip chart to reference, mean", MeanRatio(), 1, "x");
        table.AtMost("strip chart to reference, time axis moving with each", MovingRatio(), 1, "x");
        table.AtMost("with two cursors and 200 events to reference, median",
                     (measurings.Median() + added) / reference, 1, "x");
        table.AtMost("the same, time axis moving with each",
                     movingMeasurings.Median() / movingPlains.Median(), 1, "x");
    }

    /// Ratio of the strip chart to the reference: append and repaint; MovingRatio: repaint only.
    double MedianRatio() const {
        return Own() / (plains.Median() + append.Median());
    }
    double MeanRatio() const {
        return OwnMean() / (plains.Mean() + append.Mean());
    }
    double MovingRatio() const {
        return movingCharts.Median() / movingPlains.Median();
    }

    /// Times of append and repaint; MovingAxis: repaint only; Raw: the raw graph.
    double Own() const {
        return charts.Median() + append.Median();
    }
    double OwnMean() const {
        return charts.Mean() + append.Mean();
    }
    double MovingAxis() const {
        return movingCharts.Median();
    }
    double Raw() const {
        return raws.Median();
    }

private:
    void Append() {
        time = source.Time();
        values = source.Next();
        history.Append(time, values);
    }

    /// The events and the cursors move along with the axis, so that all of them stay in sight.
    void Happen() {
        while (events.Size() < 200 || events[events.Size() - 200].time < time - 0.99 * span) {
            const bool isFirst = events.Size() == 0;
            events.Add(isFirst ? time - 0.99 * span : events[events.Size() - 1].time + span / 205,
                       -1, "Alarm on");
        }
        if (cursors.Time(0).value_or(0) < time - 0.9 * span) {
            cursors.Set(0, time - 0.5 * span);
            cursors.Set(1, time - 0.1 * span);
        }
    }

    /// Takes turns in which is first and in which comes after which, so that none always finds the
    /// caches warm.
    void PaintInTurns(int round, Times &ownTimes, Times &measuringTimes, Times &referenceTimes) {
        for (int turn = 0; turn < 3; ++turn) {
            switch ((round + (round % 2 == 0 ? turn : 2 - turn)) % 3) {
            case 0:
                ownTimes.Take([this] {
                    chart.HistoryChanged();
                    Flush();
                });
                break;
            case 1:
                measuringTimes.Take([this] {
                    Happen();
                    measuring.HistoryChanged();
                    Flush();
                });
                break;
            default:
                referenceTimes.Take([this] {
                    plain.update();
                    Flush();
                });
            }
        }
    }

    std::string name;
    double span;
    Signal source;
    double time = 0;
    ChannelHistory::Values values{};
    ChannelHistory history;
    ztm::EventHistory events;
    ztm::ChartCursors cursors;
    ztm::StripChart chart;
    ztm::StripChart measuring;
    PlainChart plain;
    RawChart raw;
#ifdef ZTM_BENCH_QT_CHARTS
    LineSeriesChart lines;
    Times series;
#endif
    Times append, charts, measurings, plains, raws, movingCharts, movingMeasurings, movingPlains;
};

void Compare(const char *kindName, Signal::Kind kind, Table &table) {
    const auto run = [&](const char *spanName, double seconds, int rawEvery) {
        auto contest = std::make_unique<Contest>(
            std::string("chart of 700 x 400, ").append(kindName).append(", ") + spanName, seconds,
            kind);
        contest->Run(600, rawEvery);
        contest->Report(table);
        return contest;
    };
    const auto minute = run("60 s", 60, 1);
    run("1 h", 3600, 6);
    const auto day = run("24 h", 86400, 100);
    // The two did not run in turns: their ratios to the reference cancel out the machine's load.
    Table::Heading(std::string("charts over spans, ").append(kindName).c_str());
    table.AtMost("24 h to 60 s, each to its reference, median",
                 day->MedianRatio() / minute->MedianRatio(), 1.5, "x");
    table.AtMost("24 h to 60 s, each to its reference, mean",
                 day->MeanRatio() / minute->MeanRatio(), 1.5, "x");
    table.AtMost("24 h to 60 s, each to its reference, axis moving",
                 day->MovingRatio() / minute->MovingRatio(), 1.5, "x");
    table.AtLeast("24 h, plotting library to strip chart, mean", day->Raw() / day->OwnMean(), 50,
                  "x");
    table.AtLeast("24 h, plotting library to strip chart, axis moving",
                  day->Raw() / day->MovingAxis(), 50, "x");
}

size_t HeapBytes() {
    return mallinfo2().uordblks;
}

/// What two cursors most of a day apart say of six channels, of each the time of a value too that
/// is reached only near the end or never.
void MeasureStatistics(const ChannelHistory &history, Table &table) {
    Times times;
    double sum = 0;
    for (int turn = 0; turn < 500; ++turn) {
        const double from = history.FirstTime() + 3.7 * turn;
        const double to = history.LastTime() - 1.3 * turn;
        times.Take([&] {
            for (int channel = 0; channel < channelCount; ++channel) {
                const float first = history.ValueAt(channel, from);
                const float last = history.ValueAt(channel, to);
                const ztm::Statistics statistics = history.StatisticsOf(channel, from, to);
                const float level = statistics.high + (turn % 2 == 0 ? 1.0F : 0.0F);
                const double reached = history.TimeOfReaching(channel, from, to, first, level);
                sum += statistics.mean + last + (std::isnan(reached) ? 0 : reached);
            }
        });
    }
    if (!std::isfinite(sum)) {
        std::abort();
    }
    table.AtMost("statistics of six channels over a day, median", times.Median(), 2000, "us");
    table.AtMost("statistics of six channels over a day, worst", times.Quantile(1), 2000, "us");
}

void MeasureFillOfADay(Table &table) {
    Signal source(Signal::Kind::Slow);
    ChannelHistory history;
    std::vector<ChannelHistory::Values> some;
    for (int sample = 0; sample < 4096; ++sample) {
        some.push_back(source.Next());
    }
    const double start = CpuMicroseconds();
    for (int sample = 0; sample < samplesOfADay; ++sample) {
        history.Append(sample * interval, some[static_cast<size_t>(sample % 4096)]);
    }
    const double each = (CpuMicroseconds() - start) / samplesOfADay;
    const auto bytes = static_cast<double>(history.Bytes());

    constexpr int chartCount = 6;
    std::vector<std::unique_ptr<ztm::StripChart>> charts;
    const size_t before = HeapBytes();
    for (int chart = 0; chart < chartCount; ++chart) {
        charts.push_back(std::make_unique<ztm::StripChart>(history, Setup(86400)));
        charts.back()->resize(chartSize);
        charts.back()->show();
        Flush();
    }
    Table::Heading("history of a day of six channels at 30 ms");
    table.AtMost("memory", bytes / 1e6, 40, "MB");
    table.AtMost("memory of the history with six charts open, to that",
                 static_cast<double>(history.Bytes()) / bytes, 1, "x");
    Table::Figure("memory of each chart besides, its picture included",
                  static_cast<double>(HeapBytes() - before) / chartCount / 1e6, "MB");
    Table::Figure("append of six values", each, "us");

    ztm::StripChartColumns columns(history);
    Times rebuild;
    for (int zoom = 0; zoom < 200; ++zoom) {
        const double width = 60.0 / 600 * std::pow(1.037, zoom);
        const auto begin = static_cast<int64_t>(history.LastTime() / width) - 599;
        rebuild.Take([&] { columns.Update(width, begin, 600); });
    }
    Table::Figure("all columns anew after a zoom, 60 s to a day, median", rebuild.Median(), "us");
    Table::Figure("all columns anew after a zoom, 60 s to a day, worst", rebuild.Quantile(1), "us");
    MeasureStatistics(history, table);
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    const QApplication application(argumentCount, arguments);
    Table table;
    MeasureFillOfADay(table);
    Compare("slow signals", Signal::Kind::Slow, table);
    Compare("full swing in each column", Signal::Kind::Swings, table);
    return table.ExitCode();
}
