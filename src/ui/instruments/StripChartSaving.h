#pragma once

#include "common/ChannelHistory.h"

#include <QString>

#include <vector>

class QCustomPlot;

namespace ztm {

/// The kinds of picture that SavePicture writes, as a filter of a file dialog.
QString PictureKinds();

/// Writes a PNG, SVG or PDF according to the file extension; false on failure.
bool SavePicture(QCustomPlot &plot, const QString &path);

/// A channel of a history and the name of its column.
struct SavedTrace {
    int channel;
    QString name;
};

/// Writes what is kept of from <= time < to as tab-separated text, one line per sample; false on
/// failure. If only extremes are kept of a part, each trace has two columns.
bool SaveRange(const ChannelHistory &history, double from, double to,
               const std::vector<SavedTrace> &traces, const QString &path);

} // namespace ztm
