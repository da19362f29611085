#include "ui/registers/frmTraffic.h"

#include "common/Clock.h"
#include "files/TransferText.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"
#include "ui/registers/SettingsExport.h"
#include "ui/registers/TrafficTable.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace ztm {
namespace {

constexpr double secondsBetweenUpdates = 0.1;

/// Paints cells of one line of text at a fraction of what the general delegate takes: the list
/// moves with every update.
class LineDelegate final : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override {
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        const auto group =
            option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
        if (isSelected) {
            painter->fillRect(option.rect, option.palette.brush(group, QPalette::Highlight));
        }
        painter->setPen(
            option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text));
        const int margin = option.fontMetrics.averageCharWidth() / 2;
        const QRect room = option.rect.adjusted(margin, 0, -margin, 0);
        const QString text = index.data().toString();
        if (text.size() * option.fontMetrics.maxWidth() > room.width() &&
            option.fontMetrics.horizontalAdvance(text) > room.width()) {
            painter->drawText(room, Qt::AlignVCenter | Qt::TextSingleLine, text);
        } else if (!text.isEmpty()) {
            const int top = room.top() + (room.height() - option.fontMetrics.height()) / 2;
            painter->drawText(room.left(), top + option.fontMetrics.ascent(), text);
        }
    }
};

} // namespace

frmTraffic::frmTraffic()
    : Form(QStringLiteral("frmTraffic"))
    , txtFilter(Named(new QLineEdit(this), "txtFilter"))
    , chkMonitor(Named(new QCheckBox(tr("&Monitor traffic"), this), "chkMonitor"))
    , chkPause(Named(new QCheckBox(tr("&Pause"), this), "chkPause"))
    , tblTraffic(Named(new QTableView(this), "tblTraffic"))
    , table(new TrafficTable(this))
    , settings(new SettingsExport({[this] {
                                       std::vector<RegisterSetting> written;
                                       for (const uint64_t number : SelectedTransfers()) {
                                           if (const auto setting = SettingOf(TransferAt(number))) {
                                               written.push_back(*setting);
                                           }
                                       }
                                       return written;
                                   },
                                   [this] {
                                       const auto selected = SelectedTransfers();
                                       return selected.empty() ? std::string()
                                                               : TransfersAsText(selected);
                                   }},
                                  this))
    , cmdClear(NewButton("cmdClear", tr("C&lear"), this)) {
    SetupUi();
    ConnectSignals();
}

void frmTraffic::SetupUi() {
    setWindowTitle(tr("Bus Traffic"));
    chkMonitor->setToolTip(tr("Also shows what the monitor reads by itself"));
    txtFilter->setClearButtonEnabled(true);
    txtFilter->setPlaceholderText(tr("register, value, bit or who asked"));
    tblTraffic->setAccessibleName(windowTitle());
    tblTraffic->setModel(table);
    tblTraffic->setItemDelegate(new LineDelegate(tblTraffic));
    tblTraffic->setSelectionBehavior(QAbstractItemView::SelectRows);
    tblTraffic->setTabKeyNavigation(false);
    tblTraffic->setWordWrap(false);
    tblTraffic->verticalHeader()->hide();
    tblTraffic->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    tblTraffic->verticalHeader()->setDefaultSectionSize(fontMetrics().height() * 3 / 2);
    QHeaderView &header = *tblTraffic->horizontalHeader();
    header.setHighlightSections(false);
    const char *widest[] = {"00:00:00.000",         "Seconds since",
                            "read heaters",         "43 Remote1 Temperature(MSB)",
                            "100 %, unchanged",     "TBL/SW LCK SDA SCL",
                            "Auto-Control Response"};
    for (int column = 0; column < TrafficTable::ColumnCount; ++column) {
        header.resizeSection(column,
                             fontMetrics().horizontalAdvance(QLatin1String(widest[column])) +
                                 2 * fontMetrics().averageCharWidth());
    }
    header.setStretchLastSection(true);
    tblTraffic->scrollToBottom();

    auto *filterCaption = new QLabel(tr("&Filter"), this);
    filterCaption->setBuddy(txtFilter);
    auto *cmdClose = NewButton("cmdClose", tr("Close"), this);
    connect(cmdClose, &QPushButton::clicked, this, &frmTraffic::close);
    auto *top = new QHBoxLayout;
    top->addWidget(filterCaption);
    top->addWidget(txtFilter, 1);
    top->addWidget(chkMonitor);
    top->addWidget(chkPause);
    auto *bottom = new QHBoxLayout;
    bottom->addWidget(settings->CopyButton());
    bottom->addWidget(settings->SaveButton());
    bottom->addWidget(cmdClear);
    bottom->addStretch(1);
    bottom->addWidget(cmdClose);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(tblTraffic);
    layout->addLayout(bottom);
    resize(sizeHint().boundedTo(screen()->availableSize() * 9 / 10));
}

void frmTraffic::ConnectSignals() {
    connect(txtFilter, &QLineEdit::textChanged, this, &frmTraffic::ShowFiltered);
    connect(chkMonitor, &QCheckBox::toggled, this, &frmTraffic::ShowFiltered);
    connect(cmdClear, &QPushButton::clicked, this, &frmTraffic::cmdClear_Click);
    connect(new QShortcut(QKeySequence::Copy, tblTraffic, nullptr, nullptr, Qt::WidgetShortcut),
            &QShortcut::activated, this, &frmTraffic::CopySelected);
}

QSize frmTraffic::sizeHint() const {
    return {fontMetrics().averageCharWidth() * 135, fontMetrics().height() * 30};
}

void frmTraffic::Follow() {
    const double now = RunningSeconds();
    if (chkPause->isChecked() || !isVisible() || now - followed < secondsBetweenUpdates) {
        return;
    }
    followed = now;
    const QScrollBar &bar = *tblTraffic->verticalScrollBar();
    const bool wasAtEnd = bar.value() == bar.maximum();
    if (table->Follow() && wasAtEnd) {
        tblTraffic->scrollToBottom();
    }
}

std::vector<uint64_t> frmTraffic::SelectedTransfers() const {
    std::vector<uint64_t> numbers;
    for (const QModelIndex &row : tblTraffic->selectionModel()->selectedRows()) {
        if (table->NumberIn(row.row()) >= FirstTransfer()) {
            numbers.push_back(table->NumberIn(row.row()));
        }
    }
    std::ranges::sort(numbers);
    return numbers;
}

void frmTraffic::ShowFiltered() {
    table->SetFilter(txtFilter->text().trimmed(), chkMonitor->isChecked());
    tblTraffic->scrollToBottom();
}

void frmTraffic::cmdClear_Click() {
    table->Clear();
}

void frmTraffic::CopySelected() {
    if (const auto selected = SelectedTransfers(); !selected.empty()) {
        QGuiApplication::clipboard()->setText(ToQString(TransfersAsText(selected)));
    }
}

} // namespace ztm
