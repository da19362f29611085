#include "ui/kit/Controls.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

namespace ztm {

QPushButton *NewButton(const char *name, const QString &caption, QWidget *parent) {
    auto *button = Named(new QPushButton(caption, parent), name);
    button->setAutoDefault(true);
    return button;
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
    return made;
}

std::string TextOf(const QComboBox &list) {
    return list.currentText().toStdString();
}

} // namespace ztm
