#include "ui/session/StatusBar.h"

#include "common/Clock.h"
#include "monitor/MeasurementLog.h"
#include "monitor/MonitorSettings.h"
#include "ui/instruments/StateLabel.h"
#include "ui/kit/Text.h"

#include <QEvent>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>
#include <vector>

namespace ztm {
namespace {

// Alerts are read at ticks, which come as late as a slow bus lets them.
constexpr double latestTickSeconds = 2;
constexpr double millisecondsPerSecond = 1000;

QString ClockText(double time) {
    return TimeOfDayText(time, QLatin1Char(':'));
}

/// A number of bytes in the largest unit of which there is at least one.
QString SizeText(long bytes) {
    static constexpr std::array units{"B", "kB", "MB", "GB"};
    auto amount = static_cast<double>(bytes);
    size_t unit = 0;
    while (amount >= 1000 && unit + 1 < units.size()) {
        amount /= 1000;
        ++unit;
    }
    return QStringLiteral("%1 %2").arg(amount, 0, 'f', unit == 0 ? 0 : 1).arg(units[unit]);
}

/// Labels side by side. Where there is no room for all, the longest are cut. A changed text moves
/// its neighbours but does not lay out the window, which a log would do ten times a second.
class LabelRow final : public QWidget {
public:
    using QWidget::QWidget;

    QSize sizeHint() const override { return {0, fontMetrics().height()}; }

protected:
    bool event(QEvent *event) override {
        if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize) {
            Arrange();
        }
        return QWidget::event(event);
    }

private:
    void Arrange() {
        std::vector<QWidget *> labels;
        std::vector<int> widths;
        for (auto *label : findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
            if (!label->isHidden()) {
                labels.push_back(label);
                widths.push_back(label->sizeHint().width());
            }
        }
        // The width that no label may exceed: the rest of the room, shared by the longer ones.
        std::sort(widths.begin(), widths.end());
        int room = width();
        int most = room;
        auto sharing = static_cast<int>(widths.size());
        for (const int wanted : widths) {
            most = room / sharing;
            if (wanted > most) {
                break;
            }
            room -= wanted;
            --sharing;
        }
        int left = 0;
        for (auto *label : labels) {
            const int given = std::min(label->sizeHint().width(), most);
            label->setGeometry(left, 0, given, height());
            left += given;
        }
    }
};

} // namespace

StatusBar::StatusBar(QWidget *parent) : QStatusBar(parent) {
    setObjectName(QStringLiteral("stbMain"));
    setSizeGripEnabled(false);
    auto *row = new LabelRow(this);
    const auto newLabel = [row](const char *name, const QString &caption,
                                Qt::TextElideMode elided = Qt::ElideRight) {
        return new StateLabel(name, caption, elided, row);
    };
    lblMonitorState = newLabel("lblMonitorState", tr("Monitor"));
    lblLogState = newLabel("lblLogState", tr("Log"), Qt::ElideMiddle);
    lblHeaterState = newLabel("lblHeaterState", tr("Heaters"));
    lblAlarmState = newLabel("lblAlarmState", tr("Alarms"));
    lblLastProblem = newLabel("lblLastProblem", tr("Last problem"));
    addWidget(row, 1);
    connect(lblMonitorState, &StateLabel::Click, this, &StatusBar::OptionsWanted);
    connect(lblLogState, &StateLabel::Click, this, [this] { emit PageWanted(MainTab::Control); });
    connect(lblHeaterState, &StateLabel::Click, this, &StatusBar::HeatersWanted);
    connect(lblAlarmState, &StateLabel::Click, this,
            [this] { emit PageWanted(MainTab::VisualDisplay); });
    connect(lblLastProblem, &StateLabel::Click, this,
            [this] { emit PageWanted(MainTab::Control); });
}

void StatusBar::ShowState(MainTab tab) {
    ShowMonitor(tab);
    ShowLog();
    ShowHeaters();
    ShowAlarms(tab);
    ShowProblem();
}

void StatusBar::ShowMonitor(MainTab tab) {
    const Monitor now{MonitorInterval, MonitoringEnabled,
                      tab == MainTab::RegisterAccess && !MonitorInReadWrite,
                      tab == MainTab::VisualDisplay && BargraphEnabled};
    if (std::exchange(monitor, now) == now) {
        return;
    }
    const QString text = !now.IsOn      ? now.ForGauge ? tr("Measuring for the gauge, every %1 ms")
                                                       : tr("Not measuring (%1 ms)")
                              : now.IsPaused ? tr("Not measuring on this page (%1 ms)")
                                        : tr("Measuring every %1 ms");
    lblMonitorState->ShowState(text.arg(now.Interval));
}

void StatusBar::ShowLog() {
    const Log now{LoggingActive, LogEntryCount, LogSize()};
    if (std::exchange(log, now) == now && logPath == LogFileName) {
        return;
    }
    logPath = LogFileName;
    if (!now.Runs) {
        lblLogState->ShowState({});
        return;
    }
    const QString path = QFile::decodeName(logPath.c_str());
    const QString entries = now.Entries == 1 ? tr("1 entry") : tr("%1 entries").arg(now.Entries);
    lblLogState->ShowState(QFileInfo(path).fileName(),
                           QStringLiteral(", %1, %2").arg(entries, SizeText(now.Size)), path);
}

void StatusBar::ShowHeaters() {
    auto now = heaters;
    std::transform(Heaters.begin(), Heaters.end(), now.begin(), [](const HeaterSettings &settings) {
        return Heater{settings.Pwm, settings.SoftwareControl};
    });
    if (std::exchange(heaters, now) == now) {
        return;
    }
    QStringList texts;
    for (size_t heater = 0; heater < now.size(); ++heater) {
        const auto &[duty, ramp] = now[heater];
        if (duty != 0 || ramp) {
            texts +=
                (ramp ? tr("Heater%1 %2 % ramp") : tr("Heater%1 %2 %")).arg(heater + 1).arg(duty);
        }
    }
    lblHeaterState->ShowState(texts.join(QStringLiteral(", ")));
}

void StatusBar::ShowAlarms(MainTab tab) {
    Alarms now;
    if (LastAlerts) {
        const double age = RunningSeconds() - LastAlerts->Time;
        now.AreKnown = true;
        now.AreFresh = tab == MainTab::VisualDisplay && LimitMonitorEnabled &&
                       age < MonitorInterval / millisecondsPerSecond + latestTickSeconds;
        now.Channels = LastAlerts->Alarms;
        now.Time = now.AreFresh ? 0 : LastAlerts->Time;
    }
    if (alarms == now) {
        return;
    }
    alarms = now;
    QStringList names;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        if (HasChannel(channel) && now.Channels[static_cast<size_t>(channel)]) {
            names += ToQString(ChannelName(channel));
        }
    }
    lblAlarmState->ShowState(!now.AreKnown     ? tr("Alarms not read")
                             : names.isEmpty() ? tr("No alarm")
                                               : tr("Alarm: %1").arg(names.join(", ")),
                             now.AreKnown && !now.AreFresh ? tr(" at %1").arg(ClockText(now.Time))
                                                           : QString());
}

void StatusBar::ShowProblem() {
    if (problem == LastProblem()) {
        return;
    }
    problem = LastProblem();
    lblLastProblem->ShowState(problem.Text.isEmpty()
                                  ? QString()
                                  : tr("%1 %2").arg(ClockText(problem.Time), problem.Text));
}

} // namespace ztm
