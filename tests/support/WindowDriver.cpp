#include "support/WindowDriver.h"

#include "ui/kit/Form.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include <optional>

namespace ztm::test {

QObject &FindObject(const QString &name) {
    for (Form *form : LoadedForms()) {
        if (form->objectName() == name) {
            return *form;
        }
        if (auto *object = form->findChild<QObject *>(name)) {
            return *object;
        }
    }
    throw std::runtime_error("no such control: " + name.toStdString());
}

QString TextOf(const QString &name) {
    return TextOf(FindObject(name));
}

QString TextOf(const QObject &control) {
    for (const char *property : {"text", "plainText", "currentText"}) {
        if (const QVariant text = control.property(property); text.isValid()) {
            return text.toString();
        }
    }
    throw std::runtime_error("a control without text: " + control.objectName().toStdString());
}

bool IsEnabled(const QString &name) {
    return Find(name).isEnabled();
}

void Click(const QString &name) {
    Click(Find(name));
}

void Click(QWidget &control) {
    if (!control.isVisible()) {
        throw std::runtime_error("not on screen: " + control.objectName().toStdString());
    }
    QTest::mouseClick(&control, Qt::LeftButton);
}

void ClickTab(const QString &caption) {
    auto *bar = Find<QTabWidget>(QStringLiteral("SSTab1")).tabBar();
    for (int tab = 0; tab < bar->count(); ++tab) {
        if (bar->tabText(tab) == caption) {
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab).center());
            return;
        }
    }
    throw std::runtime_error("no such tab: " + caption.toStdString());
}

void ClickNode(const QString &text) {
    auto &tree = Find<QTreeWidget>(QStringLiteral("TreeView1"));
    const auto found = tree.findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    if (found.size() != 1) {
        throw std::runtime_error("not one node: " + text.toStdString());
    }
    tree.scrollToItem(found.first());
    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {},
                      tree.visualItemRect(found.first()).center());
}

void Type(const QString &name, const QString &text) {
    Type(Find<QLineEdit>(name), text);
}

void Type(QLineEdit &box, const QString &text) {
    box.setFocus();
    box.selectAll();
    if (text.isEmpty()) {
        QTest::keyClick(&box, Qt::Key_Delete);
    }
    QTest::keyClicks(&box, text);
}

void Press(const QString &name, Qt::Key key) {
    auto &widget = Find(name);
    widget.setFocus();
    QTest::keyClick(&widget, key);
}

ShownMessage AnswerMessageOf(const std::function<void()> &action, bool yes) {
    std::optional<ShownMessage> shown;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [&shown, yes] {
        if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget())) {
            shown = ShownMessage{box->text(), box->windowTitle(), box->icon()};
            auto *ok = box->button(QMessageBox::Ok);
            auto *chosen = box->button(yes ? QMessageBox::Yes : QMessageBox::No);
            QTest::mouseClick(ok != nullptr ? ok : chosen, Qt::LeftButton);
        }
    });
    answer.start(0);
    action();
    if (!shown) {
        throw std::runtime_error("no message was shown");
    }
    return *shown;
}

ShownFileDialog AnswerFileDialogOf(const std::function<void()> &action, const QString &path) {
    std::optional<ShownFileDialog> shown;
    QTimer answer;
    QObject::connect(&answer, &QTimer::timeout, [&shown, &path] {
        QWidget *modal = QApplication::activeModalWidget();
        if (auto *question = qobject_cast<QMessageBox *>(modal); question != nullptr && shown) {
            if (auto *yes = question->button(QMessageBox::Yes)) {
                shown->askedToReplace = true;
                QTest::mouseClick(yes, Qt::LeftButton);
            }
        } else if (auto *dialog = qobject_cast<QFileDialog *>(modal); dialog != nullptr && !shown) {
            auto &name = *dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
            shown = ShownFileDialog{dialog->nameFilters(), dialog->directory().absolutePath(),
                                    name.text(), dialog->acceptMode() == QFileDialog::AcceptSave};
            name.setText(path);
            // Queued, so that this timer also answers the question that it may lead to.
            const Qt::Key key = path.isEmpty() ? Qt::Key_Escape : Qt::Key_Return;
            QMetaObject::invokeMethod(
                dialog, [dialog, key] { QTest::keyClick(dialog, key); }, Qt::QueuedConnection);
        }
    });
    answer.start(0);
    action();
    if (!shown) {
        throw std::runtime_error("no file dialog was shown");
    }
    return *shown;
}

void CloseByCloseBox(const QString &name) {
    Find(name).close();
}

bool BytesMatch(const std::string &bytes, const char *pattern) {
    const QRegularExpression whole(
        QRegularExpression::anchoredPattern(QString::fromLatin1(pattern)));
    return whole.match(QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size())))
        .hasMatch();
}

void Tick() {
    QMetaObject::invokeMethod(&Find<QTimer>(QStringLiteral("tmrMain")), "timeout",
                              Qt::DirectConnection);
}

void SearchInWizard() {
    Click(QStringLiteral("NextCMD"));
    Click(QStringLiteral("NextCMD"));
}

void DeleteAllForms() {
    while (!LoadedForms().empty()) {
        delete LoadedForms().back();
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    // The last window's end has told the application to quit. Only a run of its own event loop
    // makes it forget that; until then no message box would stay open.
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
}

void Settle() {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

} // namespace ztm::test
