#include "ui/instruments/ValueSliderAccess.h"

#include "ui/instruments/ValueSlider.h"

#include <QAccessibleWidget>

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

QAccessibleInterface *NewInterface(const QString & /*className*/, QObject *object) {
    auto *slider = qobject_cast<ValueSlider *>(object);
    return slider != nullptr ? new SliderInterface(*slider) : nullptr;
}

} // namespace

void MakeValueSlidersAccessible() {
    QAccessible::installFactory(NewInterface);
}

} // namespace ztm
