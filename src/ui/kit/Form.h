#pragma once

#include <QWidget>

#include <utility>
#include <vector>

namespace ztm {

/// A window of the program. Constructing it loads it, Unload (or the user's close) runs its
/// Form_Unload and deletes it. There is at most one of each class, see LoadForm. When the last
/// one is unloaded, the program ends.
class Form : public QWidget {
    Q_OBJECT

public:
    ~Form() override;

    /// Hides the window, runs its Form_Unload once and deletes it when control returns to the event
    /// loop. Does nothing if the window is already being unloaded.
    void Unload();

protected:
    /// `name` is the class name, by which tests and assistive technology find the window.
    explicit Form(const QString &name);

    /// What the window does when unloaded.
    virtual void Form_Unload() {}

    /// What the keys do where no control in the way has a use for them.
    virtual void EnterPressed() {}
    virtual void EscapePressed() {}

    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    bool unloading = false;
};

/// The loaded windows in the order in which they were loaded.
const std::vector<Form *> &LoadedForms();

/// The window of that class if it is loaded, otherwise nullptr.
template <class FormClass>
FormClass *LoadedForm() {
    for (Form *form : LoadedForms()) {
        if (auto *found = dynamic_cast<FormClass *>(form)) {
            return found;
        }
    }
    return nullptr;
}

/// The window of that class, loaded with the given arguments if it is not loaded yet.
template <class FormClass, class... Arguments>
FormClass &LoadForm(Arguments &&...arguments) {
    FormClass *form = LoadedForm<FormClass>();
    return form != nullptr ? *form : *new FormClass(std::forward<Arguments>(arguments)...);
}

/// Shows a window and brings it to the front. It stays above the window of its `opener`, if there
/// is one, which can still be used and does not take it along when it is deleted.
void ShowForm(Form &form, const QWidget *opener = nullptr);

/// The same for the window of that class, which is loaded if necessary.
template <class FormClass>
FormClass &ShowForm(const QWidget *opener = nullptr) {
    FormClass &form = LoadForm<FormClass>();
    ShowForm(form, opener);
    return form;
}

/// Unloads every window, one after the other.
void UnloadAllForms();

} // namespace ztm
