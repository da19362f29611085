// The command "ztm" as it ships, in processes of its own: what it prints, how it ends, and what
// reaches the bus.

#include "adapter/sim/SimulatedBoard.h"
#include "support/SimulatedChip.h"
#include "support/TemporaryFile.h"
#include "support/VirtualAdapter.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ztm::test {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

constexpr const char *preloaded = "LD_PRELOAD=libumockdev-preload.so.0 "
                                  "ASAN_OPTIONS=verify_asan_link_order=0:detect_leaks=0 ";

struct Ran {
    int status;
    std::string out;
    std::string errors;
};

class CommandTest : public testing::Test {
protected:
    /// Runs a line of the shell in a folder of its own. "ztm" in it is the command, with what is
    /// `before` it in the environment and `options` behind it.
    Ran Run(const std::string &line, const std::string &options, const std::string &before = "") {
        const std::string name = "ztm ";
        const std::string ztm = before + ZTM_COMMAND " " + options + " ";
        std::string shell = line + " ";
        for (size_t at = 0; (at = shell.find(name, at)) != std::string::npos;) {
            shell.replace(at, name.size(), ztm);
            at += ztm.size();
        }
        const std::string script =
            folder.Put("line", "cd " + folder.Path("") + "; { " + shell + "\n} >out 2>errors");
        const int status = std::system(("bash " + script).c_str());
        return {WEXITSTATUS(status), BytesOf(folder.Path("out")), BytesOf(folder.Path("errors"))};
    }

    TemporaryFolder folder;
};

class SimulatedCommand : public CommandTest {
protected:
    /// On the simulated board, in time that jumps.
    Ran RunFast(const std::string &line) { return Run(line, "--adapter sim --fast"); }
};

