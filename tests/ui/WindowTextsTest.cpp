#include "support/TemporaryFile.h"
#include "support/UiTest.h"
#include "ui/display/frmBigGraph.h"
#include "ui/display/frmEvents.h"
#include "ui/display/frmLogView.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTest>

#include <cstdlib>
#include <map>

namespace ztm::test {
namespace {

using testing::Each;
using testing::Field;

/// Whether a window hides a control; the pages of a tab panel are not hidden.
bool IsHiddenIn(const QWidget &window, const QWidget &control) {
    const auto *parent = control.parentWidget();
    return &control != &window && ((control.isHidden() && !parent->inherits("QStackedWidget")) ||
                                   IsHiddenIn(window, *parent));
}

/// The tabs or the items that a control offers.
QStringList ItemsOf(const QWidget &control) {
    QStringList items;
    const auto *tabs = qobject_cast<const QTabWidget *>(&control);
    for (int tab = 0; tabs != nullptr && tab < tabs->count(); ++tab) {
        items += tabs->isTabVisible(tab) ? tabs->tabText(tab) : QStringLiteral("-");
    }
    for (const auto *list :
         control.findChildren<QAbstractItemModel *>(Qt::FindDirectChildrenOnly)) {
        for (int row = 0; row < list->rowCount(); ++row) {
            items += list->index(row, 0).data().toString();
        }
    }
    return items;
}

QString TextsOf(const QWidget &window, const QWidget &control) {
    QStringList texts;
    for (const char *property :
         {"title", "text", "caption", "labels", "currentText", "minimum", "maximum", "singleStep",
          "value", "lowPointerVisible", "alarm", "toolTip", "accessibleName"}) {
        const QVariant text = control.property(property);
        const bool several = text.userType() == QMetaType::QStringList;
        texts += property + ('=' + (several ? text.toStringList().join('|') : text.toString()));
    }
    const auto *label = qobject_cast<const QLabel *>(&control);
    const auto *button = qobject_cast<const QAbstractButton *>(&control);
    texts += "of=" + (label && label->buddy() ? label->buddy()->objectName() : "");
    texts += "items=" + ItemsOf(control).join('|');
    texts += button && button->isChecked() ? "checked" : "=";
    texts += IsHiddenIn(window, control) ? "hidden" : control.isEnabled() ? "=" : "disabled";
    return texts.filter(QRegularExpression("[^=]$"))
        .join(", ")
        .replace('\n', ' ')
        .replace(QCoreApplication::applicationDirPath(), "<program>");
}

/// Whether assistive technology can tell what a control is, is called and holds.
bool IsAccessible(QWidget &control) {
    auto *access = QAccessible::queryAccessibleInterface(&control);
    const auto role = access->role();
    const bool holdsText = access->textInterface() != nullptr;
    return !access->text(QAccessible::Name).isEmpty() && role != QAccessible::Client &&
           role != QAccessible::NoRole &&
           (access->valueInterface() == nullptr ||
            access->valueInterface()->currentValue().isValid() || holdsText);
}

/// The title of a window and a line for each of its controls, in order of their names.
std::string TextsOf(const char *name) {
    const QWidget &window = Find(name);
    for (auto *control : window.findChildren<QWidget *>()) {
        if (control->focusPolicy() != Qt::NoFocus && !control->focusProxy() &&
            control->isVisible()) {
            EXPECT_TRUE(IsAccessible(*control)) << name << " " << control->metaObject()->className()
                                                << " " << control->objectName().toStdString();
        }
    }
    QStringList lines;
    for (const auto *control : window.findChildren<QWidget *>()) {
        const QString known = control->objectName();
        const bool shows = known.isEmpty()
                               ? control->inherits("QLabel")
                               : !control->inherits("QToolButton") && !known.startsWith("qt_");
        if (const QString texts = TextsOf(window, *control); shows && !texts.isEmpty()) {
            lines += "  " + known + ": " + texts + '\n';
        }
    }
    lines.sort();
    return (name + (": " + window.windowTitle()) + '\n' + lines.join("")).toStdString();
}

class WindowTextsTest : public UiTest {
protected:
    /// The texts of all windows of a session, and the ranges of the boxes in its dialogs.
    static QString TextsOfASession(std::string_view variant) {
        Adapter().registers[0x03] = 0x44; // numbers of poles that the lists have
        std::string texts;
        const auto note = [&](const char *button, const char *window) {
            Click(button);
            texts += TextsOf(window);
        };
        OpenWizard();
        texts += TextsOf("InitForm");
        note("NextCMD", "InitForm");
        note("NextCMD", "InitForm"); // nothing is found
        Adapter().registers[0x3D] = variant == ZTM7710 ? 0x33 : 0x34;
        Click("BackCMD");
        note("NextCMD", "InitForm");
        note("FinishCMD", "frmMain");
        Find<QTimer>("tmrMain").stop(); // no speed is measured
        ClickTab("Visual Display");
        texts += TextsOf("frmMain");
        ShowForm<frmBigGraph>();
        texts += TextsOf("frmBigGraph");
        ShowForm<frmEvents>();
        texts += TextsOf("frmEvents");
        ShowForm<frmLogView>();
        texts += TextsOf("frmLogView");
        ForEveryDialog([&](const char *window) {
            texts += TextsOf(window);
            for (auto *box : Find(window).findChildren<QLineEdit *>()) {
                texts += RangesOf(*box);
            }
        });
        return QString::fromStdString(texts);
    }

