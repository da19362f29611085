#pragma once

#include "common/ChannelHistory.h"

#include <QString>

#include <vector>

class QCustomPlot;

namespace ztm {

/// The kinds of picture that SavePicture writes, as a filter of a file dialog.
QString PictureKinds();

/// Writes a PNG, SVG or PDF by the ending of the name; false when that did not succeed.
bool SavePicture(QCustomPlot &plot, const QString &path);

/// A channel of a history under the name that its column gets.
struct SavedTrace {
    int channel;
    QString name;
};

/// Writes what is kept of from <= time < to as tab-separated text, a line per sample; false when
/// that did not succeed. Where only extremes are kept, each trace has two columns.
bool SaveRange(const ChannelHistory &history, double from, double to,
               const std::vector<SavedTrace> &traces, const QString &path);

} // namespace ztm
