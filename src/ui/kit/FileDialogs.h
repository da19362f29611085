#pragma once

#include <QString>

class QWidget;

namespace ztm {

/// The program's file dialogs. They open in the program's own folder. `filter` is for example "Text
/// Files (*.sav)"; several are separated by ";;". The result is the chosen path as typed, or empty
/// if the user cancelled. The monitor keeps running meanwhile.

/// Asks for a file to write, which need not exist, and confirms before replacing an existing one.
QString AskSaveFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName = {});

/// The same, but a name without an extension gets that of the chosen filter.
QString AskSaveFileOfKind(QWidget *parent, const QString &title, const QString &filters);

/// Asks for an existing file to read.
QString AskOpenFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName = {});

} // namespace ztm
