#include "ui/registers/frmCompare.h"

#include "common/At.h"
#include "common/Clock.h"
#include "files/SnapshotFile.h"
#include "link/LinkState.h"
#include "link/Traffic.h"
#include "link/USBComms.h"
#include "ui/kit/Controls.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"
#include "ui/registers/CompareTable.h"
#include "ui/registers/MapReading.h"
#include "ui/registers/SettingsExport.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace ztm {
namespace {

constexpr double sliceSeconds = 0.005;

// The first entries of the lists of states; after them come the kept states and "Snapshot File...".
constexpr int chipEntry = 0;
constexpr int defaultsEntry = 1;
constexpr int firstKeptEntry = 2;

int SnapshotEntry() {
    return firstKeptEntry + static_cast<int>(KeptStates().size());
}

} // namespace

frmCompare::frmCompare()
    : Form(QStringLiteral("frmCompare"))
    , cmbState{NewStateList("cmbLeft", tr("Left state")),
               NewStateList("cmbRight", tr("Right state"))}
    , lblNote{Named(new QLabel(this), "lblLeft"), Named(new QLabel(this), "lblRight")}
    , cmdSwap(NewButton("cmdSwap", tr("S&wap"), this))
    , chkAll(Named(new QCheckBox(tr("Show &all registers"), this), "chkAll"))
    , chkCheckAll(Named(new QCheckBox(tr("&Check all"), this), "chkCheckAll"))
    , tblCompare(Named(new CompareTable(this), "tblCompare"))
    , lblResult(Named(new QLabel(this), "lblResult"))
    , prgReading(Named(new MapReading("Compare Registers", this), "prgReading"))
    , cmdReadChip(NewButton("cmdReadChip", tr("&Read Chip"), this))
    , cmdKeep(NewButton("cmdKeep", tr("&Keep"), this))
    , settings(new SettingsExport(
          {[this] {
               std::vector<RegisterSetting> differing;
               for (const auto &row : CompareRegisters(ValuesIn(Left), ValuesIn(Right), true)) {
                   if (row.CanBeWritten()) {
                       differing.push_back({row.Register->Address, *row.Right});
                   }
               }
               return InWriteOrder(std::move(differing));
           },
           [this] {
               return ComparisonAsText(
                   CompareRegisters(ValuesIn(Left), ValuesIn(Right), !chkAll->isChecked()));
           }},
          this))
    , cmdWriteSelected(NewButton("cmdWriteSelected", tr("Write Selected"), this))
    , tmrWrite(Named(new QTimer(this), "tmrWrite"))
    , shownStates{chipEntry, defaultsEntry} {
    SetupUi();
    ConnectSignals();
    ShowStates();
    ShowComparison();
}

QComboBox *frmCompare::NewStateList(const char *name, const QString &accessibleName) {
    auto *list = NewList(QLatin1String(name), this);
    list->setAccessibleName(accessibleName);
    return list;
}

void frmCompare::SetupUi() {
    setWindowTitle(tr("Compare Registers"));
    tblCompare->setAccessibleName(windowTitle());
    cmdKeep->setToolTip(tr("Keeps what was read from the chip, for comparisons in this session"));
    chkCheckAll->setToolTip(tr("Checks every register that can be written, or none"));
    auto *cmdClose = NewButton("cmdClose", tr("Close"), this);
    connect(cmdClose, &QPushButton::clicked, this, &frmCompare::close);

    setTabOrder(cmbState[Left], cmdSwap);
    setTabOrder(cmdSwap, cmbState[Right]);

    auto *states = new QGridLayout;
    states->addWidget(new QLabel(tr("Left"), this), 0, 0);
    states->addWidget(cmbState[Left], 0, 1);
    states->addWidget(cmdSwap, 0, 2);
    states->addWidget(new QLabel(tr("Right"), this), 0, 3);
    states->addWidget(cmbState[Right], 0, 4);
    states->addWidget(lblNote[Left], 1, 1);
    states->addWidget(lblNote[Right], 1, 4);
    states->setColumnStretch(1, 1);
    states->setColumnStretch(4, 1);
    auto *checks = new QHBoxLayout;
    checks->addWidget(chkAll);
    checks->addWidget(chkCheckAll);
    checks->addStretch(1);
    auto *result = new QHBoxLayout;
    result->addWidget(lblResult, 1);
    result->addWidget(prgReading);
    auto *buttons = new QHBoxLayout;
    for (auto *button :
         {cmdReadChip, cmdKeep, settings->CopyButton(), settings->SaveButton(), cmdWriteSelected}) {
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    buttons->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(states);
    layout->addLayout(checks);
    layout->addWidget(tblCompare);
    layout->addLayout(result);
    layout->addLayout(buttons);
}

void frmCompare::ConnectSignals() {
    for (const Side side : {Left, Right}) {
        connect(cmbState[side], &QComboBox::activated, this,
                [this, side] { cmbState_Chosen(side); });
    }
    connect(cmdSwap, &QPushButton::clicked, this, &frmCompare::cmdSwap_Click);
    connect(chkAll, &QCheckBox::toggled, this, &frmCompare::ShowComparison);
    connect(chkCheckAll, &QCheckBox::clicked, tblCompare, &CompareTable::CheckAll);
    connect(tblCompare, &CompareTable::CheckChanged, this, &frmCompare::ShowState);
    connect(cmdReadChip, &QPushButton::clicked, this, &frmCompare::cmdReadChip_Click);
    connect(prgReading, &MapReading::Finished, this, &frmCompare::ChipRead);
    connect(prgReading, &MapReading::RunningChanged, this, &frmCompare::ShowState);
    connect(cmdKeep, &QPushButton::clicked, this, &frmCompare::cmdKeep_Click);
    connect(cmdWriteSelected, &QPushButton::clicked, this, &frmCompare::cmdWriteSelected_Click);
    connect(tmrWrite, &QTimer::timeout, this, &frmCompare::WriteMore);
}

QSize frmCompare::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 110, fontMetrics().height() * 32};
}

