#include "ui/kit/Controls.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace ztm {
namespace {

class WheelFilter final : public QObject {
protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() != QEvent::Wheel || static_cast<QWidget *>(watched)->hasFocus()) {
            return false;
        }
        event->ignore();
        return true;
    }
};

} // namespace

bool IsEnter(const QKeyEvent &event) {
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

QPushButton *NewButton(const char *name, const QString &caption, QWidget *parent) {
    auto *button = Named(new QPushButton(caption, parent), name);
    button->setAutoDefault(true);
    return button;
}

QRadioButton *NewOption(const QString &name, const QString &caption, QWidget *parent) {
    auto *option = new QRadioButton(caption, parent);
    option->setObjectName(name);
    // By itself a group moves its stop only with the focus.
    QObject::connect(option, &QRadioButton::toggled, option, [option, parent](bool checked) {
        if (!checked) {
            return;
        }
        for (auto *other : parent->findChildren<QRadioButton *>(Qt::FindDirectChildrenOnly)) {
            other->setFocusPolicy(other == option ? Qt::StrongFocus : Qt::ClickFocus);
        }
    });
    return option;
}

QLabel *NewResultLabel(QWidget *parent) {
    auto *label = Named(new QLabel(parent), "lblFileResult");
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    return label;
}

QHBoxLayout *NewButtonRow(std::initializer_list<QPushButton *> buttons) {
    auto *row = new QHBoxLayout;
    row->addStretch();
    for (QPushButton *button : buttons) {
        row->addWidget(button);
    }
    return row;
}

QLabel *AddRow(QGridLayout &form, int row, const QString &caption, QWidget *control,
               Qt::Alignment alignment) {
    auto *label = new QLabel(caption, form.parentWidget());
    label->setBuddy(control);
    form.addWidget(label, row, 0);
    form.addWidget(control, row, 1, alignment);
    return label;
}

NumberRow AddNumberRow(QGridLayout &form, int row, const QString &caption, const QString &name,
                       SpinRange spin) {
    NumberRow made{};
    made.spinBox = NewSpinBox(made.box, name, spin, form.parentWidget());
    made.label = AddRow(form, row, caption, made.spinBox, Qt::AlignLeft);
    made.label->setBuddy(made.box);
    made.box->setAccessibleName(caption);
    return made;
}

std::string TextOf(const QComboBox &list) {
    return list.currentText().toStdString();
}

void Enable(QWidget &control, bool enabled, const QString &whyNot) {
    control.setEnabled(enabled);
    control.setToolTip(enabled ? QString() : whyNot);
}

void KeepWheelForFocus(QWidget &control) {
    static WheelFilter filter;
    control.setFocusPolicy(Qt::StrongFocus);
    control.installEventFilter(&filter);
}

QComboBox *NewList(const QString &name, QWidget *parent) {
    auto *list = new QComboBox(parent);
    list->setObjectName(name);
    KeepWheelForFocus(*list);
    return list;
}

} // namespace ztm
