#include "common/At.h"
#include "files/SnapshotFile.h"
#include "link/Traffic.h"
#include "link/USBComms.h"
#include "support/TemporaryFile.h"
#include "support/UiTest.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>

#include <map>
#include <set>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class TrafficAndCompareTest : public UiTest {
protected:
    /// A session whose calls are all kept, without ticks of its own.
    void Open(std::string_view variant) {
        DeleteAllForms();
        ResetCore();
        SetCommFailureHandler([] { throw CommFailed{}; });
        Adapter().registers[0x3D] = variant == ZTM7710 ? 0x33 : 0x34;
        OpenWizard();
        SearchInWizard();
        Click("FinishCMD");
        Find<QTimer>("tmrMain").stop();
        Find<QTimer>("tmrStatus").stop();
        ClickTab("Register Access");
        Settle();
    }

    static Call CallOf(const Transfer &transfer) {
        switch (transfer.Kind) {
        case TransferKind::ReadRegister:
            return Read(transfer.Address);
        case TransferKind::WriteRegister:
            return Write(transfer.Address, transfer.Data[0]);
        case TransferKind::SetHeaters:
            return {0xDB, transfer.Data[0], transfer.Data[1], 0, 0};
        case TransferKind::ReadHeaters:
            return {0xDA, 0, 0, 1, 3};
        case TransferKind::Handshake:
            break;
        }
        return Handshake;
    }

    /// Who asked for the transfers from that number on.
    static std::set<std::string> RequestersFrom(uint64_t number) {
        std::set<std::string> requesters;
        for (; number < TransferCount(); ++number) {
            requesters.insert(TransferAt(number).Requester);
        }
        return requesters;
    }

    /// Lets a reading or a writing come to its end.
    static void Finish(const char *name) {
        auto *timer = qobject_cast<QTimer *>(&FindObject(name));
        timer = timer != nullptr ? timer : FindObject(name).findChild<QTimer *>();
        while (timer->isActive()) {
            QCoreApplication::processEvents();
        }
    }

    static void ReadChip() {
        Click("cmdReadChip");
        Finish("prgReading");
    }

    /// The rows of a table, their cells joined.
    static QStringList RowsOf(const char *name, const std::vector<int> &columns) {
        const auto &model = *Find<QAbstractItemView>(name).model();
        QStringList rows;
        for (int row = 0; row < model.rowCount(); ++row) {
            QStringList cells;
            for (const int column : columns) {
                cells += model.index(row, column).data().toString();
            }
            rows += cells.join('|');
        }
        return rows;
    }

    static QAction &ActionOf(const char *button, const char *name) {
        auto &menu = *Find<QPushButton>(button).menu();
        emit menu.aboutToShow();
        return *menu.findChild<QAction *>(name);
    }

    static std::string Copied(const char *kind) {
        ActionOf("cmdCopyAs", kind).trigger();
        return QGuiApplication::clipboard()->text().toStdString();
    }

    static void Choose(const char *list, const QString &state) {
        auto &box = Find<QComboBox>(list);
        box.setCurrentText(state);
        emit box.activated(box.currentIndex());
    }
};

