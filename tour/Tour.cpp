// Walks through the real windows on the simulated board, as a new user would, and saves a numbered
// picture at every stop. Program and board share a simulated clock, so nothing has to wait.
//
//   ztm-tour FOLDER [dark] [14pt] [800x600]
//
// "14pt" or another size sets the font, "800x600" or another size that of the main window.

#include "TourBoard.h"
#include "app/BoardWindow.h"
#include "app/BusWindow.h"
#include "link/CommFailure.h"
#include "link/USBComms.h"
#include "support/ClockDouble.h"
#include "support/CoreState.h"
#include "support/Instrument.h"
#include "support/TemporaryFile.h"
#include "support/WindowDriver.h"
#include "ui/display/frmLogView.h"
#include "ui/fan/LookupGraph.h"
#include "ui/instruments/Gauge.h"
#include "ui/instruments/StripChart.h"
#include "ui/session/InitForm.h"
#include "ui/session/Program.h"

#include <QComboBox>
#include <QDir>
#include <QLineEdit>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTextStream>
#include <QTimer>

#include <cstdlib>

namespace {

using namespace ztm::test;

constexpr double tickSeconds = 0.030;

class Tour {
public:
    /// The main window gets that size, if it is valid.
    explicit Tour(const QString &folder, QSize size) : folder(folder), size(size) {}

    void Walk() {
        PlugIn(ztm::sim::Variant::ZTM7720, [this] { return clock.TotalSeconds(); });
        Wizard();
        About();
        RegisterAccess();
        VisualDisplay();
        Control();
        Logging();
        Therm();
        ManualSpeed();
        HeaterRamp();
        AutomaticControl();
        CloseByCloseBox("frmMain");
        DeleteAllForms();

        ResetCoreState();
        PlugIn(ztm::sim::Variant::ZTM7710, [this] { return clock.TotalSeconds(); });
        SmallerVariant();
        DeleteAllForms();

        ResetCoreState();
        PlugIn(ztm::sim::Variant::ZTM7720, [this] { return clock.TotalSeconds(); });
        Regulation();
        StalledFan();
        ChoiceOfTheBus();
    }

private:
    void Wizard() {
        ztm::ShowForm<ztm::InitForm>();
        Picture("InitForm", "welcome");
        Click("NextCMD");
        Picture("InitForm", "medium");
        // The search blocks here, so its picture is taken in an event that it processes.
        QTimer::singleShot(0, [this] { Picture("InitForm", "searching"); });
        Click("NextCMD");
        Picture("InitForm", "results");
        Click("FinishCMD");
    }

    void About() {
        ClickTab("About");
        Picture("frmMain", "about");
    }

    void RegisterAccess() {
        ClickTab("Register Access");
        Picture("frmMain", "register-access");
        ClickNode("Temperature");
        ClickNode("Local High Limit");
        Click("lblBit(3)");
        Picture("frmMain", "register-bit-flipped");
        Type("txtDec", "100");
        Click("cmdWrite");
        Picture("frmMain", "register-written");
        Type("txtReadAddr", "1fe");
        Picture("frmMain", "register-out-of-range");
        Type("txtReadAddr", "fe");
        Press("txtReadAddr", Qt::Key_Return);
        Picture("frmMain", "register-unknown");
        Click("cmdReadAll");
        Settle();
        Live(1);
        ClickNode("Configuration1");
        Picture("frmMain", "register-map");
        Comparison();
        Traffic();
    }

    void Comparison() {
        Click("cmdCompare");
        Click("cmdReadChip");
        Live(1);
        Picture("frmCompare", "comparison");
        Click("chkAll");
        Picture("frmCompare", "comparison-all");
        CloseByCloseBox("frmCompare");
    }

    void Traffic() {
        Click("cmdTraffic");
        Find<QTableView>("tblTraffic").selectRow(8);
        Picture("frmTraffic", "bus-traffic");
        CloseByCloseBox("frmTraffic");
    }

