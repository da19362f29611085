#pragma once

#include <QWidget>

#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace ztm {

class BitLabel;
class RegisterMapFrame;

/// The tab "Register Access": reads and writes any register by its address, shows its name,
/// value and bits, flips single bits, and lists the chip's registers in a tree.
class RegisterAccessPage final : public QWidget {
    Q_OBJECT

public:
    explicit RegisterAccessPage(QWidget *parent = nullptr);

    /// Shows an entry of the register map, 0 to 69, and reads its value from the chip.
    void ShowRegister(int index);

    /// Fits the bit labels to the width of their frame.
    void LayoutBitLabels();

    /// Builds the tree for the current chip, with its first node not yet expanded.
    void BuildRegisterTree();
    void ExpandFirstNode();

    /// Shows in the tree what was last seen of each register. At most ten times a second, and only
    /// while the page is shown.
    void ShowSeen();

    /// The frame with the tree and the lamp of the adapter.
    RegisterMapFrame &Map() { return *map; }

    bool ContinuousReadChecked() const;

    /// Reads the register whose address is in the address box and shows it.
    void ReadAddress();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void SetupUi();
    QGroupBox *NewReadWriteFrame();
    QGroupBox *NewDetailsFrame();
    QGroupBox *NewBitFrame();
    void ConnectSignals();

    void ShowAddress(int32_t address);
    void ShowBitTarget();
    void ShowBitNames(const QStringList &names);
    void ShowValue(int16_t value);
    void ShowNoValue();
    void ShowBitValues(int16_t value);
    void MarkInput();
    int32_t AddressInBox() const;

    void cmdRead_Click();
    void cmdWrite_Click();
    void txtReadAddr_Change();
    void txtHex_Change();
    void txtDec_Change();
    void chkContRead_Click();
    void lblBit_Click(int bit);
    void lblBit_MouseMove(int bit);
    void TreeView1_NodeClick(int index);

    QLineEdit *txtReadAddr;
    QLineEdit *txtHex;
    QLineEdit *txtDec;
    QPushButton *cmdRead;
    QPushButton *cmdWrite;
    QCheckBox *chkContRead;

    QLabel *lblRegDescription;
    QLabel *lblCurrentAddr;
    QLabel *lblHexVal;
    QLabel *lblDecVal;

    QGroupBox *fraBits;
    std::array<BitLabel *, 8> lblBit; // by bit number
    std::array<QLabel *, 8> lblInfo;  // the name of bit 7 first
    QLabel *lblBitTarget;

    RegisterMapFrame *map;
    double seenShown = 0; // RunningSeconds
};

} // namespace ztm
