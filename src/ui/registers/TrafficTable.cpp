#include "ui/registers/TrafficTable.h"

#include "common/At.h"
#include "files/TransferText.h"
#include "monitor/MonitorLoop.h"
#include "ui/kit/Text.h"

#include <algorithm>
#include <array>

namespace ztm {
namespace {

/// Literals are known by their addresses.
bool IsOfMonitor(const Transfer &transfer) {
    return transfer.Requester == MonitorRequester || transfer.Requester == AlertsRequester ||
           transfer.Requester == GaugeRequester;
}

} // namespace

TrafficTable::TrafficTable(QObject *parent) : QAbstractTableModel(parent) {
    Follow();
}

bool TrafficTable::Passes(const Transfer &transfer) const {
    if (!monitor && IsOfMonitor(transfer)) {
        return false;
    }
    if (filter.isEmpty()) {
        return true;
    }
    const auto has = [this](const std::string &text) {
        return ToQString(text).contains(filter, Qt::CaseInsensitive);
    };
    return has(RegisterText(transfer)) || has(transfer.Requester) || has(KindText(transfer)) ||
           has(ValueText(transfer)) || has(ChangedBits(transfer));
}

bool TrafficTable::Follow() {
    const auto kept = std::ranges::lower_bound(numbers, FirstTransfer());
    if (const auto dropped = static_cast<int>(kept - numbers.begin()); dropped > 0) {
        beginRemoveRows({}, 0, dropped - 1);
        numbers.erase(numbers.begin(), kept);
        endRemoveRows();
    }
    std::vector<uint64_t> passing;
    for (next = std::max({next, begin, FirstTransfer()}); next < TransferCount(); ++next) {
        if (Passes(TransferAt(next))) {
            passing.push_back(next);
        }
    }
    if (passing.empty()) {
        return false;
    }
    const int rows = rowCount();
    beginInsertRows({}, rows, rows + static_cast<int>(passing.size()) - 1);
    numbers.insert(numbers.end(), passing.begin(), passing.end());
    endInsertRows();
    return true;
}

void TrafficTable::SetFilter(const QString &text, bool withMonitor) {
    beginResetModel();
    filter = text;
    monitor = withMonitor;
    numbers.clear();
    const uint64_t end = next;
    for (next = std::max(begin, FirstTransfer()); next < end; ++next) {
        if (Passes(TransferAt(next))) {
            numbers.push_back(next);
        }
    }
    endResetModel();
}

void TrafficTable::Clear() {
    beginResetModel();
    numbers.clear();
    begin = TransferCount();
    endResetModel();
}

int TrafficTable::rowCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : static_cast<int>(numbers.size());
}

int TrafficTable::columnCount(const QModelIndex &parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QString TrafficTable::TextIn(int row, int column) const {
    if (NumberIn(row) < FirstTransfer()) {
        return {};
    }
    const Transfer &transfer = TransferAt(NumberIn(row));
    switch (column) {
    case Time:
        return TimeOfDayText(transfer.Time, QLatin1Char(':'), 3);
    case Since:
        return row == 0 || NumberIn(row - 1) < FirstTransfer()
                   ? QString()
                   : QString::number(transfer.Time - TransferAt(NumberIn(row - 1)).Time, 'f', 6);
    case What:
        return ToQString(KindText(transfer));
    case Register:
        return ToQString(RegisterText(transfer));
    case Value:
        return ToQString(ztm::ValueText(transfer));
    case Changed:
        return ToQString(ChangedBits(transfer));
    default:
        return ToQString(transfer.Requester);
    }
}

QVariant TrafficTable::data(const QModelIndex &index, int role) const {
    return role == Qt::DisplayRole && index.isValid() ? TextIn(index.row(), index.column())
                                                      : QVariant();
}

QVariant TrafficTable::headerData(int section, Qt::Orientation orientation, int role) const {
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal) {
        return QAbstractTableModel::headerData(section, orientation, role);
    }
    const std::array<QString, ColumnCount> names{tr("Time"),     tr("Seconds since"), tr("What"),
                                                 tr("Register"), tr("Value"),         tr("Changed"),
                                                 tr("Asked by")};
    return At(names, section);
}

} // namespace ztm
