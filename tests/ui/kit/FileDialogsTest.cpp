#include "ui/kit/FileDialogs.h"
#include "support/TemporaryFile.h"
#include "support/WindowDriver.h"

#include <gmock/gmock.h>

namespace ztm::test {
namespace {

TEST(FileDialogs, AnEndingIsAddedOnlyWhereItWasAskedFor) {
    const TemporaryFolder folder;
    const auto path = [&](const char *name) { return QString::fromStdString(folder.Path(name)); };
    folder.Put("there.png", "");
    const QString kinds = "PNG picture (*.png);;PDF document (*.pdf)";
    const struct {
        const char *typed;
        const char *chosen;
        bool ofKind, asked;
    } cases[] = {{"new", "new.png", true, false},
                 {"new.pdf", "new.pdf", true, false},
                 {"there", "there.png", true, true},
                 {"there", "there", false, false},
                 {"there.png", "there.png", false, true}};
    for (const auto &c : cases) {
        QString chosen;
        const auto shown = AnswerFileDialogOf(
            [&] {
                chosen = c.ofKind ? AskSaveFileOfKind(nullptr, "Save", kinds)
                                  : AskSaveFile(nullptr, "Save", kinds);
            },
            path(c.typed));
        EXPECT_EQ(chosen, path(c.chosen)) << c.typed;
        EXPECT_EQ(shown.folder, QCoreApplication::applicationDirPath());
        EXPECT_EQ(shown.askedToReplace, c.asked) << c.typed;
    }
    AnswerFileDialogOf([] { EXPECT_EQ(AskOpenFile(nullptr, "Open", "Any (*)"), QString()); }, "");
    const auto exported =
        AnswerFileDialogOf([] { AskExportFile(nullptr, "", "", "proposed"); }, "");
    EXPECT_EQ(exported.folder + "/", path("")) << "used last";
    EXPECT_EQ(exported.proposedName, "proposed");
    folder.Put("hidden", "");
    folder.Put("named.sav", "");
    for (const char *typed : {"hidden", "named"}) {
        const char *chosen = typed == std::string("named") ? "named.sav" : typed;
        AnswerFileDialogOf(
            [&] { EXPECT_EQ(AskOpenFile(nullptr, "Open", "Text (*.sav)"), path(chosen)); },
            path(typed));
    }
}

} // namespace
} // namespace ztm::test
