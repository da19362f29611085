#include "ui/fan/LiveTrail.h"

#include "common/At.h"
#include "common/Clock.h"
#include "fan/FanOutlook.h"
#include "monitor/MonitorSettings.h"
#include "monitor/RecentMeasurements.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ztm {
namespace {

constexpr int shades = 8;
constexpr double strongest = 0.8; // opacity of the newest end
constexpr double trailPixels = 2;
constexpr double demandPixels = 1;
constexpr double dotRadius = 5;
constexpr double demandRadius = 3;

constexpr double longestGapSeconds = 2;
constexpr double millisecondsPerSecond = 1000;

/// A part of the trail in one shade.
class Stroke {
public:
    void Add(const QPointF &place) { places[static_cast<size_t>(count++)] = place; }

    void Draw(QPainter &painter, const QPen &pen) {
        if (count > 1) {
            painter.setPen(pen);
            painter.drawPolyline(places.data(), count);
        }
        count = 0;
    }

private:
    std::array<QPointF, MostRecentSamples + 1> places;
    int count = 0;
};

} // namespace

void DrawTrail(QPainter &painter, const GraphPlace &placeOf, const LivePoint &live, int fan,
               const QColor &colour) {
    const double now = RunningSeconds();
    const double longestGap =
        std::max(longestGapSeconds, 2 * MonitorInterval / millisecondsPerSecond);
    Stroke stroke;
    QColor shaded = colour;
    int shade = 0;
    double lastTime = now;
    const auto draw = [&] {
        shaded.setAlphaF(static_cast<float>(strongest * shade / shades));
        stroke.Draw(painter, QPen(shaded, trailPixels, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    };
    for (size_t index = 0; index < RecentCount(); ++index) {
        const RecentSample &sample = RecentAt(index);
        const double age = now - sample.Time;
        if (age >= RecentSeconds) {
            continue;
        }
        const auto celsius = static_cast<double>(At(sample.Values, live.Channel));
        const auto rpm = static_cast<double>(At(sample.Values, SpeedChannel(fan)));
        const bool isThere = !std::isnan(celsius) && !std::isnan(rpm);
        const bool isJoined = isThere && sample.Time - lastTime <= longestGap;
        const QPointF place = isThere ? placeOf(celsius, rpm) : QPointF();
        const int itsShade = 1 + static_cast<int>((1 - age / RecentSeconds) * (shades - 1));
        if (isJoined) {
            stroke.Add(place);
        }
        if (!isJoined || itsShade != shade) {
            draw();
            shade = itsShade;
            if (isThere) {
                stroke.Add(place);
            }
        }
        lastTime = sample.Time;
    }
    stroke.Add(placeOf(live.Celsius, live.Rpm));
    draw();
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

} // namespace ztm
