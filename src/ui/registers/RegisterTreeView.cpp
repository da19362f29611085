#include "ui/registers/RegisterTreeView.h"

#include "common/At.h"
#include "common/Clock.h"
#include "common/NumberText.h"
#include "link/LastSeen.h"
#include "regmap/RegMapStuff.h"
#include "regmap/RegisterTree.h"
#include "ui/kit/Text.h"
#include "ui/kit/Twips.h"

#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QScrollBar>
#include <QStyle>
#include <QToolTip>

#include <array>

namespace ztm {
namespace {

constexpr double indentationTwips = 200;

/// Text colours by level.
constexpr QColor rootColour(0, 128, 0);
constexpr QColor groupColour(192, 0, 0);
constexpr QColor registerColour(0, 0, 192);

constexpr QColor ground(252, 252, 250);

enum Column { Name, Address, Value, Default, Access };

QColor ColourOf(TreeLevel level) {
    switch (level) {
    case TreeLevel::Root:
        return rootColour;
    case TreeLevel::Group:
        return groupColour;
    case TreeLevel::Register:
        break;
    }
    return registerColour;
}

QString AccessText(RegisterAccess access) {
    switch (access) {
    case RegisterAccess::ReadWrite:
        return {};
    case RegisterAccess::ReadOnly:
        return RegisterTreeView::tr("read only");
    case RegisterAccess::ReadingClears:
        break;
    }
    return RegisterTreeView::tr("read clears");
}

/// The register of a node; null for roots and groups.
const RegisterEntry *EntryOf(const QTreeWidgetItem &node) {
    const QVariant slot = node.data(Name, Qt::UserRole);
    return slot.isValid() ? &At(RegisterMap, slot.toInt()) : nullptr;
}

QString AgeText(double seconds) {
    constexpr double minute = 60;
    constexpr double hour = 3600;
    if (seconds < 1) {
        return RegisterTreeView::tr("just now");
    }
    if (seconds < minute) {
        return RegisterTreeView::tr("%1 s ago").arg(static_cast<int>(seconds));
    }
    return seconds < hour
               ? RegisterTreeView::tr("%1 min ago").arg(static_cast<int>(seconds / minute))
               : RegisterTreeView::tr("%1 h ago").arg(static_cast<int>(seconds / hour));
}

QString SeenText(const RegisterEntry &entry) {
    const QString name = ToQString(entry.Name);
    const auto seen = LastSeen(entry.Address);
    return seen ? RegisterTreeView::tr("%1: %2, seen %3")
                      .arg(name, ToQString(HexByte(seen->Value)),
                           AgeText(RunningSeconds() - seen->Time))
                : RegisterTreeView::tr("%1: not seen in this session").arg(name);
}

int Depth(const QTreeWidgetItem *node) {
    int depth = 0;
    for (; node != nullptr; node = node->parent()) {
        ++depth;
    }
    return depth;
}

} // namespace

RegisterTreeView::RegisterTreeView(QWidget *parent) : QTreeWidget(parent) {
    setHeaderLabels({tr("Register"), tr("Address"), tr("Value"), tr("Default"), tr("Access")});
    setIndentation(Twips(indentationTwips, *this));
    setUniformRowHeights(true);
    // Wide enough for most names at the deepest level; the rest may be scrolled to.
    header()->setSectionsMovable(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setStretchLastSection(false);
    setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Local High Limit")) +
                    4 * indentation() + style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    // Set on the tree itself, so the background stays when the program's palette changes.
    QPalette light(ground);
    light.setColor(QPalette::Base, ground);
    setPalette(light);
    connect(this, &QTreeWidget::itemClicked, this, &RegisterTreeView::NodeClick);
    connect(this, &QTreeWidget::itemExpanded, this, &RegisterTreeView::ShowSeen);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &RegisterTreeView::ShowSeen);
}

void RegisterTreeView::BuildRegisterTree() {
    clear();
    // The parent for nodes of each level; roots go to the invisible root.
    std::array<QTreeWidgetItem *, 3> parents{invisibleRootItem(), nullptr, nullptr};
    for (const TreeNode &node : RegisterTreeNodes()) {
        const auto level = static_cast<size_t>(node.Level);
        auto *item = new QTreeWidgetItem(parents[level], {ToQString(node.Text)});
        item->setForeground(Name, ColourOf(node.Level));
        if (const auto slot = FindRegisterByName(node.Text);
            slot && node.Level == TreeLevel::Register) {
            const RegisterEntry &entry = At(RegisterMap, *slot);
            item->setData(Name, Qt::UserRole, *slot);
            item->setText(Address, ToQString(HexByte(entry.Address)));
            item->setText(Default, ToQString(HexByte(entry.Default)));
            item->setText(Access, AccessText(entry.Access));
        }
        if (level + 1 < parents.size()) {
            parents[level + 1] = item;
        }
    }
}

void RegisterTreeView::ExpandFirstNode() {
    if (auto *first = topLevelItem(0)) {
        first->setExpanded(true);
    }
}

void RegisterTreeView::ShowSeen() {
    const int bottom = viewport()->height();
    for (auto *node = itemAt(0, 0); node != nullptr && visualItemRect(node).top() < bottom;
         node = itemBelow(node)) {
        const RegisterEntry *entry = EntryOf(*node);
        const auto seen = entry == nullptr ? std::nullopt : LastSeen(entry->Address);
        if (!seen || node->data(Value, Qt::UserRole) == QVariant(seen->Value)) {
            continue;
        }
        QFont shown = font();
        shown.setBold(seen->Value != entry->Default);
        node->setData(Value, Qt::UserRole, seen->Value);
        node->setFont(Value, shown);
        node->setText(Value, ToQString(HexByte(seen->Value)));
    }
}

bool RegisterTreeView::viewportEvent(QEvent *event) {
    if (event->type() != QEvent::ToolTip) {
        return QTreeWidget::viewportEvent(event);
    }
    const auto &help = *static_cast<const QHelpEvent *>(event);
    const auto *node = itemAt(help.pos());
    const RegisterEntry *entry = node == nullptr ? nullptr : EntryOf(*node);
    QToolTip::showText(help.globalPos(), entry == nullptr ? QString() : SeenText(*entry), this);
    return true;
}

void RegisterTreeView::resizeEvent(QResizeEvent *event) {
    QTreeWidget::resizeEvent(event);
    ShowSeen();
}

void RegisterTreeView::NodeClick(const QTreeWidgetItem *node) {
    constexpr int registerDepth = 3;
    if (Depth(node) < registerDepth) {
        return;
    }
    if (const auto index = FindRegisterByName(node->text(0).toStdString())) {
        emit RegisterChosen(*index);
    }
}

void RegisterTreeView::keyPressEvent(QKeyEvent *event) {
    const QTreeWidgetItem *before = currentItem();
    QTreeWidget::keyPressEvent(event);
    const bool pressed = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                         event->key() == Qt::Key_Space;
    if (currentItem() != before || pressed) {
        NodeClick(currentItem());
    }
}

} // namespace ztm
