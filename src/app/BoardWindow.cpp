#include "app/BoardWindow.h"

#include "ui/kit/Controls.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Guide.h"
#include "ui/kit/Text.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QSpinBox>
#include <QTimer>

namespace ztm {
namespace {

constexpr int refreshMilliseconds = 250;
constexpr int coldestCelsius = -40;
constexpr int hottestCelsius = 125;
constexpr int firstAddress = 0x50;

QComboBox *NewBox(const QString &name, const QStringList &items) {
    auto *box = NewList(name);
    box->addItems(items);
    return box;
}

QLabel *NewValue(const QString &name, const QString &caption, QFormLayout *layout) {
    auto *value = new QLabel;
    value->setObjectName(name);
    value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    layout->addRow(caption, value);
    return value;
}

QString Celsius(double celsius) {
    return QStringLiteral("%1 °C").arg(celsius, 0, 'f', 1);
}

} // namespace

BoardWindow::BoardWindow() : tmrRefresh(new QTimer(this)) {
    setObjectName(QStringLiteral("BoardWindow"));
    HelpByF1(*this);
    setWindowTitle(tr("Simulated Board"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto *layout = new QGridLayout(this);
    layout->addWidget(NewBoardFrame(), 0, 0);
    layout->addWidget(NewBenchFrame(), 1, 0);
    layout->addWidget(NewTruthFrame(), 0, 1, 2, 1);
    layout->setRowStretch(1, 1);
    layout->setColumnStretch(1, 1);
    tmrRefresh->setObjectName(QStringLiteral("tmrRefresh"));
    tmrRefresh->setInterval(refreshMilliseconds);
    ShowSettings();
    Refresh();
    ConnectSignals();
}

QCheckBox *BoardWindow::NewCheck(const char *name, const QString &caption,
                                 bool sim::BoardSettings::*field) {
    auto *box = Named(new QCheckBox(caption), name);
    checks.push_back({box, field});
    return box;
}

QGroupBox *BoardWindow::NewBoardFrame() {
    auto *frame = new Frame(tr("Board"));
    auto *layout = new QFormLayout(frame);
    // In the order of sim::Variant.
    cmbVariant = NewBox(QStringLiteral("cmbVariant"),
                        {QStringLiteral("ZTM7710"), QStringLiteral("ZTM7720")});
    cmbAddress =
        NewBox(QStringLiteral("cmbAddress"), {QStringLiteral("0x50"), QStringLiteral("0x51")});
    layout->addRow(tr("&Variant"), cmbVariant);
    layout->addRow(tr("A&ddress"), cmbAddress);
    layout->addRow(NewCheck("chkPluggedIn", tr("&Plugged in"), &sim::BoardSettings::isPluggedIn));
    layout->addRow(NewCheck("chkRefuseFirmware", tr("&Refuses firmware"),
                            &sim::BoardSettings::refusesFirmware));
    layout->addRow(NewCheck("chkSlowBus", tr("&Slow bus"), &sim::BoardSettings::isSlow));
    return frame;
}

QGroupBox *BoardWindow::NewBenchFrame() {
    auto *frame = new Frame(tr("Bench"));
    auto *layout = new QFormLayout(frame);
    spnAmbient = Named(new QSpinBox, "spnAmbient");
    spnAmbient->setRange(coldestCelsius, hottestCelsius);
    spnAmbient->setSuffix(tr(" °C"));
    spnAmbient->setKeyboardTracking(false); // takes only complete numbers
    KeepWheelForFocus(*spnAmbient);
    layout->addRow(tr("&Ambient"), spnAmbient);
    // In the order of sim::DiodeFault and sim::FanFault.
    const QStringList diodeFaults = {tr("Sound"), tr("Open"), tr("Shorted")};
    const QStringList fanFaults = {tr("Turns freely"), tr("Drags"), tr("Stalled")};
    for (size_t i = 0; i < cmbDiode.size(); ++i) {
        cmbDiode[i] = NewBox(IndexedName("cmbDiode", i), diodeFaults);
        layout->addRow(tr("Diode &%1").arg(i + 1), cmbDiode[i]);
    }
    const QStringList fanCaptions = {tr("&Fan 1"), tr("Fa&n 2")};
    for (size_t i = 0; i < cmbFan.size(); ++i) {
        cmbFan[i] = NewBox(IndexedName("cmbFan", i), fanFaults);
        layout->addRow(fanCaptions[static_cast<int>(i)], cmbFan[i]);
    }
    chkNoise = Named(new QCheckBox(tr("N&oise")), "chkNoise");
    layout->addRow(chkNoise);
    return frame;
}

QGroupBox *BoardWindow::NewTruthFrame() {
    auto *frame = new Frame(tr("True values"));
    auto *layout = new QFormLayout(frame);
    lblFirmware = NewValue(QStringLiteral("lblFirmware"), tr("Firmware"), layout);
    lblBoard = NewValue(QStringLiteral("lblBoard"), tr("Board"), layout);
    for (size_t i = 0; i < lblRemote.size(); ++i) {
        lblRemote[i] = NewValue(IndexedName("lblRemote", i), tr("Remote %1").arg(i + 1), layout);
    }
    for (size_t i = 0; i < lblFan.size(); ++i) {
        lblFan[i] = NewValue(IndexedName("lblFan", i), tr("Fan %1").arg(i + 1), layout);
    }
    for (size_t i = 0; i < lblHeater.size(); ++i) {
        lblHeater[i] = NewValue(IndexedName("lblHeater", i), tr("Heater %1").arg(i + 1), layout);
    }
    return frame;
}

void BoardWindow::ConnectSignals() {
    for (const Check &check : checks) {
        connect(check.box, &QCheckBox::toggled, this, &BoardWindow::Arrange);
    }
    connect(chkNoise, &QCheckBox::toggled, this, &BoardWindow::Arrange);
    connect(spnAmbient, &QSpinBox::valueChanged, this, &BoardWindow::Arrange);
    for (auto *list : findChildren<QComboBox *>()) {
        connect(list, &QComboBox::currentIndexChanged, this, &BoardWindow::Arrange);
    }
    connect(tmrRefresh, &QTimer::timeout, this, &BoardWindow::Refresh);
}

void BoardWindow::Arrange() {
    sim::BoardSettings settings;
    sim::BoardState state{};
    ReadSimulatedBoard(&settings, &state);
    settings.variant = static_cast<sim::Variant>(cmbVariant->currentIndex());
    settings.chipAddress = firstAddress + cmbAddress->currentIndex();
    for (const Check &check : checks) {
        settings.*check.field = check.box->isChecked();
    }
    settings.bench.ambientCelsius = spnAmbient->value();
    settings.bench.isNoisy = chkNoise->isChecked();
    for (size_t i = 0; i < cmbDiode.size(); ++i) {
        settings.bench.diodes[i] = static_cast<sim::DiodeFault>(cmbDiode[i]->currentIndex());
        settings.bench.fans[i] = static_cast<sim::FanFault>(cmbFan[i]->currentIndex());
    }
    ArrangeSimulatedBoard(&settings);
    Refresh();
}

void BoardWindow::ShowSettings() {
    sim::BoardSettings settings;
    sim::BoardState state{};
    ReadSimulatedBoard(&settings, &state);
    cmbVariant->setCurrentIndex(static_cast<int>(settings.variant));
    cmbAddress->setCurrentIndex(settings.chipAddress - firstAddress);
    for (const Check &check : checks) {
        check.box->setChecked(settings.*check.field);
    }
    spnAmbient->setValue(static_cast<int>(settings.bench.ambientCelsius));
    chkNoise->setChecked(settings.bench.isNoisy);
    for (size_t i = 0; i < cmbDiode.size(); ++i) {
        cmbDiode[i]->setCurrentIndex(static_cast<int>(settings.bench.diodes[i]));
        cmbFan[i]->setCurrentIndex(static_cast<int>(settings.bench.fans[i]));
    }
}

/// A change of variant or address means another board, so both are locked once firmware is loaded.
void BoardWindow::Refresh() {
    sim::BoardSettings settings;
    sim::BoardState state{};
    ReadSimulatedBoard(&settings, &state);
    cmbVariant->setEnabled(!state.isFirmwareLoaded);
    cmbAddress->setEnabled(!state.isFirmwareLoaded);
    const bool hasTwo = settings.variant == sim::Variant::ZTM7720;
    cmbDiode[1]->setEnabled(hasTwo);
    cmbFan[1]->setEnabled(hasTwo);

    lblFirmware->setText(state.isFirmwareLoaded ? tr("loaded") : tr("not loaded"));
    lblBoard->setText(Celsius(state.boardCelsius));
    for (size_t i = 0; i < lblRemote.size(); ++i) {
        lblRemote[i]->setText(Celsius(state.remoteCelsius[i]));
        lblFan[i]->setText(tr("%1 RPM").arg(state.fanRpm[i], 0, 'f', 0));
        lblHeater[i]->setText(tr("%1 W").arg(state.heaterWatts[i], 0, 'f', 2));
    }
}

/// A hidden window does not query the board.
void BoardWindow::showEvent(QShowEvent *event) {
    Refresh();
    tmrRefresh->start();
    QWidget::showEvent(event);
}

void BoardWindow::hideEvent(QHideEvent *event) {
    tmrRefresh->stop();
    QWidget::hideEvent(event);
}

} // namespace ztm
