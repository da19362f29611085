#include "ui/instruments/InstrumentAccess.h"

#include "ui/instruments/AccessibleParts.h"
#include "ui/instruments/BitLabel.h"
#include "ui/instruments/Gauge.h"
#include "ui/instruments/StateLabel.h"
#include "ui/instruments/StripChart.h"
#include "ui/instruments/ToggleIndicator.h"
#include "ui/instruments/ValueSlider.h"

#include <QAccessibleWidget>
#include <QPointer>

#include <vector>

namespace ztm {
namespace {

class SliderInterface final : public QAccessibleWidget, public QAccessibleValueInterface {
public:
    explicit SliderInterface(ValueSlider &slider)
        : QAccessibleWidget(&slider, QAccessible::Slider), slider(slider) {}

    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : QAccessibleWidget::interface_cast(type);
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? slider.ValueText() : QAccessibleWidget::text(kind);
    }

    QVariant currentValue() const override { return slider.Value(); }
    void setCurrentValue(const QVariant &value) override { slider.MoveTo(value.toDouble()); }
    QVariant minimumValue() const override { return slider.Minimum(); }
    QVariant maximumValue() const override { return slider.Maximum(); }
    QVariant minimumStepSize() const override { return slider.SmallStep(); }

private:
    ValueSlider &slider;
};

class BitInterface final : public QAccessibleWidget {
public:
    explicit BitInterface(BitLabel &bit)
        : QAccessibleWidget(&bit, QAccessible::CheckBox), bit(bit) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = true;
        state.checked = bit.text() == QLatin1String("1");
        return state;
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Value ? bit.text() : QAccessibleWidget::text(kind);
    }

    QStringList actionNames() const override {
        return QAccessibleWidget::actionNames() << toggleAction();
    }

    void doAction(const QString &action) override {
        if (action == toggleAction()) {
            emit bit.Click();
        } else {
            QAccessibleWidget::doAction(action);
        }
    }

private:
    BitLabel &bit;
};

class StateInterface final : public QAccessibleWidget {
public:
    explicit StateInterface(StateLabel &label)
        : QAccessibleWidget(&label, QAccessible::Link), label(label) {}

    QStringList actionNames() const override {
        return QAccessibleWidget::actionNames() << pressAction();
    }

    void doAction(const QString &action) override {
        if (action == pressAction()) {
            emit label.Click();
        } else {
            QAccessibleWidget::doAction(action);
        }
    }

private:
    StateLabel &label;
};

/// A widget that says what it shows in its description.
class DescribedInterface final : public QAccessibleWidget {
public:
    using QAccessibleWidget::QAccessibleWidget;

    QString text(QAccessible::Text kind) const override {
        return QAccessibleWidget::text(kind == QAccessible::Value ? QAccessible::Description
                                                                  : kind);
    }
};

class PartInterface final : public QAccessibleInterface, public QAccessibleValueInterface {
public:
    PartInterface(QWidget &owner, AccessibleParts &its, int index)
        : widget(&owner), parts(its), part(index) {}

    bool isValid() const override { return widget != nullptr && part < parts.PartCount(); }
    QObject *object() const override { return nullptr; }
    QAccessibleInterface *parent() const override {
        return QAccessible::queryAccessibleInterface(widget);
    }
    QAccessibleInterface *child(int /*index*/) const override { return nullptr; }
    QAccessibleInterface *childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface * /*child*/) const override { return -1; }

    QAccessible::Role role() const override { return QAccessible::Slider; }
    QAccessible::State state() const override {
        QAccessible::State state = parent()->state();
        state.focused = state.focused && Now().hasFocus;
        return state;
    }
    QRect rect() const override {
        const QRect place = Now().place;
        return {widget->mapToGlobal(place.topLeft()), place.size()};
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name    ? Now().name
               : kind == QAccessible::Value ? Now().valueText
                                            : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString & /*text*/) override {}

    void *interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ValueInterface ? static_cast<QAccessibleValueInterface *>(this)
                                                   : nullptr;
    }
    QVariant currentValue() const override { return Now().value; }
    void setCurrentValue(const QVariant &value) override { parts.MovePart(part, value.toDouble()); }
    QVariant minimumValue() const override { return Now().minimum; }
    QVariant maximumValue() const override { return Now().maximum; }
    QVariant minimumStepSize() const override { return Now().step; }

private:
    AccessiblePart Now() const { return parts.PartAt(part); }

    QPointer<QWidget> widget;
    AccessibleParts &parts;
    int part;
};

class PartsInterface final : public QAccessibleWidget {
public:
    PartsInterface(QWidget &widget, AccessibleParts &its)
        : QAccessibleWidget(&widget, QAccessible::Dial), parts(its) {}

    ~PartsInterface() override {
        for (const QAccessible::Id id : known) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    int childCount() const override { return parts.PartCount(); }
    QAccessibleInterface *child(int index) const override {
        if (index < 0 || index >= parts.PartCount()) {
            return nullptr;
        }
        while (static_cast<int>(known.size()) <= index) {
            known.push_back(QAccessible::registerAccessibleInterface(
                new PartInterface(*widget(), parts, static_cast<int>(known.size()))));
        }
        return QAccessible::accessibleInterface(known[static_cast<size_t>(index)]);
    }
    int indexOfChild(const QAccessibleInterface *child) const override {
        return IndexWhere([child](const QAccessibleInterface &one) { return &one == child; });
    }
    QAccessibleInterface *childAt(int x, int y) const override {
        return child(
            IndexWhere([=](const QAccessibleInterface &one) { return one.rect().contains(x, y); }));
    }
    QAccessibleInterface *focusChild() const override {
        return child(
            IndexWhere([](const QAccessibleInterface &one) { return one.state().focused == 1; }));
    }

private:
    /// The first child for which that holds; -1 if there is none.
    template <class Predicate>
    int IndexWhere(const Predicate &holds) const {
        for (int index = 0; index < childCount(); ++index) {
            if (holds(*child(index))) {
                return index;
            }
        }
        return -1;
    }

    AccessibleParts &parts;
    mutable std::vector<QAccessible::Id> known;
};

QAccessibleInterface *NewInterface(const QString & /*className*/, QObject *object) {
    if (auto *slider = qobject_cast<ValueSlider *>(object)) {
        return new SliderInterface(*slider);
    }
    if (auto *bit = qobject_cast<BitLabel *>(object)) {
        return new BitInterface(*bit);
    }
    if (auto *state = qobject_cast<StateLabel *>(object)) {
        return new StateInterface(*state);
    }
    if (auto *indicator = qobject_cast<ToggleIndicator *>(object)) {
        return new DescribedInterface(indicator, QAccessible::Indicator);
    }
    if (auto *chart = qobject_cast<StripChart *>(object)) {
        return new DescribedInterface(chart, QAccessible::Chart);
    }
    if (auto *parts = dynamic_cast<AccessibleParts *>(object)) {
        return new PartsInterface(*static_cast<QWidget *>(object), *parts);
    }
    return nullptr;
}

} // namespace

void MakeInstrumentsAccessible() {
    QAccessible::installFactory(NewInterface);
}

void TellPartChanged(QWidget &widget, int part) {
    if (!QAccessible::isActive()) {
        return;
    }
    if (auto *child = QAccessible::queryAccessibleInterface(&widget)->child(part)) {
        QAccessibleValueChangeEvent event(child, child->valueInterface()->currentValue());
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace ztm
