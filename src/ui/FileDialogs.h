#pragma once

#include <QString>

class QWidget;

namespace ztm {

/// The program's file dialogs. They open in the program's own folder. `filter` is for example
/// "Text Files (*.sav)"; several are separated by ";;". The result is the chosen path as it was
/// typed, with no ending added, or empty when the user cancelled. The monitor goes on meanwhile.

/// Asks for a file to write, which need not exist; asks before an existing one is replaced.
/// `chosenFilter` receives the filter that was selected.
QString AskSaveFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName = {}, QString *chosenFilter = nullptr);

/// Asks for an existing file to read.
QString AskOpenFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName = {});

} // namespace ztm
