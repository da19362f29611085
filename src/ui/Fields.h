#pragma once

class QLineEdit;
class QString;

namespace ztm {

/// The numeric value of a box's text, 0 when it has none.
double NumberIn(const QLineEdit &box);

/// Sets the text of a box, unless it has it already, and leaves the insertion point where the
/// user is typing: as many characters from the end as before.
void SetTextKeepingCaret(QLineEdit &box, const QString &text);

/// Marks a box whose text is outside what it can hold, by colour and by a tooltip that says
/// why; an empty `reason` takes the mark away.
void MarkField(QLineEdit &box, const QString &reason);

} // namespace ztm
