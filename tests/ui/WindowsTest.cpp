#include "support/UiTest.h"
#include "ui/display/frmSetupLog.h"
#include "ui/kit/Twips.h"
#include "ui/session/frmMain.h"

#include <QAbstractButton>
#include <QLabel>
#include <QRadioButton>
#include <QScrollBar>
#include <QTest>
#include <QTreeWidget>

#include <algorithm>
#include <cmath>

namespace ztm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// The windows in any look; afterwards the look is the usual one.
class WindowsTest : public UiTest {
protected:
    ~WindowsTest() override {
        QApplication::setPalette(usualPalette);
        QApplication::setFont(usualFont);
    }

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
    static std::vector<std::string> HardToRead(const QWidget &window) {
        std::vector<std::string> names;
        for (const auto *label : window.findChildren<QLabel *>()) {
            const QPalette &palette = label->palette();
            if (label->isEnabled() &&
                Contrast(palette.color(label->foregroundRole()),
                         palette.color(label->backgroundRole())) < readableContrast) {
                names.push_back(label->objectName().toStdString());
            }
        }
        return names;
    }

    /// Controls for the keyboard without an object name, or with nothing that tells a user of
    /// assistive technology what they are.
    static std::vector<std::string> Nameless(const QWidget &window) {
        std::vector<std::string> names;
        const auto labels = window.findChildren<QLabel *>();
        for (const auto *widget : window.findChildren<QWidget *>()) {
            const QString name = widget->objectName();
            const auto *button = qobject_cast<const QAbstractButton *>(widget);
            const bool told = !widget->accessibleName().isEmpty() ||
                              (button != nullptr && !button->text().isEmpty()) ||
                              std::any_of(labels.begin(), labels.end(), [&](const auto *label) {
                                  return label->buddy() == widget;
                              });
            if (widget->focusPolicy() != Qt::NoFocus && !name.startsWith("qt_") &&
                name != "SSTab1" && (name.isEmpty() || !told)) {
                names.push_back(widget->metaObject()->className() + (" " + name).toStdString());
            }
        }
        return names;
    }

    static bool IsForTheTabKey(const QWidget &widget) {
        return widget.isVisible() && widget.isEnabled() &&
               (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.focusProxy() == nullptr;
    }

    /// The controls that the Tab key visits in a window, once round from where it has its start.
    static std::vector<QWidget *> Round(QWidget &window) {
        std::vector<QWidget *> visited;
        window.activateWindow();
        QWidget *at = window.nextInFocusChain();
        while (!IsForTheTabKey(*at)) {
            at = at->nextInFocusChain();
        }
        at->setFocus();
        while (std::find(visited.begin(), visited.end(), at) == visited.end()) {
            visited.push_back(at);
            QTest::keyClick(at, Qt::Key_Tab);
            at = window.focusWidget();
        }
        return visited;
    }

    /// Controls that can be used and that the Tab key does not visit. Of a group of option
    /// buttons it visits one: the arrow keys reach the others.
    static std::vector<std::string> Unreached(const QWidget &window,
                                              const std::vector<QWidget *> &visited) {
        std::vector<std::string> names;
        for (auto *widget : window.findChildren<QWidget *>()) {
            if (IsForTheTabKey(*widget) && qobject_cast<const QRadioButton *>(widget) == nullptr &&
                std::find(visited.begin(), visited.end(), widget) == visited.end()) {
                names.push_back(widget->objectName().toStdString());
            }
        }
        return names;
    }

    /// Steps that go back: to the left in a row, or upwards without going to the right.
    static std::vector<std::string> StepsBack(const QWidget &window,
                                              const std::vector<QWidget *> &visited) {
        std::vector<std::string> steps;
        QRect from;
        for (const QWidget *widget : visited) {
            const QRect to(widget->mapTo(&window, QPoint()), widget->size());
            const bool up = to.bottom() < from.top() && to.left() <= from.right();
            const bool left =
                to.right() < from.left() && to.bottom() >= from.top() && to.top() <= from.bottom();
            if (up || left) {
                steps.push_back("to " + widget->objectName().toStdString());
            }
            from = to;
        }
        return steps;
    }

    static void ExpectSound(const char *name) {
        Settle();
        auto &window = Find(name);
        EXPECT_THAT(CutOff(window), IsEmpty()) << name;
        EXPECT_THAT(HardToRead(window), IsEmpty()) << name;
        EXPECT_THAT(Nameless(window), IsEmpty()) << name;
        const auto visited = Round(window);
        EXPECT_THAT(Unreached(window, visited), IsEmpty()) << name;
        for (const auto *widget : visited) {
            const auto *option = qobject_cast<const QRadioButton *>(widget);
            EXPECT_TRUE(option == nullptr || option->isChecked()) << name;
        }
        if (name != std::string("InitForm")) {
            EXPECT_THAT(StepsBack(window, visited), IsEmpty()) << name;
        }
    }

    const QPalette usualPalette = QApplication::palette();
    const QFont usualFont = QApplication::font();
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

TEST_F(WindowsTest, EveryWindowIsWholeReadableNamedAndInTheWayOfTheTabKeyInEveryLook) {
    QFont large = usualFont;
    large.setPointSizeF(large.pointSizeF() * 1.5);
    const QPalette light(QColor(239, 239, 239));
    const QPalette dark(QColor(49, 54, 59));
    for (const auto &[palette, font] :
         {std::pair(light, usualFont), {dark, usualFont}, {light, large}}) {
        for (const std::string_view variant : {ZTM7720, ZTM7710}) {
            ResetCore();
            QApplication::setPalette(palette);
            QApplication::setFont(font);
            OpenWizard();
            for (const char *button : {"NextCMD", "NextCMD", "BackCMD"}) {
                ExpectSound("InitForm");
                Adapter().registers[0x3D] = variant == ZTM7710 ? 0x33 : 0x34;
                Click(button);
            }
            Click("NextCMD");
            Click("FinishCMD");
            Find("frmMain").resize(960, 640); // whatever room the screen has
            for (const char *tab : {"Register Access", "Visual Display", "Control"}) {
                ClickTab(tab);
                ExpectSound("frmMain");
            }
            const auto &tree = Find<QTreeWidget>("TreeView1");
            for (QTreeWidgetItemIterator node(tree.topLevelItem(0)); *node != nullptr; ++node) {
                EXPECT_GE(
                    Contrast((*node)->foreground(0).color(), tree.palette().color(QPalette::Base)),
                    readableContrast)
                    << (*node)->text(0).toStdString();
            }
            ForEveryDialog(ExpectSound);
            DeleteAllForms();
        }
    }
}

TEST_F(WindowsTest, APaletteChangedOnTheWayIsFollowed) {
    OpenWizard();
    QApplication::setPalette(QPalette(QColor(49, 54, 59)));
    Settle();
    EXPECT_THAT(HardToRead(Find("InitForm")), IsEmpty());
}

TEST_F(WindowsTest, TheWizardsTabOrderStartsAtNext) {
    OpenWizard();
    Click("NextCMD");
    EXPECT_THAT(Round(Find("InitForm")), ElementsAre(&Find("NextCMD"), &Find("CancelCMD"),
                                                     &Find("BackCMD"), &Find("USBCheck")));
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
