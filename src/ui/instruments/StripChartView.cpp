// The visible part of the history and of the value axes, and the read-out at the cursor.

#include "ui/instruments/ChartCursors.h"
#include "ui/instruments/StripChart.h"
#include "ui/instruments/StripChartPlot.h"
#include "ui/instruments/StripChartSaving.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr double fitMargin = 0.05;

/// The name of a trace of what is laid over.
QString Dashed(const QString &name) {
    return StripChart::tr("%1 dashed").arg(name);
}

} // namespace

QRectF StripChart::PlotRect() const {
    const QRect rect = plot->axisRect()->rect();
    return QRectF(rect).translated(plot->pos());
}

double StripChart::VisibleFrom() const {
    return plot->xAxis->range().lower;
}

double StripChart::VisibleTo() const {
    return plot->xAxis->range().upper;
}

QCPRange StripChart::ValueRange(bool rightAxis) const {
    return (rightAxis && setup.right ? plot->yAxis2 : plot->yAxis)->range();
}

QPointF StripChart::PointOf(double time, double value, bool rightAxis) const {
    const QRectF rect = PlotRect();
    const QCPRange values = ValueRange(rightAxis);
    return {rect.left() + (time - VisibleFrom()) / (VisibleTo() - VisibleFrom()) * rect.width(),
            rect.bottom() - (value - values.lower) / values.size() * rect.height()};
}

void StripChart::PanValues(double fraction) {
    for (QCPAxis *axis : {plot->yAxis, plot->yAxis2}) {
        axis->moveRange(axis->range().size() * fraction);
    }
}

void StripChart::Fit() {
    FitAxis(false);
    FitAxis(true);
}

void StripChart::FitAxis(bool rightAxis) {
    QCPAxis *axis = rightAxis ? plot->yAxis2 : plot->yAxis;
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    for (const auto *trace : plot->Traces()) {
        bool found = false;
        const QCPRange range = trace->getValueRange(found, QCP::sdBoth, {});
        if (found && trace->valueAxis() == axis) {
            low = std::min(low, range.lower);
            high = std::max(high, range.upper);
        }
    }
    if (low <= high) {
        const double margin = high > low ? (high - low) * fitMargin : 1;
        axis->setRange(low - margin, high + margin);
    }
    Redraw();
}

void StripChart::RestoreScales() {
    plot->yAxis->setRange(setup.left.minimum, setup.left.maximum);
    if (setup.right) {
        plot->yAxis2->setRange(setup.right->minimum, setup.right->maximum);
    }
    timeWindow.SetSpan(setup.visibleSeconds);
    Redraw();
}

void StripChart::ShowWholeHistory() {
    timeWindow.ShowAll(columns->Count());
    Redraw();
}

void StripChart::BackToLive() {
    timeWindow.GoLive();
    Redraw();
}

QString StripChart::TimeText(double time, int decimals) const {
    return setup.recorded ? tr("%1 s").arg(ToQString(NumberText(RoundToDecimals(time, decimals))))
                          : TimeOfDayText(time, QLatin1Char(':'), decimals);
}

/// What the read-out says of a trace: the value of the sample that it has been put on, or what is
/// in the column.
QString StripChart::ReadingOf(const StripChartColumns &source, const StripChartSetup::Trace &trace,
                              int column) const {
    const ChannelHistory &read = source.History();
    const Extent &extent = source.At(trace.channel, column);
    if (!extent.any || cursorTime) {
        const double time = cursorTime ? *cursorTime - source.Shift() + sameMoment
                                       : source.HistoryTimeOf(column + 1);
        // Between two samples the older one counts; before the first and after the last, none.
        const bool isAfter = time > read.LastTime() + sameMoment;
        const float held = isAfter ? Extent::gap : read.ValueAt(trace.channel, time);
        return std::isnan(held) ? QStringLiteral("–") : trace.TextOf(held) + trace.unit;
    }
    if (std::isnan(extent.low)) {
        return QStringLiteral("–");
    }
    const QString low = trace.TextOf(extent.low);
    const QString high = trace.TextOf(extent.high);
    return (low == high ? low : low + QStringLiteral(" … ") + high) + trace.unit;
}