TEST_F(SimulatedCommand, PrintsWhatItWasAskedFor) {
    const struct {
        std::string line;
        std::string out;
        int status = 0;
        std::string errors{};
    } cases[] = {
        {"ztm scan --json", "{\"variant\":\"ZTM7720\",\"address\":80}\n"},
        {"ztm --variant ztm7710 scan", "ZTM7710\t0x50\n"},
        {"ztm read 1 0x3d 'LOCAL high'",
         "0x01\tConfiguration1\t0x01\t1\n0x3D\tDevice ID\t0x34\t52\n"
         "0x0B\tLocal High Limit\t0x8B\t139\n"},
        {"LC_ALL=de_DE.UTF-8 ztm --json read FE",
         "{\"address\":254,\"register\":\"Unknown\",\"value\":0}\n"},
        {"ztm write 0B 77 --verify", ""},
        {"ztm write 3D 77 --verify", "", 3, "ztm: Device ID holds 0x34, not 0x4D\n"},
        {"ztm dump | sed -n '1p;4p;5p'",
         "address\tregister\tvalue\tdefault\tchanged\tbits\n0x02\tConfiguration2\t0x84\t0x84\t\t"
         "LUT=0 BD=0 RST=0\n0x03\tConfiguration3\t0x44\t0x44\t\t#FP2=4 #FP1=4\n"},
        {"ztm dump | grep -c Status; ztm dump --all | grep -c Status", "0\n3\n"},
        {"ztm watch -n 2 -i 500ms --channels remote1,therm | cut -f1,3",
         "seconds\tTHERM%\n0.000\t0.00\n0.500\t0.00\n"},
        {"ztm alerts", "", 0, "ztm: no alarm is on\n"},
        {"ztm run - <<< $'limits local high 20\\nwait 1\\nalerts'", "Local\talarm\n"},
        {"ztm run - <<< $'limits therm high 50\\nlimits hysteresis 7\\nread 1a\\nlimits' | tail -2",
         "THERM%\t\t50.20\t\t%\nhysteresis\t\t\t7\t°C\n"},
        {"ztm run - <<< $'table set 2 -20 3000\\ntable show' | sed -n 3p", "2\t1\t-20\t3001\n"},
        {"ztm run - <<< $'fan 2 poles 6\\nfan 2 source local\\nfan 2 response 40\\nfan 2 ramp "
         "no limit\\nfan 1 ramp 15'",
         "", 64,
         "ztm: standard input:4: fan, fan auto, fan manual, fan N rpm|poles|source|response|ramp "
         "VALUE, "
         "fan transition steps|linear, or fan points 4|8\n"},
        {"ztm run - <<< $'fan 2 poles 6\\nfan 2 source local\\nfan 2 response 40\\nfan 2 ramp "
         "\"no limit\"\\nfan 1 ramp 15\\nfan' | cut -f1-3,5-",
         "fan\tcontrol\tsource\tpoles\tresponse\tramp\n1\tmanual\tRemote1\t4\t2.5 updates/sec\t"
         "15 counts/sec\n2\tmanual\tLocal\t6\t40 updates/sec\tNo Limit\n"},
        {"ztm run - <<< $'fan points 8\\ntable set 1 20 3000\\nfan 2 source full\\nfan auto'", ""},
        {"ztm fan auto 2>&1 | cut -d' ' -f1-4", "ztm: fan 1 stops:\nztm: fan 2 stops:\n"},
        {"ztm heater 2 30", "", 0, "ztm: heater 2 stays on at 30 %\n"},
        {"ztm run - <<< $'heater 1 100\\nuntil remote1 > 60 timeout 5m\\nfan 1 rpm 8000\\n"
         "until fan1 > 7000 timeout 1m\\nheater 1 0\\nheater'",
         "heater\tpercent\n1\t0\n2\t0\n"},
        {"ztm run - <<< $'until remote1 > 60 timeout 1s' 2>&1 | cut -d. -f1",
         "ztm: standard input:1: timed out: Remote1 is 35\n"},
        {"ztm run - <<< $'repeat 2 # twice\\n repeat 2\\n  read 3E\\n end\\nend' | uniq -c | tr -d "
         "' '",
         "4"
         "0x3E\tCompanyID\t0x41\t65\n"},
        {"ztm log a.xls -n 3 --channels local; cut -f1 a.xls | tail -n +2; ztm log a.xls -n 1",
         "\n .24\n .36\n .48\n", 74, "ztm: a.xls exists; --force replaces it\n"},
        {"ztm snapshot save a.sav; cmp a.sav b.sav 2>/dev/null; ztm snapshot save a.sav", "", 74,
         "ztm: a.sav exists; --force replaces it\n"},
        {"printf '0x0B, 0x46\\t// x\\r\\n\\r\\n' >b.sav; ztm run - <<< $'snapshot recall b.sav "
         "--dry-run\\nread 0B\\nsnapshot recall b.sav\\nread 0B'",
         "address\tregister\tnow\tfile\n0x0B\tLocal High Limit\t0x8B\t0x46\n0x0B\tLocal High Limit"
         "\t0x8B\t139\n0x0B\tLocal High Limit\t0x46\t70\n"},
        {"ztm snapshot save c.sav; ztm snapshot diff c.sav; ztm run - <<< $'write 01.AVG 1\n"
         "write 0B 70\nsnapshot diff c.sav' | cut -f2-",
         "register\tnow\tfile\tbits\nConfiguration1\t0x03\t0x01\tAVG\nLocal High Limit\t0x46\t0x8B"
         "\t7 6 3 2 0\n"},
        {"ztm run - <<< $'write 01.AVG 1\nwrite 0B 70\nexport tsv\nexport i2cset --to-bus 3 "
         "--to-address 0x2C\nexport c' | grep -E '^0|^bus|^set_.*x|{0x'",
         "0x0B\tLocal High Limit\t0x46\t0x8B\n0x01\tConfiguration1\t0x03\t0x01\nbus=3\n"
         "set_register 0x0B 0x46 # Local High Limit\nset_register 0x01 0x03 # Configuration1\n"
         "    {0x0B, 0x46}, /* Local High Limit */\n    {0x01, 0x03}, /* Configuration1 */\n"},
        {"ztm run - <<< $'table set 1 30 4800\\ntable save t.lut\\ntable set 1 0 0\\n"
         "table load t.lut\\nread 22 2A 2B' | cut -f4",
         "94\n0\n4\n"},
        {"sed -i 's/191, 0/191, 40/;s/^30/x/' t.lut; ztm table load t.lut", "", 74,
         "ztm: t.lut: point 1: no temperature\n"},
        {"ztm watch | head -2 | tail -1 | cut -f1; exit ${PIPESTATUS[0]}", "0.000\n", 141},
        {"ztm run - </", "", 74, "ztm: standard input: Is a directory\n"},
        {"ztm watch -n 1 >/dev/full", "", 74, "ztm: standard output: No space left on device\n"},
    };
    for (const auto &c : cases) {
        const Ran ran = RunFast(c.line);
        EXPECT_EQ(ran.out, c.out) << c.line;
        EXPECT_EQ(ran.status, c.status) << c.line << '\n' << ran.errors;
        if (c.status != 0 || c.out.empty()) {
            EXPECT_EQ(ran.errors, c.errors) << c.line;
        }
    }
}

