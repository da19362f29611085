// The pages of the search wizard: their controls and texts.

#include "ui/session/InitForm.h"

#include "link/LinkState.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Text.h"

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QVBoxLayout>

namespace ztm {

QLabel *InitForm::NewLabel(const char *name, QWidget *panel) {
    auto *label = Named(new QLabel(panel), name);
    label->setWordWrap(true);
    return label;
}

void InitForm::SetupWelcomePanel() {
    WelcomePanel = Named(new Frame(this), "WelcomePanel");
    WelcomeLBL = NewLabel("WelcomeLBL", WelcomePanel);
    WelcomeInstructionsLBL = NewLabel("WelcomeInstructionsLBL", WelcomePanel);
    auto *layout = new QVBoxLayout(WelcomePanel);
    layout->addStretch(1);
    layout->addWidget(WelcomeLBL);
    layout->addStretch(2);
    layout->addWidget(WelcomeInstructionsLBL);
}

void InitForm::SetupMediumPanel() {
    SeclectComsMediumPanel = Named(new Frame(this), "SeclectComsMediumPanel");
    PPCheck = Named(new QCheckBox(tr("Parallel Printer Port"), SeclectComsMediumPanel), "PPCheck");
    PPSearchDescLBL = NewLabel("PPSearchDescLBL", SeclectComsMediumPanel);
    USBCheck = Named(new QCheckBox(tr("USB"), SeclectComsMediumPanel), "USBCheck");
    USBSearchDescLBL = NewLabel("USBSearchDescLBL", SeclectComsMediumPanel);
    SMBusCheck = Named(new QCheckBox(tr("On-Board SMBus"), SeclectComsMediumPanel), "SMBusCheck");
    SMBusSearchDescLBL = NewLabel("SMBusSearchDescLBL", SeclectComsMediumPanel);
    SearchMediumInstLBL = NewLabel("SearchMediumInstLBL", SeclectComsMediumPanel);
    USBCheck->setChecked(true);
    Enable(*SMBusCheck, false, tr("Not on this computer"));

    auto *layout = new QVBoxLayout(SeclectComsMediumPanel);
    layout->addStretch(1);
    const std::pair<QCheckBox *, QLabel *> media[] = {
        {PPCheck, PPSearchDescLBL}, {USBCheck, USBSearchDescLBL}, {SMBusCheck, SMBusSearchDescLBL}};
    for (const auto &[check, description] : media) {
        description->setIndent(fontMetrics().height() * 3 / 2);
        layout->addWidget(check, 0, Qt::AlignLeft);
        layout->addWidget(description);
        layout->addSpacing(fontMetrics().height() / 2);
    }
    PPCheck->hide();
    PPSearchDescLBL->hide();
    layout->addStretch(2);
    layout->addWidget(SearchMediumInstLBL);
}

void InitForm::SetupSearchingPanel() {
    SearchingPanel = Named(new Frame(this), "SearchingPanel");
    SearchingLBL = NewLabel("SearchingLBL", SearchingPanel);
    SearchingLBL->setText(tr("Searching"));
    SearchingDetailsLBL = NewLabel("SearchingDetailsLBL", SearchingPanel);
    SearchProgress = Named(new QProgressBar(SearchingPanel), "SearchProgress");
    SearchProgress->setAccessibleName(tr("Progress of the search"));
    SearchProgress->setTextVisible(false);
    SearchProgress->setValue(0);

    auto *layout = new QVBoxLayout(SearchingPanel);
    layout->addStretch(1);
    layout->addWidget(SearchingLBL);
    layout->addWidget(SearchingDetailsLBL);
    layout->addSpacing(fontMetrics().height());
    layout->addWidget(SearchProgress);
    layout->addStretch(2);
}

void InitForm::SetupResultsPanel() {
    SearchResultsPanel = Named(new Frame(this), "SearchResultsPanel");
    SearchResultsDescLBL = NewLabel("SearchResultsDescLBL", SearchResultsPanel);
    SearchResultsDescLBL->setText(tr("Search Results"));
    SearchResultsLIST = Named(new QListWidget(SearchResultsPanel), "SearchResultsLIST");
    SearchResultsLIST->setAccessibleName(SearchResultsDescLBL->text());
    SearchResultsLIST->setSelectionMode(QAbstractItemView::SingleSelection);
    SearchResultsLBL = NewLabel("SearchResultsLBL", SearchResultsPanel);
    SearchInsLBL = NewLabel("SearchInsLBL", SearchResultsPanel);

    auto *layout = new QVBoxLayout(SearchResultsPanel);
    layout->addWidget(SearchResultsDescLBL);
    layout->addWidget(SearchResultsLIST, 1);
    layout->addWidget(SearchResultsLBL);
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addWidget(SearchInsLBL);
}

void InitForm::SetTexts() {
    const QString family = ToQString(FamilyName);
    setWindowTitle(tr("%1 Search Wizard").arg(family));
    WelcomeLBL->setText(tr("This %1 Search Wizard will find any %1s that can be controlled by "
                           "this software")
                            .arg(family));
    WelcomeInstructionsLBL->setText(tr("Click 'Next' to start."));
    PPSearchDescLBL->setText(
        tr("Remember to connect the %1 evaluation board to the printer port").arg(family));
    USBSearchDescLBL->setText(
        tr("Remember to connect the %1 evaluation board to the USB port").arg(family));
    SMBusSearchDescLBL->setText(tr("SMBus search option"));
    SearchMediumInstLBL->setText(tr("Click 'Next' to search for the %1.").arg(family));
    SearchingDetailsLBL->setText(tr("Please wait while searching for available %1s.").arg(family));
    SearchResultsLBL->setText(tr("Please select one of the %1s found above.").arg(family));
    SearchInsLBL->setText(tr("Click 'Next' to Continue"));
}

/// Gives the notes on the media a green that is readable on the window's background.
void InitForm::SetGreenText() {
    const bool dark = palette().color(QPalette::Window).lightness() < 128;
    const QColor green = dark ? QColor(120, 210, 120) : QColor(0, 110, 0);
    for (auto *label : {PPSearchDescLBL, USBSearchDescLBL, SMBusSearchDescLBL}) {
        QPalette colours;
        colours.setColor(QPalette::WindowText, green);
        label->setPalette(colours);
    }
}

} // namespace ztm
