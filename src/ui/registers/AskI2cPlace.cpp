#include "ui/registers/AskI2cPlace.h"

#include "ui/kit/Controls.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QSpinBox>

namespace ztm {
namespace {

constexpr int largestBus = 255;
constexpr int firstAddress = 0x08; // those outside are reserved
constexpr int lastAddress = 0x77;

I2cPlace proposed{1, 0x2C};

QSpinBox *NewNumberBox(const char *name, int least, int greatest, int value, QDialog &dialog) {
    auto *box = Named(new QSpinBox(&dialog), name);
    box->setRange(least, greatest);
    box->setValue(value);
    return box;
}

} // namespace

std::optional<I2cPlace> AskI2cPlace(QWidget *parent) {
    QDialog dialog(parent);
    dialog.setObjectName(QStringLiteral("dlgI2cPlace"));
    dialog.setWindowTitle(QDialog::tr("Shell Script"));
    auto *bus = NewNumberBox("txtBus", 0, largestBus, proposed.Bus, dialog);
    auto *address = NewNumberBox("txtAddress", firstAddress, lastAddress, proposed.Address, dialog);
    address->setPrefix(QStringLiteral("0x"));
    address->setDisplayIntegerBase(16);
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
    auto *layout = new QFormLayout(&dialog);
    layout->addRow(QDialog::tr("I²C &bus"), bus);
    layout->addRow(QDialog::tr("&Address of the chip (7 bits)"), address);
    layout->addRow(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    if (dialog.exec() != QDialog::Accepted) {
        return std::nullopt;
    }
    proposed = {bus->value(), address->value()};
    return proposed;
}

} // namespace ztm
