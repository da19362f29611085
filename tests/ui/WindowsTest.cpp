#include "support/UiTest.h"
#include "ui/display/frmSetupLog.h"
#include "ui/kit/Twips.h"
#include "ui/session/frmMain.h"

#include <QAbstractButton>
#include <QLabel>
#include <QScrollBar>
#include <QTest>
#include <QTreeWidget>

#include <cmath>

namespace ztm::test {
namespace {

using testing::IsEmpty;

class WindowsTest : public UiTest {
protected:
    /// Visible controls that are cut off: smaller than they need to be, or out of their parent.
    static std::vector<std::string> CutOff(const QWidget &window) {
        std::vector<std::string> names;
        for (const auto *widget : window.findChildren<QWidget *>()) {
            if (!widget->isVisible() || qobject_cast<const QScrollBar *>(widget) != nullptr ||
                qobject_cast<const QScrollBar *>(widget->parent()) != nullptr) {
                continue;
            }
            if (widget->sizePolicy().verticalPolicy() == QSizePolicy::Ignored) {
                continue; // an arrow of a spin button is as large as it happens to be
            }
            const QSize least = widget->minimumSizeHint();
            const bool small = widget->width() < least.width() || widget->height() < least.height();
            const bool outside = !widget->parentWidget()->rect().contains(widget->geometry());
            const bool named = !widget->objectName().isEmpty() &&
                               !widget->objectName().startsWith(QLatin1String("qt_"));
            if (named && (small || outside)) {
                names.push_back(widget->objectName().toStdString());
            }
        }
        return names;
    }

    static constexpr double readableContrast = 4.5;

    /// The contrast of two colours, 1 to 21, by their relative luminance.
    static double Contrast(const QColor &first, const QColor &second) {
        const auto luminance = [](const QColor &colour) {
            const auto linear = [](double part) {
                return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
            };
            return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
                   0.0722 * linear(colour.blueF());
        };
        const auto [dark, light] = std::minmax({luminance(first), luminance(second)});
        return (light + 0.05) / (dark + 0.05);
    }

    /// Enabled labels whose text does not stand out from their ground.
    static std::vector<std::string> HardToRead() {
        std::vector<std::string> names;
        for (const Form *form : LoadedForms()) {
            for (const auto *label : form->findChildren<QLabel *>()) {
                const QPalette &palette = label->palette();
                if (label->isEnabled() &&
                    Contrast(palette.color(label->foregroundRole()),
                             palette.color(label->backgroundRole())) < readableContrast) {
                    names.push_back(label->objectName().toStdString());
                }
            }
        }
        return names;
    }

