#include "ui/registers/RegisterTreeView.h"

#include "regmap/RegMapStuff.h"
#include "regmap/RegisterTree.h"
#include "ui/kit/Text.h"
#include "ui/kit/Twips.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QStyle>

#include <array>

namespace ztm {
namespace {

constexpr double indentationTwips = 200;

/// Text colours by level.
constexpr QColor rootColour(0, 128, 0);
constexpr QColor groupColour(192, 0, 0);
constexpr QColor registerColour(0, 0, 192);

constexpr QColor ground(252, 252, 250);

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

int Depth(const QTreeWidgetItem *node) {
    int depth = 0;
    for (; node != nullptr; node = node->parent()) {
        ++depth;
    }
    return depth;
}

} // namespace

RegisterTreeView::RegisterTreeView(QWidget *parent) : QTreeWidget(parent) {
    setHeaderHidden(true);
    setIndentation(Twips(indentationTwips, *this));
    setUniformRowHeights(true);
    // Wide enough for most names at the deepest level; the longest may be scrolled to.
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setStretchLastSection(false);
    setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("Local High Limit")) +
                    4 * indentation() + style()->pixelMetric(QStyle::PM_ScrollBarExtent));
    // Set on the tree itself, so the background stays when the program's palette changes.
    QPalette light(ground);
    light.setColor(QPalette::Base, ground);
    setPalette(light);
    connect(this, &QTreeWidget::itemClicked, this, &RegisterTreeView::NodeClick);
}

void RegisterTreeView::BuildRegisterTree() {
    clear();
    // The parent for nodes of each level; roots go to the invisible root.
    std::array<QTreeWidgetItem *, 3> parents{invisibleRootItem(), nullptr, nullptr};
    for (const TreeNode &node : RegisterTreeNodes()) {
        const auto level = static_cast<size_t>(node.Level);
        auto *item = new QTreeWidgetItem(parents[level], {ToQString(node.Text)});
        item->setForeground(0, ColourOf(node.Level));
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
