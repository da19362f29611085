#pragma once

#include "regmap/RegisterValues.h"

#include <QProgressBar>

#include <optional>

class QTimer;

namespace ztm {

/// Reads the whole register map, in short slices between other events, and shows how far it has
/// come where that takes a while.
class MapReading final : public QProgressBar {
    Q_OBJECT

public:
    /// `requester` is who asks for the reads: a literal.
    MapReading(const char *requester, QWidget *parent);

    /// Reads from the first register on, also if it is reading already.
    void Start();
    void Stop();
    bool IsRunning() const { return reader.has_value(); }

signals:
    /// Every register has been read once.
    void Finished(const RegisterValues &values);

    /// It has been started or it has ended, finished or not.
    void RunningChanged();

private:
    void Read();
    void End();

    const char *requester;
    QTimer *tmrRead;
    std::optional<MapReader> reader;
    double started = 0; // RunningSeconds
};

} // namespace ztm