TEST_F(TrafficAndCompareTest, EveryRequestOfASessionIsThereWithWhoAsked) {
    const std::map<std::string, std::set<std::string>> requesters{
        {"frmConfig", {"Fan Configuration"}}, {"frmAutoControl", {"Auto-Control Response"}},
        {"frmLookup", {"Set Lookup Points"}}, {"frmThermTemp", {"THERM Temperature"}},
        {"frmThermTimer", {"THERM Timer"}},   {"frmManual", {"Manual RPM Mode"}},
        {"frmHeaters", {"Heaters"}},
    };
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        Open(variant);
        EXPECT_EQ(RequestersFrom(0), (std::set<std::string>{"Session Start", "Search", "Tab"}));
        uint64_t begin = TransferCount();
        ForEveryDialog([&](const char *window) {
            if (const auto expected = requesters.find(window); expected != requesters.end()) {
                for (const char *name : {"cmdApply", "cmdOK"}) {
                    if (auto *button = Find(window).findChild<QPushButton *>(name)) {
                        button->click();
                    }
                }
                EXPECT_EQ(RequestersFrom(begin), expected->second) << window;
            }
            begin = TransferCount();
        });
        ClickTab("Visual Display");
        begin = TransferCount();
        const std::pair<const char *, const char *> clicks[] = {{"cmdEasySetup", "Easy Setup"},
                                                                {"optMeasure(1)", "Gauge Channel"}};
        for (const auto &[control, requester] : clicks) {
            Click(control);
            EXPECT_THAT(RequestersFrom(begin), ElementsAre(requester));
            begin = TransferCount();
        }
        for (int tick = 0; tick < 20; ++tick) {
            clock.Advance(0.03);
            Tick();
        }
        EXPECT_EQ(RequestersFrom(begin), (std::set<std::string>{"Monitor", "Alerts"}));
        ClickTab("Register Access");
        begin = TransferCount();
        const std::pair<const char *, const char *> accesses[] = {
            {"cmdRead", "Read"}, {"cmdWrite", "Write"}, {"lblBit(0)", "Bit Display"}};
        for (const auto &[control, requester] : accesses) {
            Click(control);
            EXPECT_THAT(RequestersFrom(begin), ElementsAre(requester));
            begin = TransferCount();
        }
        Adapter().script = [](const Call &) { return int16_t{1}; };
        EXPECT_THROW(ReadRegister(5), CommFailed);
        std::vector<Call> recorded;
        for (uint64_t number = 0; number < TransferCount(); ++number) {
            recorded.push_back(CallOf(TransferAt(number)));
        }
        EXPECT_EQ(recorded, Adapter().calls);
        EXPECT_FALSE(TransferAt(TransferCount() - 1).IsDone);
    }
}

TEST_F(TrafficAndCompareTest, TheTreeShowsWhatWasSeen) {
    Open(ZTM7720);
    Adapter().registers[0x01] = 0x01;
    Adapter().registers[0x02] = 0x80;
    ClickNode("Configuration2");
    clock.Advance(0.2);
    const auto &tree = Find<QTreeWidget>("TreeView1");
    const auto node = [&](const char *name) {
        return tree.findItems(name, Qt::MatchExactly | Qt::MatchRecursive).value(0);
    };
    EXPECT_EQ(node("Conversion Rate")->text(2), "");
    Tick();
    EXPECT_EQ(node("Configuration2")->text(2), "0x80");
    EXPECT_TRUE(node("Configuration2")->font(2).bold());
    EXPECT_EQ(node("Configuration2")->text(3), "0x84");
    EXPECT_EQ(node("Status1")->text(4), "read clears");

    Adapter().calls.clear();
    Click("cmdReadAll");
    Finish("prgReadAll");
    EXPECT_EQ(Adapter().calls.size(), 66U) << "69 but the status registers";
    EXPECT_EQ(node("Configuration1")->text(2), "0x01");
    EXPECT_FALSE(node("Configuration1")->font(2).bold());
    Adapter().calls.clear();
    Adapter().script = [this](const Call &) {
        clock.Advance(0.02); // a slow bus
        return int16_t{0};
    };
    Click("cmdReadAll");
    for (int slice = 0; slice < 100 && !Find("prgReadAll").isVisible(); ++slice) {
        QCoreApplication::processEvents();
    }
    EXPECT_TRUE(Find("prgReadAll").isVisible());
    Press("cmdReadAll", Qt::Key_Escape);
    const size_t stopped = Adapter().calls.size();
    EXPECT_LT(stopped, 66U);
    QCoreApplication::processEvents();
    EXPECT_EQ(Adapter().calls.size(), stopped);
    EXPECT_FALSE(Find("prgReadAll").isVisible());
}

