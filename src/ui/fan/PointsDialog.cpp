#include "ui/fan/PointsDialog.h"

#include "common/Clock.h"
#include "fan/PointText.h"
#include "ui/fan/FanTexts.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>

#include <algorithm>

namespace ztm {
namespace {

constexpr double shownEverySeconds = 0.5;
constexpr int linesKept = 2; // from the start

QList<QKeySequence> UndoKeys() {
    return {QKeySequence(Qt::CTRL | Qt::Key_Z)};
}

QList<QKeySequence> RedoKeys() {
    return {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)};
}

QLabel *NewLine(const char *name, QWidget *parent) {
    auto *line = Named(new QLabel(parent), name);
    line->setTextFormat(Qt::PlainText);
    line->setWordWrap(true);
    line->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return line;
}

} // namespace

void PointsDialog::AddPointButtons(QBoxLayout &layout) {
    cmdCopyPoints = NewButton("cmdCopyPoints", tr("Copy Points"), this);
    cmdPastePoints = NewButton("cmdPastePoints", tr("Paste Points"), this);
    connect(cmdCopyPoints, &QPushButton::clicked, this, &PointsDialog::CopyPoints);
    connect(cmdPastePoints, &QPushButton::clicked, this, &PointsDialog::PastePoints);
    layout.addWidget(cmdCopyPoints);
    layout.addWidget(cmdPastePoints);
}

void PointsDialog::AddLines(QBoxLayout &layout) {
    lblWhatWillHappen = NewLine("lblWhatWillHappen", this);
    lblWhatWillHappen->setMinimumHeight(linesKept * fontMetrics().lineSpacing());
    lblOtherPoints = NewLine("lblOtherPoints", this);
    lblOtherPoints->hide();
    layout.addWidget(lblWhatWillHappen);
    layout.addWidget(lblOtherPoints);
}

void PointsDialog::StartEditing() {
    actUndo = NewAction("actUndo", tr("Undo"), UndoKeys(), &PointsDialog::Undo);
    actRedo = NewAction("actRedo", tr("Redo"), RedoKeys(), &PointsDialog::Redo);
    NewAction("actCopyPoints", tr("Copy Points"), {QKeySequence::Copy}, &PointsDialog::CopyPoints);
    NewAction("actPastePoints", tr("Paste Points"), {QKeySequence::Paste},
              &PointsDialog::PastePoints);
    setContextMenuPolicy(Qt::ActionsContextMenu);
    for (auto *box : findChildren<QLineEdit *>()) {
        box->installEventFilter(this);
        connect(box, &QLineEdit::textChanged, this, &PointsDialog::Edited);
    }
    history.Start(State());
    isEditing = true;
    ShowActions();
    ShowAll();
}

QAction *PointsDialog::NewAction(const char *name, const QString &caption,
                                 const QList<QKeySequence> &shortcuts,
                                 void (PointsDialog::*handler)()) {
    auto *action = Named(new QAction(caption, this), name);
    action->setShortcuts(shortcuts);
    connect(action, &QAction::triggered, this, handler);
    addAction(action);
    return action;
}

/// A box gives up its own undo, and keeps copying and pasting.
bool PointsDialog::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusIn) {
        BeginStep();
    } else if (event->type() == QEvent::ShortcutOverride || event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const QKeySequence pressed(key->keyCombination());
        if (UndoKeys().contains(pressed) || RedoKeys().contains(pressed)) {
            event->ignore();
            return true;
        }
    }
    return Dialog::eventFilter(watched, event);
}

void PointsDialog::Edited() {
    if (!isEditing || isInOneStep || isRestoring) {
        return;
    }
    history.Note(State(), step);
    ShowActions();
    ShowAll();
}

void PointsDialog::AsOneStep(const std::function<void()> &edits) {
    BeginStep();
    {
        const QScopedValueRollback<bool> guard(isInOneStep, true);
        edits();
    }
    Edited();
    BeginStep();
}

