#include "ui/kit/SpinButton.h"

#include "common/Numbers.h"
#include "ui/kit/Fields.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QToolButton>
#include <QWheelEvent>

#include <algorithm>

namespace ztm {
namespace {

constexpr int shownCharacters = 8;

} // namespace

int64_t SpinRange::Moved(int64_t value, int64_t change) const {
    const auto limited = std::clamp<int64_t>(value + change, minimum, maximum);
    return change > 0 ? std::max(limited, value) : std::min(limited, value);
}

SpinButton::SpinButton(QLineEdit &textBox, SpinRange spinRange, QWidget *parent)
    : QWidget(parent), box(textBox), range(spinRange) {
    setObjectName(box.objectName() + QStringLiteral("Spin"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    up = NewArrow(Qt::UpArrow, "Up", 1);
    down = NewArrow(Qt::DownArrow, "Down", -1);
    layout->addWidget(up);
    layout->addWidget(down);
    box.installEventFilter(this);
}

/// The arrows take no focus for themselves: the box's keys do the same.
QToolButton *SpinButton::NewArrow(Qt::ArrowType arrow, const char *suffix, int steps) {
    auto *button = new QToolButton(this);
    button->setObjectName(objectName() + QLatin1String(suffix));
    button->setArrowType(arrow);
    button->setFocusPolicy(Qt::NoFocus);
    button->setAutoRepeat(true);
    button->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Ignored);
    connect(button, &QToolButton::clicked, this, [this, steps] {
        box.setFocus();
        Step(steps);
    });
    return button;
}

/// By now the box has its name.
void SpinButton::showEvent(QShowEvent *event) {
    up->setAccessibleName(tr("%1, up").arg(box.accessibleName()));
    down->setAccessibleName(tr("%1, down").arg(box.accessibleName()));
    QWidget::showEvent(event);
}

QSize SpinButton::sizeHint() const {
    const int height = box.sizeHint().height();
    return {height * 3 / 4, height};
}

void SpinButton::Step(int steps) {
    const int64_t value = ToInt32(NumberIn(box));
    const int64_t moved = range.Moved(value, int64_t{steps} * range.step);
    if (moved != value) {
        EnterNumber(box, static_cast<double>(moved));
    }
}

bool SpinButton::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent &>(*event).key();
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            Step(key == Qt::Key_Up ? 1 : -1);
            return true;
        }
    }
    if (event->type() == QEvent::Wheel && box.hasFocus()) {
        return StepByWheel(static_cast<QWheelEvent &>(*event));
    }
    if (event->type() == QEvent::EnabledChange) {
        setEnabled(box.isEnabled());
    }
    return QWidget::eventFilter(watched, event);
}

bool SpinButton::StepByWheel(QWheelEvent &event) {
    if (const int steps = wheel.Take(event); steps != 0) {
        Step(steps);
    }
    return true;
}

QWidget *NewSpinBox(QLineEdit *&box, const QString &name, SpinRange range, QWidget *parent) {
    auto *row = new QWidget(parent);
    box = new QLineEdit(row);
    box->setObjectName(name);
    box->setFixedWidth(box->fontMetrics().averageCharWidth() * shownCharacters +
                       box->sizeHint().height());
    row->setFocusProxy(box);
    auto *layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(box);
    layout->addWidget(new SpinButton(*box, range, row));
    row->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return row;
}

} // namespace ztm
