// What it costs to append a sample of six channels and to repaint a chart of 700 x 400, at 60 s,
// an hour and a day in sight: the strip chart, a plain widget that paints the same picture, and
// the plotting library's own graph fed with every sample. All in one run and in turns, since the
// ratios hold where the times do not.

#include "ui/instruments/StripChart.h"
#include "ui/instruments/StripChartColumns.h"

#include <qcustomplot.h>

#include <QApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <functional>
#include <random>

namespace {

using ztm::ChannelHistory;
using ztm::Extent;

constexpr int channelCount = ChannelHistory::channelCount;
constexpr double interval = 0.030;
constexpr QSize chartSize(700, 400);
constexpr int samplesOfADay = 2'880'000;
const QColor colours[channelCount] = {Qt::red,     Qt::green, Qt::blue,
                                      Qt::magenta, Qt::cyan,  Qt::yellow};

bool IsFan(int channel) {
    return channel == 3 || channel == 4;
}

/// Temperatures and fan speeds that swing over hours, as those of a board do, with some noise.
class Signal {
public:
    ChannelHistory::Values Next() {
        ChannelHistory::Values values{};
        for (int channel = 0; channel < channelCount; ++channel) {
            const double seconds = static_cast<double>(count) * interval;
            const double swing = std::sin(seconds / (2400.0 + 500 * channel));
            const double value = IsFan(channel) ? 6000 + 3000 * swing + 100 * noise(random)
                                                : 40 + 20 * swing + channel + 0.4 * noise(random);
            values[static_cast<size_t>(channel)] = static_cast<float>(value);
        }
        ++count;
        return values;
    }

    double Time() const { return 43200 + static_cast<double>(count) * interval; }

private:
    std::mt19937 random{3};
    std::normal_distribution<double> noise;
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

/// The plotting library's own graph, every sample in it.
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

double CpuMicroseconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) / 1e3;
}

class Times {
public:
    void Take(const std::function<void()> &work) {
        const double start = CpuMicroseconds();
        work();
        times.push_back(CpuMicroseconds() - start);
    }

    double Median() { return Quantile(0.5); }
    double Quantile(double share) {
        std::sort(times.begin(), times.end());
        return times[static_cast<size_t>(share * static_cast<double>(times.size() - 1))];
    }

private:
    std::vector<double> times;
};

/// Puts what was painted on the screen, or where the screen would be.
void Flush() {
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

void Compare(const char *name, double seconds, int rounds, int rawEvery) {
    const int samples = std::min(samplesOfADay, static_cast<int>(seconds / interval));
    Signal source;
    ChannelHistory history;
    for (int sample = 0; sample < samples; ++sample) {
        const double time = source.Time();
        history.Append(time, source.Next());
    }
    Signal rawSource;
    ztm::StripChart chart(history, Setup(seconds));
    PlainChart plain(history, seconds);
    RawChart raw(seconds);
    raw.Fill(rawSource, samples);
    for (QWidget *widget : {static_cast<QWidget *>(&chart), static_cast<QWidget *>(&plain),
                            static_cast<QWidget *>(&raw)}) {
        widget->resize(chartSize);
        widget->show();
    }
    for (int turn = 0; turn < 5; ++turn) {
        Flush();
    }

    Times append, charts, plains, raws;
    for (int round = 0; round < rounds; ++round) {
        const double time = source.Time();
        const auto values = source.Next();
        append.Take([&] { history.Append(time, values); });
        const auto paintChart = [&] {
            charts.Take([&] {
                chart.HistoryChanged();
                Flush();
            });
        };
        const auto paintPlain = [&] {
            plains.Take([&] {
                plain.update();
                Flush();
            });
        };
        // By turns the first, so that neither always finds the caches warm.
        if (round % 2 == 0) {
            paintChart();
            paintPlain();
        } else {
            paintPlain();
            paintChart();
        }
        if (round % rawEvery == 0) {
            raws.Take([&] {
                raw.Append(time, values);
                raw.Follow(time);
                raw.replot(QCustomPlot::rpQueuedReplot);
                Flush();
            });
        }
    }
    const double appended = append.Median();
    const double reference = plains.Median() + appended;
    const double own = charts.Median() + appended;
    std::printf("%-5s reference %7.0f us   strip chart %7.0f us (p99 %7.0f) = %5.2f x   "
                "raw graph %9.0f us = %7.1f x, strip chart %6.1f x faster\n",
                name, reference, own, charts.Quantile(0.99), own / reference, raws.Median(),
                raws.Median() / reference, raws.Median() / own);
    std::printf("      append of six values %.2f us, history %.1f MB\n", appended,
                static_cast<double>(history.Bytes()) / 1e6);
}

void MeasureFillOfADay() {
    Signal source;
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
    std::printf("a day of six channels: %.1f MB, %.3f us for each append\n",
                static_cast<double>(history.Bytes()) / 1e6, each);
    ztm::StripChartColumns columns(history);
    Times rebuild;
    for (int zoom = 0; zoom < 200; ++zoom) {
        const double width = 60.0 / 600 * std::pow(1.037, zoom);
        const auto begin = static_cast<int64_t>(history.LastTime() / width) - 599;
        rebuild.Take([&] { columns.Update(width, begin, 600); });
    }
    std::printf("all columns anew after a zoom, 60 s to a day: median %.0f us, worst %.0f us\n",
                rebuild.Median(), rebuild.Quantile(1));
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    const QApplication application(argumentCount, arguments);
    MeasureFillOfADay();
    Compare("60 s", 60, 600, 1);
    Compare("1 h", 3600, 600, 6);
    Compare("24 h", 86400, 600, 100);
    return 0;
}
