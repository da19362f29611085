#include "Fuzz.h"

#include "common/NumberText.h"
#include "common/Numbers.h"
#include "link/LinkState.h"
#include "link/USBComms.h"
#include "regmap/RegMapStuff.h"
#include "support/AdapterDouble.h"
#include "ui/registers/RegisterAccessPage.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>

#include <algorithm>
#include <array>

using namespace ztm;
using namespace ztm::fuzz;

namespace {

RegisterAccessPage *page = nullptr;

template <typename Widget>
Widget &Of(const char *name) {
    return *page->findChild<Widget *>(QLatin1String(name));
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

extern "C" int LLVMFuzzerInitialize(int *argumentCount, char ***arguments) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "*=false"); // characters that no font has
    new QApplication(*argumentCount, *arguments);
    test::ResetCore();
    DeviceName = ZTM7720;
    CommsMedium = MediumUSB;
    USBDeviceAddress = 0x50;
    BuildRegisterMap();
    page = new RegisterAccessPage;
    page->BuildRegisterTree();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    test::AdapterDouble &adapter = test::ResetAdapter();
    const auto text =
        QString::fromUtf8(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    for (const QString &line : text.split('\n')) {
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
    return 0;
}
