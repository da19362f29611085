// The events of a chart: their ticks, their read-outs and the user's own marks.

#include "ui/instruments/StripChartEvents.h"

#include "common/Clock.h"
#include "ui/instruments/StripChart.h"
#include "ui/instruments/StripChartPlot.h"
#include "ui/kit/Controls.h"

#include <QKeyEvent>

#include <algorithm>
#include <cmath>

namespace ztm {
namespace {

constexpr double cursorReach = 4; // pixels at either side
constexpr size_t mostRead = 4;    // events at the cursor
constexpr int longestMark = 60;   // characters

} // namespace

QStringList StripChartEvents::Between(double from, double to) const {
    QStringList texts;
    if (history != nullptr) {
        const size_t end = history->FirstFrom(to);
        for (size_t index = history->FirstFrom(from); index < end; ++index) {
            texts.append(textOf((*history)[index]));
        }
    }
    return texts;
}

StripChartMarkBox::StripChartMarkBox(const QString &prompt, QWidget *parent) : QLineEdit(parent) {
    setObjectName(QStringLiteral("txtMark"));
    setAccessibleName(prompt);
    setPlaceholderText(prompt);
    setToolTip(tr("Enter keeps the mark, Esc gives it up"));
    setMaxLength(longestMark);
}

void StripChartMarkBox::Close() {
    const bool had = hasFocus();
    hide();
    if (had) {
        parentWidget()->setFocus();
    }
    deleteLater();
}

/// Another window may come between, and the box stays.
void StripChartMarkBox::focusOutEvent(QFocusEvent *event) {
    QLineEdit::focusOutEvent(event);
    if (event->reason() != Qt::ActiveWindowFocusReason && event->reason() != Qt::PopupFocusReason) {
        Close();
    }
}

/// No key reaches the chart behind.
void StripChartMarkBox::keyPressEvent(QKeyEvent *event) {
    const bool isEnter = IsEnter(*event);
    QLineEdit::keyPressEvent(event);
    event->accept();
    if (isEnter || event->key() == Qt::Key_Escape) {
        Close();
    }
}

void StripChart::SetEvents(StripChartEvents shown) {
    events = std::move(shown);
    Redraw();
}

/// Places the ticks of the events in sight if there are others than before, or `anew` if the axis
/// has moved. Returns whether it has.
bool StripChart::ShowTicks(bool anew) {
    if (events.history == nullptr || (!anew && events.history->Version() == shownEvents)) {
        return false;
    }
    shownEvents = events.history->Version();
    const double from = VisibleFrom();
    const double pixelsPerSecond = PlotRect().width() / (VisibleTo() - from);
    const size_t end = events.history->FirstFrom(VisibleTo());
    std::vector<int> ticks;
    for (size_t index = events.history->FirstFrom(from); index < end; ++index) {
        const int x = static_cast<int>(((*events.history)[index].time - from) * pixelsPerSecond);
        if (ticks.empty() || ticks.back() != x) {
            ticks.push_back(x);
        }
    }
    plot->Overlay().SetTicks(std::move(ticks));
    return true;
}

/// The events near `x` pixels from the left of the plot.
QStringList StripChart::EventsAt(double x) const {
    if (events.history == nullptr) {
        return {};
    }
    const QRectF rect = PlotRect();
    const double secondsPerPixel = (VisibleTo() - VisibleFrom()) / rect.width();
    const double time = VisibleFrom() + x * secondsPerPixel;
    const double reach = cursorReach * secondsPerPixel;
    const size_t end = events.history->FirstFrom(time + reach);
    const size_t first = events.history->FirstFrom(time - reach);
    const size_t read = std::min(end, first + mostRead);
    QStringList texts;
    for (size_t index = first; index < read; ++index) {
        texts.append(fontMetrics().elidedText(events.textOf((*events.history)[index]),
                                              Qt::ElideRight, static_cast<int>(rect.width() / 2)));
    }
    if (read < end) {
        texts.append(tr("and %1 more").arg(end - read));
    }
    return texts;
}

/// Asks for the text of a mark at the cursor, or where there is none, at this moment.
void StripChart::AskForMark() {
    const QRectF rect = PlotRect();
    const double time =
        cursorX ? VisibleFrom() + *cursorX / rect.width() * (VisibleTo() - VisibleFrom())
                : RunningSeconds();
    auto *box =
        new StripChartMarkBox(tr("Mark at %1").arg(TimeOfDayText(time, QLatin1Char(':'))), this);
    connect(box, &QLineEdit::returnPressed, this, [this, box, time] {
        const QString text = box->text().simplified();
        emit MarkEntered(time, text.isEmpty() ? tr("Mark") : text);
        Redraw();
    });
    const int wide = fontMetrics().averageCharWidth() * longestMark / 2;
    box->setFixedWidth(std::min(wide, width()));
    box->move(std::clamp(static_cast<int>(rect.left() + cursorX.value_or(rect.width())) - wide / 2,
                         0, width() - box->width()),
              static_cast<int>(rect.top()));
    box->show();
    box->setFocus();
}

void StripChart::ShowTime(double time) {
    // A live chart would run away under the cursor.
    const double latest = std::nextafter(timeWindow.LiveEnd(), 0.0);
    timeWindow.MoveTo(std::min(time + timeWindow.Span() / 2, latest), timeWindow.Span());
    const double fraction = 1 - (timeWindow.End() - time) / timeWindow.Span();
    PutReadout(fraction >= 0 && fraction <= 1 ? std::optional(fraction * PlotRect().width())
                                              : std::nullopt);
    Redraw();
}

} // namespace ztm