    void VisualDisplay() {
        ClickTab("Visual Display");
        Picture("frmMain", "visual-display");
        Click("cmdSetUpLog");
        Picture("frmSetupLog", "easy-setup-log");
        Click("cmdEasySetup");
        Live(8);
        ztm::SetHeaterDuty(60, 25);
        Live(40);
        Picture("frmMain", "live");
        SetHighLimit(45);
        Live(6);
        Picture("frmMain", "alarm");
        Measure();
        Click("cmdGraphOptions");
        Picture("frmGraphOptions", "options");
        Click("chkBigGraph");
        Click("cmdOK");
        Live(2);
        Picture("frmBigGraph", "full-screen-graph");
        CloseByCloseBox("frmBigGraph");
    }

    /// Sets the cursors around the rise after the heaters were switched on, and lists what
    /// happened.
    void Measure() {
        auto &chart = Find<ztm::StripChart>("stpTempFan");
        chart.Fit();
        PutCursor(chart, chart.VisibleTo() - 45, Qt::Key_1);
        PutCursor(chart, chart.VisibleTo() - 15, Qt::Key_2);
        Press("tblMeasurement", Qt::Key_Down);
        Press("tblMeasurement", Qt::Key_Down);
        Picture("frmMain", "measurement");
        emit chart.MarkEntered(chart.VisibleTo() - 20, "fan guard on");
        emit chart.EventsWanted();
        Picture("frmEvents", "events");
        CloseByCloseBox("frmEvents");
        QTest::keyClick(&chart, Qt::Key_Delete);
        chart.RestoreScales();
    }

    static void PutCursor(ztm::StripChart &chart, double time, Qt::Key key) {
        const QPointF place(chart.PointOf(time, 0).x(), chart.height() / 2.0);
        SendMouse(chart, QEvent::MouseMove, place, Qt::NoButton);
        QTest::keyClick(&chart, key);
        QEvent away(QEvent::Leave);
        QCoreApplication::sendEvent(&chart, &away);
        for (int turn = 0; turn < 4; ++turn) {
            Settle(); // the panel finds its size step by step
        }
    }

    /// Drags the high pointer of the first remote channel.
    void SetHighLimit(double celsius) {
        Click("optMeasure(1)");
        Settle();
        auto &gauge = Find<ztm::Gauge>("Limits(0)");
        const QPoint from = gauge.PointerPosition(3, gauge.HighPointer()).toPoint();
        const QPoint to = gauge.PointerPosition(3, celsius).toPoint();
        QTest::mousePress(&gauge, Qt::LeftButton, {}, from);
        QTest::mouseMove(&gauge, to);
        QTest::mouseRelease(&gauge, Qt::LeftButton, {}, to);
    }

    void SmallerVariant() {
        ztm::ShowForm<ztm::InitForm>();
        SearchInWizard();
        Click("FinishCMD");
        ClickTab("Register Access");
        Picture("frmMain", "one-fan-register-access");
        ClickTab("Visual Display");
        Click("cmdEasySetup");
        ztm::SetHeaterDuty(40, 0);
        Live(30);
        Picture("frmMain", "one-fan-live");
        Therm();
        ManualSpeed();
        AutomaticControl();
    }

    void Therm() {
        ClickTab("Control");
        Click("cmdThermTemp");
        Picture("frmThermTemp", "therm-temperature");
        Click("cmdThermTimer");
        Picture("frmThermTimer", "therm-timer");
        CloseByCloseBox("frmThermTemp");
        CloseByCloseBox("frmThermTimer");
    }

    void ManualSpeed() {
        ClickTab("Control");
        Click("cmdManual");
        Live(1);
        Picture("frmManual", "manual-speed");
        CloseByCloseBox("frmManual");
    }

    void HeaterRamp() {
        ClickTab("Control");
        Click("cmdHeaters");
        Click("chkSWControl(0)");
        Type("txtIncrement(0)", "5");
        Type("txtInterval(0)", "2000");
        Click("cmdApply");
        Live(60);
        Picture("frmHeaters", "heater-ramp");
        ClickTab("Visual Display");
        Live(1);
        Picture("frmMain", "heater-ramp-live");
        Click("chkSWControl(0)");
        Click("cmdApply");
        CloseByCloseBox("frmHeaters");
    }

