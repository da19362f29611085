#pragma once

#include <QTreeWidget>

namespace ztm {

/// The tree `TreeView1` that groups the registers of the chip by function. It keeps a light
/// background in every palette, because its level colours need one.
class RegisterTreeView final : public QTreeWidget {
    Q_OBJECT

public:
    explicit RegisterTreeView(QWidget *parent = nullptr);

    /// Rebuilds the tree for the current chip variant; without one it stays empty.
    void BuildRegisterTree();

    void ExpandFirstNode();

signals:
    /// A register was chosen by mouse or keyboard; `index` is its index in the register map. Not
    /// emitted for roots and groups.
    void RegisterChosen(int index);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void NodeClick(const QTreeWidgetItem *node);
};

} // namespace ztm
