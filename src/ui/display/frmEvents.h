#pragma once

#include "ui/kit/Form.h"

#include <cstdint>

class QModelIndex;
class QPushButton;
class QTableView;

namespace ztm {

class EventTable;

/// The window "Events": what has happened in the session, the newest below. A click or Enter on an
/// event says where it is in time.
class frmEvents final : public Form {
    Q_OBJECT

public:
    frmEvents();

    /// Shows new events. Costs nothing where there are none.
    void Follow();

    QSize sizeHint() const override;

signals:
    /// The user wants to see this time.
    void Chosen(double time);

protected:
    void EscapePressed() override { close(); }

private:
    void Choose(const QModelIndex &index);
    void Remember(const QModelIndex &index);
    void SelectAgain();
    void cmdSave_Click();

    QTableView *tblEvents;
    EventTable *table;
    QPushButton *cmdSave;
    double selectedTime = 0; // of the row that is selected
    uint64_t selectedNumber = 0;
};

} // namespace ztm
