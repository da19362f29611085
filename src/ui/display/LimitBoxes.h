#pragma once

#include "monitor/Channels.h"

#include <QWidget>

#include <array>
#include <optional>

class QLabel;
class QLineEdit;

namespace ztm {

/// The limits of the selected channel as numbers below the gauge: `txtLow` and `txtHigh`. They
/// follow the gauge's pointers. A number that the user has typed is said by Enter, and by leaving
/// the box for another control of the window; another window, a message or a hidden page keep it
/// unsaid. Escape takes it back.
class LimitBoxes final : public QWidget {
    Q_OBJECT

public:
    explicit LimitBoxes(QWidget *parent);

    /// Shows boxes for a quantity: THERM% has no low limit. What was typed is forgotten if the
    /// channel is another one.
    void SetChannel(int channel);

    /// Shows the values of the pointers, that of one which moves while it is held in bold. A number
    /// that was typed and not yet said stays.
    void ShowPointers(double low, double high, bool held = false);

    /// The limits as the chip holds them, named where they are beyond the scale.
    void SetChipLimits(std::optional<double> low, std::optional<double> high);

signals:
    /// A number within the scale.
    void LowEntered(double value);
    void HighEntered(double value);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Side {
        QLabel *caption;
        QLineEdit *box;
        double pointer = 0;             // the value that the box follows
        std::optional<double> inChip{}; // where that is beyond the scale
    };

    Side NewSide(const char *name, const QString &caption);
    bool IsTyped(const Side &side) const;
    bool HasLow() const;
    QString Problem(const Side &side) const;
    void Show(Side &side, double value, bool held);
    void Mark();
    void Enter(Side &side, bool onlyIfChanged);
    void TakeBack(Side &side);

    int shownChannel = -1;
    QLabel *unit;
    Side low;
    Side high;
};

} // namespace ztm
