#pragma once

#include "link/Heaters.h"
#include "monitor/Channels.h"
#include "monitor/MonitorLoop.h"
#include "ui/kit/Problems.h"

#include <QStatusBar>

#include <array>
#include <optional>
#include <string>

namespace ztm {

class StateLabel;

/// The status bar of the main window: the state of the board in one line, as it is known from what
/// has passed by. It asks the chip nothing. Each part leads, pressed, to where it comes from; a
/// part with nothing to say is hidden.
class StatusBar final : public QStatusBar {
    Q_OBJECT

public:
    explicit StatusBar(QWidget *parent = nullptr);

    /// Shows what has changed, while that tab is shown.
    void ShowState(MainTab tab);

signals:
    // What a part leads to.
    void PageWanted(MainTab tab);
    void OptionsWanted();
    void HeatersWanted();

private:
    // What each part shows: its text is built only when that has changed.

    struct Monitor {
        int Interval = 0;
        bool IsOn = false;
        bool IsPaused = false; ///< by the tab that is shown
        bool ForGauge = false; ///< only the gauge's channel is measured
        bool operator==(const Monitor &) const = default;
    };
    struct Log {
        bool Runs = false;
        int32_t Entries = 0;
        long Size = 0;
        bool operator==(const Log &) const = default;
    };
    struct Heater {
        int Duty = 0;
        bool Ramp = false;
        bool operator==(const Heater &) const = default;
    };
    struct Alarms {
        bool AreKnown = false;
        bool AreFresh = false; ///< they are being read
        std::array<bool, ChannelCount> Channels{};
        double Time = 0; ///< of the last reading, while they are not being read
        bool operator==(const Alarms &) const = default;
    };

    void ShowMonitor(MainTab tab);
    void ShowLog();
    void ShowHeaters();
    void ShowAlarms(MainTab tab);
    void ShowProblem();

    StateLabel *lblMonitorState;
    StateLabel *lblLogState;
    StateLabel *lblHeaterState;
    StateLabel *lblAlarmState;
    StateLabel *lblLastProblem;

    Monitor monitor;
    Log log;
    std::string logPath;
    std::array<Heater, std::tuple_size_v<decltype(Heaters)>> heaters{};
    std::optional<Alarms> alarms;
    Problem problem;
};

} // namespace ztm
