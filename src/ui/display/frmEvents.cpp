#include "ui/display/frmEvents.h"

#include "common/WholeFile.h"
#include "monitor/Events.h"
#include "ui/display/Quantities.h"
#include "ui/kit/Controls.h"
#include "ui/kit/FileDialogs.h"
#include "ui/kit/Messages.h"
#include "ui/kit/Text.h"

#include <QAbstractTableModel>
#include <QDateTime>
#include <QFile>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QScrollBar>
#include <QTableView>
#include <QVBoxLayout>

namespace ztm {
namespace {

constexpr int columnCount = 3;

QString TextIn(int column, const Event &event) {
    switch (column) {
    case 0:
        return DateText(event.time) + QLatin1Char(' ') +
               TimeOfDayText(event.time, QLatin1Char(':'), 3);
    case 1:
        return ToQString(event.text);
    default:
        return event.channel < 0 ? QString() : NameOfChannel(event.channel);
    }
}

/// Tab-separated, a line for each.
QByteArray TextOfAll() {
    QByteArray text = frmEvents::tr("Seconds\tTime\tWhat\tChannel").toUtf8() + '\n';
    for (size_t index = 0; index < Events().Size(); ++index) {
        const Event &event = Events()[index];
        text += QByteArray::number(event.time, 'f', 3);
        for (int column = 0; column < columnCount; ++column) {
            text += '\t' + TextIn(column, event).toUtf8();
        }
        text += '\n';
    }
    return text;
}

} // namespace

/// The events as rows, as they were at the last Follow().
class EventTable final : public QAbstractTableModel {
public:
    explicit EventTable(QObject *parent) : QAbstractTableModel(parent) { Follow(); }

    bool IsUpToDate() const { return version == Events().Version(); }

    /// Keeps the rows that are still there, unless an event has come between.
    void Follow() {
        const int now = static_cast<int>(Events().Size());
        const auto added = static_cast<int>(
            std::min<uint64_t>(Events().Version() - version, EventHistory::capacity));
        version = Events().Version();
        const int gone = rows + added - now;
        const int before = now - added;
        if (gone < 0 || gone > rows || (before > 0 && NumberAt(before - 1) != newest)) {
            beginResetModel();
            rows = now;
            endResetModel();
        } else {
            if (gone > 0) {
                beginRemoveRows({}, 0, gone - 1);
                rows -= gone;
                endRemoveRows();
            }
            if (added > 0) {
                beginInsertRows({}, rows, now - 1);
                rows = now;
                endInsertRows();
            }
        }
        newest = now > 0 ? NumberAt(now - 1) : 0;
    }

    int rowCount(const QModelIndex &parent) const override { return parent.isValid() ? 0 : rows; }
    int columnCount(const QModelIndex &parent) const override {
        return parent.isValid() ? 0 : ztm::columnCount;
    }

    QVariant data(const QModelIndex &index, int role) const override {
        const auto row = static_cast<size_t>(index.row());
        if (role != Qt::DisplayRole || row >= Events().Size()) {
            return {};
        }
        return TextIn(index.column(), Events()[row]);
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole || orientation != Qt::Horizontal) {
            return QAbstractTableModel::headerData(section, orientation, role);
        }
        const QString names[] = {frmEvents::tr("Time"), frmEvents::tr("What"),
                                 frmEvents::tr("Channel")};
        return names[section];
    }

private:
    static uint64_t NumberAt(int row) { return Events()[static_cast<size_t>(row)].number; }

    int rows = 0;
    uint64_t version = 0;
    uint64_t newest = 0; // the number of the event in the last row
};