    void AutomaticControl() {
        ClickTab("Control");
        FanConfiguration();
        Click("cmdAuto");
        Picture("frmAutoControl", "automatic-control-fresh");
        CloseByCloseBox("frmAutoControl");
        Click("cmdSetLookups");
        Click("cmdTestData");
        Picture("frmLookup", "lookup-points");
        ClickOn("frmLookup", "cmdOK");
        Curve();
    }

    /// Selects automatic control, which the other windows need.
    void FanConfiguration() {
        Click("cmdConParam");
        Click("optAuto");
        if (Find("opt8Points").isVisible()) {
            Click("opt8Points");
        }
        Picture("frmConfig", "fan-configuration");
        Find("frmConfig").findChild<QTabWidget *>("SSTab1")->setCurrentIndex(1);
        Picture("frmConfig", "fan-configuration-fan");
        ClickOn("frmConfig", "cmdOK");
    }

    void Curve() {
        Click("cmdAuto");
        Click("optControl(3)");
        Picture("frmAutoControl", "automatic-control");
        Click("optLinear");
        auto &graph = Find<ztm::LookupGraph>("pctGraph");
        graph.carriedAt = QPointF(2600, 900);
        graph.update();
        Picture("frmAutoControl", "automatic-control-carrying");
        graph.carriedAt.reset();
        Type("txtRPMLookup", "3000");
        Click("optControl(6)");
        Type("txtTLookUp", "75");
        Click("optControl(7)");
        Type("txtTLookUp", "200");
        Picture("frmAutoControl", "automatic-control-odd");
        Click("cmdSetLookups");
        Picture("frmLookup", "lookup-points-differ");
        CloseByCloseBox("frmLookup");
        CloseByCloseBox("frmAutoControl");
    }

    /// Clicks a control whose name also occurs in other windows.
    static void ClickOn(const char *form, const char *control) {
        QTest::mouseClick(Find(form).findChild<QWidget *>(control), Qt::LeftButton);
    }

    /// A heater drives one channel into alarm, and the fans bring it out again by themselves.
    void Regulation() {
        ztm::ShowForm<ztm::InitForm>();
        SearchInWizard();
        Click("FinishCMD");
        ClickTab("Visual Display");
        Click("cmdEasySetup");
        SetHighLimit(58);
        Live(10);
        HeatByRamp();
        Live(60);
        Picture("frmMain", "heated-into-alarm");
        ClickTab("Control");
        Click("cmdConParam");
        Click("optAuto");
        Click("opt8Points");
        ClickOn("frmConfig", "cmdOK");
        Click("cmdSetLookups");
        Click("cmdTestData");
        ClickOn("frmLookup", "cmdOK");
        ClickTab("Visual Display");
        Live(40);
        Picture("frmMain", "cooled-by-automatic-control");
    }

    /// Around 60 % on heater 1, a quarter on the other.
    void HeatByRamp() {
        ClickTab("Control");
        Click("cmdHeaters");
        Click("chkSWControl(0)");
        for (const auto &[box, text] : {std::pair{"txtPWM(0)", "60"},
                                        {"txtPWM(1)", "25"},
                                        {"txtFrom(0)", "50"},
                                        {"txtTo(0)", "70"},
                                        {"txtIncrement(0)", "5"},
                                        {"txtInterval(0)", "2000"}}) {
            Type(box, text);
        }
        Click("cmdApply");
        CloseByCloseBox("frmHeaters");
        ClickTab("Visual Display");
    }

    /// The user stops a fan at the bench.
    void StalledFan() {
        ztm::BoardWindow bench;
        bench.show();
        Picture(bench, "simulated-board");
        bench.findChild<QComboBox *>("cmbFan(0)")->setCurrentText("Stalled");
        Live(20);
        Picture("frmMain", "stalled-fan");
    }

    /// What ztm-eval-i2c begins with.
    void ChoiceOfTheBus() {
        ztm::BusWindow window;
        window.show();
        window.findChild<QComboBox *>("cmbBus")->setCurrentIndex(0);
        window.findChild<QComboBox *>("cmbAddress")->setCurrentText("0x2C  (8-bit 0x58)");
        Picture(window, "i2c-bus");
    }