/// Fills both lists anew and shows what is selected in them.
void frmCompare::ShowStates() {
    QStringList names{tr("Chip now"), tr("Defaults")};
    for (const KeptState &state : KeptStates()) {
        names += ToQString(state.Name);
    }
    names += tr("Snapshot File...");
    for (const Side side : {Left, Right}) {
        const QSignalBlocker blocker(cmbState[side]);
        cmbState[side]->clear();
        cmbState[side]->addItems(names);
        cmbState[side]->setCurrentIndex(shownStates[side]);
        lblNote[side]->setText(NoteOf(side));
    }
}

bool frmCompare::IsChip(Side side) const {
    return shownStates[side] == chipEntry;
}

bool frmCompare::ShowsUnreadChip() const {
    return !chip && (IsChip(Left) || IsChip(Right));
}

RegisterValues frmCompare::ValuesIn(Side side) const {
    switch (shownStates[side]) {
    case chipEntry:
        return chip.value_or(RegisterValues());
    case defaultsEntry:
        return DefaultValues();
    default:
        return At(KeptStates(), shownStates[side] - firstKeptEntry).Values;
    }
}

QString frmCompare::NoteOf(Side side) const {
    switch (shownStates[side]) {
    case chipEntry:
        return chip ? tr("read at %1").arg(TimeOfDayText(chipTime, QLatin1Char(':')))
                    : tr("not read yet");
    case defaultsEntry:
        return {};
    default:
        return ToQString(At(KeptStates(), shownStates[side] - firstKeptEntry).Note);
    }
}

void frmCompare::ShowComparison() {
    tblCompare->ShowRows(CompareRegisters(ValuesIn(Left), ValuesIn(Right), !chkAll->isChecked()));
    for (const Side side : {Left, Right}) {
        lblNote[side]->setText(NoteOf(side));
    }
    const int differences =
        static_cast<int>(CompareRegisters(ValuesIn(Left), ValuesIn(Right), true).size());
    lblResult->setText(ShowsUnreadChip()  ? tr("Read Chip reads what the chip holds now.")
                       : differences == 1 ? tr("1 register differs.")
                                          : tr("%1 registers differ.").arg(differences));
    ShowState();
}

/// What can be done now.
void frmCompare::ShowState() {
    const bool isBusy = prgReading->IsRunning() || tmrWrite->isActive();
    for (const Side side : {Left, Right}) {
        cmbState[side]->setEnabled(!isBusy);
    }
    cmdSwap->setEnabled(!isBusy);
    chkAll->setEnabled(!isBusy);
    cmdReadChip->setEnabled(!isBusy);
    chkCheckAll->setChecked(tblCompare->IsEverythingChecked());
    Enable(*cmdKeep, !isBusy && chip, tr("The chip has not been read yet"));
    const QString whyNot = !IsChip(Left) ? tr("Only with \"Chip now\" on the left")
                           : !chip       ? tr("The chip has not been read yet")
                           : isBusy      ? tr("Esc stops what is going on")
                                         : tr("No register is checked");
    Enable(*cmdWriteSelected, IsChip(Left) && chip && !isBusy && !tblCompare->Checked().empty(),
           whyNot);
}