TEST_F(TrafficAndCompareTest, TrafficIsFilteredPausedAndTakenAlongAsCode) {
    Open(ZTM7720);
    Click("cmdTraffic");
    Click("cmdClear");
    const auto follow = [this] {
        clock.Advance(0.2);
        Tick();
    };
    const std::vector<int> columns{2, 3, 4, 5, 6};
    Adapter().registers[0x0B] = 0x8B;
    {
        const Requester asked("a dialog");
        ReadRegister(0x0B);
        WriteRegister(0x0B, 0x8A);
        WriteRegister(0x0C, 0x55);
        SetHeaterDuty(40, HeaterUnchanged);
    }
    follow();
    const QStringList all{
        "read|0B Local High Limit|0x8B||a dialog", "write|0B Local High Limit|0x8A|0|a dialog",
        "write|0C Local Low Limit|0x55||a dialog", "set heaters||40 %, unchanged||a dialog"};
    EXPECT_EQ(RowsOf("tblTraffic", columns), all);
    Type("txtFilter", "WRITE");
    EXPECT_EQ(RowsOf("tblTraffic", columns), all.mid(1, 2));
    Type("txtFilter", "0b");
    EXPECT_EQ(RowsOf("tblTraffic", columns), all.mid(0, 2));
    Type("txtFilter", "");

    auto &table = Find<QTableView>("tblTraffic");
    EXPECT_FALSE(ActionOf("cmdCopyAs", "mnuText").isEnabled()) << "nothing is selected";
    table.selectAll();
    EXPECT_THAT(Copied("mnuC"), HasSubstr("    {0x0B, 0x8A}, /* Local High Limit */\n"
                                          "    {0x0C, 0x55}, /* Local Low Limit */\n};"));
    EXPECT_THAT(Copied("mnuText"), HasSubstr("read\t0B Local High Limit\t0x8B\t\ta dialog\n"));
    table.selectRow(3);
    EXPECT_FALSE(ActionOf("cmdSaveAs", "mnuC").isEnabled()) << "no register was written";
    const TemporaryFolder folder;
    table.selectRow(2);
    AnswerFileDialogOf([] { ActionOf("cmdSaveAs", "mnuSnapshot").trigger(); },
                       QString::fromStdString(folder.Path("one.sav")));
    EXPECT_THAT(ReadSnapshot(folder.Path("one.sav")).Registers,
                ElementsAre(RegisterSetting{0x0C, 0x55}));

    Click("chkPause");
    ReadRegister(0x0D);
    follow();
    EXPECT_EQ(RowsOf("tblTraffic", columns).size(), 4);
    Click("chkPause");
    follow();
    EXPECT_EQ(RowsOf("tblTraffic", columns).size(), 5);
    ClickTab("Visual Display");
    Click("cmdEasySetup");
    follow();
    const auto without = RowsOf("tblTraffic", columns).size();
    Click("chkMonitor");
    EXPECT_GT(RowsOf("tblTraffic", columns).size(), without);
}

TEST_F(TrafficAndCompareTest, TheTrafficStaysInStepWhenTheOldestAreDropped) {
    Open(ZTM7720);
    Click("cmdTraffic");
    for (size_t transfer = 0; transfer < TransfersKept + 50; ++transfer) {
        RecordTransfer(TransferKind::ReadRegister, 5, {1}, true);
        if (transfer % 40'000 == 0) {
            clock.Advance(0.2);
            Tick();
        }
    }
    clock.Advance(0.2);
    Tick();
    const auto &model = *Find<QTableView>("tblTraffic").model();
    EXPECT_EQ(model.rowCount(), static_cast<int>(TransfersKept));
    EXPECT_EQ(model.index(0, 3).data(), "05 Conversion Rate");
}

