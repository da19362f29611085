#pragma once

#include "common/ChannelHistory.h"
#include "ui/instruments/StripChartEvents.h"

#include <QPixmap>
#include <QString>

#include <functional>
#include <vector>

class QCustomPlot;

namespace ztm {

/// The kinds of picture that SavePicture writes, as a filter of a file dialog.
QString PictureKinds();

/// What a picture says that the screen says elsewhere: it takes the place of the handles of the
/// axes.
struct PictureTexts {
    QString title;
    QString source; ///< of the values: device, date and time
    QString leftUnits;
    QString rightUnits;
};

/// The plot as a picture, higher by its title.
QPixmap PictureOf(QCustomPlot &plot, const PictureTexts &texts);

/// Writes a PNG, SVG or PDF according to the file extension; false on failure.
bool SavePicture(QCustomPlot &plot, const PictureTexts &texts, const QString &path);

/// A channel of a history, and the name and the unit in the header of its column.
struct SavedTrace {
    int channel;
    QString name;
    QString unit;
};

/// A history of which some channels are saved, and by how many seconds its times come later.
struct SavedHistory {
    const ChannelHistory &history;
    double shift;
    std::vector<SavedTrace> traces;
};

/// The time span to save.
struct SavedRange {
    double from;
    double to;
    QString source; ///< the first line
    StripChartEvents events{};
    bool elapsed = false; ///< without a column for the time of day
};

/// Writes what is kept of from <= time <= to as tab-separated text, one line per sample, in order
/// of time; false on failure. Samples of two histories at the same millisecond share a line. If
/// only extremes are kept of a part of a history, each of its traces has two columns. The last
/// column, if the range has events, says those from its sample to the next one; the first sample
/// has the earlier ones too. `between` is called every few milliseconds; a history may grow
/// meanwhile.
bool SaveRange(const std::vector<SavedHistory> &histories, const SavedRange &range,
               const QString &path, const std::function<void()> &between);

} // namespace ztm
