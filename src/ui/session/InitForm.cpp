#include "ui/session/InitForm.h"

#include "link/LinkState.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"
#include "ui/kit/Twips.h"
#include "ui/session/ProductPicture.h"
#include "ui/session/Program.h"
#include "ui/session/SessionStart.h"
#include "ui/session/frmMain.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QVBoxLayout>

#include <stdexcept>

namespace ztm {
namespace {

constexpr double shownPanelTwips = 1320;
constexpr double hiddenPanelTwips = -5000;

QString Key(int page) {
    return QString::number(page);
}

} // namespace

InitForm::InitForm() : Form(QStringLiteral("InitForm")) {
    SetupUi();
    ConnectSignals();
    try {
        Form_Load();
    } catch (const std::exception &) {
        ShowMessage(tr("Error in Init Form Load"), tr("Error"), QMessageBox::Critical);
        NextCMD->setFocus();
    }
}

void InitForm::SetupUi() {
    SetupButtons();
    Image2 = Named(new ProductPicture(this), "Image2");
    panelArea = new QWidget(this);
    SetupWelcomePanel();
    SetupMediumPanel();
    SetupSearchingPanel();
    SetupResultsPanel();

    QSize panelSize;
    for (const auto *panel :
         {WelcomePanel, SeclectComsMediumPanel, SearchingPanel, SearchResultsPanel}) {
        panelSize = panelSize.expandedTo(panel->minimumSizeHint());
    }
    panelArea->setMinimumSize(
        panelSize.expandedTo({fontMetrics().averageCharWidth() * 60, fontMetrics().height() * 15}));

    auto *line = new QFrame(this);
    line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    for (auto *button : {BackCMD, NextCMD, FinishCMD, CancelCMD}) {
        buttons->addWidget(button);
    }
    auto *layout = new QVBoxLayout(this);
    const int left = Twips(shownPanelTwips, *this);
    auto *panels = new QHBoxLayout;
    panels->addSpacing(left - layout->contentsMargins().left());
    panels->addWidget(panelArea);
    layout->addLayout(panels, 1);
    layout->addWidget(line);
    layout->addLayout(buttons);
}

void InitForm::SetupButtons() {
    // Created in tab order: from Next along the row of buttons, then Back, then the page.
    NextCMD = NewButton("NextCMD", tr("Next >"), this);
    FinishCMD = NewButton("FinishCMD", tr("Finish"), this);
    CancelCMD = NewButton("CancelCMD", tr("Cancel"), this);
    BackCMD = NewButton("BackCMD", tr("< Back"), this);
    FinishCMD->setEnabled(false);
    BackCMD->setEnabled(false);
    NextCMD->setFocus();
}

void InitForm::ConnectSignals() {
    connect(NextCMD, &QPushButton::clicked, this, &InitForm::NextCMD_Click);
    connect(BackCMD, &QPushButton::clicked, this, &InitForm::BackCMD_Click);
    connect(FinishCMD, &QPushButton::clicked, this, &InitForm::FinishCMD_Click);
    connect(CancelCMD, &QPushButton::clicked, this, &InitForm::CancelCMD_Click);
    connect(SearchResultsLIST, &QListWidget::itemSelectionChanged, this,
            &InitForm::SearchResultsLIST_SelectionChanged);
}

void InitForm::Form_Load() {
    CurrentPage = 1;
    CollectPanels();
    ShowPanel(1);
    SetTexts();
    SetGreenText();
    ExplainButtons();
}

void InitForm::CollectPanels() {
    int page = 0;
    for (const char *name :
         {"WelcomePanel", "SeclectComsMediumPanel", "SearchingPanel", "SearchResultsPanel"}) {
        auto *panel = findChild<QGroupBox *>(QLatin1String(name));
        if (panel == nullptr) {
            throw std::runtime_error("a page is missing");
        }
        Panels.insert(Key(++page), panel);
    }
}

void InitForm::ShowPanel(int page) {
    for (auto *panel : std::as_const(Panels)) {
        panel->hide();
    }
    Panels.value(Key(page))->show();
    PlacePanels();
}

void InitForm::PlacePanels() {
    for (auto *panel : std::as_const(Panels)) {
        const double left = panel->isHidden() ? hiddenPanelTwips : shownPanelTwips;
        panel->setGeometry(Twips(left, *this), panelArea->y(), panelArea->width(),
                           panelArea->height());
    }
    const int margin = layout()->contentsMargins().left();
    Image2->setGeometry(margin, panelArea->y(), Twips(shownPanelTwips, *this) - 2 * margin,
                        panelArea->height());
}

void InitForm::NextCMD_Click() {
    MovingForward = true;
    NavigateWizard();
}

void InitForm::BackCMD_Click() {
    MovingForward = false;
    NavigateWizard();
}

void InitForm::NavigateWizard() {
    if (MovingForward) {
        if (CurrentPage == 1) {
            CurrentPage = 2;
            ShowPanel(2);
            BackCMD->setEnabled(true);
        } else if (CurrentPage == 2) {
            StartSearch();
        } else if (CurrentPage == 4) {
            ShowPanel(4);
            BackCMD->setEnabled(true);
            FinishCMD->setEnabled(true);
            NextCMD->setEnabled(false);
        }
    } else if (CurrentPage == 2) {
        CurrentPage = 1;
        ShowPanel(1);
        BackCMD->setEnabled(false);
    } else if (CurrentPage == 4) {
        SearchResultsLIST->clear();
        CurrentPage = 2;
        ShowPanel(2);
        NextCMD->setEnabled(true);
        FinishCMD->setEnabled(false);
    }
    if (CurrentPage == 1 || !MovingForward) {
        NextCMD->setFocus();
    }
    ExplainButtons();
}

/// Says in the tooltips why buttons are disabled.
void InitForm::ExplainButtons() {
    const bool isLast = CurrentPage == 4;
    const auto explain = [this](QPushButton &button, const QString &whyNot) {
        button.setToolTip(button.isEnabled() ? QString()
                          : CurrentPage == 3 ? tr("The search is running")
                                             : whyNot);
    };
    explain(*BackCMD, tr("This is the first page"));
    explain(*NextCMD, tr("This is the last page"));
    explain(*FinishCMD, isLast ? tr("No device was found") : tr("Search for a device first"));
    explain(*CancelCMD, {});
}

void InitForm::StartSearch() {
    const SearchMedia media{PPCheck->isChecked(), SMBusCheck->isChecked(), USBCheck->isChecked()};
    if (!media.PrinterPort && !media.SMBus && !media.USB) {
        ShowMessage(tr("Please select a search medium"), tr("A problem was detected"));
        return;
    }
    CurrentPage = 3;
    ShowPanel(3);
    SearchingPanel->repaint();
    for (auto *button : {CancelCMD, BackCMD, NextCMD, FinishCMD}) {
        button->setEnabled(false);
    }
    ExplainButtons();
    setCursor(Qt::WaitCursor);
    repaint(); // no events are processed while the adapter starts
    if (media.USB) {
        CommsMedium = MediumUSB;
    }
    LoadForm<frmMain>(media.USB);
    MainWindowLoaded = true;
    searching = true;
    RunSearch(media, *this);
    searching = false;
    if (closedWhileSearching) {
        CancelCMD_Click();
        return;
    }
    for (auto *button : {CancelCMD, BackCMD, FinishCMD}) {
        button->setEnabled(true);
    }
    NextCMD->setEnabled(false);
    unsetCursor();
    ShowSearchResults();
    CurrentPage = 4;
    ShowPanel(4);
    SearchProgress->setValue(0);
    ExplainButtons();
    for (auto *button : {FinishCMD, NextCMD, BackCMD}) {
        if (button->isEnabled()) {
            button->setFocus();
            break;
        }
    }
}

void InitForm::ShowSearchResults() {
    SearchResultsLIST->clear();
    if (const auto entry = FoundDeviceEntry()) {
        SearchResultsLIST->addItem(ToQString(*entry));
        SearchResultsLIST->setCurrentRow(0);
        SearchResultsLBL->setText(
            tr("Please select one of the %1s found above.").arg(ToQString(FamilyName)));
        SearchInsLBL->setText(tr("Click 'Finish' to Continue"));
        return;
    }
    SearchResultsLBL->setText(
        tr("Sorry, no %1s were found. Please check all connections and try again")
            .arg(ToQString(FamilyName)));
    SearchInsLBL->setText(tr("Click Back to continue..."));
    if (AdapterFailed) {
        SearchResultsLBL->setToolTip(tr("The adapter could not be started, and is not tried again. "
                                        "Only a new start of the program helps."));
    }
    FinishCMD->setEnabled(false);
}

void InitForm::FinishCMD_Click() {
    const auto selected = SearchResultsLIST->selectedItems();
    TakeDevice(selected.isEmpty() ? std::string() : selected.first()->text().toStdString());
    if (DeviceName.empty()) {
        EndProgramAtOnce(EXIT_SUCCESS);
    }
    SessionFinished = true;
    StartSession();
    Unload();
}

/// A click beside the entries must not clear the selection that Finish needs.
void InitForm::SearchResultsLIST_SelectionChanged() {
    if (SearchResultsLIST->selectedItems().isEmpty() &&
        SearchResultsLIST->currentItem() != nullptr) {
        SearchResultsLIST->currentItem()->setSelected(true);
    }
}

void InitForm::CancelCMD_Click() {
    if (!SessionFinished && MainWindowLoaded) {
        if (auto *mainWindow = LoadedForm<frmMain>()) {
            mainWindow->Unload();
        }
        MainWindowLoaded = false;
    }
    Unload();
}

void InitForm::Form_Unload() {
    if (!SessionFinished) {
        UnloadAllForms();
    }
}

void InitForm::closeEvent(QCloseEvent *event) {
    if (searching) {
        // The search is still running further down the stack: it stops first, then closes the
        // wizard.
        closedWhileSearching = true;
        event->accept();
        return;
    }
    Form::closeEvent(event);
}

void InitForm::changeEvent(QEvent *event) {
    if (event->type() == QEvent::PaletteChange && !Panels.isEmpty()) {
        SetGreenText();
    }
    Form::changeEvent(event);
}

void InitForm::resizeEvent(QResizeEvent *event) {
    Form::resizeEvent(event);
    layout()->activate();
    PlacePanels();
}

void InitForm::EnterPressed() {
    for (auto *button : {NextCMD, FinishCMD}) {
        if (button->isEnabled()) {
            button->click();
            return;
        }
    }
}

void InitForm::EscapePressed() {
    CancelCMD->click(); // nothing while it is disabled
}

void InitForm::SetProgressMaximum(int units) {
    SearchProgress->setMaximum(units);
}

void InitForm::SetProgress(double units) {
    SearchProgress->setValue(static_cast<int>(units));
}

bool InitForm::LetEventsRun() {
    QCoreApplication::processEvents();
    return !closedWhileSearching;
}

} // namespace ztm
