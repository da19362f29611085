#pragma once

#include "link/CommFailure.h"
#include "link/LinkState.h"
#include "support/AdapterDouble.h"
#include "support/ClockDouble.h"
#include "support/Driver.h"
#include "ui/InitForm.h"

#include <gmock/gmock.h>

namespace ztm::test {

/// What a failed request leads to in the tests.
struct CommFailed {};

/// The real windows on the recording adapter, with a clock that nobody has to wait for.
class UiTest : public testing::Test {
protected:
    UiTest() {
        ResetCore();
        SetCommFailureHandler([] { throw CommFailed{}; });
    }
    ~UiTest() override { DeleteAllForms(); }

    /// Opens the wizard.
    static void OpenWizard() {
        ShowForm<InitForm>();
        Settle();
    }

    /// Opens the wizard, finds a chip of that variant and finishes; the calls of the start are
    /// forgotten.
    static void StartSessionOf(std::string_view variant) {
        Adapter().registers[0x3D] = variant == ZTM7710 ? 0x33 : 0x34;
        OpenWizard();
        SearchInWizard();
        Click("FinishCMD");
        Settle();
        Adapter().calls.clear();
    }

    ClockDouble clock;
};

} // namespace ztm::test
