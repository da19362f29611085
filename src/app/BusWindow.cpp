#include "app/BusWindow.h"

#include "ui/kit/Controls.h"
#include "ui/kit/Guide.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"
#include "ui/session/Program.h"

#include <QAbstractItemView>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace ztm {
namespace {

constexpr int refreshMilliseconds = 500;
constexpr int stateLines = 4;
constexpr int widthInCharacters = 62;

QString Hex(int number) {
    return QStringLiteral("0x%1")
        .arg(number, 2, 16, QLatin1Char('0'))
        .replace(2, 2, QString::number(number, 16).toUpper());
}

QString TextOf(const i2c::ListedBus &bus) {
    return QStringLiteral("i2c-%1 - %2").arg(bus.number).arg(ToQString(bus.name));
}

/// A list with nothing chosen yet.
QComboBox *NewChoice(const char *name, const QString &placeholder, QWidget *parent) {
    auto *list = NewList(QLatin1String(name), parent);
    list->setPlaceholderText(placeholder);
    list->setCurrentIndex(-1);
    return list;
}

/// A text that can be selected and copied.
QLabel *NewText(const char *name, QWidget *parent) {
    auto *label = Named(new QLabel(parent), name);
    label->setTextFormat(Qt::PlainText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    return label;
}

} // namespace

BusWindow::BusWindow() {
    SetupUi();
    ConnectSignals();
    ListBuses();
    Choose();
}

void BusWindow::SetupUi() {
    setObjectName(QStringLiteral("BusWindow"));
    HelpByF1(*this);
    setWindowTitle(tr("I2C Bus"));
    cmbBus = NewChoice("cmbBus", tr("the one that the chip is on"), this);
    cmbAddress = NewChoice("cmbAddress", tr("the one that the chip answers at"), this);
    for (int address = i2c::firstAddress; address <= i2c::lastAddress; ++address) {
        cmbAddress->addItem(tr("%1  (8-bit %2)").arg(Hex(address), Hex(address * 2)), address);
    }
    cmbAddress->setCurrentIndex(-1);
    lblState = NewText("lblState", this);
    lblState->setWordWrap(true);
    lblState->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lblState->setMinimumSize(fontMetrics().averageCharWidth() * widthInCharacters,
                             fontMetrics().lineSpacing() * stateLines);
    lblTransfers = NewText("lblTransfers", this);
    lblLastError = NewText("lblLastError", this);
    cmdUse = NewButton("cmdUse", tr("Use This Bus"), this);
    cmdQuit = NewButton("cmdQuit", tr("Quit"), this);
    tmrRefresh = Named(new QTimer(this), "tmrRefresh");
    tmrRefresh->start(refreshMilliseconds);

    auto *form = new QFormLayout;
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("&Bus"), cmbBus);
    form->addRow(tr("&Address"), cmbAddress);
    form->addRow(tr("State"), lblState);
    form->addRow(tr("Transfers"), lblTransfers);
    form->addRow(tr("Last error"), lblLastError);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addStretch();
    layout->addLayout(NewButtonRow({cmdUse, cmdQuit}));
}

void BusWindow::ConnectSignals() {
    connect(cmbBus, &QComboBox::currentIndexChanged, this, &BusWindow::Choose);
    connect(cmbAddress, &QComboBox::currentIndexChanged, this, &BusWindow::cmbAddress_Changed);
    connect(cmdUse, &QPushButton::clicked, this, &BusWindow::cmdUse_Click);
    connect(cmdQuit, &QPushButton::clicked, this, &BusWindow::close);
    connect(tmrRefresh, &QTimer::timeout, this, &BusWindow::tmrRefresh_Timer);
}

void BusWindow::cmbAddress_Changed() {
    i2c::BusReport report;
    LookAtI2cBus(&report);
    if (isInUse && (report.hasChip || !IsAddressAccepted())) {
        const QSignalBlocker quiet(cmbAddress);
        cmbAddress->setCurrentIndex(cmbAddress->findData(chosen.address));
        return;
    }
    Choose();
}

void BusWindow::cmdUse_Click() {
    if (!IsAddressAccepted()) {
        return;
    }
    isInUse = true;
    cmbBus->setEnabled(false);
    cmdUse->hide();
    cmdQuit->hide();
    lblState->setMinimumHeight(fontMetrics().lineSpacing());
    ShowReport();
    emit BusChosen();
}

