#pragma once

#include <functional>

class QLineEdit;
class QString;

namespace ztm {

/// The numeric value of a box's text, 0 if it has none.
double NumberIn(const QLineEdit &box);

/// Shows a number in a box as number text.
void ShowNumber(QLineEdit &box, double number);

/// Sets the text of a box unless it has it already, and keeps the caret where the user is typing:
/// as many characters from the end as before.
void SetTextKeepingCaret(QLineEdit &box, const QString &text);

/// Marks a box with an invalid text by colour and a tooltip that says why; an empty `reason`
/// removes the mark.
void MarkField(QLineEdit &box, const QString &reason);

/// From now on marks the box with that reason while `isValid` rejects the number in it, rounded to
/// a whole number.
void WatchNumber(QLineEdit &box, std::function<bool(double)> isValid, const QString &reason);

/// From now on marks the box, naming the range, while the number in it, rounded to a whole number,
/// is outside `minimum` to `maximum`.
void WatchRange(QLineEdit &box, double minimum, double maximum, const QString &unit);

} // namespace ztm
