#pragma once

#include "ui/instruments/PressLabel.h"

namespace ztm {

/// One line of plain text that says a state and, pressed by a click, Enter or Space, leads to where
/// the state comes from. A click leaves the focus where it is. Where there is no room for all of it
/// the text is elided; the tooltip has it whole. A label without a text is hidden. To assistive
/// technology it is a link.
class StateLabel final : public PressLabel {
    Q_OBJECT

public:
    /// Elided is the front of the text, at its end or in its middle. The caption is its accessible
    /// name while it is hidden.
    StateLabel(const char *name, const QString &caption, Qt::TextElideMode elided, QWidget *parent);

    /// Shows a text of a front that can be elided and the rest. Another tooltip than the text is
    /// shown as plain text.
    void ShowState(const QString &newFront, const QString &newRest = {}, const QString &tip = {});

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void Measure();

    QString caption;
    Qt::TextElideMode mode;
    QString front;
    QString rest;
    int gap = 0;
    int restWidth = 0;
    int wantedWidth = 0;
};

} // namespace ztm