TEST_F(SimulatedCommand, RunsANightInSecondsAndTwiceAlike) {
    folder.Put("night",
               "\xEF\xBB\xBFheater 1 50\nlog night.xls --force -i 1m -n 600\nwatch -n 1\n");
    std::string before;
    for (int round = 0; round < 2; ++round) {
        const Ran ran = RunFast("ztm run night; tail -n +2 night.xls");
        EXPECT_EQ(std::ranges::count(ran.out, '\n'), 603);
        EXPECT_EQ(ran.errors, "ztm: heater 1 stays on at 50 %\n");
        EXPECT_TRUE(before.empty() || ran.out == before);
        before = ran.out;
    }
}

TEST_F(SimulatedCommand, ALogIsWholeAfterCtrlC) {
    const Ran ran = Run("ztm log a.xls & until [ \"$(wc -l <a.xls)\" -gt 4 ]; do sleep 0.05; done "
                        "2>/dev/null; kill -INT $!; wait $!; echo $?",
                        "--adapter sim");
    EXPECT_EQ(ran.out, "0\n");
    EXPECT_THAT(BytesOf(folder.Path("a.xls")), testing::EndsWith("%\r\n"));
}

/// A user at a terminal: what is refused is told, Ctrl-C gives up a line or a block, Ctrl-D ends
/// the run. A terminal that goes away is no such end.
class PromptCommand : public SimulatedCommand, public testing::WithParamInterface<bool> {};
TEST_P(PromptCommand, GoesOnAfterWhatIsRefused) {
    const bool isClosed = GetParam();
    int terminal = -1;
    const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
    if (child == 0) {
        setenv("TERM", "dumb", 1);
        execl(ZTM_COMMAND, "ztm", "--adapter", "sim", "--fast", "run", "-", nullptr);
        _exit(127);
    }
    std::string seen;
    const auto readTo = [&](const std::string &prompt) {
        std::array<char, 256> piece{};
        const size_t from = seen.size();
        ssize_t count = 1;
        while (count > 0 && seen.find(prompt, from) == std::string::npos) {
            count = read(terminal, piece.data(), piece.size());
            seen.append(piece.data(), static_cast<size_t>(std::max<ssize_t>(count, 0)));
        }
    };
    const std::pair<const char *, const char *> dialogue[] = {
        {"ztm> ", "nonsense\n"}, {"ztm> ", "write 0B 300\n"}, {"ztm> ", "rea\x03"},
        {"ztm> ", "repeat 2\n"}, {"...> ", "\x03"},           {"ztm> ", "read 3E\n"}};
    for (const auto &[prompt, typed] : dialogue) {
        readTo(prompt);
        ASSERT_GT(write(terminal, typed, std::strlen(typed)), 0);
    }
    readTo("ztm> ");
    if (!isClosed) {
        ASSERT_GT(write(terminal, "\x04", 1), 0);
        readTo("no more");
    }
    close(terminal);
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), isClosed ? 129 : 0);
    EXPECT_THAT(seen, testing::AllOf(HasSubstr("\"nonsense\" is no command"),
                                     HasSubstr("\"300\" is no value"),
                                     HasSubstr("0x3E  Company ID                0x41     65")));
}

INSTANTIATE_TEST_SUITE_P(Ends, PromptCommand, testing::Bool());

TEST_F(SimulatedCommand, TheBinaryHasNoToolkit) {
    EXPECT_THAT(Run("ldd " ZTM_COMMAND, "").out, Not(HasSubstr("Qt")));
}

