#include "Fuzz.h"

#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/Session.h"
#include "link/USBComms.h"
#include "ui/registers/RegisterAccessPage.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>
#include <array>

namespace ztm::fuzz {
namespace {

RegisterAccessPage &Page() {
    static auto *const page = [] {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qputenv("QT_LOGGING_RULES", "*=false"); // characters that no font has
        static int argumentCount = 0;
        new QApplication(argumentCount, nullptr);
        test::StartSession();
        auto *built = new RegisterAccessPage;
        built->BuildRegisterTree();
        return built;
    }();
    return *page;
}

template <typename Widget>
Widget &Of(const char *name) {
    return *Page().findChild<Widget *>(QLatin1String(name));
}

double NumberOf(const char *box) {
    return NumericValue(Of<QLineEdit>(box).text().toStdString());
}

/// Puts a text into a box in place of what it holds, as pasting does.
void Paste(const char *name, const QString &text) {
    auto &box = Of<QLineEdit>(name);
    box.selectAll();
    box.insert(text);
}

/// The lines of an input, each for the box that its first character picks.
void Edit(const QString &line) {
    constexpr std::array boxes{"txtReadAddr", "txtHex", "txtDec"};
    if (line.isEmpty()) {
        return;
    }
    const char *box = boxes[line.front().unicode() % boxes.size()];
    Paste(box, line.mid(1));
    Require(HexValue(Of<QLineEdit>("txtHex").text().toStdString()) ==
                HexValue(HexText(NumberOf("txtDec"))),
            "both value boxes hold one number");
}

int32_t AddressInBox() {
    return HexValue(Of<QLineEdit>("txtReadAddr").text().toStdString());
}

} // namespace

/// The font library keeps what it has found.
extern "C" const char *__lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:libfontconfig";
}
extern "C" const char *__lsan_default_options() { // NOLINT(bugprone-reserved-identifier)
    return "print_suppressions=0";
}

void Try(std::string_view text) {
    test::AdapterDouble &adapter = test::ResetAdapter();
    for (const QString &line : QString::fromUtf8(text.data(), qsizetype(text.size())).split('\n')) {
        Edit(line);
    }
    const int32_t address = AddressInBox();
    const bool isRegister = address >= 0 && address <= LastRegister;
    const int32_t value = std::clamp(ToInt32(NumberOf("txtDec")), 0, LargestRegisterValue);
    Of<QPushButton>("cmdWrite").click();
    Require(adapter.calls.empty() != isRegister, "registers only are written");
    Require(!isRegister || adapter.calls.front() == test::Write(address, value),
            "the number in the box goes to the address in the box");
    adapter.calls.clear();
    Of<QPushButton>("cmdRead").click();
    Require(adapter.calls.empty() != isRegister, "registers only are read");
    Require(!isRegister || adapter.calls.front() == test::Read(address), "the address in the box");
}

} // namespace ztm::fuzz
