#include "support/DialogTest.h"

#include "ui/instruments/ValueSlider.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QTabWidget>
#include <QTest>

namespace ztm::test {
namespace {

constexpr int hexadecimal = 16;

QWidget &Control(const QString &name) {
    for (auto form = LoadedForms().rbegin(); form != LoadedForms().rend(); ++form) {
        if (auto *control = (*form)->findChild<QWidget *>(name)) {
            return *control;
        }
    }
    throw std::runtime_error("no such control: " + name.toStdString());
}

QString ShownBy(const QString &name) {
    if (name == "focus") {
        return LoadedForms().back()->focusWidget()->objectName();
    }
    const QWidget &control = Control(name);
    if (control.isHidden()) {
        return QStringLiteral("hidden");
    }
    if (const auto *button = qobject_cast<const QAbstractButton *>(&control)) {
        return button->isCheckable() ? QString::number(button->isChecked())
                                     : QString(button->isEnabled() ? "on" : "off");
    }
    for (const char *property : {"currentText", "title", "value", "text"}) {
        if (const QVariant text = control.property(property); text.isValid()) {
            const bool marked = control.inherits("QLineEdit") && !control.toolTip().isEmpty();
            return text.toString() + (marked ? " !" : "");
        }
    }
    throw std::runtime_error("a control without text: " + name.toStdString());
}

void SetChip(const QString &values) {
    for (const QString &value : values.split(' ', Qt::SkipEmptyParts)) {
        Adapter().registers[value.left(2).toUInt(nullptr, hexadecimal)] =
            static_cast<uint8_t>(value.mid(3).toUInt(nullptr, hexadecimal));
    }
}

QString TextOfCall(const Call &call) {
    const auto byte = [](int32_t value) { return QString::asprintf("%02X", value); };
    if (call == Read(call.index)) {
        return byte(call.index) + '?';
    }
    if (call == Write(call.index & 0xFF, call.index >> 8)) {
        return byte(call.index & 0xFF) + '=' + byte(call.index >> 8);
    }
    if (call == Call{0xDB, call.value, call.index, 0, 0}) {
        return QString("duty=%1,%2").arg(call.value).arg(call.index);
    }
    return call == Call{0xDA, 0, 0, 1, 3} ? "duty?" : "unknown";
}

} // namespace

std::string Asked() {
    QStringList texts;
    for (const Call &call : std::exchange(Adapter().calls, {})) {
        texts += TextOfCall(call);
    }
    return texts.join(' ').toStdString();
}

std::string Shown(const QString &names) {
    QStringList texts;
    for (const QString &name : names.split(' ', Qt::SkipEmptyParts)) {
        texts += ShownBy(name);
    }
    return texts.join('|').toStdString();
}

DialogTest::DialogTest(const char *button, std::string opening)
    : openingButton(button), openingRequests(std::move(opening)) {}

void DialogTest::Open(std::string_view variant, const std::string &chip) const {
    DeleteAllForms();
    ResetCore();
    SetChip(QString::fromStdString(chip));
    StartSessionOf(variant);
    Find<QTimer>("tmrMain").stop(); // only the test's own ticks
    ClickTab("Control");
    Find(openingButton).setEnabled(true); // whatever drives the fans
    Click(openingButton);
    Settle();
    EXPECT_EQ(Asked(), openingRequests);
}

void DialogTest::Step(const QString &step) {
    if (step == "tick") {
        clock.Advance(0.6);
        Tick();
    } else if (step == "close") {
        LoadedForms().back()->close();
    } else if (step.startsWith("chip ")) {
        SetChip(step.mid(5));
    } else if (const auto key = step.indexOf('+'); key > 0) {
        QWidget &control = Control(step.left(key));
        control.setFocus();
        const auto combination = QKeySequence::fromString(step.mid(key + 1))[0];
        QTest::keyClick(&control, combination.key(), combination.keyboardModifiers());
    } else if (const auto equals = step.indexOf('='); equals > 0) {
        QWidget &control = Control(step.left(equals));
        const QString text = step.mid(equals + 1);
        if (auto *list = qobject_cast<QComboBox *>(&control)) {
            EXPECT_FALSE(list->isEditable());
            list->setCurrentText(text);
            EXPECT_EQ(list->currentText(), text);
        } else if (auto *tabs = qobject_cast<QTabWidget *>(&control)) {
            tabs->setCurrentIndex(text.toInt());
        } else if (auto *slider = qobject_cast<ValueSlider *>(&control)) {
            slider->MoveTo(text.toDouble());
        } else {
            Type(dynamic_cast<QLineEdit &>(control), text);
        }
    } else {
        Click(Control(step));
    }
}

std::string DialogTest::Do(const QString &steps, const QString &names) {
    std::string seen;
    for (const QString &step : steps.split("; ")) {
        if (step == "?") {
            Settle();
            seen += (seen.empty() ? "" : " / ") + Shown(names);
        } else {
            Step(step);
        }
    }
    return seen;
}

void DialogTest::Check(const char *names, const std::vector<Visit> &visits) {
    for (const Visit &visit : visits) {
        for (const std::string_view variant : {ZTM7720, ZTM7710}) {
            if (visit.variant.empty() || visit.variant == variant) {
                SCOPED_TRACE(std::string(variant) + " with " + visit.chip + ": " + visit.done);
                Open(variant, visit.chip);
                EXPECT_EQ(Do(QString::fromStdString(visit.done), names), visit.shown);
                EXPECT_EQ(Asked(), visit.asked);
            }
        }
    }
}

} // namespace ztm::test
