#include "support/DialogTest.h"

#include "monitor/MonitorSettings.h"

namespace ztm::test {
namespace {

class ConfigTest : public DialogTest {
protected:
    ConfigTest() : DialogTest("cmdConParam", "01? 02? 03? 3C? 07? 3B?") {}
};

TEST_F(ConfigTest, ShowsSixRegistersAndWritesWhatIsChosen) {
    Check(
        "optAuto opt8Points cmbPoles(0) cmbPoles(1) cmbSource(0) cmbSource(1) cmbSource33 "
        "cmbRPMResponse(0) cmbRPMResponse(1) cmbRamp(0) cmbRamp(1)",
        {{"01=01 02=84 03=44 07=09 3C=11", "?; cmdApply",
          "01? 01=01 01? 02? 02=84 02? 03=44 3C=11 3B=00 07=09",
          "0|0|4|4|Remote1|Remote2|hidden|2.5 updates/sec|2.5 updates/sec|No Limit|No Limit",
          ZTM7720},
         {"01=D5 02=AC 03=86 07=FC 3C=F8 3B=BF", "?; cmdOK",
          "01? 01=D5 01? 02? 02=AC 02? 03=86 3C=70 3B=37 07=0C",
          "1|1|6|8|Local|Full Speed|hidden|1.25 updates/sec|160 updates/sec|35 counts/sec|"
          "15 counts/sec",
          ZTM7720},
         {"07=F9 3C=F9 3B=BF", "?; cmdApply", "01? 01=00 01? 02? 02=00 02? 03=00 3C=71 3B=37 07=01",
          "0|0|0|0|hidden|Remote2|Remote|2.5 updates/sec|160 updates/sec|35 counts/sec|"
          "15 counts/sec",
          ZTM7710},
         // Poles that the list does not have.
         {"03=C0 07=0E", "?; cmdOK", "01? 01=00 01? 02? 02=00 02? 03=C0 3C=00 3B=00 07=0E",
          "0|0|0|12|Remote2|Full Speed|hidden|1.25 updates/sec|1.25 updates/sec|No Limit|No Limit",
          ZTM7720},
         {"01=01 02=84 03=44 07=09 3C=11",
          "optAuto; opt8Points; cmbPoles(0)=2; cmbPoles(1)=8; cmbSource(0)=Full Speed; "
          "cmbSource(1)=Local; cmbRPMResponse(1)=80 updates/sec; cmbRamp(0)=15 counts/sec; cmdOK",
          "01? 01=81 01? 02? 02=8C 02? 03=82 3C=61 3B=03 07=03", "", ZTM7720},
         {"01=81 02=8C", "optManual; opt4Points; cmdOK",
          "01? 01=01 01? 02? 02=84 02? 03=00 3C=00 3B=00 07=00", "", ZTM7720},
         {"", "cmbSource33=Full Speed; cmdOK",
          "01? 01=00 01? 02? 02=00 02? 03=00 3C=00 3B=00 07=03", "", ZTM7710}});
    Check("cmbPoles(0) cmbPoles(1)", {{"03=31", "?", "", "2|2"}, {"03=75", "?", "", "6|6"}});
    Check("cmbSource33", {{"07=0E", "?", "", "Remote", ZTM7710},
                          {"07=0B", "?", "", "Full Speed", ZTM7710},
                          {"07=0C", "?", "", "Local", ZTM7710}});
}

TEST_F(ConfigTest, TheButtonsOfTheMainWindowFollowTheControlType) {
    Open(ZTM7720, "01=80");
    EXPECT_EQ(Do("?; optManual; ?; cmdApply; ?; optAuto; ?; cmdApply; ?; optManual; cmdCancel; ?",
                 "cmdAuto cmdSetLookups cmdManual"),
              "on|on|off / on|on|off / off|off|on / off|off|on / on|on|off / on|on|off");
}

TEST_F(ConfigTest, AnotherTabLeavesTheFocusOnOk) {
    Check("focus", {{"", "SSTab1=1; ?; SSTab1=2; ?", "", "cmdOK / cmdOK", ZTM7720},
                    {"", "SSTab1=1; ?", "", "cmdOK", ZTM7710}});
}

TEST_F(ConfigTest, WarnsOfFansThatAutomaticControlWouldStop) {
    Open(ZTM7720, "02=08 07=0E 22=7C 2A=00 2B=04 44=80 45=6D"); // from 60 °C on; Remote2 at 45.5 °C
    const char *unread =
        "Lookup table not read in this session: a fan below its first point may stop.";
    EXPECT_EQ(Do("?; optAuto; ?; optManual; ?; optAuto", "lblWarning"), std::string(unread) + " / ")
        << "only while it is chosen";
    Find("cmdSetLookups").setEnabled(true);
    Do("cmdSetLookups; cmdCancel"); // reads the table
    EXPECT_EQ(Do("tick; ?", "lblWarning"),
              "Fan 1 will stop below 60 °C; fan 2 will run at full speed");
    MonitoringEnabled = true;
    MonitorInterval = 600;
    Asked();
    EXPECT_EQ(Do("tick; tick; tick; tick; tick; tick; ?; opt4Points; cmbSource(1)=Remote1; ?; "
                 "cmdApply; ?",
                 "lblWarning"),
              "Fan 1 will stop at the present 45.5 °C; fan 2 will run at full speed / "
              "Fan 1 will stop at the present 45.5 °C; fan 2 will stop at the present -64 °C / ");
    EXPECT_EQ(Asked(), "40? 41? 42? 43? 44? 45? 4A? 4B? 4C? 4D? 4E? "
                       "01? 01=80 01? 02? 02=00 02? 03=00 3C=00 3B=00 07=06");
}

} // namespace
} // namespace ztm::test
