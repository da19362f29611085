#include "ui/display/Quantities.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/LinkState.h"
#include "ui/kit/Text.h"

#include <QCoreApplication>

namespace ztm {
namespace {

QString Translated(const char *text) {
    return QCoreApplication::translate("ztm::VisualDisplayPage", text);
}

} // namespace

const QuantityLook &LookOf(Quantity quantity) {
    static const std::array<QuantityLook, 3> looks{{
        {-55, 127, 1, QStringLiteral("°C"), 2, Translated("Temperature")},
        {0, 15000, 100, QStringLiteral("RPM"), 0, Translated("Fan speed")},
        {0, 100, 1, QStringLiteral("%"), 2, Translated("THERM%")},
    }};
    return At(looks, quantity);
}

const QuantityLook &LookOfChannel(int channel) {
    return LookOf(At(Channels, channel).Measures);
}

QString ValueText(int channel, double value) {
    const QuantityLook &look = LookOfChannel(channel);
    return ToQString(NumberText(RoundToDecimals(value, look.decimals))) + look.unit;
}

QString NameOfChannel(int channel) {
    const Channel &known = At(Channels, channel);
    return ToQString(HasOneFan() ? known.NameZTM7710 : known.Name);
}

QString EventText(const Event &event) {
    const QString text = ToQString(event.text);
    return event.channel < 0 ? text
                             : QStringLiteral("%1: %2").arg(NameOfChannel(event.channel), text);
}

} // namespace ztm
