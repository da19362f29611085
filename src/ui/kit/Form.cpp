#include "ui/kit/Form.h"

#include <QCloseEvent>
#include <QCoreApplication>

namespace ztm {
namespace {

std::vector<Form *> loadedForms;

} // namespace

Form::Form(const QString &name) {
    setObjectName(name);
    loadedForms.push_back(this);
}

Form::~Form() {
    std::erase(loadedForms, this);
}

void Form::Unload() {
    if (unloading) {
        return;
    }
    unloading = true;
    hide();
    Form_Unload();
    std::erase(loadedForms, this);
    deleteLater();
    if (loadedForms.empty()) {
        QCoreApplication::exit(EXIT_SUCCESS);
    }
}

void Form::closeEvent(QCloseEvent *event) {
    event->accept();
    Unload();
}

const std::vector<Form *> &LoadedForms() {
    return loadedForms;
}

void ShowForm(Form &form) {
    form.setWindowState(form.windowState() & ~Qt::WindowMinimized);
    form.show();
    form.raise();
    form.activateWindow();
}

void UnloadAllForms() {
    const auto forms = loadedForms;
    for (Form *form : forms) {
        form->Unload();
    }
}

} // namespace ztm
