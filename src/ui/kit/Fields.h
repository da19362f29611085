#pragma once

#include <functional>

class QLineEdit;
class QString;

namespace ztm {

/// The numeric value of a box's text, 0 when it has none.
double NumberIn(const QLineEdit &box);

/// Shows a number as number text in a box.
void ShowNumber(QLineEdit &box, double number);

/// Sets the text of a box, unless it has it already, and leaves the insertion point where the
/// user is typing: as many characters from the end as before.
void SetTextKeepingCaret(QLineEdit &box, const QString &text);

/// Marks a box whose text is outside what it can hold, by colour and by a tooltip that says
/// why; an empty `reason` takes the mark away.
void MarkField(QLineEdit &box, const QString &reason);

/// From now on marks the box, for that reason, while the number in it, rounded to a whole one, is
/// none that `isValid` takes.
void WatchNumber(QLineEdit &box, std::function<bool(double)> isValid, const QString &reason);

/// From now on marks the box while the number in it, rounded to a whole one, is outside
/// `minimum` to `maximum`, and says the range.
void WatchRange(QLineEdit &box, double minimum, double maximum, const QString &unit);

} // namespace ztm
