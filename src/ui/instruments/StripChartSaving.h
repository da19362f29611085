#pragma once

#include "common/ChannelHistory.h"
#include "ui/instruments/StripChartEvents.h"

#include <QPixmap>
#include <QString>

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

/// The time span of a history to save.
struct SavedRange {
    double from;
    double to;
    QString source; ///< the first line
    StripChartEvents events{};
    bool elapsed = false; ///< without a column for the time of day
};

/// Writes what is kept of from <= time < to as tab-separated text, one line per sample; false on
/// failure. If only extremes are kept of a part, each trace has two columns. The last column, if
/// the range has events, says those from its sample to the next one; the first sample has the
/// earlier ones too.
bool SaveRange(const ChannelHistory &history, const SavedRange &range,
               const std::vector<SavedTrace> &traces, const QString &path);

} // namespace ztm