    /// Controls for the keyboard without an object name, or with nothing that tells a user of
    /// assistive technology what they are.
    static std::vector<std::string> Nameless() {
        std::vector<std::string> names;
        for (const Form *form : LoadedForms()) {
            for (const auto *widget : form->findChildren<QWidget *>()) {
                const QString name = widget->objectName();
                if (widget->focusPolicy() == Qt::NoFocus || name.startsWith("qt_") ||
                    name == "SSTab1") {
                    continue;
                }
                const auto *button = qobject_cast<const QAbstractButton *>(widget);
                bool told = !widget->accessibleName().isEmpty() ||
                            (button != nullptr && !button->text().isEmpty());
                for (const auto *label : form->findChildren<QLabel *>()) {
                    told = told || label->buddy() == widget;
                }
                if (name.isEmpty() || !told) {
                    names.push_back(widget->metaObject()->className() + (" " + name).toStdString());
                }
            }
        }
        return names;
    }
};

TEST_F(WindowsTest, MainWindowShowsEverythingFromSmallToFullScreen) {
    StartSessionOf(ZTM7720);
    auto &window = Find("frmMain");
    for (const QSize size : {QSize(800, 600), QSize(1280, 800), QSize(2560, 1440)}) {
        window.resize(size);
        for (const char *tab : {"About", "Register Access", "Visual Display", "Control"}) {
            ClickTab(tab);
            Settle();
            EXPECT_EQ(window.size(), size) << tab;
            EXPECT_THAT(CutOff(window), IsEmpty()) << tab << " at " << size.width();
        }
    }
}

TEST_F(WindowsTest, LargeFontsCutNothingOff) {
    QFont font = QApplication::font();
    const QFont usual = font;
    font.setPointSizeF(font.pointSizeF() * 1.5);
    QApplication::setFont(font);
    OpenWizard();
    for (int page = 0; page < 3; ++page) {
        EXPECT_THAT(CutOff(Find("InitForm")), IsEmpty()) << page;
        Adapter().registers[0x3D] = 0x34;
        Click("NextCMD");
        Settle();
    }
    QApplication::setFont(usual);
}

TEST_F(WindowsTest, TextIsReadableInALightAndADarkPalette) {
    const QPalette usual = QApplication::palette();
    for (const QPalette &palette :
         {QPalette(QColor(239, 239, 239)), QPalette(QColor(49, 54, 59))}) {
        QApplication::setPalette(palette);
        OpenWizard();
        EXPECT_THAT(HardToRead(), IsEmpty());
        DeleteAllForms();
        StartSessionOf(ZTM7720);
        EXPECT_THAT(HardToRead(), IsEmpty());
        const auto &tree = Find<QTreeWidget>("TreeView1");
        for (QTreeWidgetItemIterator node(tree.topLevelItem(0)); *node != nullptr; ++node) {
            EXPECT_GE(
                Contrast((*node)->foreground(0).color(), tree.palette().color(QPalette::Base)),
                readableContrast)
                << (*node)->text(0).toStdString();
        }
        DeleteAllForms();
    }
    QApplication::setPalette(usual);
}

TEST_F(WindowsTest, APaletteChangedOnTheWayIsFollowed) {
    const QPalette usual = QApplication::palette();
    OpenWizard();
    QApplication::setPalette(QPalette(QColor(49, 54, 59)));
    Settle();
    EXPECT_THAT(HardToRead(), IsEmpty());
    QApplication::setPalette(usual);
}

TEST_F(WindowsTest, EveryControlSaysWhatItIs) {
    OpenWizard();
    EXPECT_THAT(Nameless(), IsEmpty());
    DeleteAllForms();
    StartSessionOf(ZTM7720);
    ShowForm<frmSetupLog>();
    EXPECT_THAT(Nameless(), IsEmpty());
}

TEST_F(WindowsTest, EveryDialogIsWholeNamedAndReadable) {
    const QPalette usual = QApplication::palette();
    const QFont usualFont = QApplication::font();
    QFont large = usualFont;
    large.setPointSizeF(large.pointSizeF() * 1.5);
    const std::pair<QPalette, QFont> looks[] = {{QPalette(QColor(239, 239, 239)), usualFont},
                                                {QPalette(QColor(49, 54, 59)), usualFont},
                                                {QPalette(QColor(239, 239, 239)), large}};
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        for (const auto &[palette, font] : looks) {
            QApplication::setPalette(palette);
            QApplication::setFont(font);
            ResetCore();
            StartSessionOf(variant);
            ForEveryDialog(
                [](const char *window) { EXPECT_THAT(CutOff(Find(window)), IsEmpty()) << window; });
            EXPECT_THAT(Nameless(), IsEmpty());
            EXPECT_THAT(HardToRead(), IsEmpty());
            DeleteAllForms();
        }
    }
    QApplication::setPalette(usual);
    QApplication::setFont(usualFont);
}

TEST_F(WindowsTest, ControlsStandWhereTheVariantHasThem) {
    const struct {
        std::string_view variant;
        const char *control;
        bool across;
        double twips;
    } places[] = {
        {ZTM7720, "sldFan(0)", true, 360},   {ZTM7720, "sldFan(1)", true, 1440},
        {ZTM7710, "sldFan(0)", true, 1440},  {ZTM7710, "Frame5", true, 2040},
        {ZTM7720, "chkLog(0)", false, 240},  {ZTM7720, "chkLog(5)", false, 2040},
        {ZTM7710, "chkLog(0)", false, 600},  {ZTM7710, "chkLog(1)", false, 960},
        {ZTM7710, "chkLog(3)", false, 1320}, {ZTM7710, "chkLog(5)", false, 1680},
    };
    int topOfTwoRemotes = 0;
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        ResetCore();
        StartSessionOf(variant);
        ForEveryDialog([](const char *) {});
        Click("cmdManual"); // loading again changes nothing
        Settle();
        const auto &dialog = Find("frmThermTemp");
        for (const auto &place : places) {
            if (place.variant == variant) {
                const QPoint at = Find(place.control).pos();
                EXPECT_EQ(place.across ? at.x() : at.y(), Twips(place.twips, dialog))
                    << place.control << " of " << variant;
            }
        }
        const int top = Find("txtR1").mapTo(&dialog, QPoint()).y();
        if (variant == ZTM7710) {
            EXPECT_EQ(top - topOfTwoRemotes, Twips(300, dialog));
        }
        topOfTwoRemotes = top;
        DeleteAllForms();
    }
}

TEST_F(WindowsTest, AButtonBringsTheSameWindowBack) {
    StartSessionOf(ZTM7720);
    ClickTab("Visual Display");
    Click("cmdSetUpLog");
    const auto *first = LoadedForm<frmSetupLog>();
    ASSERT_NE(first, nullptr);
    Click("cmdSetUpLog");
    EXPECT_EQ(LoadedForm<frmSetupLog>(), first);
    EXPECT_EQ(LoadedForms().size(), 2U);

    CloseByCloseBox("frmSetupLog");
    EXPECT_EQ(LoadedForm<frmSetupLog>(), nullptr);
    EXPECT_TRUE(LoadedForm<frmMain>()->isVisible());
    Click("cmdSetUpLog");
    EXPECT_NE(LoadedForm<frmSetupLog>(), nullptr);
}

} // namespace
} // namespace ztm::test
