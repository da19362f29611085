#pragma once

#include <QString>

class QWidget;

namespace ztm {

/// The program's file dialogs. They open in the program's own folder or, where the user may not
/// write there, in the folder used last, which is the user's documents at first; both are in the
/// side bar. `filter` is for example "Text Files (*.sav)"; several are separated by ";;". The
/// result is the chosen path, or empty if the user cancelled. The monitor keeps running meanwhile.

/// Asks for a file to write, which need not exist, and confirms before replacing an existing one.
/// The name stays as typed.
QString AskSaveFile(QWidget *parent, const QString &title, const QString &filter);

/// The same, but a name without an extension gets that of the chosen filter.
QString AskSaveFileOfKind(QWidget *parent, const QString &title, const QString &filters,
                          const QString &proposedName = {});

/// The same for what is not read again: opens in the folder used last, if there is one.
QString AskExportFile(QWidget *parent, const QString &title, const QString &filters,
                      const QString &proposedName);

/// Asks for an existing file to read. A name that only exists with the filter's extension gets it.
QString AskOpenFile(QWidget *parent, const QString &title, const QString &filter,
                    const QString &proposedName = {});

} // namespace ztm
