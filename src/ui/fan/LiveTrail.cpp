#include "ui/fan/LiveTrail.h"

#include "common/At.h"
#include "common/Clock.h"
#include "fan/FanOutlook.h"
#include "monitor/MonitorSettings.h"
#include "monitor/RecentMeasurements.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace ztm {
namespace {

constexpr int shades = 12;
constexpr double strongest = 0.8; // of the newest end
constexpr double faintest = 0.15;
constexpr double demandPixels = 1;
constexpr double dotRadius = 5;
constexpr double demandRadius = 3;

constexpr double longestGapSeconds = 2;
constexpr double millisecondsPerSecond = 1000;

/// A colour on white, from 0 for white to 1.
QColor Shaded(const QColor &colour, double strength) {
    const auto mixed = [strength](int part) { return qRound(255 + (part - 255) * strength); };
    return {mixed(colour.red()), mixed(colour.green()), mixed(colour.blue())};
}

/// Passes the samples of the last minute in which the place of a fan is known, with their ages.
template <class Take>
void VisitTrail(const LivePoint &live, int fan, const Take &take) {
    const double now = RunningSeconds();
    for (size_t index = 0; index < RecentCount(); ++index) {
        const RecentSample &sample = RecentAt(index);
        const auto celsius = static_cast<double>(At(sample.Values, live.Channel));
        const auto rpm = static_cast<double>(At(sample.Values, SpeedChannel(fan)));
        const double age = now - sample.Time;
        if (age < RecentSeconds && !std::isnan(celsius) && !std::isnan(rpm)) {
            take(celsius, rpm, age);
        }
    }
}

} // namespace

/// Thin opaque lines and squares without smoothing: others would cost several milliseconds.
void DrawTrail(QPainter &painter, const GraphPlace &placeOf, const LivePoint &live, int fan,
               const QColor &colour) {
    const double longestGap =
        std::max(longestGapSeconds, 2 * MonitorInterval / millisecondsPerSecond);
    painter.setRenderHint(QPainter::Antialiasing, false);
    std::optional<QPointF> last;
    double lastAge = 0;
    int lastShade = -1;
    QColor shaded;
    VisitTrail(live, fan, [&](double celsius, double rpm, double age) {
        const int shade = static_cast<int>((1 - age / RecentSeconds) * shades);
        if (shade != lastShade) {
            shaded = Shaded(colour, faintest + (strongest - faintest) * shade / shades);
            painter.setPen(QPen(shaded, 1));
            lastShade = shade;
        }
        const QPointF place = placeOf(celsius, rpm);
        if (last != place) {
            if (last && lastAge - age <= longestGap) {
                painter.drawLine(*last, place);
            }
            painter.fillRect(QRectF(place, QSizeF()).adjusted(-1, -1, 2, 2), shaded);
        }
        last = place;
        lastAge = age;
    });
    painter.setRenderHint(QPainter::Antialiasing);
}

void DrawLivePoint(QPainter &painter, const GraphPlace &placeOf, const LivePoint &live,
                   const QColor &colour) {
    const QPointF place = placeOf(live.Celsius, live.Rpm);
    const QPointF demanded = placeOf(live.Celsius, live.DemandedRpm);
    painter.setPen(QPen(colour.darker(), demandPixels));
    painter.setBrush(Qt::white);
    painter.drawLine(place, demanded);
    painter.drawEllipse(demanded, demandRadius, demandRadius);
    painter.setPen(QPen(Qt::white, demandPixels));
    painter.setBrush(colour.darker());
    painter.drawEllipse(place, dotRadius, dotRadius);
}

QRectF LiveArea(const GraphPlace &placeOf, const LivePoint &live, int fan) {
    QRectF area;
    const auto add = [&](const QPointF &place) {
        constexpr double reach = dotRadius + 2;
        area |= QRectF(place, QSizeF()).adjusted(-reach, -reach, reach, reach);
    };
    VisitTrail(live, fan, [&](double celsius, double rpm, double) { add(placeOf(celsius, rpm)); });
    add(placeOf(live.Celsius, live.Rpm));
    add(placeOf(live.Celsius, live.DemandedRpm));
    return area;
}

} // namespace ztm
