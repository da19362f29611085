#include "ui/kit/Form.h"

#include "ui/kit/Controls.h"
#include "ui/kit/Guide.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QWindow>

namespace ztm {
namespace {

std::vector<Form *> loadedForms;

} // namespace

Form::Form(const QString &name) {
    setObjectName(name);
    HelpByF1(*this);
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

void Form::keyPressEvent(QKeyEvent *event) {
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == 0;
    if (plain && IsEnter(*event)) {
        EnterPressed();
    } else if (plain && event->key() == Qt::Key_Escape) {
        EscapePressed();
    } else {
        QWidget::keyPressEvent(event);
    }
}

const std::vector<Form *> &LoadedForms() {
    return loadedForms;
}

void ShowForm(Form &form, const QWidget *opener) {
    if (opener != nullptr && form.windowType() != Qt::Dialog) {
        form.setWindowFlags(form.windowFlags() | Qt::Dialog); // window systems ask for the kind
        form.winId();                                         // makes its handle
        form.windowHandle()->setTransientParent(opener->window()->windowHandle());
    }
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
