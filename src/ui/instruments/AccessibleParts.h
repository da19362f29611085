#pragma once

#include <QRect>
#include <QString>

class QWidget;

namespace ztm {

/// A part of an instrument that is no widget of its own, as assistive technology sees it: a slider.
struct AccessiblePart {
    QString name;
    QString valueText;
    double value = 0;
    double minimum = 0;
    double maximum = 0;
    double step = 1;
    QRect place; ///< in coordinates of the widget
    bool hasFocus = false;
};

/// A widget with such parts.
class AccessibleParts {
public:
    virtual ~AccessibleParts() = default;
    virtual int PartCount() const = 0;
    /// `part` is 0 to PartCount() - 1.
    virtual AccessiblePart PartAt(int part) const = 0;
    /// Moves a part as the user does.
    virtual void MovePart(int part, double value) = 0;
};

/// Tells assistive technology that a part has a new value. Costs nothing if there is none.
void TellPartChanged(QWidget &widget, int part);

} // namespace ztm
