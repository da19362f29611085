#include "support/DialogTest.h"

namespace ztm::test {
namespace {

class ThermTimerTest : public DialogTest {
protected:
    ThermTimerTest() : DialogTest("cmdThermTimer", "01? 04? 19?") {}
};

TEST_F(ThermTimerTest, ShowsEveryFieldAndWritesItOverWhatTheChipHolds) {
    Check(
        "chkEnableTimer chkEnRef chkEnLocal chkEnR1 cmbWindow txtLimit",
        {{"", "?; cmdOK", "01? 01=00 01? 04? 04=00 19=00", "0|0|0|0|.25 sec|0"},
         {"01=FB 04=18 19=FF", "?; cmdOK", "01? 01=FB 01? 04? 04=18 19=FF", "0|0|0|0|.5 sec|100"},
         {"01=04 04=21 19=80", "?; cmdOK", "01? 01=04 01? 04? 04=21 19=80", "1|0|1|0|1 sec|50.2"},
         {"01=84 04=3A 19=01", "?; cmdOK", "01? 01=84 01? 04? 04=3A 19=01", "1|0|0|1|2 sec|.39"},
         {"01=01 04=C4 19=FE", "?; cmdOK", "01? 01=01 01? 04? 04=C4 19=FE", "0|1|0|0|4 sec|99.61"},
         {"04=50 19=1A", "?; cmdOK", "01? 01=00 01? 04? 04=50 19=1A", "0|0|0|0|8 sec|10.2"},
         {"04=60", "?; cmdOK", "01? 01=00 01? 04? 04=50 19=00", "0|0|0|0|8 sec|0"},
         {"01=FF 04=FF", "?; cmdOK", "01? 01=FF 01? 04? 04=DF 19=00", "1|1|1|1|8 sec|0"},
         {"01=84",
          "chkEnableTimer; chkEnRef; chkEnLocal; cmbWindow+End; cmbWindow+Up; txtLimit=50; ?; "
          "chip 01=C5 04=7A; cmdOK",
          "01? 01=C1 01? 04? 04=C9 19=80", "0|1|1|0|4 sec|50"}});
    Check("chkEnR2",
          {{"04=7A", "?; chkEnR2; ?; cmdOK", "01? 01=00 01? 04? 04=5E 19=00", "0 / 1", ZTM7720},
           {"04=04", "?; chkEnR1; cmdOK", "01? 01=00 01? 04? 04=06 19=00", "hidden", ZTM7710}});
}

TEST_F(ThermTimerTest, TheLimitStaysWithinAHundredPercentWhileItIsTyped) {
    Open(ZTM7720);
    EXPECT_EQ(Do("txtLimit=120; ?; txtLimit=100; ?; txtLimit=100.5; ?; txtLimit=1e9; ?; "
                 "txtLimit=99.9; ?; txtLimit=120; txtLimit+Ctrl+Z; ?; txtLimit=-5; ?",
                 "txtLimit"),
              "100 / 100 / 100 / 100 / 99.9 / 99.9 / -5 !");
    const std::string behind = "01? 01=00 01? 04? 04=00 19=";
    Check("txtLimit", {{"", "txtLimit=120; cmdOK", behind + "FF"},
                       {"", "txtLimit=12 %; ?; cmdOK", behind + "1F", "12 % !"},
                       {"", "txtLimit=-5; cmdOK", behind + "00"},
                       {"19=80", "txtLimit=; ?; cmdOK", behind + "00"}});
}

} // namespace
} // namespace ztm::test
