#pragma once

#include "common/EventHistory.h"

#include <QLineEdit>
#include <QStringList>

#include <functional>

namespace ztm {

/// The events that a strip chart shows as ticks above its time axis, and how it says them.
struct StripChartEvents {
    const EventHistory *history = nullptr; ///< none if the chart shows no events
    std::function<QString(const Event &)> textOf;

    /// The texts of those with from <= time < to.
    QStringList Between(double from, double to) const;
};

/// The box for the text of a mark. It closes and deletes itself when the user has pressed Enter,
/// which says QLineEdit::returnPressed, or Escape, or has gone on to another control.
class StripChartMarkBox final : public QLineEdit {
    Q_OBJECT

public:
    StripChartMarkBox(const QString &prompt, QWidget *parent);

protected:
    void focusOutEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void Close();
};

} // namespace ztm
