#include "ui/registers/RegisterAccessPage.h"

#include "common/At.h"
#include "common/Clock.h"
#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/Traffic.h"
#include "link/USBComms.h"
#include "regmap/RegMapStuff.h"
#include "regmap/RegisterTree.h"
#include "ui/instruments/BitLabel.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/Frame.h"
#include "ui/kit/Text.h"
#include "ui/kit/Twips.h"
#include "ui/registers/RegisterMapFrame.h"
#include "ui/registers/RegisterTreeView.h"

#include <QCheckBox>
#include <QEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalBlocker>

namespace ztm {
namespace {

constexpr int bits = 8;
constexpr double bitTopTwips = 240;
constexpr double bitMarginTwips = 100;

constexpr double secondsBetweenSeen = 0.1;

/// Texts that are blank or a number as a whole, including the "h" after an address.
const QRegularExpression
    hexadecimal(QStringLiteral("^\\s*([0-9A-Fa-f][0-9A-Fa-f\\s]*[Hh]?\\s*)?$"));

/// Says how a text that is not a hexadecimal number as a whole is read; empty if it is one.
QString HowHexRead(const QLineEdit &box, const std::string &taken) {
    return hexadecimal.match(box.text()).hasMatch()
               ? QString()
               : RegisterAccessPage::tr("Not a number as a whole: taken as %1")
                     .arg(ToQString(taken));
}

/// Sets the text of the box that shows the same value as the one in use, without an answer from it.
/// Returns whether it had another text.
bool EnterLinked(QLineEdit &box, const QString &text) {
    const QSignalBlocker blocker(box);
    const bool changes = box.text() != text;
    EnterText(box, text);
    return changes;
}

bool IsEnter(const QEvent *event) {
    if (event->type() != QEvent::KeyPress) {
        return false;
    }
    const int key = static_cast<const QKeyEvent *>(event)->key();
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

RegisterAccessPage::RegisterAccessPage(QWidget *parent) : QWidget(parent) {
    SetupUi();
    ConnectSignals();
}

void RegisterAccessPage::SetupUi() {
    auto *layout = new QGridLayout(this);
    layout->addWidget(NewReadWriteFrame(), 0, 0);
    layout->addWidget(NewDetailsFrame(), 1, 0);
    layout->addWidget(NewBitFrame(), 2, 0);
    lblBitTarget = Named(new QLabel(this), "lblBitTarget");
    lblBitTarget->setAlignment(Qt::AlignCenter);
    lblBitTarget->setWordWrap(true);
    layout->addWidget(lblBitTarget, 3, 0);
    map = new RegisterMapFrame(this);
    layout->addWidget(map, 0, 1, 5, 1);
    layout->setColumnStretch(0, 1);
    layout->setColumnStretch(1, 4); // the tree has use for all there is
    layout->setRowStretch(4, 1);
}

QGroupBox *RegisterAccessPage::NewReadWriteFrame() {
    auto *frame = Named(new Frame(tr("Read/Write"), this), "fraReadWrite");
    txtReadAddr = Named(new QLineEdit(frame), "txtReadAddr");
    cmdRead = NewButton("cmdRead", tr("Read"), frame);
    txtHex = Named(new QLineEdit(frame), "txtHex");
    txtDec = Named(new QLineEdit(frame), "txtDec");
    cmdWrite = NewButton("cmdWrite", tr("Write"), frame);
    chkContRead = Named(new QCheckBox(tr("Continuous Read"), frame), "chkContRead");
    for (QLineEdit *box : {txtReadAddr, txtHex, txtDec}) {
        box->setMinimumWidth(box->fontMetrics().horizontalAdvance(QStringLiteral("FFFFFFFFW")) +
                             16);
    }

    auto *layout = new QGridLayout(frame);
    AddRow(*layout, 0, tr("Address"), txtReadAddr);
    layout->addWidget(cmdRead, 0, 2);
    AddRow(*layout, 1, tr("Value(Hex)"), txtHex);
    AddRow(*layout, 2, tr("Value(Dec)"), txtDec);
    layout->addWidget(cmdWrite, 2, 2);
    layout->addWidget(chkContRead, 3, 0, 1, 3, Qt::AlignLeft);
    layout->setColumnStretch(3, 1);
    layout->setHorizontalSpacing(2 * fontMetrics().averageCharWidth());
    return frame;
}

QGroupBox *RegisterAccessPage::NewDetailsFrame() {
    auto *frame = Named(new Frame(tr("Register Details"), this), "fraRegDetails");
    auto *layout = new QGridLayout(frame);
    const auto newValue = [&](int row, const QString &caption, const char *name) {
        auto *label = Named(new QLabel(frame), name);
        QFont bold = label->font();
        bold.setBold(true);
        label->setFont(bold);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        AddRow(*layout, row, caption, label);
        return label;
    };
    lblRegDescription = newValue(0, tr("Register"), "lblRegDescription");
    lblCurrentAddr = newValue(1, tr("Address"), "lblCurrentAddr");
    lblHexVal = newValue(2, tr("Current Value (Hex)"), "lblHexVal");
    lblDecVal = newValue(3, tr("Current Value (Dec)"), "lblDecVal");
    layout->setColumnStretch(1, 1);
    layout->setHorizontalSpacing(2 * fontMetrics().averageCharWidth());
    return frame;
}

QGroupBox *RegisterAccessPage::NewBitFrame() {
    auto *frame = Named(new Frame(tr("Bit Display"), this), "fraBits");
    frame->SetCaptionRoom(Twips(bitTopTwips, *this));
    fraBits = frame;
    for (int bit = bits - 1; bit >= 0; --bit) {
        auto *label = new BitLabel(fraBits);
        label->setObjectName(IndexedName("lblBit", bit));
        label->setText(QStringLiteral("0"));
        At(lblBit, bit) = label;
    }
    for (int place = 0; place < bits; ++place) {
        auto *label = new QLabel(fraBits);
        label->setObjectName(IndexedName("lblInfo", place));
        label->setAlignment(Qt::AlignCenter);
        At(lblInfo, place) = label;
    }
    fraBits->installEventFilter(this);
    return fraBits;
}

void RegisterAccessPage::ConnectSignals() {
    connect(txtReadAddr, &QLineEdit::textChanged, this, &RegisterAccessPage::txtReadAddr_Change);
    connect(cmdRead, &QPushButton::clicked, this, &RegisterAccessPage::cmdRead_Click);
    connect(txtHex, &QLineEdit::textChanged, this, &RegisterAccessPage::txtHex_Change);
    connect(txtDec, &QLineEdit::textChanged, this, &RegisterAccessPage::txtDec_Change);
    connect(cmdWrite, &QPushButton::clicked, this, &RegisterAccessPage::cmdWrite_Click);
    connect(chkContRead, &QCheckBox::toggled, this, &RegisterAccessPage::chkContRead_Click);
    for (QLineEdit *box : {txtReadAddr, txtHex, txtDec}) {
        box->installEventFilter(this);
    }
    for (int bit = 0; bit < bits; ++bit) {
        const BitLabel *label = At(lblBit, bit);
        connect(label, &BitLabel::Click, this, [this, bit] { lblBit_Click(bit); });
        connect(label, &BitLabel::MouseMove, this, [this, bit] { lblBit_MouseMove(bit); });
    }
    connect(&map->Tree(), &RegisterTreeView::RegisterChosen, this,
            &RegisterAccessPage::TreeView1_NodeClick);
}

void RegisterAccessPage::ShowRegister(int index) {
    const RegisterEntry &entry = RegisterMap.at(static_cast<size_t>(index));
    lblRegDescription->setText(ToQString(entry.Description));
    ShowAddress(entry.Address);
    ShowBitNames(ToQString(entry.BitLabels).split(QLatin1Char(':')));
    ShowValue(ReadRegister(entry.Address));
    ShowBitTarget();
}

void RegisterAccessPage::ShowAddress(int32_t address) {
    lblCurrentAddr->setText(ToQString(HexText(address)) + QLatin1Char('h'));
    // The user may be typing while reads repeat: an address already shown is left alone, a new one
    // keeps the caret, and what is put into an emptied box gives way to what is typed.
    if (txtReadAddr->text().isEmpty()) {
        CorrectText(*txtReadAddr, lblCurrentAddr->text().toUpper());
        txtReadAddr->selectAll();
    } else if (txtReadAddr->text() != lblCurrentAddr->text().toUpper()) {
        // Leading zeros go from before the caret, and the "H" comes behind it.
        const auto shorter = txtReadAddr->text().size() - lblCurrentAddr->text().size();
        const auto caret = txtReadAddr->cursorPosition() - std::max(shorter, qsizetype{0});
        // The same address in another form takes the place of what was typed.
        const auto show = AddressInBox() == address ? CorrectText : EnterText;
        show(*txtReadAddr, lblCurrentAddr->text().toUpper());
        txtReadAddr->setCursorPosition(static_cast<int>(caret));
    }
    ShowBitTarget();
}

/// Bits are written to the address in the box: says so while another register is shown.
void RegisterAccessPage::ShowBitTarget() {
    const int32_t address = AddressInBox();
    const bool anyBit = !lblBit.front()->text().isEmpty();
    if (!anyBit || address == HexValue(lblCurrentAddr->text().toStdString())) {
        lblBitTarget->setText({}); // unlike clear, nothing if it is empty
    } else if (address < 0 || address > LastRegister) {
        lblBitTarget->setText(tr("A click on a bit writes nothing: no register has this address"));
    } else {
        lblBitTarget->setText(tr("A click on a bit writes to register %1h, not to the one shown")
                                  .arg(ToQString(HexText(address))));
    }
}

void RegisterAccessPage::ShowBitNames(const QStringList &names) {
    for (int place = 0; place < bits; ++place) {
        const int bit = bits - 1 - place;
        At(lblInfo, place)->setText(names.value(place));
        At(lblBit, bit)->setAccessibleName(tr("Bit %1, %2").arg(bit).arg(names.value(place)));
    }
}

void RegisterAccessPage::ShowValue(int16_t value) {
    lblDecVal->setText(QString::number(value));
    lblHexVal->setText(ToQString(HexText(value)));
    ShowBitValues(value);
}

/// As for an address that no register has.
void RegisterAccessPage::ShowNoValue() {
    lblDecVal->setText({});
    lblHexVal->setText({});
    for (BitLabel *label : lblBit) {
        label->ShowDigit({});
    }
}

void RegisterAccessPage::ShowBitValues(int16_t value) {
    for (int bit = bits - 1; bit >= 0; --bit) {
        BitLabel *label = At(lblBit, bit);
        label->ShowDigit(QString::number((value >> bit) & 1));
    }
}

void RegisterAccessPage::LayoutBitLabels() {
    const int margin = Twips(bitMarginTwips, *this);
    const double width = (fraBits->width() - 2.0 * margin) / bits;
    const int height = 2 * fontMetrics().height();
    const int top = Twips(bitTopTwips, *this);
    const int nameTop = top + height + fontMetrics().height() / 4;
    const QSize nameSize(fontMetrics().horizontalAdvance(QStringLiteral("MON/SB")) + 6,
                         fontMetrics().height() + 4);
    fraBits->setMinimumSize(bits * nameSize.width() + 2 * margin,
                            nameTop + nameSize.height() + margin);
    for (int bit = bits - 1; bit >= 0; --bit) {
        // Each edge is rounded separately, so that the row fills its frame exactly.
        const int left = qRound(fraBits->width() - ((bit + 1) * width + margin));
        const int right = qRound(fraBits->width() - (bit * width + margin));
        At(lblBit, bit)->setGeometry(left, top, right - left, height);
        QLabel *name = At(lblInfo, bits - 1 - bit);
        name->resize(nameSize);
        name->move((left + right - name->width()) / 2, nameTop);
    }
}

void RegisterAccessPage::BuildRegisterTree() {
    map->Tree().BuildRegisterTree();
}

void RegisterAccessPage::ExpandFirstNode() {
    map->Tree().ExpandFirstNode();
}

bool RegisterAccessPage::ContinuousReadChecked() const {
    return chkContRead->isChecked();
}

int32_t RegisterAccessPage::AddressInBox() const {
    return HexValue(txtReadAddr->text().toStdString());
}

void RegisterAccessPage::ReadAddress() {
    const int32_t address = AddressInBox();
    if (const auto index = FindRegisterByAddress(address)) {
        ShowRegister(*index);
        return;
    }
    lblRegDescription->setText(tr("Unknown"));
    ShowAddress(address);
    QStringList numbers;
    for (int bit = bits - 1; bit >= 0; --bit) {
        numbers += QString::number(bit);
    }
    ShowBitNames(numbers);
    if (address < 0 || address > LastRegister) {
        ShowNoValue();
    } else {
        ShowValue(ReadRegister(address));
    }
}

void RegisterAccessPage::cmdRead_Click() {
    const Requester read("Read");
    ReadAddress();
}

void RegisterAccessPage::cmdWrite_Click() {
    const Requester write("Write");
    WriteRegister(AddressInBox(), ToInt32(NumberIn(*txtDec)));
    ReadAddress();
}

void RegisterAccessPage::txtReadAddr_Change() {
    CorrectText(*txtReadAddr, txtReadAddr->text().toUpper());
    MarkInput();
    ShowBitTarget();
}

void RegisterAccessPage::txtHex_Change() {
    if (EnterLinked(*txtDec, QString::number(HexValue(txtHex->text().toStdString())))) {
        CorrectText(*txtHex, ToQString(HexText(NumberIn(*txtDec))));
    }
    MarkInput();
}

void RegisterAccessPage::txtDec_Change() {
    const bool cleared = txtDec->text().isEmpty();
    if (EnterLinked(*txtHex, ToQString(HexText(NumberIn(*txtDec))))) {
        CorrectText(*txtDec, QString::number(HexValue(txtHex->text().toStdString())));
        if (cleared) {
            txtDec->selectAll(); // the next digit replaces the 0
        }
    }
    MarkInput();
}

/// Marks boxes with numbers that no register has, or with text that is no number or goes on after
/// one, and says what becomes of them.
void RegisterAccessPage::MarkInput() {
    const int32_t address = AddressInBox();
    if (address < 0 || address > LastRegister) {
        MarkField(*txtReadAddr, tr("Registers have the addresses 0 to FF: nothing is read or "
                                   "written outside them"));
    } else {
        MarkField(*txtReadAddr, HowHexRead(*txtReadAddr, HexText(address)));
    }
    const int32_t value = ToInt32(NumberIn(*txtDec));
    if (value < 0 || value > LargestRegisterValue) {
        const QString limited =
            value < 0 ? tr("Below 0: 0 is written") : tr("Above 255: 255 is written");
        MarkField(*txtDec, limited);
        MarkField(*txtHex, limited);
    } else {
        MarkField(*txtDec, HowRead(*txtDec));
        MarkField(*txtHex, HowHexRead(*txtHex, HexText(value)));
    }
}

void RegisterAccessPage::chkContRead_Click() {
    const QString reading = tr("Not while Continuous Read is on");
    Enable(*cmdRead, !chkContRead->isChecked(), reading);
    Enable(*cmdWrite, !chkContRead->isChecked(), reading);
}

void RegisterAccessPage::lblBit_Click(int bit) {
    BitLabel *clicked = At(lblBit, bit);
    if (clicked->text().isEmpty()) {
        return; // nothing was read that could be changed
    }
    clicked->ShowDigit(clicked->text() == QLatin1String("0") ? QStringLiteral("1")
                                                             : QStringLiteral("0"));
    int32_t value = 0;
    for (int place = 0; place < bits; ++place) {
        const BitLabel *label = At(lblBit, place);
        value += label->text() == QLatin1String("0") ? 0 : 1 << place;
    }
    const Requester bits("Bit Display");
    WriteRegister(AddressInBox(), value);
    ReadAddress();
}

void RegisterAccessPage::lblBit_MouseMove(int bit) {
    At(lblBit, bit)->setToolTip(At(lblInfo, bits - 1 - bit)->text());
}

void RegisterAccessPage::TreeView1_NodeClick(int index) {
    const Requester registerMap("Register Map");
    SelectedRegisterIndex = static_cast<int16_t>(index);
    ShowRegister(index);
}

void RegisterAccessPage::ShowSeen() {
    const double now = RunningSeconds();
    if (isVisible() && now - seenShown >= secondsBetweenSeen) {
        seenShown = now;
        map->Tree().ShowSeen();
    }
}

/// Escape stops Read All.
void RegisterAccessPage::keyPressEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Escape || !map->StopReading()) {
        QWidget::keyPressEvent(event);
    }
}

bool RegisterAccessPage::eventFilter(QObject *watched, QEvent *event) {
    if (watched == fraBits) {
        if (event->type() == QEvent::Resize) {
            LayoutBitLabels();
        }
    } else if (IsEnter(event)) {
        if (watched == txtReadAddr) {
            cmdRead_Click();
            txtReadAddr->selectAll();
        } else {
            cmdWrite_Click();
        }
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace ztm
