#include "ui/fan/FanTexts.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/LinkState.h"
#include "monitor/Channels.h"
#include "monitor/MonitorSettings.h"
#include "ui/kit/Text.h"

#include <QObject>

namespace ztm {
namespace {

QString CelsiusText(double celsius) {
    return QObject::tr("%1 °C").arg(ToQString(NumberText(RoundToDecimals(celsius, 1))));
}

QString RpmText(double rpm) {
    return QObject::tr("%1 RPM").arg(ToQString(NumberText(RoundHalfToEven(rpm))));
}

QString ChannelText(int channel) {
    return ToQString(ChannelName(channel));
}

QString FanText(int fan, const QString &text) {
    return QObject::tr("%1: %2").arg(ChannelText(SpeedChannel(fan)), text);
}

QString OperatingTextOf(const FanPlan &plan, int fan) {
    const FanOutlook outlook = OutlookOf(plan, fan);
    switch (outlook.Fate) {
    case FanFate::SourceUnknown:
        return FanText(fan, QObject::tr("not shown, its control source has not been read"));
    case FanFate::FullSpeed:
        return FanText(fan, QObject::tr("at full speed, on no curve"));
    case FanFate::NotMeasured:
        return FanText(
            fan, QObject::tr("not shown, %1 is not measured").arg(ChannelText(outlook.Channel)));
    case FanFate::Stops:
    case FanFate::Runs:
        break;
    }
    const auto rpm = OperatingRpm(outlook, fan);
    return rpm ? OnCurveText(fan, outlook.Celsius, *rpm, outlook.DemandedRpm)
               : FanText(fan, QObject::tr("not shown, its speed is not measured"));
}

QString OutlookText(const FanPlan &plan, int fan) {
    const FanOutlook outlook = OutlookOf(plan, fan);
    const QString name = HasOneFan() ? QObject::tr("the fan") : QObject::tr("fan %1").arg(fan + 1);
    switch (outlook.Fate) {
    case FanFate::SourceUnknown:
        return QObject::tr("the control source of %1 is not known").arg(name);
    case FanFate::FullSpeed:
        return QObject::tr("%1 will run at full speed").arg(name);
    case FanFate::NotMeasured:
        return QObject::tr("%1 will stop below %2").arg(name, CelsiusText(outlook.Celsius));
    case FanFate::Stops:
        return QObject::tr("%1 will stop at the present %2")
            .arg(name, CelsiusText(outlook.Celsius));
    case FanFate::Runs:
        break;
    }
    return QObject::tr("%1 will run at %2 at the present %3")
        .arg(name, RpmText(outlook.DemandedRpm), CelsiusText(outlook.Celsius));
}

} // namespace

QString FateText(const SpeedPoint &point, const PointFate &fate) {
    QStringList texts;
    if (fate.IsTemperatureLimited) {
        texts += QObject::tr("Apply writes %1").arg(CelsiusText(fate.Written.Celsius));
    }
    if (fate.IsSpeedLimited) {
        texts += QObject::tr("Apply writes %1").arg(RpmText(fate.Written.Rpm));
    }
    if (fate.IsSpeedDropped) {
        texts += QObject::tr("Apply does not write %1").arg(RpmText(point.Rpm));
    }
    return texts.join(QStringLiteral(", "));
}

QString OnCurveText(int fan, double celsius, double rpm, double demandedRpm) {
    return FanText(fan, QObject::tr("%1 at %2, curve %3")
                            .arg(RpmText(rpm), CelsiusText(celsius), RpmText(demandedRpm)));
}

QString OperatingText(const FanPlan &plan) {
    if (!MonitoringEnabled) {
        return QObject::tr("Not measuring: where the fans are now is not shown");
    }
    QStringList texts;
    for (int fan = 0; fan < FanCount(); ++fan) {
        texts += OperatingTextOf(plan, fan);
    }
    return texts.join(QStringLiteral("; "));
}

QStringList OutlookTexts(const FanPlan &plan) {
    QStringList texts;
    for (int fan = 0; fan < FanCount(); ++fan) {
        texts += OutlookText(plan, fan);
    }
    return texts;
}

QString AsSentence(const QStringList &texts) {
    QString sentence = texts.join(QStringLiteral("; "));
    if (!sentence.isEmpty()) {
        sentence[0] = sentence[0].toUpper();
    }
    return sentence;
}

} // namespace ztm