/// On a virtual I2C bus, with the simulated chip.
class BusCommand : public CommandTest {
protected:
    BusCommand() {
        bus.Plug([this](size_t, const ByteTransfer &transfer) { return chip.Answer(transfer); });
    }

    Ran RunOnBus(const std::string &line, const std::string &options = onBus) {
        return Run(line, "--adapter " + options, preloaded);
    }

    static constexpr const char *onBus = "i2c --bus 7 --address 0x2C";

    /// The transfers as in "0B? 0B=46", those after each read of register FF in a row of its own.
    std::vector<std::string> Rows() {
        std::vector<std::string> rows{""};
        for (const ByteTransfer &transfer : bus.Transfers()) {
            char text[8];
            if (transfer.isRead && transfer.registerAddress == 0xFF) {
                rows.emplace_back();
                continue;
            }
            std::snprintf(text, sizeof text, transfer.isRead ? "%02X?" : "%02X=%02X",
                          unsigned{transfer.registerAddress}, unsigned{transfer.data});
            rows.back().append(rows.back().empty() ? "" : " ").append(text);
        }
        return rows;
    }

    SimulatedChip chip;
    VirtualI2c bus;
};

TEST_F(BusCommand, SendsWhatACommandNeedsAndNothingElse) {
    const struct {
        const char *command, *transfers;
    } cases[] = {
        {"scan", ""},
        {"alerts", "51?"},
        {"read 01 'local high limit'", "01? 0B?"},
        {"write 0B 46h", "0B=46"},
        {"write Configuration3.#FP2 2", "03? 03=24"},
        {"write 01.alrt 1 --verify", "01? 01=09 01? 01?"},
        {"write 01.3 0", "01? 01=01 01?"},
        {"limits remote1 high 60", "0E=7C"},
        {"limits local therm -1", "0D=3F"},
        {"limits therm% high 50", "19=80"},
        {"limits hysteresis 9", "1A? 1A=09"},
        {"table set 2 25 3000", "23=59 2D=06 2C=66"},
        {"fan 1 rpm 1000", "2B=13 2A=33 01?"},
        {"fan 2 source 'full speed'", "07? 07=0D"},
        {"fan 1 ramp 10", "3B? 3B=02"},
        {"fan transition steps", "02? 02=80 02?"},
        {"watch -n 1 --channels fan1,local", "40? 41? 4A? 4B?"},
        {"until local > 10", "40? 41?"},
        {"heater", ""},
    };
    std::string lines;
    std::vector<std::string> wanted{"3D? 3D?"}; // the start, and the search
    for (const auto &c : cases) {
        lines.append("read FF\n").append(c.command).append("\n");
        wanted.emplace_back(c.transfers);
    }
    folder.Put("script", lines);
    EXPECT_EQ(RunOnBus("ztm run script").status, 0);
    EXPECT_EQ(Rows(), wanted);
    EXPECT_EQ(bus.UnwantedRequests(), 0U);

    bus.ForgetTransfers();
    const Ran heater = RunOnBus("ztm heater 1 40");
    EXPECT_EQ(heater.status, 3);
    EXPECT_THAT(heater.errors, StartsWith("ztm: heater 1 is at 0 %, not 40 %"));
    EXPECT_EQ(Rows(), std::vector<std::string>{"3D? 3D?"});
}

