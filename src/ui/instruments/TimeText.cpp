#include "ui/instruments/TimeText.h"

#include "common/Clock.h"

#include <QDateTime>

#include <cmath>

namespace ztm {
namespace {

constexpr int64_t millisecondsPerDay = 86'400'000;
constexpr int64_t secondsPerDay = 86'400;

} // namespace

QString TimeOfDayText(double seconds, QChar separator, int decimals) {
    const double scale = std::pow(10.0, decimals);
    // An axis tick may be a rounding error before its whole second.
    const double shown = decimals == 0 ? std::floor(seconds + 1e-6) : std::round(seconds * scale);
    const int64_t milliseconds = std::llround(shown / scale * 1000) % millisecondsPerDay;
    const auto ofDay = static_cast<int>((milliseconds + millisecondsPerDay) % millisecondsPerDay);
    const QString text =
        QTime::fromMSecsSinceStartOfDay(ofDay).toString(QStringLiteral("HH:mm:ss.zzz"));
    return text.chopped(decimals == 0 ? 4 : 3 - decimals).replace(QLatin1Char(':'), separator);
}

QString DateText(double seconds) {
    // The system's time may have been corrected since: the nearest midnight is meant.
    const QDateTime start =
        QDateTime::currentDateTime().addSecs(secondsPerDay / 2 - std::llround(RunningSeconds()));
    const auto days = static_cast<int64_t>(std::floor(seconds / secondsPerDay));
    return start.date().addDays(days).toString(Qt::ISODate);
}

} // namespace ztm
