#pragma once

#include <QApplication>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <stdexcept>

class QLineEdit;
class QMessageBox;

namespace ztm::test {

/// Drives the real windows as a user does: finds controls by object name, clicks and types.

/// The object of that name in any loaded window; throws when there is none.
QObject &FindObject(const QString &name);

/// The same as the given class; throws when it is of another.
template <class Object = QWidget>
Object &Find(const QString &name) {
    auto *object = dynamic_cast<Object *>(&FindObject(name));
    if (object == nullptr) {
        throw std::runtime_error("another class than expected: " + name.toStdString());
    }
    return *object;
}

/// The text of a label, button or box.
QString TextOf(const QString &name);
QString TextOf(const QObject &control);

bool IsEnabled(const QString &name);

/// A left click in the middle of a control. The control has to be visible.
void Click(const QString &name);
void Click(QWidget &control);

/// A click on the tab of that caption.
void ClickTab(const QString &caption);

/// A click on the node of that text in the register tree, whose ancestors are expanded first.
void ClickNode(const QString &text);

/// Replaces the text of a box by typing.
void Type(const QString &name, const QString &text);
void Type(QLineEdit &box, const QString &text);

/// A key press on a control, which gets the focus first.
void Press(const QString &name, Qt::Key key);

/// Runs `action` and answers the message box that it raises, a question by that button; returns
/// what the box showed. Throws when there was none.
struct ShownMessage {
    QString text;
    QString title;
    int icon = 0;
};
ShownMessage AnswerMessageOf(const std::function<void()> &action, bool yes = true);

/// Runs `action` and answers the file dialog that it opens: types `path` and accepts it, also
/// where that asks to replace an existing file, or cancels when `path` is empty. Returns what the
/// dialog showed. Throws when there was none.
struct ShownFileDialog {
    QStringList filters;
    QString folder;
    QString proposedName;
    bool saves = false;
    bool askedToReplace = false;
};
ShownFileDialog AnswerFileDialogOf(const std::function<void()> &action, const QString &path);

/// Closes a window by its close box.
void CloseByCloseBox(const QString &name);

/// Whether the bytes of a file match a pattern as a whole, each byte a character.
bool BytesMatch(const std::string &bytes, const char *pattern);

/// Lets the monitor timer fire once.
void Tick();

/// Walks the wizard through a search to its results page.
void SearchInWizard();

/// Deletes every loaded window without unloading it, and what waits to be deleted.
void DeleteAllForms();

/// Lays out and paints what is visible.
void Settle();

} // namespace ztm::test
