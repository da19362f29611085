#pragma once

#include "support/UiTest.h"

namespace ztm::test {

/// What was asked of the adapter since the last time: "0D?" for a register that was read, "0D=95"
/// for one that was written, in hexadecimal; "duty?" and "duty=60,7" for the heaters.
std::string Asked();

/// What controls show, apart by "|". Of several with the same name it is the one in the window
/// that was loaded last. A box shows its text, with " !" when it is marked, an option or a check
/// box 1 or 0, a button "on" or "off"; "focus" stands for the name of the control with the focus.
/// A control that the window hides is "hidden".
std::string Shown(const QString &names);

/// A dialog of the Control tab, used in short texts.
class DialogTest : public UiTest {
protected:
    /// `button` opens it and leads to the requests of `opening`, see Asked.
    DialogTest(const char *button, std::string opening);

    /// Starts a session with a chip that holds values in some registers, "0D=95 10=09" in
    /// hexadecimal, and 0 in the others, and opens the dialog.
    void Open(std::string_view variant, const std::string &chip = {}) const;

    /// Takes steps, apart by "; ": "cmdOK" clicks, "txtLocal=5" types, chooses an item or a tab
    /// or moves a slider, "txtLocal+Up" presses a key, "tick" lets the monitor tick after 0.6
    /// seconds, "chip 0D=95" changes the chip, "close" is the close box, and "?" looks at the
    /// controls of `names`. Returns what was seen then, apart by " / ".
    std::string Do(const QString &steps, const QString &names = {});

    /// One visit of the dialog.
    struct Visit {
        std::string chip;
        std::string done;
        std::string asked; ///< behind the opening
        const char *shown = "";
        std::string_view variant{}; ///< both when empty
    };
    void Check(const char *names, const std::vector<Visit> &visits);

private:
    void Step(const QString &step);

    QString openingButton;
    std::string openingRequests;
};

} // namespace ztm::test