void frmCompare::cmbState_Chosen(Side side) {
    if (cmbState[side]->currentIndex() == SnapshotEntry()) {
        OpenSnapshot(side);
    } else {
        shownStates[side] = cmbState[side]->currentIndex();
    }
    ShowStates();
    ShowComparison();
    if (IsChip(side) && !chip) {
        cmdReadChip_Click();
    }
}

/// A file that was opened stays among the kept states.
void frmCompare::OpenSnapshot(Side side) {
    const QString path = AskOpenFile(this, tr("Compare Snapshot"), tr("Text Files (*.sav)"));
    if (path.isEmpty()) {
        return;
    }
    const Snapshot snapshot = ReadSnapshot(QFile::encodeName(path).toStdString());
    if (!snapshot.Problem.empty()) {
        ShowMessage(tr("%1\ncannot be compared: %2")
                        .arg(path, QString::fromLocal8Bit(snapshot.Problem.c_str())),
                    windowTitle(), QMessageBox::Warning);
        return;
    }
    const auto others = std::ranges::count_if(snapshot.Registers, [](const auto &setting) {
        return std::ranges::none_of(Registers(), [&setting](const RegisterEntry &entry) {
            return entry.Address == setting.Address;
        });
    });
    QStringList notes;
    if (!snapshot.Variant.empty() && snapshot.Variant != DeviceName) {
        notes += tr("saved from a %1").arg(ToQString(snapshot.Variant));
    }
    if (others > 0) {
        notes += tr("registers without a name here: %1").arg(others);
    }
    const QString note = notes.join(QStringLiteral("; "));
    KeptStates().push_back({QFileInfo(path).fileName().toStdString(), note.toStdString(),
                            ValuesOf(snapshot.Registers)});
    shownStates[side] = SnapshotEntry() - 1;
}

void frmCompare::cmdSwap_Click() {
    std::swap(shownStates[Left], shownStates[Right]);
    ShowStates();
    ShowComparison();
}

void frmCompare::cmdReadChip_Click() {
    prgReading->Start();
}

void frmCompare::ChipRead(const RegisterValues &values) {
    chip = values;
    chipTime = RunningSeconds();
    ShowComparison();
}

void frmCompare::cmdKeep_Click() {
    const QString time = TimeOfDayText(chipTime, QLatin1Char(':'));
    KeptStates().push_back({tr("Kept, read at %1").arg(time).toStdString(), {}, *chip});
    ShowStates();
    lblResult->setText(tr("The state read at %1 is kept.").arg(time));
}

void frmCompare::cmdWriteSelected_Click() {
    writing = InWriteOrder(tblCompare->Checked());
    if (Locks(writing) &&
        !AskYesNo(tr("Configuration1 would be written with the lock bit set. From then on the "
                     "chip's limits cannot be changed until it is reset. Write it?"),
                  windowTitle())) {
        return;
    }
    written = notTaken = 0;
    tmrWrite->start(0);
    ShowState();
}

void frmCompare::WriteMore() {
    const Requester asked("Write Selected");
    const double start = RunningSeconds();
    while (written < writing.size()) {
        const RegisterSetting &setting = writing[written];
        WriteRegister(setting.Address, setting.Value);
        const auto readBack = static_cast<uint8_t>(ReadRegister(setting.Address));
        ++written;
        notTaken += readBack == setting.Value ? 0 : 1;
        At(*chip, setting.Address) = readBack;
        tblCompare->ShowWritten(setting, readBack);
        if (RunningSeconds() - start >= sliceSeconds) {
            break;
        }
    }
    if (written == writing.size()) {
        EndWriting();
    }
}

void frmCompare::EndWriting() {
    tmrWrite->stop();
    QString text = written == 1 ? tr("1 register was written.")
                                : tr("%1 registers were written.").arg(written);
    if (written < writing.size()) {
        text += tr(" Stopped before %1 more.").arg(writing.size() - written);
    }
    if (notTaken > 0) {
        text += tr(" The chip did not take %1 of them.").arg(notTaken);
    }
    lblResult->setText(text);
    ShowState();
}

void frmCompare::EscapePressed() {
    if (prgReading->IsRunning()) {
        prgReading->Stop();
    } else if (tmrWrite->isActive()) {
        EndWriting();
    } else {
        close();
    }
}

} // namespace ztm
