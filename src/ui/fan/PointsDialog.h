#pragma once

#include "fan/EditHistory.h"
#include "fan/FanOutlook.h"
#include "ui/kit/Dialog.h"

#include <QVariantList>

#include <functional>
#include <vector>

class QAction;
class QBoxLayout;
class QLabel;
class QPushButton;

namespace ztm {

/// A dialog that edits the points of the lookup table. Every edit since it opened can be taken back
/// and done again, also in its boxes, where one visit is one step. A line says what Apply would
/// change and make the fans do, another one that a second such dialog holds other points. All
/// points are copied and pasted as text by buttons and the context menu, and by the usual keys
/// where no box has the focus. It asks the chip for nothing.
class PointsDialog : public Dialog {
    Q_OBJECT

public:
    /// Shows what has been measured; call after a monitor tick. At most five times a second there
    /// is anything to do.
    void ShowMeasured();

    /// The points as they are entered.
    virtual SpeedPoints Points() const = 0;

protected:
    using Dialog::Dialog;

    /// What Apply would make of the chip, with the points as they would be written.
    virtual FanPlan Plan() const = 0;

    /// All that can be edited, and back.
    virtual QVariantList State() const = 0;
    virtual void Restore(const QVariantList &state) = 0;

    /// Enters points from point 1 on. Returns what could not be entered as it is.
    virtual QStringList EnterPoints(const std::vector<SpeedPoint> &points) = 0;

    /// Says what became of copied or pasted points.
    virtual void TellResult(const QString &text) = 0;

    /// What else than points Apply would change.
    virtual QStringList OtherChanges() const { return {}; }

    /// Shows and says where the fans are now.
    virtual void ShowFans() {}

    // To be called once each, in this order of the Tab key: the two buttons, the two lines, and
    // StartEditing when everything has been loaded.
    void AddPointButtons(QBoxLayout &layout);
    void AddLines(QBoxLayout &layout);
    void StartEditing();

    /// Call after every edit that no box reports.
    void Edited();

    /// Shows a changing text in a line, which grows with it and never shrinks: what is above must
    /// not move with every measurement.
    static void ShowText(QLabel &line, const QString &text);

    /// Makes one step of all edits in it.
    void AsOneStep(const std::function<void()> &edits);

    /// The edits from now on are another step. A visit to a box begins one by itself.
    void BeginStep() { ++step; }

    /// Call after the points have been written.
    void PointsApplied() { ShowAll(); }

    void Form_Unload() override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QAction *NewAction(const char *name, const QString &caption,
                       const QList<QKeySequence> &shortcuts, void (PointsDialog::*handler)());
    void GoTo(const QVariantList &state);
    void Undo();
    void Redo();
    void CopyPoints();
    void PastePoints();
    void ShowActions();
    QString WhatWillHappen() const;
    const PointsDialog *OtherWithOtherPoints() const;
    void ShowNow();
    static void ShowAll(const PointsDialog *except = nullptr);

    EditHistory<QVariantList> history;
    int step = 1; // to which the next edit belongs
    bool isInOneStep = false;
    bool isRestoring = false;
    bool isEditing = false; // the history has started
    double lastShown = 0;

    QPushButton *cmdCopyPoints = nullptr;
    QPushButton *cmdPastePoints = nullptr;
    QLabel *lblWhatWillHappen = nullptr;
    QLabel *lblOtherPoints = nullptr;
    QAction *actUndo = nullptr;
    QAction *actRedo = nullptr;
};

} // namespace ztm
