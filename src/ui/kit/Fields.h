#pragma once

#include <functional>

class QLineEdit;
class QString;
class QWidget;

namespace ztm {

/// The numeric value of a box's text, 0 if it has none.
double NumberIn(const QLineEdit &box);

/// Shows a number in a box as number text. What the box held before is forgotten.
void ShowNumber(QLineEdit &box, double number);

/// Sets the text of a box unless it has it already, in a step of its own that Ctrl+Z takes back.
void EnterText(QLineEdit &box, const QString &text);
void EnterNumber(QLineEdit &box, double number);

/// Sets the text of a box, unless it has it already, in place of what has just been typed into it.
/// Ctrl+Z then leads to the text before the typing. The caret stays where the user is typing: as
/// many characters from the end as before.
void CorrectText(QLineEdit &box, const QString &text);

/// Marks a box, or another control that stands for an invalid value, by colour and a tooltip that
/// says why; an empty `reason` removes the mark.
void MarkField(QWidget &control, const QString &reason);

/// Says that the text of a box is not a number as a whole, and how it is read; empty if it is one
/// or blank. The number in it must be finite.
QString HowRead(const QLineEdit &box);

/// From now on marks the box with that reason while `isValid` rejects the number in it, rounded to
/// a whole number, and otherwise while its text is not a number as a whole. `isValid` must reject
/// infinite numbers.
void WatchNumber(QLineEdit &box, std::function<bool(double)> isValid, const QString &reason);

/// From now on marks the box, naming the range, while the number in it, rounded to a whole number,
/// is outside `minimum` to `maximum`, or its text is not a number as a whole.
void WatchRange(QLineEdit &box, double minimum, double maximum, const QString &unit);

} // namespace ztm