/// Whether what the cursor shows has changed.
bool StripChart::UpdateCursor() {
    if (cursorTime) {
        cursorX = PointOf(*cursorTime, 0).x() - PlotRect().left();
        if (*cursorX < 0 || *cursorX > PlotRect().width()) {
            PutReadout({}); // it has gone out of sight
        }
    }
    if (!cursorX || columns->Count() == 0) {
        return plot->Overlay().ShowCursor(0, {});
    }
    const double x = std::clamp(*cursorX, 0.0, PlotRect().width() - 1);
    const int column =
        std::clamp(static_cast<int>(x * plot->bufferDevicePixelRatio()), 0, columns->Count() - 1);
    const double time = cursorTime.value_or(columns->TimeOf(column));
    std::vector<StripChartOverlay::Row> rows;
    const double width = columns->Width();
    const int decimals = cursorTime ? 3 : width >= 1 ? 0 : width > 0.05 ? 1 : 3;
    rows.push_back({TimeText(time, decimals), QString(), QColor()});
    for (size_t index = 0; index < setup.traces.size(); ++index) {
        const auto &trace = setup.traces[index];
        if (history.HasValues(trace.channel)) {
            rows.push_back({setup.NameOf(trace), ReadingOf(*columns, trace, column),
                            plot->Traces()[index]->pen().color()});
        }
    }
    for (size_t index = 0; overlaid && index < setup.traces.size(); ++index) {
        const auto &trace = setup.traces[index];
        if (overlaid->History().HasValues(trace.channel)) {
            rows.push_back({Dashed(setup.NameOf(trace)), ReadingOf(*overlaid, trace, column),
                            plot->Traces()[index]->pen().color()});
        }
    }
    for (const QString &text : EventsAt(x)) {
        rows.push_back({text, QString(), QColor()});
    }
    return plot->Overlay().ShowCursor(x, std::move(rows));
}

void StripChart::RedrawCursor() {
    if (UpdateCursor()) {
        plot->update();
    }
}

QStringList StripChart::CursorText() const {
    QStringList lines;
    for (const auto &row : plot->Overlay().Rows()) {
        lines.append(row.reading.isEmpty() ? row.name : row.name + QLatin1Char(' ') + row.reading);
    }
    return lines;
}

void StripChart::LayOver(const ChannelHistory *other, double shiftSeconds) {
    plot->KeepTraces(setup.traces.size());
    overlaid.reset();
    const bool any = other != nullptr && !other->IsEmpty();
    timeWindow.Include(any ? other->FirstTime() + shiftSeconds : Extent::gap,
                       any ? other->LastTime() + shiftSeconds : Extent::gap);
    if (any) {
        overlaid = std::make_unique<StripChartColumns>(*other, shiftSeconds);
        overlaid->Update(columns->Width(), columns->Begin(), columns->Count());
        for (size_t index = 0; index < setup.traces.size(); ++index) {
            plot->AddTrace(plot->Traces()[index]->valueAxis(), setup.traces[index].channel,
                           *overlaid)
                .SetDashed();
        }
    }
    ApplyPalette();
}

/// As in "ZTM7720, 2026-11-23 14:05:09 to 14:06:09".
QString StripChart::SourceText(double from, double to) const {
    const QLatin1Char colon(':');
    if (setup.recorded) {
        return tr("%1, %2 to %3").arg(device, TimeText(from, 3), TimeText(to, 3));
    }
    const QString firstDay = DateText(from);
    const QString lastDay = DateText(to);
    return tr("%1, %2 %3 to %4")
        .arg(device, firstDay, TimeOfDayText(from, colon),
             (lastDay == firstDay ? QString() : lastDay + QLatin1Char(' ')) +
                 TimeOfDayText(to, colon));
}

PictureTexts StripChart::TextsOfPicture() const {
    return {setup.title, SourceText(VisibleFrom(), VisibleTo()), setup.UnitsOf(false),
            setup.UnitsOf(true)};
}

void StripChart::CopyPicture() const {
    QGuiApplication::clipboard()->setPixmap(PictureOf(*plot, TextsOfPicture()));
}

bool StripChart::SavePicture(const QString &path) const {
    return ztm::SavePicture(*plot, TextsOfPicture(), path);
}

bool StripChart::SaveVisibleRange(const QString &path) const {
    return SaveBetween(VisibleFrom(), VisibleTo(), path);
}

bool StripChart::SaveMeasuredSpan(const QString &path) const {
    const auto [from, to] = cursors->Between().value();
    return SaveBetween(from, to, path);
}

bool StripChart::SaveBetween(double from, double to, const QString &path) const {
    std::vector<SavedHistory> shown{{history, 0, {}}};
    if (overlaid) {
        shown.push_back({overlaid->History(), overlaid->Shift(), {}});
    }
    for (SavedHistory &saved : shown) {
        for (const auto &trace : setup.traces) {
            const QString name = setup.NameOf(trace);
            if (saved.history.HasValues(trace.channel)) {
                saved.traces.push_back(
                    {trace.channel, &saved == &shown.front() ? name : Dashed(name), trace.unit});
            }
        }
    }
    saving = true;
    const bool isSaved =
        SaveRange(shown, {from, to, SourceText(from, to), events, setup.recorded}, path,
                  [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); });
    saving = false;
    return isSaved;
}

} // namespace ztm
