#include "support/DialogTest.h"

namespace ztm::test {
namespace {

class ThermTempTest : public DialogTest {
protected:
    ThermTempTest() : DialogTest("cmdThermTemp", "0D? 10? 13? 1A? 02?") {}
};

TEST_F(ThermTempTest, ShowsTheLimitsAndWritesWhatTheBoxesHold) {
    const std::string chip = "0D=95 10=09 13=FF 1A=25 02=FD";
    Check("txtLocal txtR1 txtR2 txtHyst chkBoost",
          {{chip, "?; cmdThermTemp; cmdOK", "0D=95 10=09 13=FF 1A=05 02? 02=FD 02?",
            "85|-55|191|5|0"},
           // The other bits of register 02 are kept as they are now.
           {chip,
            "txtLocal=100; txtR1+Down; txtR1+Up; txtR2=80.5 C; txtHyst+Up; chkBoost; chip 02=40; "
            "?; cmdOK",
            "0D=A4 10=0A 13=90 1A=06 02? 02=42 02?", "100|-54|80.5 C !|6|1", ZTM7720},
           {"02=02", "?; chkBoost; cmdOK", "0D=00 10=00 13=00 1A=00 02? 02=00 02?",
            "-64|-64|-64|0|1"},
           // Numbers without an encoding are marked and limited; a half goes to even.
           {"", "txtLocal=-64.5; txtR1=191.4; txtR2=; txtHyst=15; ?; cmdOK",
            "0D=00 10=FF 13=40 1A=0F 02? 02=00 02?", "-64.5|191.4||15|0", ZTM7720},
           {"", "txtLocal=-65; txtR1=192; txtR2=1e300; txtHyst=18; ?; cmdOK",
            "0D=00 10=FF 13=FF 1A=02 02? 02=00 02?", "-65 !|192 !|1e300 !|18 !|0", ZTM7720}});
}

} // namespace
} // namespace ztm::test
