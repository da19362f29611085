#pragma once

#include <QTreeWidget>

namespace ztm {

/// The tree `TreeView1` that groups the registers of the chip by function. It keeps a light
/// ground in every palette, because the colours of its levels are made for one.
class RegisterTreeView final : public QTreeWidget {
    Q_OBJECT

public:
    explicit RegisterTreeView(QWidget *parent = nullptr);

    /// Rebuilds the tree for the chip variant of the session; without one it is left empty.
    void BuildRegisterTree();

    void ExpandFirstNode();

signals:
    /// A register was chosen, by mouse or keyboard; the index is that of the register map.
    /// Roots and groups choose nothing.
    void RegisterChosen(int index);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void NodeClick(const QTreeWidgetItem *node);
};

} // namespace ztm
