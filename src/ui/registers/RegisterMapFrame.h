#pragma once

#include "link/AdapterStartUp.h"
#include "ui/kit/Frame.h"

class QLabel;
class QPushButton;

namespace ztm {

class MapReading;
class RegisterTreeView;
class ToggleIndicator;

/// The frame "Register Map" of the page "Register Access": the tree of the registers, what can be
/// done with all of them, and the lamp of the adapter.
class RegisterMapFrame final : public Frame, public AdapterLamp {
    Q_OBJECT

public:
    explicit RegisterMapFrame(QWidget *parent);

    RegisterTreeView &Tree() { return *TreeView1; }

    /// Stops what Read All has begun. False if there is nothing to stop.
    bool StopReading();

    void SetRed() override;
    void SetGreen() override;
    void Show() override;

private:
    void SetupUi();
    void ConnectSignals();
    void ShowLamp(bool alarm, const QString &state);

    void cmdReadAll_Click();
    void cmdCompare_Click();
    void cmdTraffic_Click();

    RegisterTreeView *TreeView1;
    MapReading *prgReadAll;
    QPushButton *cmdReadAll;
    QPushButton *cmdCompare;
    QPushButton *cmdTraffic;
    ToggleIndicator *Shape1;
    QLabel *lampCaption;
};

} // namespace ztm
