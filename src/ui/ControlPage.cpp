#include "ui/ControlPage.h"

#include "ui/Controls.h"
#include "ui/Frame.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>

#include <initializer_list>

namespace ztm {
namespace {

struct ButtonRow {
    QPushButton *&member;
    const char *name;
    QString caption;
};

/// A frame with one button below the other, in the order of the rows.
QGroupBox *NewButtonFrame(const char *name, const QString &caption,
                          std::initializer_list<ButtonRow> rows, QWidget *parent) {
    auto *frame = Named(new Frame(caption, parent), name);
    auto *layout = new QVBoxLayout(frame);
    for (const ButtonRow &row : rows) {
        row.member = NewButton(row.name, row.caption, frame);
        layout->addWidget(row.member);
    }
    return frame;
}

} // namespace

ControlPage::ControlPage(QWidget *parent) : QWidget(parent) {
    SetupUi();
    SetFanControlButtons(this);
}

ControlPage::~ControlPage() {
    SetFanControlButtons(nullptr);
}

void ControlPage::SetupUi() {
    auto *fans = NewButtonFrame("fraFanControl", tr("Fan Control"),
                                {{cmdConParam, "cmdConParam", tr("Fan Configuration...")},
                                 {cmdAuto, "cmdAuto", tr("Automatic Control...")},
                                 {cmdSetLookups, "cmdSetLookups", tr("Set Lookup Table...")},
                                 {cmdManual, "cmdManual", tr("Manual RPM...")}},
                                this);
    auto *therm = NewButtonFrame("fraThermControl", tr("THERM Control"),
                                 {{cmdThermTemp, "cmdThermTemp", tr("THERM Temperature...")},
                                  {cmdThermTimer, "cmdThermTimer", tr("THERM Timer...")}},
                                 this);
    auto *files = NewFileFrame();
    auto *heaters = NewButtonFrame("fraHeaterControl", tr("Heater Control"),
                                   {{cmdHeaters, "cmdHeaters", tr("On-Board Heaters")}}, this);

    auto *layout = new QGridLayout(this);
    layout->addWidget(fans, 0, 0);
    layout->addWidget(therm, 0, 1);
    layout->addWidget(files, 1, 0);
    layout->addWidget(heaters, 1, 1);
    for (auto *frame : {fans, therm, files, heaters}) {
        static_cast<QBoxLayout *>(frame->layout())->addStretch();
        frame->setMaximumWidth(frame->fontMetrics().averageCharWidth() * 60);
    }
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 1);
    layout->setRowStretch(2, 1);
}

QGroupBox *ControlPage::NewFileFrame() {
    auto *frame =
        NewButtonFrame("fraFileIO", tr("File I/O"),
                       {{cmdLogData, "cmdLogData", tr("Log Data To File...")},
                        {cmdSaveRegs, "cmdSaveRegs", tr("Save Current Setup...")},
                        {cmdRecallRegs, "cmdRecallRegs", tr("Recall Previous Setup ...")}},
                       this);
    prgbarLog = Named(new QProgressBar(frame), "prgbarLog");
    prgbarLog->setAccessibleName(tr("Progress of the log"));
    prgbarLog->setValue(0);
    prgbarLog->setTextVisible(false);
    lblLogEntries = Named(new QLabel(QStringLiteral("0"), frame), "lblLogEntries");
    auto *caption = new QLabel(tr("Log Entries"), frame);
    caption->setBuddy(lblLogEntries);

    auto *entries = new QHBoxLayout;
    entries->addWidget(caption);
    entries->addWidget(lblLogEntries);
    entries->addStretch();
    auto *layout = static_cast<QBoxLayout *>(frame->layout());
    layout->insertWidget(1, prgbarLog);
    layout->insertLayout(2, entries);
    return frame;
}

void ControlPage::DisableAuto() {
    cmdAuto->setEnabled(false);
}

void ControlPage::DisableSetLookups() {
    cmdSetLookups->setEnabled(false);
}

void ControlPage::DisableManual() {
    cmdManual->setEnabled(false);
}

} // namespace ztm
