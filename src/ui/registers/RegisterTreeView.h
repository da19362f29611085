#pragma once

#include <QTreeWidget>

namespace ztm {

/// The tree `TreeView1` that groups the registers of the chip by function and shows what was last
/// seen of each. It keeps a light background in every palette, because its level colours need one.
class RegisterTreeView final : public QTreeWidget {
    Q_OBJECT

public:
    explicit RegisterTreeView(QWidget *parent = nullptr);

    /// Rebuilds the tree for the current chip variant; without one it stays empty.
    void BuildRegisterTree();

    void ExpandFirstNode();

    /// Shows the values last seen of the registers that are in sight, bold where they differ from
    /// the default.
    void ShowSeen();

signals:
    /// A register was chosen by mouse or keyboard; `index` is its index in the register map. Not
    /// emitted for roots and groups.
    void RegisterChosen(int index);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void NodeClick(const QTreeWidgetItem *node);
};

} // namespace ztm
