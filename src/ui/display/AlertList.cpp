#include "ui/display/AlertList.h"

#include "common/At.h"
#include "monitor/MonitorSettings.h"
#include "ui/display/Quantities.h"
#include "ui/instruments/ToggleIndicator.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"

#include <QAction>
#include <QButtonGroup>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>

namespace ztm {

AlertList::AlertList(QWidget *parent) : Frame(tr("Alerts"), parent) {
    auto *group = new QButtonGroup(this);
    auto *grid = new QGridLayout;
    for (int channel = 0; channel < ChannelCount; ++channel) {
        Row &row = At(rows, channel);
        row = NewRow(channel, *group);
        grid->addWidget(row.option, channel, 0, Qt::AlignLeft);
        grid->addWidget(row.value, channel, 1);
        grid->addWidget(row.indicator, channel, 2);
    }
    grid->setColumnStretch(1, 1);
    grid->setVerticalSpacing(fontMetrics().height() / 5);
    connect(group, &QButtonGroup::idClicked, this, &AlertList::ChannelChosen);

    auto *reset = new QAction(tr("Reset Least and Greatest"), this);
    connect(reset, &QAction::triggered, this, &ResetExtremes);
    addAction(reset);
    setContextMenuPolicy(Qt::ActionsContextMenu);

    auto *caption = new QLabel(tr("Select Channel to view value/limits:"), this);
    caption->setWordWrap(true);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(caption);
    layout->addLayout(grid);
    layout->addStretch();
}

AlertList::Row AlertList::NewRow(int channel, QButtonGroup &group) {
    const QString name = ToQString(At(Channels, channel).Name);
    Row row;
    row.option = NewOption(IndexedName("optMeasure", channel), name, this);
    group.addButton(row.option, channel);

    row.value = new QLabel(QStringLiteral("–"), this);
    row.value->setObjectName(IndexedName("lblValue", channel));
    row.value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    row.value->setMinimumWidth(fontMetrics().horizontalAdvance(QStringLiteral("15000RPM")));
    row.value->installEventFilter(this);

    row.indicator = new ToggleIndicator(this);
    row.indicator->setObjectName(IndexedName("tglAlert", channel));
    row.indicator->setAccessibleName(tr("Alert %1").arg(name));
    row.indicator->SetKnown(false);
    row.indicator->setToolTip(tr("Interrupt Status: Green=OK, Red=Bad, Invisible=Disabled"));
    return row;
}

void AlertList::LayOutForVariant() {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        const Row &row = At(rows, channel);
        for (QWidget *part :
             std::initializer_list<QWidget *>{row.option, row.value, row.indicator}) {
            part->setVisible(HasChannel(channel));
        }
        if (HasChannel(channel)) {
            row.option->setText(NameOfChannel(channel));
            row.indicator->setAccessibleName(tr("Alert %1").arg(NameOfChannel(channel)));
        }
    }
}

int AlertList::SelectedChannel() const {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        if (At(rows, channel).option->isChecked()) {
            return channel;
        }
    }
    return -1;
}

void AlertList::Select(int channel) {
    At(rows, channel).option->setChecked(true);
}

QString AlertList::TextOf(int channel) const {
    return At(rows, channel).option->text();
}

void AlertList::ShowValues() {
    for (int channel = 0; channel < ChannelCount; ++channel) {
        ShowValue(channel);
    }
}

void AlertList::ShowValue(int channel) {
    Row &row = At(rows, channel);
    const float value = At(Measurements, channel);
    if (IsMeasured(channel) && (!row.isShown || row.shown != value)) {
        row.isShown = true;
        row.shown = value;
        row.value->setText(ValueText(channel, value));
    }
    const bool goesOn = MonitoringEnabled || (BargraphEnabled && row.option->isChecked());
    if (const bool isPale = row.isShown && !goesOn; isPale != row.isPale) {
        row.isPale = isPale;
        row.value->setForegroundRole(isPale ? QPalette::PlaceholderText : QPalette::WindowText);
    }
}

void AlertList::ShowAlerts(const std::array<bool, ChannelCount> &alarms) {
    for (size_t channel = 0; channel < alarms.size(); ++channel) {
        rows[channel].indicator->SetAlarm(alarms[channel]);
        rows[channel].indicator->SetKnown(true);
    }
}

void AlertList::ForgetAlerts() {
    for (const Row &row : rows) {
        row.indicator->SetKnown(false);
    }
}

/// The tooltip of a value is made when it is asked for.
bool AlertList::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::ToolTip) {
        for (int channel = 0; channel < ChannelCount; ++channel) {
            QLabel *value = At(rows, channel).value;
            if (watched == value) {
                const auto [least, greatest] = ExtremesOf(channel);
                value->setToolTip(least > greatest ? tr("Not measured yet")
                                                   : tr("Least %1, greatest %2")
                                                         .arg(ValueText(channel, least),
                                                              ValueText(channel, greatest)));
            }
        }
    }
    return Frame::eventFilter(watched, event);
}

} // namespace ztm