TEST_F(BusCommand, RefusesInOneLineAndSendsNothing) {
    folder.Put("exists", "");
    folder.Put("open", "read 01\nrepeat 2\nread 02\n");
    folder.Put("bad", "write 0B 70\n\nread 'Local High\n");
    folder.Put("twice", "log new -n 1\nsnapshot diff ./new\nrepeat 2\nlog newer\nend\n");
    folder.Put("late", "write 0B 70\nsnapshot recall none\n");
    folder.Put("mixed", "read 'Remote2 Offset'\nread 'Fan Behavior'\n");
    const struct {
        const char *line;
        int status;
        const char *errors;
        const char *options = onBus;
    } cases[] = {
        {"ztm", 64, "A subcommand is required"},
        {"ztm read", 64, "REG is required"},
        {"ztm nonsense", 64, "\"nonsense\" is not understood"},
        {"ztm read 100", 64, "\"100\" is no register: 00 to FF"},
        {"ztm read Local", 64, "\"Local\" is ambiguous: Local High Limit, Local Low Limit"},
        {"ztm read ''", 64, "\"\" is no register"},
        {"ztm write 01 256", 64, "\"256\" is no value for 01: 0 to 255"},
        {"ztm write 01 -- -1", 64, "\"-1\" is no value"},
        {"ztm write 01 1.5", 64, "\"1.5\" is no value"},
        {"ztm write 01.LCK 2", 64, "\"2\" is no value for 01.LCK: 0 to 1"},
        {"ztm write 01.nn 1", 64, "\"nn\" is no bit of Configuration1: 7 to 0, TBL/SW, LCK"},
        {"ztm write 0B.8 1", 64, "\"8\" is no bit"},
        {"ztm write 2B.15 1", 64, "\"15\" is no bit"},
        {"ztm watch -i 1,5", 64, "\"1,5\" is no time"},
        {"ztm watch -n 0", 64, "\"0\" is not a count"},
        {"ztm watch --channels fan3", 64, "\"fan3\" is no channel: Local, Remote1"},
        {"ztm log x -i 0", 64, "\"0\" is too short"},
        {"ztm log exists", 74, "exists exists"},
        {"ztm snapshot save exists", 74, "exists exists"},
        {"ztm snapshot recall none", 74, "none: No such file"},
        {"ztm heater 1 101", 64, "\"101\" is not a duty"},
        {"ztm heater 3 1", 64, "\"3\" is not a heater"},
        {"ztm fan 1 rpm 75", 64, "75 RPM cannot be held: 0, or whole numbers from 76"},
        {"ztm fan 1 poles 3", 64, "\"3\" is no number of poles: 2, 4, 6, 8"},
        {"ztm limits fan1 high 3", 64, "Fan1 has no high limit"},
        {"ztm limits local high 192", 64, "\"192\" is not a limit"},
        {"ztm limits therm high 100.5", 64, "\"100.5\" is not a limit"},
        {"ztm table set 9 20 1000", 64, "\"9\" is not a point"},
        {"ztm table set 1 20.5 1000", 64, "20.5 °C cannot be held"},
        {"ztm export i2cset", 64, "export i2cset needs the bus", "sim"},
        {"ztm export c++", 64, "\"c++\" is no format: c, i2cset, tsv"},
        {"ztm run none", 74, "none: No such file"},
        {"ztm run open", 64, "open:2: repeat without an end"},
        {"ztm run bad", 64, "bad:3: a quotation mark"},
        {"ztm run twice", 74, "twice:4: newer is made more than once"},
        {"ztm run late", 74, "late:2: none: No such file"},
        {"ztm run mixed", 64, "mixed:2: \"Fan Behavior\" is no register"},
        {"ztm scan", 64, "--adapter i2c needs --bus and --address", "i2c --bus 7"},
        {"ztm scan", 64, "\"0x27\" is no 7-bit address", "i2c --bus 7 --address 0x27"},
        {"ztm scan", 64, "\"44\" is no 7-bit address", "i2c --bus 7 --address 44"},
        {"ztm scan", 64, "--address 0x50: memory modules", "i2c --bus 7 --address 0x50"},
        {"ztm scan", 64, "--fast is for", "i2c --bus 7 --address 0x2C --fast"},
        {"ztm scan", 64, "--bus and --address are for", "sim --bus 7"},
        {"ztm scan", 2, "i2c-9 is not there any more", "i2c --bus 9 --address 0x2C"},
    };
    for (const auto &c : cases) {
        const Ran ran = RunOnBus(c.line, c.options);
        EXPECT_EQ(ran.status, c.status) << c.line << ' ' << ran.errors;
        EXPECT_THAT(ran.errors, StartsWith(std::string("ztm: ") + c.errors)) << c.line;
        EXPECT_EQ(std::ranges::count(ran.errors, '\n'), 1) << ran.errors;
        EXPECT_EQ(ran.out, "") << c.line;
        EXPECT_TRUE(bus.Transfers().empty()) << c.line;
    }
}

