#include "ui/kit/Controls.h"

#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace ztm {

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
    return made;
}

std::string TextOf(const QComboBox &list) {
    return list.currentText().toStdString();
}

} // namespace ztm