frmEvents::frmEvents()
    : Form(QStringLiteral("frmEvents"))
    , tblEvents(Named(new QTableView(this), "tblEvents"))
    , table(new EventTable(tblEvents))
    , cmdSave(NewButton("cmdSave", tr("&Save..."), this)) {
    setWindowTitle(tr("Events"));
    auto *cmdClose = NewButton("cmdClose", tr("Close"), this);
    tblEvents->setAccessibleName(windowTitle());
    tblEvents->setModel(table);
    tblEvents->setSelectionBehavior(QAbstractItemView::SelectRows);
    tblEvents->setSelectionMode(QAbstractItemView::SingleSelection);
    tblEvents->setTabKeyNavigation(false);
    tblEvents->setWordWrap(false);
    tblEvents->verticalHeader()->hide();
    tblEvents->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    tblEvents->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    QHeaderView &header = *tblEvents->horizontalHeader();
    header.setHighlightSections(false);
    header.setSectionResizeMode(1, QHeaderView::Stretch);
    header.resizeSection(
        0, fontMetrics().horizontalAdvance(QStringLiteral("  2000-00-00 00:00:00.000  ")));
    header.resizeSection(2, fontMetrics().horizontalAdvance(QStringLiteral("  Channel  ")));
    tblEvents->scrollToBottom();

    auto *layout = new QVBoxLayout(this);
    layout->addWidget(tblEvents);
    layout->addLayout(NewButtonRow({cmdSave, cmdClose}));
    resize(sizeHint()); // by itself a window takes at most two thirds of its screen
    connect(tblEvents->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &frmEvents::Remember);
    connect(table, &EventTable::modelReset, this, &frmEvents::SelectAgain);
    connect(tblEvents, &QTableView::clicked, this, &frmEvents::Choose);
    connect(tblEvents, &QTableView::activated, this, &frmEvents::Choose);
    connect(cmdSave, &QPushButton::clicked, this, &frmEvents::cmdSave_Click);
    connect(cmdClose, &QPushButton::clicked, this, &frmEvents::close);
}

QSize frmEvents::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 80, fontMetrics().height() * 25};
}

void frmEvents::Follow() {
    if (table->IsUpToDate()) {
        return;
    }
    QScrollBar &bar = *tblEvents->verticalScrollBar();
    const int place = bar.value();
    const bool wasAtEnd = place == bar.maximum();
    table->Follow();
    if (wasAtEnd) {
        tblEvents->scrollToBottom();
    } else {
        bar.setValue(place);
    }
}

void frmEvents::Choose(const QModelIndex &index) {
    if (const auto row = static_cast<size_t>(index.row()); row < Events().Size()) {
        emit Chosen(Events()[row].time);
    }
}

void frmEvents::Remember(const QModelIndex &index) {
    const auto row = static_cast<size_t>(index.row());
    if (index.isValid() && row < Events().Size()) {
        selectedTime = Events()[row].time;
        selectedNumber = Events()[row].number;
    }
}

/// Rows that are replaced lose their selection.
void frmEvents::SelectAgain() {
    for (size_t row = Events().FirstFrom(selectedTime);
         row < Events().Size() && Events()[row].time == selectedTime; ++row) {
        if (Events()[row].number == selectedNumber) {
            tblEvents->setCurrentIndex(table->index(static_cast<int>(row), 0));
        }
    }
}

void frmEvents::cmdSave_Click() {
    const QString path = AskExportFile(
        this, tr("Save Events"), tr("Tab-separated text (*.txt *.tsv)"),
        tr("Events %1")
            .arg(QDateTime::currentDateTime().toString(QStringLiteral("yyyy-MM-dd hh-mm-ss"))));
    if (path.isEmpty()) {
        return;
    }
    const QByteArray text = TextOfAll();
    const std::string problem = SaveFile(QFile::encodeName(path).toStdString(),
                                         {text.constData(), static_cast<size_t>(text.size())});
    if (!problem.empty()) {
        ShowMessage(tr("The events could not be saved as\n%1\n%2")
                        .arg(path, QString::fromLocal8Bit(problem.c_str())),
                    tr("Save Events"), QMessageBox::Warning);
    }
}

} // namespace ztm