TEST_F(TrafficAndCompareTest, ComparesAndWritesWhatIsChecked) {
    Open(ZTM7720);
    for (int address = 0; address < 0x4F; ++address) {
        Adapter().registers[static_cast<size_t>(address)] = 0;
    }
    const TemporaryFolder folder;
    const auto path = QString::fromStdString(folder.Put(
        "other.sav",
        "ZTM7710 Evaluation Software\r\n\r\nSaved: now\r\n\r\nAddress, Data\r\n"
        "0x01, 0x41\t// \r\n0x02, 0x09\t// \r\n0x0B, 0x05\t// \r\n"
        "0x0C, 0x07\t// \r\n0x3D, 0x33\t// \r\n0x3C, 0x00\t// \r\n0x60, 0x01\t// \r\n\r\n"));
    Adapter().calls.clear();
    Click("cmdCompare");
    EXPECT_THAT(Adapter().calls, IsEmpty());
    EXPECT_FALSE(IsEnabled("cmdWriteSelected"));
    AnswerFileDialogOf([] { Choose("cmbRight", "Snapshot File..."); }, path);
    EXPECT_EQ(TextOf("lblRight"), "saved from a ZTM7710; registers without a name here: 1");
    ReadChip();
    EXPECT_EQ(Adapter().calls.size(), 66U);
    const std::vector<int> columns{0, 2, 3, 4, 5};
    EXPECT_EQ(
        RowsOf("tblCompare", columns),
        (QStringList{"Configuration1|0x00|0x41|LCK MON/SB|", "Configuration2|0x00|0x09|bit 3 RST|",
                     "Local High Limit|0x00|0x05|2 0|", "Local Low Limit|0x00|0x07|2 1 0|",
                     "Device ID|0x00|0x33|5 4 1 0|read only"}));
    EXPECT_THAT(Copied("mnuC"), HasSubstr("{0x0B, 0x05}, /* Local High Limit */\n"
                                          "    {0x0C, 0x07}, /* Local Low Limit */\n"
                                          "    {0x02, 0x08}, /* Configuration2 */\n"
                                          "    {0x01, 0x41}, /* Configuration1 */\n};"));
    Click("chkAll");
    EXPECT_EQ(RowsOf("tblCompare", {0}).size(), 69);
    EXPECT_EQ(RowsOf("tblCompare", columns).value(3), "Configuration3|0x00|–||");
    Click("chkAll");

    const auto write = [](QMessageBox::StandardButton answer) {
        QTimer::singleShot(0, [answer] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            EXPECT_THAT(box->text().toStdString(), HasSubstr("lock bit"));
            box->button(answer)->click();
        });
        Click("cmdWriteSelected");
        Finish("tmrWrite");
    };
    Adapter().calls.clear();
    write(QMessageBox::No);
    EXPECT_THAT(Adapter().calls, IsEmpty());
    Adapter().script = [](const Call &call) {
        if (call == Read(0x0C)) {
            Adapter().registers[0x0C] = 0; // takes nothing
        }
        return int16_t{0};
    };
    write(QMessageBox::Yes);
    EXPECT_THAT(Adapter().calls, ElementsAre(Write(0x0B, 5), Read(0x0B), Write(0x0C, 7), Read(0x0C),
                                             Write(0x02, 0x08), Read(0x02), Read(0x02),
                                             Write(0x01, 0x41), Read(0x01), Read(0x01)));
    EXPECT_EQ(RowsOf("tblCompare", columns).value(3), "Local Low Limit|0x00|0x07|2 1 0|not taken");
    EXPECT_THAT(TextOf("lblResult").toStdString(),
                testing::AllOf(HasSubstr("4 registers"), HasSubstr("not take 1")));

    Click("cmdKeep");
    EXPECT_EQ(Find<QComboBox>("cmbLeft").count(), 5);
    Click("cmdSwap");
    EXPECT_EQ(Find<QComboBox>("cmbRight").currentText(), "Chip now");
    EXPECT_FALSE(IsEnabled("cmdWriteSelected")) << "the chip is not on the left";
    CloseByCloseBox("frmCompare");
    Click("cmdCompare");
    EXPECT_EQ(Find<QComboBox>("cmbLeft").count(), 5) << "the kept states are kept";
}

TEST_F(TrafficAndCompareTest, AFailedTransferEndsAsEveryOtherDoes) {
    const std::function<void()> actions[] = {[] {
                                                 Click("cmdReadAll");
                                                 Finish("prgReadAll");
                                             },
                                             [] { ReadChip(); },
                                             [] {
                                                 Click("cmdWriteSelected");
                                                 Finish("tmrWrite");
                                             }};
    for (const auto &action : actions) {
        Open(ZTM7720);
        Adapter().registers[0x0B] = 1;
        Click("cmdCompare");
        ReadChip();
        EXPECT_EXIT(FailIn(action), testing::ExitedWithCode(1), endOfAFailure);
    }
}

} // namespace
} // namespace ztm::test
