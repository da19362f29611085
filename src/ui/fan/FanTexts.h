#pragma once

#include "fan/FanOutlook.h"

#include <QString>
#include <QStringList>

namespace ztm {

/// What dialogs say of the lookup table and of what it makes the fans do.

/// What Apply does to a point, other than to write it: "Apply writes 191 °C". Empty if it writes
/// the point as it is.
QString FateText(const SpeedPoint &point, const PointFate &fate);

/// Where a fan is on the graph: "Fan1: 3190 RPM at 45 °C, curve 3200 RPM".
QString OnCurveText(int fan, double celsius, double rpm, double demandedRpm);

/// Where the fans are on their curves now, or why that is not shown.
QString OperatingText(const FanPlan &plan);

/// What the fans will do, one text for each: "fan 1 will run at 3200 RPM at the present 45 °C".
QStringList OutlookTexts(const FanPlan &plan);

/// The texts as a sentence: apart by semicolons, and with a capital letter.
QString AsSentence(const QStringList &texts);

} // namespace ztm
