#include "ui/registers/SettingsExport.h"

#include "common/WholeFile.h"
#include "files/SettingsCode.h"
#include "ui/kit/Controls.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"
#include "ui/registers/AskI2cPlace.h"

#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMenu>

namespace ztm {

struct SettingsExport::Kind {
    const char *Name; ///< of the action
    QString Caption;
    QString Filter;
    QString ProposedName;
    /// Nothing if the user cancels.
    std::function<std::string(const std::vector<RegisterSetting> &, QWidget *)>
        Make; ///< may be empty
};

const std::vector<SettingsExport::Kind> &SettingsExport::Kinds() {
    using Settings = std::vector<RegisterSetting>;
    static const std::vector<Kind> kinds{
        {"mnuC", tr("&C Array"), tr("C source (*.c *.h)"), tr("settings.c"),
         [](const Settings &settings, QWidget *) { return SettingsAsC(settings); }},
        {"mnuScript", tr("&Shell Script..."), tr("Shell script (*.sh)"), tr("settings.sh"),
         [](const Settings &settings, QWidget *window) {
             const auto place = AskI2cPlace(window);
             return place ? SettingsAsScript(settings, place->Bus, place->Address) : std::string();
         }},
        {"mnuSnapshot", tr("S&napshot"), tr("Text Files (*.sav)"), tr("settings.sav"),
         [](const Settings &settings, QWidget *) { return SettingsAsSnapshot(settings); }},
        {"mnuText", tr("&Text"), tr("Tab-separated text (*.txt *.tsv)"), tr("settings.txt"), {}}};
    return kinds;
}

SettingsExport::SettingsExport(Source itsSource, QWidget *itsWindow)
    : QObject(itsWindow)
    , window(itsWindow)
    , source(std::move(itsSource))
    , cmdCopyAs(NewMenuButton("cmdCopyAs", tr("Copy As"), &SettingsExport::Copy))
    , cmdSaveAs(NewMenuButton("cmdSaveAs", tr("Save As"), &SettingsExport::Save)) {}

QPushButton *SettingsExport::NewMenuButton(const char *name, const QString &caption,
                                           void (SettingsExport::*handler)(const Kind &)) {
    auto *button = NewButton(name, caption, window);
    auto *menu = new QMenu(button);
    std::vector<QAction *> actions;
    for (const Kind &kind : Kinds()) {
        QAction *action = menu->addAction(kind.Caption);
        action->setObjectName(QLatin1String(kind.Name));
        connect(action, &QAction::triggered, this,
                [this, handler, &kind] { (this->*handler)(kind); });
        actions.push_back(action);
    }
    connect(menu, &QMenu::aboutToShow, this, [this, actions] {
        const bool hasSettings = !source.Settings().empty();
        const bool hasText = !source.Text().empty();
        for (size_t kind = 0; kind < actions.size(); ++kind) {
            actions[kind]->setEnabled(Kinds()[kind].Make ? hasSettings : hasText);
        }
    });
    button->setMenu(menu);
    return button;
}

std::string SettingsExport::TextOf(const Kind &kind) {
    return kind.Make ? kind.Make(source.Settings(), window) : source.Text();
}

void SettingsExport::Copy(const Kind &kind) {
    const std::string text = TextOf(kind);
    if (!text.empty()) {
        QGuiApplication::clipboard()->setText(ToQString(text));
    }
}

void SettingsExport::Save(const Kind &kind) {
    const std::string text = TextOf(kind);
    if (text.empty()) {
        return;
    }
    const QString path = AskExportFile(window, tr("Save Settings"), kind.Filter, kind.ProposedName);
    if (path.isEmpty()) {
        return;
    }
    const std::string problem = SaveFile(QFile::encodeName(path).toStdString(), text);
    if (!problem.empty()) {
        ShowMessage(tr("The settings could not be saved as\n%1\n%2")
                        .arg(path, QString::fromLocal8Bit(problem.c_str())),
                    tr("Save Settings"), QMessageBox::Warning);
    } else if (text.starts_with("#!")) {
        QFile::setPermissions(path, QFile::permissions(path) | QFile::ExeOwner | QFile::ExeUser);
    }
}

} // namespace ztm