TEST_F(BusCommand, EndsWithTheStatusOfWhatFailed) {
    const Ran other = RunOnBus("ztm read 01", "i2c --bus 7 --address 0x2C --variant ZTM7710");
    EXPECT_EQ(other.status, 2);
    EXPECT_EQ(other.errors, "ztm: a ZTM7720 was found, not a ZTM7710\n");
    EXPECT_EQ(RunOnBus("ztm buses", "i2c").out,
              "bus\tname\tusable\tobstacle\n7\tWorkbench bus\tyes\t\n");
    bus.ForgetTransfers();
    bus.Plug([this](size_t number, const ByteTransfer &transfer) {
        BusAnswer answer = chip.Answer(transfer);
        answer.leaves = number == 2;
        return answer;
    });
    const Ran lost = RunOnBus("ztm read 01");
    EXPECT_EQ(lost.status, 1);
    EXPECT_EQ(lost.errors, "ztm: i2c-7 is not there any more.\n");
    EXPECT_TRUE(bus.IsClosedByAll());
}

/// Behind a virtual USB adapter, which has heaters.
class HeaterCommand : public CommandTest {
protected:
    HeaterCommand() {
        board.LoadFirmWare(ZTM_FIRMWARE_FOLDER "\\ZTM7720FW_v3.Hex");
        device.PlugRunning();
    }

    /// The duties that were set, as in "40,255".
    std::string DutiesOf(const std::string &line) {
        device.ForgetTransfers();
        errors = Run(line, "", preloaded).errors;
        EXPECT_TRUE(bus.IsClosedByAll());
        std::string duties;
        for (const Transfer &transfer : device.Transfers()) {
            if (transfer.request == 0xDB) {
                duties += (duties.empty() ? "" : " ") + std::to_string(transfer.value) + ',' +
                          std::to_string(transfer.index);
            }
        }
        EXPECT_EQ(device.Transfers().back().request, 0xDF) << "takes its leave";
        return duties;
    }

    VirtualUsb bus;
    sim::SimulatedBoard board;
    VirtualAdapter device{bus, [this](auto... fields) { return board.VendorIORequest(fields...); }};
    std::string errors;
};

TEST_F(HeaterCommand, HeatersGoOffWhereverARunEndsBeforeItsTime) {
    folder.Put("long", "heater 2 30\nheater 2 0\nheater 1 40\nread 01\nwait 1h\n");
    folder.Put("endless", "heater 1 40\nwatch -i 10ms\n");
    const std::string onAndOff = "255,30 255,0 40,255 0,255";
    const auto killed = [](const std::string &run, const std::string &signals) {
        return run + " & until [ -s out ]; do sleep 0.05; done; kill -" + signals +
               " $!; wait $!; echo $? >&2";
    };
    const struct {
        std::string line, duties, errors;
    } cases[] = {
        {killed("ztm run long", "INT"), onAndOff, "130\n"},
        {killed("ztm run long", "TERM $!; kill -TERM"), onAndOff, "143\n"},
        {killed("ztm run long", "HUP"), onAndOff, "129\n"},
        {killed("ztm --keep-heaters run long", "TERM"), "255,30 255,0 40,255",
         "ztm: heater 1 stays on at 40 %\n143\n"},
        {killed("ztm run endless", "INT"), "40,255 0,255", "0\n"},
        {"ztm run long | head -n 1", onAndOff, ""},
        {"ztm run endless | head -n 1", "40,255 0,255", ""},
        {"ztm run - <<< $'heater 1 40\\nread nonsense'", "40,255 0,255",
         "ztm: standard input:2: \"nonsense\" is no register of this chip; ztm dump lists the "
         "registers\n"},
        {"ztm run - <<< $'heater 1 40\\nheater 2 7'", "40,255 255,7",
         "ztm: heater 1 stays on at 40 %, heater 2 stays on at 7 %\n"},
    };
    for (const auto &c : cases) {
        EXPECT_EQ(DutiesOf(c.line), c.duties) << c.line;
        EXPECT_EQ(errors, c.errors) << c.line;
    }
}

} // namespace
} // namespace ztm::test
