#include "ui/session/AboutPage.h"

#include "link/LinkState.h"
#include "ui/kit/Controls.h"
#include "ui/kit/Text.h"
#include "ui/session/ProductPicture.h"

#include <QGridLayout>
#include <QLabel>

namespace ztm {
namespace {

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

    auto *layout = new QHBoxLayout(this);
    layout->addStretch(1);
    layout->addWidget(picture, 0, Qt::AlignVCenter);
    layout->addSpacing(3 * fontMetrics().height());
    layout->addLayout(text);
    layout->addStretch(1);
}

void AboutPage::ShowTitle() {
    lblTitle->setText(ToQString(DeviceName));
    lblVersion->setText(QStringLiteral(ZTM_VERSION));
}

} // namespace ztm