    /// Advances the time of board and program.
    void Live(double seconds) {
        for (double passed = 0; passed < seconds; passed += tickSeconds) {
            clock.Advance(tickSeconds);
            Tick();
        }
    }

    void Control() {
        ClickTab("Control");
        Picture("frmMain", "control");
    }

    void Logging() {
        const TemporaryFolder files;
        Click("cmdLogData");
        for (const char *channel : {"chkLog(0)", "chkLog(1)", "chkLog(3)"}) {
            Click(channel);
        }
        Type("txtNumLogs", "500");
        Picture("frmLogging", "logging");
        AnswerFileDialogOf([] { Click("cmdOK"); },
                           QString::fromStdString(files.Path("measurements.xls")));
        Live(25);
        Picture("frmMain", "log-running");
        Click("cmdLogData");
        ztm::SetHeaterDuty(100, 60);
        Log(files.Path("hotter.xls"), 25);
        ztm::SetHeaterDuty(60, 25);
        RecordedLogs(files.Path("measurements.xls"), files.Path("hotter.xls"));
    }

    /// Records the same channels once more.
    void Log(const std::string &path, double seconds) {
        Click("cmdLogData");
        AnswerFileDialogOf([] { Click("cmdOK"); }, QString::fromStdString(path));
        Live(seconds);
        Click("cmdLogData");
    }

    void RecordedLogs(const std::string &one, const std::string &other) {
        auto &view = ztm::ShowForm<ztm::frmLogView>();
        for (const auto &open : {&ztm::frmLogView::OpenLog, &ztm::frmLogView::LayOver}) {
            (view.*open)(QString::fromStdString(open == &ztm::frmLogView::OpenLog ? one : other));
            while (Find<QTimer>("reading").isActive()) {
                QCoreApplication::processEvents();
            }
        }
        view.resize(900, 640);
        Settle();
        auto &chart = Find<ztm::StripChart>("stpLog");
        chart.Fit();
        Settle();
        PutCursor(chart, 4, Qt::Key_1);
        PutCursor(chart, 18, Qt::Key_2);
        Picture("frmLogView", "recorded-logs");
        CloseByCloseBox("frmLogView");
    }

    void Picture(const QString &form, const QString &what) { Picture(Find(form), what); }

    void Picture(QWidget &window, const QString &what) {
        if (size.isValid() && window.objectName() == QLatin1String("frmMain")) {
            window.resize(size);
        }
        Settle();
        const QString path =
            QDir(folder).filePath(QString("%1-%2.png").arg(++number, 2, 10, QChar('0')).arg(what));
        if (!window.grab().save(path)) {
            throw std::runtime_error("cannot write " + path.toStdString());
        }
        QTextStream(stdout) << path << '\n';
    }

    ClockDouble clock;
    QString folder;
    QSize size;
    int number = 0;
};

void UseDarkPalette() {
    QPalette dark(QColor(49, 54, 59), QColor(42, 46, 50));
    dark.setColor(QPalette::Base, QColor(27, 30, 32));
    dark.setColor(QPalette::Highlight, QColor(61, 174, 233));
    QApplication::setPalette(dark);
}

} // namespace

int main(int argumentCount, char *arguments[]) {
    int one = 1;
    QApplication application(one, arguments);
    if (argumentCount < 2) {
        QTextStream(stderr) << "usage: ztm-tour FOLDER [dark] [14pt] [800x600]\n";
        return EXIT_FAILURE;
    }
    QSize size;
    for (const QString &look : std::vector<QString>(arguments + 2, arguments + argumentCount)) {
        if (look == QLatin1String("dark")) {
            UseDarkPalette();
        } else if (look.endsWith(QLatin1String("pt"))) {
            QFont font = QApplication::font();
            font.setPointSizeF(look.chopped(2).toDouble());
            QApplication::setFont(font);
        } else {
            size = {look.section('x', 0, 0).toInt(), look.section('x', 1).toInt()};
        }
    }
    ztm::SetCommFailureHandler(ztm::EndAfterCommFailure);
    try {
        Tour(arguments[1], size).Walk();
    } catch (const std::exception &failure) {
        QTextStream(stderr) << "the tour ended early: " << failure.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
