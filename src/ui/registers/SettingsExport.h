#pragma once

#include "regmap/RegisterValues.h"

#include <QObject>

#include <functional>
#include <string>
#include <vector>

class QMenu;
class QPushButton;

namespace ztm {

/// The buttons "Copy As" and "Save As" of a window that lists register settings or transfers: their
/// menus offer the kinds of text that drivers and scripts are made of.
class SettingsExport final : public QObject {
    Q_OBJECT

public:
    /// What is to be exported, asked for when it is needed: settings in their order, and the text
    /// of all of it, which may have more than settings. Empty if there is nothing.
    struct Source {
        std::function<std::vector<RegisterSetting>()> Settings;
        std::function<std::string()> Text;
    };

    SettingsExport(Source source, QWidget *window);

    QPushButton *CopyButton() { return cmdCopyAs; }
    QPushButton *SaveButton() { return cmdSaveAs; }

private:
    struct Kind;
    static const std::vector<Kind> &Kinds();

    QPushButton *NewMenuButton(const char *name, const QString &caption,
                               void (SettingsExport::*handler)(const Kind &));
    std::string TextOf(const Kind &kind);
    void Copy(const Kind &kind);
    void Save(const Kind &kind);

    QWidget *window;
    Source source;
    QPushButton *cmdCopyAs;
    QPushButton *cmdSaveAs;
};

} // namespace ztm
