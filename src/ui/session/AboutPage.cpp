#include "ui/session/AboutPage.h"

#include "link/LinkState.h"
#include "ui/instruments/StateLabel.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Guide.h"
#include "ui/kit/Text.h"
#include "ui/session/ProductPicture.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>

namespace ztm {
namespace {

const QString guideIndex = QStringLiteral("index");

QLabel *NewLabel(const char *name, const QString &text, QWidget *parent, double fontScale) {
    auto *label = Named(new QLabel(text, parent), name);
    QFont font = label->font();
    font.setPointSizeF(font.pointSizeF() * fontScale);
    label->setFont(font);
    return label;
}

} // namespace

AboutPage::AboutPage(QWidget *parent)
    : QWidget(parent)
    , lblTitle(NewLabel("lblTitle", {}, this, 3.0))
    , lblVersion(NewLabel("lblVersion", {}, this, 1.2)) {
    auto *release = NewLabel("lblRelease", tr("Release %1").arg(ZTM_VERSION), this, 1.0);
    auto *licence = NewLabel(
        "lblLicence", tr("Free software under the GNU General Public License, version 3 or later"),
        this, 1.0);
    licence->setWordWrap(true);
    auto *guide = new StateLabel("lblGuide", tr("User guide"), Qt::ElideMiddle, this);
    const QString path = GuidePage(guideIndex);
    guide->ShowState(
        tr("User guide: %1").arg(QFileInfo::exists(path) ? path : tr("not installed")));
    connect(guide, &StateLabel::Click, this, [] { OpenGuide(guideIndex); });
    auto *picture = Named(new ProductPicture(this), "Image2");

    auto *version = new QHBoxLayout;
    version->addWidget(NewLabel("Label3", tr("Version"), this, 1.2));
    version->addWidget(lblVersion);
    version->addStretch();

    auto *text = new QVBoxLayout;
    text->addStretch();
    text->addWidget(lblTitle);
    text->addWidget(NewLabel("Label1", tr("Evaluation"), this, 2.0));
    text->addWidget(NewLabel("Label2", tr("Software"), this, 2.0));
    text->addSpacing(fontMetrics().height());
    text->addLayout(version);
    text->addStretch();

    auto *top = new QHBoxLayout;
    top->addStretch(1);
    top->addWidget(picture, 0, Qt::AlignVCenter);
    top->addSpacing(3 * fontMetrics().height());
    top->addLayout(text);
    top->addStretch(1);

    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    for (auto *label : {release, licence, static_cast<QLabel *>(guide)}) {
        layout->addWidget(label);
    }
}

void AboutPage::ShowTitle() {
    lblTitle->setText(ToQString(DeviceName));
    lblVersion->setText(QStringLiteral("1.1.0")); // whatever the release
}

} // namespace ztm
