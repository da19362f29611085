#include "ui/display/LimitBoxes.h"

#include "common/At.h"
#include "common/NumberText.h"
#include "ui/display/Quantities.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Fields.h"
#include "ui/kit/Text.h"

#include <QFocusEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace ztm {
namespace {

/// The focus has gone to another control of the same window.
bool IsMoveWithinWindow(const QEvent &event) {
    const Qt::FocusReason reason = static_cast<const QFocusEvent &>(event).reason();
    return reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
           reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
}

} // namespace

LimitBoxes::LimitBoxes(QWidget *parent)
    : QWidget(parent)
    , unit(new QLabel(this))
    , low(NewSide("txtLow", tr("Low")))
    , high(NewSide("txtHigh", tr("High"))) {
    // Everything keeps its place whatever channel is shown.
    unit->setMinimumWidth(fontMetrics().horizontalAdvance(LookOf(Quantity::FanSpeed).unit));
    for (QWidget *part : std::initializer_list<QWidget *>{low.caption, low.box}) {
        QSizePolicy policy = part->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        part->setSizePolicy(policy);
    }
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch();
    for (const Side *side : {&low, &high}) {
        layout->addWidget(side->caption);
        layout->addWidget(side->box);
    }
    layout->addWidget(unit);
    layout->addStretch();
}

LimitBoxes::Side LimitBoxes::NewSide(const char *name, const QString &caption) {
    Side side{new QLabel(caption, this), Named(new QLineEdit(this), name)};
    side.caption->setBuddy(side.box);
    side.box->setAccessibleName(tr("%1 limit").arg(caption));
    side.box->setFixedWidth(fontMetrics().horizontalAdvance(QStringLiteral("-55.25")) +
                            side.box->sizeHint().height());
    side.box->installEventFilter(this);
    connect(side.box, &QLineEdit::textChanged, this, &LimitBoxes::Mark);
    return side;
}

void LimitBoxes::SetChannel(int channel) {
    if (channel == shownChannel) {
        return;
    }
    shownChannel = channel;
    unit->setText(LookOfChannel(channel).unit);
    const bool hasLow = At(Channels, channel).Measures != Quantity::ThermPercent;
    low.caption->setVisible(hasLow);
    low.box->setVisible(hasLow);
    for (Side *side : {&low, &high}) {
        side->inChip.reset();
        side->box->setModified(false);
    }
}

/// Whether the box holds a number that the user has typed and that has not been said.
bool LimitBoxes::IsTyped(const Side &side) const {
    return side.box->isModified();
}

bool LimitBoxes::HasLow() const {
    return low.box->isVisibleTo(this);
}

void LimitBoxes::Show(Side &side, double value, bool held) {
    const bool isMoving = held && (value != side.pointer || side.box->font().bold());
    if (QFont font = side.box->font(); font.bold() != isMoving) {
        font.setBold(isMoving);
        side.box->setFont(font);
    }
    side.pointer = value;
    const QString text = ToQString(NumberText(value));
    if (!IsTyped(side) && side.box->text() != text) {
        side.box->setText(text);
    }
}

void LimitBoxes::ShowPointers(double lowValue, double highValue, bool held) {
    Show(low, lowValue, held);
    Show(high, highValue, held);
    Mark();
}

void LimitBoxes::SetChipLimits(std::optional<double> lowValue, std::optional<double> highValue) {
    low.inChip = lowValue;
    high.inChip = highValue;
    Mark();
}

/// What is wrong with a side by itself; empty if nothing is.
QString LimitBoxes::Problem(const Side &side) const {
    const QuantityLook &look = LookOfChannel(shownChannel);
    const std::string text = side.box->text().toStdString();
    const double value = NumberIn(*side.box);
    if (!IsNumber(text) || !HasNumber(text) || !(value >= look.minimum && value <= look.maximum)) {
        return tr("%1 to %2 %3: nothing is written")
            .arg(look.minimum)
            .arg(look.maximum)
            .arg(look.unit);
    }
    if (side.inChip && (*side.inChip < look.minimum || *side.inChip > look.maximum)) {
        return tr("The chip holds %1, beyond the scale").arg(ValueText(shownChannel, *side.inChip));
    }
    return {};
}

void LimitBoxes::Mark() {
    if (shownChannel < 0) {
        return;
    }
    QString lowProblem = Problem(low);
    QString highProblem = Problem(high);
    if (HasLow() && lowProblem.isEmpty() && highProblem.isEmpty() &&
        NumberIn(*low.box) > NumberIn(*high.box)) {
        lowProblem = highProblem = tr("The low limit is above the high one");
    }
    MarkField(*low.box, lowProblem);
    MarkField(*high.box, highProblem);
}

/// Says what was typed. The box stays as it is if that is no number within the scale.
void LimitBoxes::Enter(Side &side, bool onlyIfChanged) {
    const QuantityLook &look = LookOfChannel(shownChannel);
    const std::string text = side.box->text().toStdString();
    const double value = NumberIn(*side.box);
    if (!IsTyped(side) || !IsNumber(text) || !HasNumber(text) || value < look.minimum ||
        value > look.maximum) {
        return;
    }
    const bool changed = side.box->text() != ToQString(NumberText(side.pointer));
    if (!changed && onlyIfChanged) {
        side.box->setModified(false);
        return;
    }
    side.box->setModified(false);
    if (&side == &low) {
        emit LowEntered(value);
    } else {
        emit HighEntered(value);
    }
}

void LimitBoxes::TakeBack(Side &side) {
    side.box->setModified(false);
    Show(side, side.pointer, false);
    side.box->selectAll();
}

bool LimitBoxes::eventFilter(QObject *watched, QEvent *event) {
    Side &side = watched == low.box ? low : high;
    if (event->type() == QEvent::KeyPress) {
        const auto &key = static_cast<const QKeyEvent &>(*event);
        if (IsEnter(key)) {
            Enter(side, false);
            side.box->selectAll();
            return true;
        }
        if (key.key() == Qt::Key_Escape && IsTyped(side)) {
            TakeBack(side);
            return true;
        }
    } else if (event->type() == QEvent::FocusOut && IsMoveWithinWindow(*event) && isVisible()) {
        Enter(side, true);
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace ztm
