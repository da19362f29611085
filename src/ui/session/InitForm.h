#pragma once

#include "discovery/DeviceScan.h"
#include "ui/kit/Form.h"

#include <QMap>

class QCheckBox;
class QGroupBox;
class QLabel;
class QListWidget;
class QProgressBar;
class QPushButton;

namespace ztm {

class ProductPicture;

/// The search wizard that the program starts with: welcome, choice of medium, search, results.
/// Finish starts the session with the chosen device; closing it in any other way ends the program.
class InitForm final : public Form, private ScanWindow {
    Q_OBJECT

public:
    InitForm();

protected:
    void Form_Unload() override;
    void closeEvent(QCloseEvent *event) override;
    void changeEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void EnterPressed() override;
    void EscapePressed() override;

private:
    void SetupUi();
    void SetupButtons();
    void SetupWelcomePanel();
    void SetupMediumPanel();
    void SetupSearchingPanel();
    void SetupResultsPanel();
    QLabel *NewLabel(const char *name, QWidget *panel);
    void ConnectSignals();

    void Form_Load();
    void CollectPanels();
    void SetTexts();
    void SetGreenText();
    void PlacePanels();

    void NextCMD_Click();
    void BackCMD_Click();
    void FinishCMD_Click();
    void CancelCMD_Click();
    void SearchResultsLIST_SelectionChanged();
    void NavigateWizard();
    void ExplainButtons();
    void ShowPanel(int page);
    void StartSearch();
    void ShowSearchResults();

    void SetProgressMaximum(int units) override;
    void SetProgress(double units) override;
    bool LetEventsRun() override;

    int CurrentPage = 1;
    bool MovingForward = false;
    bool SessionFinished = false;
    bool MainWindowLoaded = false;
    bool searching = false;
    bool closedWhileSearching = false;
    QMap<QString, QGroupBox *> Panels;

    QPushButton *NextCMD;
    QPushButton *FinishCMD;
    QPushButton *CancelCMD;
    QPushButton *BackCMD;

    ProductPicture *Image2;
    QWidget *panelArea; // reserves the space of the panels in the layout

    QGroupBox *WelcomePanel;
    QLabel *WelcomeLBL;
    QLabel *WelcomeInstructionsLBL;

    QGroupBox *SeclectComsMediumPanel;
    QCheckBox *PPCheck;
    QCheckBox *USBCheck;
    QCheckBox *SMBusCheck;
    QLabel *PPSearchDescLBL;
    QLabel *USBSearchDescLBL;
    QLabel *SMBusSearchDescLBL;
    QLabel *SearchMediumInstLBL;

    QGroupBox *SearchingPanel;
    QLabel *SearchingLBL;
    QLabel *SearchingDetailsLBL;
    QProgressBar *SearchProgress;

    QGroupBox *SearchResultsPanel;
    QLabel *SearchResultsDescLBL;
    QLabel *SearchResultsLBL;
    QListWidget *SearchResultsLIST;
    QLabel *SearchInsLBL;
};

} // namespace ztm
