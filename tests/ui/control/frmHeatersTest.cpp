#include "support/DialogTest.h"

namespace ztm::test {
namespace {

class HeatersTest : public DialogTest {
protected:
    HeatersTest() : DialogTest("cmdHeaters", "duty?") {}
};

TEST_F(HeatersTest, ApplySendsBothDutiesAtOnceAndKeepsTheSettings) {
    Check("txtPWM(0)",
          {{"",
            "txtPWM(1)=7; txtPWM(0)=60; ?; cmdApply; txtPWM(0)=150; ?; cmdApply; txtPWM(0)=-5; ?; "
            "cmdApply; txtPWM(0)=12.7; ?; cmdApply; txtPWM(0)=off; ?; cmdApply; txtPWM(0)=1e300; "
            "cmdApply; txtPWM(0)=; cmdApply; tick; tick",
            "duty=60,7 duty=100,7 duty=0,7 duty=12,7 duty=0,7 duty=100,7 duty=0,7",
            "60 / 150 ! / -5 ! / 12.7 / off !", ZTM7720}});
    const char *second = "txtPWM(1) chkSWControl(1) txtFrom(1) txtTo(1) txtIncrement(1) "
                         "txtInterval(1) chkSWControl(0)";
    const std::string reopen = "; cmdApply; cmdClose; cmdHeaters; ?";
    Check(second,
          {{"",
            "?; txtPWM(1)=100; chkSWControl(1); txtFrom(1)=10; txtTo(1)=90; txtIncrement(1)=5; "
            "txtInterval(1)=250; cmdApply; close; cmdHeaters; ?",
            "duty=0,100 duty?", "0|0|20|80|2|500|0 / 100|1|10|90|5|250|0", ZTM7720}});
    // What no field holds is marked and limited.
    Check(
        "txtFrom(0) txtTo(0) txtIncrement(0) txtInterval(0)",
        {{"",
          "txtFrom(0)=101; txtTo(0)=5000000000; txtIncrement(0)=99999; txtInterval(0)=32768; ?" +
              reopen,
          "duty=0,0 duty?", "101 !|5000000000 !|99999 !|32768 ! / 101 !|2147483647 !|32767 !|32767",
          ZTM7720},
         {"", "txtFrom(0)=0.5; txtTo(0)=-1; txtIncrement(0)=2.5; txtInterval(0)=-70000; ?" + reopen,
          "duty=0,0 duty?", "0.5|-1 !|2.5|-70000 ! / 0|-1 !|2|-32768 !", ZTM7720}});
}

TEST_F(HeatersTest, TheDialogShowsTheDutiesThatTheAdapterReports) {
    Open(ZTM7720);
    Adapter().heaterReply = {35, 100, 7};
    EXPECT_EQ(Do("?; cmdClose; cmdHeaters; ?", "txtPWM(0) txtPWM(1)"), "0|0 / 35|100");
}

TEST_F(HeatersTest, TheRampOfOneHeaterLeavesTheOtherAlone) {
    Check(
        "txtPWM(0) txtPWM(1) chkSWControl(0)",
        {{"", "txtPWM(0)=33; chkSWControl(0); cmdApply; tick; tick; ?; close; tick; cmdHeaters; ?",
          "duty=33,0 duty=20,255 duty? duty=22,255 duty? duty=24,255 duty?", "22|0|1 / 24|0|1",
          ZTM7720},
         {"",
          "chkSWControl(1); txtFrom(1)=50; txtTo(1)=52; cmdApply; tick; tick; tick; "
          "chkSWControl(0); cmdApply; tick; tick",
          "duty=0,0 duty=255,50 duty? duty=255,52 duty? duty=255,50 duty=0,50 duty=20,255 "
          "duty=255,50 duty? duty=22,255 duty? duty=255,52",
          "", ZTM7720}});
}

TEST_F(HeatersTest, TheRampDoesNotMixItsDutyWithWhatIsTyped) {
    Open(ZTM7720);
    EXPECT_EQ(Do("chkSWControl(0); txtPWM(0)=33; cmdApply; tick; ?; txtPWM(0)+5; ?; tick; ?; "
                 "txtPWM(0)+0; tick; ?; cmdApply; ?; tick; ?; txtPWM(0)+7; tick; txtPWM(0)+Ctrl+Z; "
                 "?; txtPWM(0)+8; tick; txtFrom(0)+Home; ?; txtPWM(0)SpinUp; tick; ?",
                 "txtPWM(0)"),
              "20 / 5 / 5 / 50 / 50 / 20 / 22 / 24 / 29");
}

} // namespace
} // namespace ztm::test
