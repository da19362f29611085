#pragma once

#include "common/EventHistory.h"
#include "monitor/Channels.h"

#include <QString>

namespace ztm {

/// How a measured quantity is shown.
struct QuantityLook {
    double minimum; ///< of the gauge's scale
    double maximum;
    double step; ///< of the arrow keys
    QString unit;
    int decimals;
    QString name; ///< as in "Fan speed"
};

const QuantityLook &LookOf(Quantity quantity);
const QuantityLook &LookOfChannel(int channel);

/// A value of a channel with its unit, as in "25.38°C".
QString ValueText(int channel, double value);

/// The name of a channel on the current variant.
QString NameOfChannel(int channel);

/// As in "Local: Alarm on".
QString EventText(const Event &event);

} // namespace ztm
