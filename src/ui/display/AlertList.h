#pragma once

#include "monitor/Channels.h"
#include "ui/kit/Frame.h"

#include <array>

class QButtonGroup;
class QLabel;
class QRadioButton;

namespace ztm {

class ToggleIndicator;

/// The frame "Alerts": of every channel the option that selects it, its last value and its alarm
/// lamp. It asks the chip for nothing. The tooltip of a value gives the extremes, which the context
/// menu resets.
class AlertList final : public Frame {
    Q_OBJECT

public:
    explicit AlertList(QWidget *parent);

    /// Gives the rows the names of the current variant, hides the channels that it lacks and closes
    /// the gaps.
    void LayOutForVariant();

    /// The first selected channel; -1 if there is none.
    int SelectedChannel() const;
    /// Selects a channel without saying ChannelChosen.
    void Select(int channel);
    QString TextOf(int channel) const;

    /// Shows the values that were measured last, pale where the monitor does not go on measuring.
    /// Costs little while nothing changes.
    void ShowValues();

    void ShowAlerts(const std::array<bool, ChannelCount> &alarms);
    /// Shows that the alarm states are not being read.
    void ForgetAlerts();

signals:
    /// The user has selected a channel.
    void ChannelChosen(int channel);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Row {
        QRadioButton *option;
        QLabel *value;
        ToggleIndicator *indicator;
        float shown = 0;
        bool isShown = false; // otherwise the value is a dash
        bool isPale = false;
    };

    Row NewRow(int channel, QButtonGroup &group);
    void ShowValue(int channel);

    std::array<Row, ChannelCount> rows{};
};

} // namespace ztm