void PointsDialog::GoTo(const QVariantList &state) {
    {
        const QScopedValueRollback<bool> guard(isRestoring, true);
        Restore(state);
    }
    BeginStep();
    ShowActions();
    ShowAll();
}

void PointsDialog::Undo() {
    GoTo(history.Undo());
}

void PointsDialog::Redo() {
    GoTo(history.Redo());
}

void PointsDialog::ShowActions() {
    actUndo->setEnabled(history.CanUndo());
    actRedo->setEnabled(history.CanRedo());
}

void PointsDialog::CopyPoints() {
    QApplication::clipboard()->setText(ToQString(PointsAsText(Points())));
    TellResult(tr("%1 points copied").arg(LookupPoints));
}

void PointsDialog::PastePoints() {
    const ParsedPoints pasted = ParsePoints(QApplication::clipboard()->text().toStdString());
    if (pasted.FaultyLine > 0) {
        TellResult(pasted.AreTooMany
                       ? tr("Line %1 is behind the eighth point: nothing was pasted")
                             .arg(pasted.FaultyLine)
                       : tr("Line %1 is no point (temperature, tab, RPM): nothing was pasted")
                             .arg(pasted.FaultyLine));
        return;
    }
    QStringList result{pasted.Points.size() == 1
                           ? tr("1 point pasted")
                           : tr("%1 points pasted").arg(pasted.Points.size())};
    AsOneStep([&] { result += EnterPoints(pasted.Points); });
    TellResult(result.join(QStringLiteral("; ")));
}

void PointsDialog::ShowText(QLabel &line, const QString &text) {
    line.setText(text);
    if (line.isVisible()) {
        line.setMinimumHeight(std::max(line.minimumHeight(), line.heightForWidth(line.width())));
    }
}

void PointsDialog::ShowMeasured() {
    const double now = RunningSeconds();
    if (now - lastShown >= shownEverySeconds && isVisible()) {
        lastShown = now;
        ShowNow();
    }
}

QString PointsDialog::WhatWillHappen() const {
    QStringList texts = OtherChanges();
    const FanPlan plan = Plan();
    if (const auto held = SeenPoints()) {
        if (const int changed = DifferentPoints(plan.Points, *held); changed > 0) {
            texts.prepend(tr("%1 of %2 points changed").arg(changed).arg(LookupPoints));
        }
    }
    texts = {texts.isEmpty() ? tr("Nothing changed") : texts.join(QStringLiteral(", "))};
    if (IsManualSeen()) {
        texts += tr("the chip is under manual control and does not use the table");
    } else {
        texts += OutlookTexts(plan);
    }
    return AsSentence(texts);
}

const PointsDialog *PointsDialog::OtherWithOtherPoints() const {
    const auto held = SeenPoints();
    for (const Form *form : LoadedForms()) {
        const auto *other = dynamic_cast<const PointsDialog *>(form);
        if (other != nullptr && other != this && other->isEditing &&
            DifferentPoints(AsWritten(Points(), held), AsWritten(other->Points(), held)) > 0) {
            return other;
        }
    }
    return nullptr;
}

void PointsDialog::ShowNow() {
    if (!isEditing) {
        return;
    }
    ShowText(*lblWhatWillHappen, WhatWillHappen());
    const auto *other = OtherWithOtherPoints();
    lblOtherPoints->setVisible(other != nullptr);
    if (other != nullptr) {
        lblOtherPoints->setText(
            tr("The window \"%1\" holds other points: what is applied last stays in the chip")
                .arg(other->windowTitle()));
    }
    ShowFans();
}

/// In all these dialogs: each depends on the other and on what it has applied.
void PointsDialog::ShowAll(const PointsDialog *except) {
    for (Form *form : LoadedForms()) {
        auto *dialog = dynamic_cast<PointsDialog *>(form);
        if (dialog != nullptr && dialog != except) {
            dialog->ShowNow();
        }
    }
}

void PointsDialog::Form_Unload() {
    isEditing = false;
    ShowAll(this);
}

} // namespace ztm