    /// What a box says of a number that is too small, and where its spin button leads from far
    /// below, from 10 and from far above; nothing for a box that takes any number.
    static std::string RangesOf(QLineEdit &box) {
        QStringList ends;
        box.setText("-1e9");
        const QString reason = box.toolTip();
        for (const auto &[start, key] :
             {std::pair{"-1e9", Qt::Key_Up}, {"10", Qt::Key_Up}, {"1e9", Qt::Key_Down}}) {
            box.setText(start);
            QTest::keyClick(&box, key);
            ends += box.text();
        }
        const QString texts =
            "  " + box.objectName() + " takes " + reason + ", steps " + ends.join(' ');
        return reason.isEmpty() ? "" : texts.toStdString() + '\n';
    }

    /// Does something to every control of a dialog that a user can change.
    static void ChangeEverything(const QWidget &dialog) {
        for (auto *control : dialog.findChildren<QWidget *>()) {
            const bool box = control->inherits("QLineEdit");
            control->setProperty(box ? "text" : "currentIndex", 1);
            control->setProperty("checked", !control->property("checked").toBool());
        }
    }
};

// The files are written anew when ZTM_WRITE_WINDOW_TEXTS is set in the environment.
TEST_F(WindowTextsTest, EveryWindowShowsItsTextsAndHidesWhatTheVariantHasNot) {
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        ResetCore();
        const QString shown = TextsOfASession(variant);
        const std::string path = std::string(ZTM_UI_TESTS "/windows-").append(variant) + ".txt";
        if (std::getenv("ZTM_WRITE_WINDOW_TEXTS") != nullptr) {
            std::ofstream(path) << shown.toStdString();
        }
        const QStringList lines = shown.split('\n');
        const QStringList expected = QString::fromStdString(BytesOf(path)).split('\n');
        for (qsizetype line = 0; line < std::max(lines.size(), expected.size()); ++line) {
            ASSERT_EQ(lines.value(line).toStdString(), expected.value(line).toStdString())
                << "in line " << line + 1 << " of " << path;
        }
        DeleteAllForms();
    }
}

TEST_F(WindowTextsTest, OnlyOkAndApplyKeepWhatWasChangedInADialog) {
    for (const std::string way : {"button", "close box", "key"}) {
        ResetCore();
        StartSessionOf(ZTM7720);
        Find<QTimer>("tmrMain").stop();
        std::map<std::string, std::string> opened;
        ForEveryDialog([&](const char *window) {
            auto &dialog = Find(window);
            opened[window] = TextsOf(window);
            if (const auto *box = dialog.findChild<QLineEdit *>()) {
                EXPECT_EQ(box->selectedText(), box->text()) << window;
                EXPECT_EQ(dialog.focusWidget(), box) << window;
            }
            ChangeEverything(dialog);
            const auto cancel =
                dialog.findChildren<QAbstractButton *>(QRegularExpression("cmdCancel|cmdClose"));
            way == "key"                             ? Press(window, Qt::Key_Escape)
            : way == "close box" || cancel.isEmpty() ? CloseByCloseBox(window)
                                                     : cancel.first()->click();
            EXPECT_EQ(LoadedForms().size(), 1U) << window << " by " << way;
        });
        EXPECT_THAT(Adapter().calls, Each(Field(&Call::direction, 1))) << "nothing but reads";
        ForEveryDialog(
            [&](const char *window) { EXPECT_EQ(TextsOf(window), opened[window]) << window; });
        ForEveryDialog([&](const char *window) {
            for (const char *name : {"cmdApply", "cmdOK"}) {
                auto *button = Find(window).findChild<QAbstractButton *>(name);
                if (button != nullptr && window != std::string("frmLogging")) {
                    const size_t forms = LoadedForms().size();
                    const bool byKey = way == "key" && name == std::string("cmdOK");
                    byKey ? Press(window, Qt::Key_Return) : button->click();
                    EXPECT_EQ(LoadedForms().size(), forms - (name == std::string("cmdOK")))
                        << window;
                }
            }
        });
        DeleteAllForms();
    }
}

} // namespace
} // namespace ztm::test
