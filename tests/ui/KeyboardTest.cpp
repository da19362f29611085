#include "support/UiTest.h"

#include <QApplication>
#include <QRadioButton>
#include <QTest>

#include <algorithm>

namespace ztm::test {
namespace {

using testing::IsEmpty;

/// The Tab key's way through the windows.
class KeyboardTest : public UiTest {
protected:
    /// The controls that the Tab key visits in a window, once round.
    static std::vector<const QWidget *> Round(QWidget &window) {
        std::vector<const QWidget *> visited;
        window.activateWindow();
        QTest::keyClick(&window, Qt::Key_Tab);
        QWidget *at = window.focusWidget();
        while (at != nullptr && std::find(visited.begin(), visited.end(), at) == visited.end()) {
            visited.push_back(at);
            QTest::keyClick(at, Qt::Key_Tab);
            at = window.focusWidget();
        }
        // From where the window has its start.
        for (const QWidget *start = window.nextInFocusChain(); start != &window;
             start = start->nextInFocusChain()) {
            const auto place = std::find(visited.begin(), visited.end(), start);
            if (place != visited.end()) {
                std::rotate(visited.begin(), place, visited.end());
                break;
            }
        }
        return visited;
    }

    static QRect In(const QWidget &window, const QWidget *widget) {
        return {widget->mapTo(&window, QPoint()), widget->size()};
    }

    /// Controls that can be used and that the Tab key does not visit. Of a group of option
    /// buttons it visits one: the arrow keys reach the others.
    static std::vector<std::string> Unreached(const QWidget &window,
                                              const std::vector<const QWidget *> &visited) {
        std::vector<std::string> names;
        for (const auto *widget : window.findChildren<QWidget *>()) {
            const bool usable = widget->isVisible() && widget->isEnabled() &&
                                (widget->focusPolicy() & Qt::TabFocus) != 0 &&
                                widget->focusProxy() == nullptr;
            if (usable && qobject_cast<const QRadioButton *>(widget) == nullptr &&
                std::find(visited.begin(), visited.end(), widget) == visited.end()) {
                names.push_back(widget->objectName().toStdString());
            }
        }
        return names;
    }

    /// Steps that go back: to the left in a row, or upwards without going to the right.
    static std::vector<std::string> StepsBack(const QWidget &window,
                                              const std::vector<const QWidget *> &visited) {
        std::vector<std::string> steps;
        for (size_t step = 1; step < visited.size(); ++step) {
            const QRect from = In(window, visited[step - 1]);
            const QRect to = In(window, visited[step]);
            const bool up = to.bottom() < from.top() && to.left() <= from.right();
            const bool left =
                to.right() < from.left() && to.bottom() >= from.top() && to.top() <= from.bottom();
            if (up || left) {
                steps.push_back(
                    (visited[step - 1]->objectName() + " to " + visited[step]->objectName())
                        .toStdString());
            }
        }
        return steps;
    }

    static void Walk(const char *name) {
        auto &window = Find(name);
        const auto visited = Round(window);
        EXPECT_THAT(Unreached(window, visited), IsEmpty()) << name;
        EXPECT_THAT(StepsBack(window, visited), IsEmpty()) << name;
    }
};

TEST_F(KeyboardTest, TheWizardsTabOrderStartsAtNext) {
    OpenWizard();
    Click("NextCMD");
    auto &wizard = Find("InitForm");
    const auto visited = Round(wizard);
    EXPECT_THAT(visited, testing::ElementsAre(&Find("NextCMD"), &Find("CancelCMD"),
                                              &Find("BackCMD"), &Find("USBCheck")));
    EXPECT_THAT(Unreached(wizard, visited), IsEmpty());
}

TEST_F(KeyboardTest, TheTabKeyGoesThroughEveryWindowAsTheEyeDoes) {
    for (const std::string_view variant : {ZTM7720, ZTM7710}) {
        ResetCore();
        StartSessionOf(variant);
        for (const char *tab : {"Register Access", "Visual Display", "Control"}) {
            ClickTab(tab);
            Settle();
            Walk("frmMain");
        }
        ForEveryDialog(Walk);
        DeleteAllForms();
    }
}

} // namespace
} // namespace ztm::test