/// What stood in the way may have been cured in the meantime. A bus that was in use and has left
/// stays closed.
void BusWindow::tmrRefresh_Timer() {
    i2c::BusReport report;
    LookAtI2cBus(&report);
    if (!isInUse) {
        ListBuses();
    }
    if (!report.obstacle.empty() && (!isInUse || report.isOpen)) {
        Choose();
    }
    ShowReport();
}

/// Lists the buses that are there now, without closing an open list.
void BusWindow::ListBuses() {
    std::vector<i2c::ListedBus> listed;
    ListI2cBuses(&listed);
    if (listed == buses || cmbBus->view()->isVisible()) {
        return;
    }
    const QString before = cmbBus->currentText();
    {
        const QSignalBlocker quiet(cmbBus);
        buses = listed;
        cmbBus->clear();
        for (const i2c::ListedBus &bus : buses) {
            cmbBus->addItem(TextOf(bus));
        }
        cmbBus->setCurrentIndex(before.isEmpty() ? -1 : cmbBus->findText(before));
    }
    if (cmbBus->currentText() != before) {
        Choose();
    }
}

bool BusWindow::IsAddressAccepted() const {
    const int address = Choice().address;
    return !i2c::IsOfMemory(address) ||
           IsWarningAccepted(
               tr("On many buses memory modules live at %1, and a write there can destroy one. The "
                  "program writes nothing before a chip has identified itself by its Device ID, "
                  "but it reads.\n\nUse the address only if you know that your chip is the one "
                  "at it.")
                   .arg(Hex(address)),
               windowTitle(), tr("Use %1").arg(Hex(address)));
}

i2c::BusChoice BusWindow::Choice() const {
    i2c::BusChoice choice;
    if (cmbBus->currentIndex() >= 0) {
        choice.number = buses[static_cast<size_t>(cmbBus->currentIndex())].number;
    }
    if (cmbAddress->currentIndex() >= 0) {
        choice.address = cmbAddress->currentData().toInt();
    }
    return choice;
}

void BusWindow::Choose() {
    chosen = Choice();
    ChooseI2cBus(&chosen);
    ShowReport();
}

QString BusWindow::StateText(const i2c::BusReport &report) const {
    if (!report.obstacle.empty()) {
        return ToQString(report.obstacle);
    }
    if (!report.isReady) {
        return chosen.number == i2c::none ? tr("Choose the bus.") : tr("Choose the address.");
    }
    if (!isInUse) {
        return tr("Ready. Nothing has been sent.");
    }
    return report.hasChip ? tr("In use: a chip has identified itself.")
                          : tr("In use, with no chip yet: the address can be changed.");
}

/// Before the bus is in use there is room for what is usual, and the window only grows.
void BusWindow::FitToState() {
    if (isVisible()) {
        layout()->activate();
        const int needed = layout()->totalHeightForWidth(width());
        resize(width(), isInUse ? needed : std::max(height(), needed));
    }
}

void BusWindow::ShowReport() {
    i2c::BusReport report;
    LookAtI2cBus(&report);
    if (const QString state = StateText(report); state != lblState->text()) {
        lblState->setText(state);
        FitToState();
    }
    lblTransfers->setText(tr("%1, of which %2 failed").arg(report.transfers).arg(report.errors));
    lblLastError->setText(report.lastError.empty() ? tr("none") : ToQString(report.lastError));
    Enable(*cmdUse, report.isReady, lblState->text());
    if (isInUse) {
        cmbAddress->setEnabled(report.isOpen && !report.hasChip);
    }
}

void BusWindow::closeEvent(QCloseEvent *event) {
    if (isInUse) {
        event->ignore();
        showMinimized();
        return;
    }
    QWidget::closeEvent(event);
    QCoreApplication::exit(EXIT_SUCCESS);
}

std::unique_ptr<QWidget> NewBusWindow() {
    auto window = std::make_unique<BusWindow>();
    QObject::connect(window.get(), &BusWindow::BusChosen, window.get(), OpenWizard);
    return window;
}

} // namespace ztm
