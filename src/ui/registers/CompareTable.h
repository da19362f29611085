#pragma once

#include "files/RegisterComparison.h"

#include <QTableWidget>

namespace ztm {

/// The registers of two states side by side. Those that could be written from the right can be
/// checked, and are at first where they differ.
class CompareTable final : public QTableWidget {
    Q_OBJECT

public:
    explicit CompareTable(QWidget *parent);

    /// Shows these registers, with nothing known of what was taken.
    void ShowRows(std::vector<ComparedRegister> registers);

    /// The right values of the registers that are checked, from top to bottom.
    std::vector<RegisterSetting> Checked() const;
    void CheckAll(bool checked);
    bool IsEverythingChecked() const;

    /// Shows what a register holds after it was written: its left value from now on.
    void ShowWritten(const RegisterSetting &written, uint8_t readBack);

signals:
    /// The user has checked or unchecked a register.
    void CheckChanged();

private:
    enum Column { Register, Address, Left, Right, Bits, Result, ColumnCount };

    void ShowRow(int row);
    void SetText(int row, int column, const QString &text);

    std::vector<ComparedRegister> rows;
};

} // namespace ztm
