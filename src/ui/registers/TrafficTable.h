#pragma once

#include <QAbstractTableModel>

#include <deque>

namespace ztm {

struct Transfer;

/// The recorded transfers that pass a filter, as rows in their order.
class TrafficTable final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Time, Since, What, Register, Value, Changed, AskedBy, ColumnCount };

    explicit TrafficTable(QObject *parent);

    /// Takes in what has come since, and drops what is no longer kept. Returns whether a row came.
    bool Follow();

    /// From now on has the transfers that have `text` in one of their cells, in upper or lower
    /// case, and those of the monitor's ticks only if wanted.
    void SetFilter(const QString &text, bool withMonitor);

    /// Forgets the rows so far; they stay recorded.
    void Clear();

    /// The number of the transfer in a row.
    uint64_t NumberIn(int row) const { return numbers[static_cast<size_t>(row)]; }

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    bool Passes(const Transfer &transfer) const;
    QString TextIn(int row, int column) const;

    std::deque<uint64_t> numbers;
    uint64_t begin = 0; // of what has not been cleared
    uint64_t next = 0;  // to be looked at
    QString filter;
    bool monitor = false;
};

} // namespace ztm
