#include "ui/registers/CompareTable.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "ui/kit/Text.h"

#include <QHeaderView>
#include <QSignalBlocker>

#include <algorithm>

namespace ztm {
namespace {

QString TextOf(std::optional<uint8_t> value) {
    return value ? ToQString(HexByte(*value)) : QStringLiteral("–");
}

} // namespace

CompareTable::CompareTable(QWidget *parent) : QTableWidget(0, ColumnCount, parent) {
    setHorizontalHeaderLabels(
        {tr("Register"), tr("Address"), tr("Left"), tr("Right"), tr("Bits"), tr("Result")});
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setTabKeyNavigation(false);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(Bits, QHeaderView::Stretch);
    connect(this, &QTableWidget::itemChanged, this, &CompareTable::CheckChanged);
}

void CompareTable::ShowRows(std::vector<ComparedRegister> registers) {
    const QSignalBlocker blocker(this);
    rows = std::move(registers);
    setRowCount(static_cast<int>(rows.size()));
    for (int row = 0; row < rowCount(); ++row) {
        const ComparedRegister &shown = At(rows, row);
        for (int column = 0; column < ColumnCount; ++column) {
            auto *cell = new QTableWidgetItem;
            cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            setItem(row, column, cell);
        }
        if (shown.CanBeWritten()) {
            auto *cell = item(row, Register);
            cell->setFlags(cell->flags() | Qt::ItemIsUserCheckable);
            cell->setCheckState(shown.Differs() ? Qt::Checked : Qt::Unchecked);
        }
        ShowRow(row);
    }
}

void CompareTable::SetText(int row, int column, const QString &text) {
    item(row, column)->setText(text);
}

void CompareTable::ShowRow(int row) {
    const ComparedRegister &shown = At(rows, row);
    SetText(row, Register, ToQString(shown.Register->Name));
    SetText(row, Address, ToQString(HexByte(shown.Register->Address)));
    SetText(row, Left, TextOf(shown.Left));
    SetText(row, Right, TextOf(shown.Right));
    SetText(row, Bits, ToQString(shown.DifferingBits()));
    if (shown.Register->IsReadOnly()) {
        SetText(row, Result, tr("read only"));
    }
}

std::vector<RegisterSetting> CompareTable::Checked() const {
    std::vector<RegisterSetting> settings;
    for (int row = 0; row < rowCount(); ++row) {
        if (item(row, Register)->checkState() == Qt::Checked) {
            const ComparedRegister &shown = At(rows, row);
            settings.push_back({shown.Register->Address, shown.Right.value()});
        }
    }
    return settings;
}

bool CompareTable::IsEverythingChecked() const {
    const auto writable = std::ranges::count_if(rows, &ComparedRegister::CanBeWritten);
    return writable > 0 && static_cast<size_t>(writable) == Checked().size();
}

void CompareTable::CheckAll(bool checked) {
    {
        const QSignalBlocker blocker(this);
        for (int row = 0; row < rowCount(); ++row) {
            if (At(rows, row).CanBeWritten()) {
                item(row, Register)->setCheckState(checked ? Qt::Checked : Qt::Unchecked);
            }
        }
    }
    viewport()->update();
    emit CheckChanged();
}

void CompareTable::ShowWritten(const RegisterSetting &written, uint8_t readBack) {
    const QSignalBlocker blocker(this);
    for (int row = 0; row < rowCount(); ++row) {
        ComparedRegister &shown = At(rows, row);
        if (shown.Register->Address != written.Address) {
            continue;
        }
        shown.Left = readBack;
        ShowRow(row);
        const bool taken = readBack == written.Value;
        SetText(row, Result, taken ? tr("written") : tr("not taken"));
        item(row, Register)->setCheckState(Qt::Unchecked);
        QFont marked = font();
        marked.setBold(!taken);
        item(row, Result)->setFont(marked);
        scrollToItem(item(row, Register));
    }
    viewport()->update();
}

} // namespace ztm
