#include "ui/registers/MapReading.h"

#include "common/Clock.h"
#include "link/Traffic.h"
#include "ui/kit/Controls.h"

#include <QTimer>

namespace ztm {
namespace {

constexpr double sliceSeconds = 0.005;
constexpr double secondsUntilShown = 0.3;

} // namespace

MapReading::MapReading(const char *requester, QWidget *parent)
    : QProgressBar(parent), requester(requester), tmrRead(Named(new QTimer(this), "tmrRead")) {
    setAccessibleName(tr("Registers read"));
    setTextVisible(false);
    QSizePolicy room = sizePolicy();
    room.setRetainSizeWhenHidden(true);
    setSizePolicy(room);
    hide();
    connect(tmrRead, &QTimer::timeout, this, &MapReading::Read);
}

void MapReading::Start() {
    reader.emplace();
    started = RunningSeconds();
    setRange(0, static_cast<int>(MapReader::Total()));
    setValue(0);
    tmrRead->start(0);
    emit RunningChanged();
}

void MapReading::Stop() {
    if (IsRunning()) {
        End();
    }
}

void MapReading::Read() {
    const Requester asked(requester);
    const bool hasMore = reader->Step(sliceSeconds);
    setValue(static_cast<int>(reader->Done()));
    setVisible(RunningSeconds() - started > secondsUntilShown);
    if (!hasMore) {
        const RegisterValues values = reader->Values();
        End();
        emit Finished(values);
    }
}

void MapReading::End() {
    tmrRead->stop();
    reader.reset();
    hide();
    emit RunningChanged();
}

} // namespace ztm
