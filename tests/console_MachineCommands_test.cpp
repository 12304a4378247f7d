#include <algorithm>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <netinet/in.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "console_Clock.h"
#include "console_Mounts.h"
#include "console_SmallFile.h"
#include "console_TextCollector.h"
#include "console_WorldWideNames.h"
#include "support/ConsoleProgram.h"
#include "support/Pty.h"
#include "support/TemporaryDirectory.h"

namespace {

using test::ChildResult;
using test::Pty;
using test::runConsole;

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

// A machine made of files: the directory that `--root` names.
class Machine : public test::TemporaryDirectory {
public:
    // Creates a file and the directories that it is in.
    void file(const std::string& name, const std::string& content) const {
        std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
        write(name, content);
    }
    void process(unsigned int id, const std::string& name, const std::string& ticks, unsigned int pages,
                 const std::string& commandLine) const {
        const std::string folder = "proc/" + std::to_string(id);
        file(folder + "/stat", std::to_string(id) + " (" + name + ") S 1 2 3 0 -1 64 5 6 7 8 " + ticks +
                                   " 0 0 20 0 1 0 9 1000000 " + std::to_string(pages) + " 18446744073709551615 1 1\n");
        file(folder + "/cmdline", commandLine);
    }

    ChildResult run(const std::string& command) const {
        return runConsole({"--root", path(), "-c", command});
    }
    void expectText(const std::string& command, const std::string& text) const {
        const ChildResult child = run(command);
        EXPECT_EQ(child.status, 0) << command;
        EXPECT_EQ(child.out, text) << command;
        EXPECT_EQ(child.err, "") << command;
    }
    // Expects an object with this member "answer".
    void expectJson(const std::string& command, const std::string& name, const std::string& answer) const {
        const ChildResult child = runConsole({"--json", "--root", path(), "-c", command});
        EXPECT_EQ(child.status, 0) << command;
        EXPECT_EQ(child.out, R"({"version":1,"command":")" + name + R"(","answer":)" + answer + "}\n");
        EXPECT_EQ(child.err, "") << command;
    }
    void expectFailure(const std::string& command, const std::string& failure) const {
        const ChildResult child = run(command);
        EXPECT_EQ(child.status, 1) << command;
        EXPECT_EQ(child.err, failure + "\n");
    }
};

void addNetwork(const Machine& machine) {
    machine.file("sys/class/net/eth0/address", "52:54:00:12:34:56\n");
    machine.file("sys/class/net/lo/address", "00:00:00:00:00:00\n");
    machine.file("sys/class/net/tun0/address", "\n");
    machine.file("proc/net/route", "Iface\tDestination\tGateway \tFlags\tRefCnt\tUse\tMetric\tMask\tMTU\tWindow\tIRTT\n"
                                   "eth0\t00000000\t010200C0\t0003\t0\t0\t0\t00000000\t0\t0\t0\n"
                                   "eth0\t0000000A\t00000000\t0001\t0\t0\t0\t000000FF\t0\t0\t0\n"
                                   "tun0\t0000010A\t00000000\t0001\t0\t0\t0\t0000FFFF\t0\t0\t0\n");
    machine.file("proc/net/fib_trie", "Local:\n  +-- 0.0.0.0/0 3 0 5\n     |-- 10.1.0.7\n        /32 host LOCAL\n"
                                      "     |-- 10.1.255.255\n        /32 link BROADCAST\n     |-- 10.2.0.7\n"
                                      "        /32 host LOCAL\n     |-- 127.0.0.1\n        /32 host LOCAL\n"
                                      "     |-- 203.0.113.9\n        /32 host LOCAL\n     |-- 10.2.0.7\n"
                                      "        /32 host LOCAL\n");
    machine.file("proc/net/if_inet6", "00000000000000000000000000000001 01 80 10 80       lo\n"
                                      "fe80000000000000505400fffe123456 02 40 20 80     eth0\n"
                                      "20010db8000000000000000000000007 02 40 00 80     eth0\n"
                                      "not a line\n");
}

// Addresses

TEST(ConsoleShowAddresses, UnderAnotherRootReadsItsFiles) {
    const Machine machine;
    addNetwork(machine);
    machine.expectText("show addresses", "NAME         MAC               IPV4                  IPV6\n"
                                         "-            -                 203.0.113.9           -\n"
                                         "eth0         52:54:00:12:34:56 10.2.0.7              "
                                         "fe80::5054:ff:fe12:3456,2001:db8::7\n"
                                         "lo           00:00:00:00:00:00 127.0.0.1             ::1\n"
                                         "tun0         -                 10.1.0.7              -\n");
    machine.expectJson("show addresses", "show addresses",
                       R"({"interfaces":[{"name":null,"mac":null,"ipv4":["203.0.113.9"],"ipv6":[]},)"
                       R"({"name":"eth0","mac":"52:54:00:12:34:56","ipv4":["10.2.0.7"],)"
                       R"("ipv6":["fe80::5054:ff:fe12:3456","2001:db8::7"]},)"
                       R"({"name":"lo","mac":"00:00:00:00:00:00","ipv4":["127.0.0.1"],"ipv6":["::1"]},)"
                       R"({"name":"tun0","mac":null,"ipv4":["10.1.0.7"],"ipv6":[]}]})");
}

TEST(ConsoleShowAddresses, HaveAPortIfOneIsGiven) {
    const Machine machine;
    machine.file("sys/class/net/lo/address", "\n");
    machine.file("proc/net/if_inet6", "00000000000000000000000000000001 01 80 10 80 lo\n");
    machine.file("proc/net/fib_trie", "     |-- 127.0.0.1\n        /32 host LOCAL\n");
    machine.expectText("show addresses 65535", "NAME         MAC               IPV4                  IPV6\n"
                                               "lo           -                 127.0.0.1:65535       [::1]:65535\n");
    for (const std::string port : {"0", "65536", "x", "-1", "100000000000000000000"})
        machine.expectFailure("show addresses " + port, "show addresses: " + port + ": not a port from 1 to 65535");
}

TEST(ConsoleShowAddresses, OfAnEmptyRootAreNone) {
    const Machine machine;
    machine.expectText("show addresses", "NAME         MAC               IPV4                  IPV6\n");
    machine.expectJson("show addresses", "show addresses", R"({"interfaces":[]})");
}

TEST(ConsoleShowAddresses, OfThisMachineAreThoseOfThePlatform) {
    ifaddrs* list = nullptr;
    ASSERT_EQ(getifaddrs(&list), 0);
    const ChildResult child = test::runCommand("show addresses");
    EXPECT_EQ(child.status, 0) << child.err;
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        std::string line;
        for (const std::string& candidate : linesOf(child.out)) {
            if (candidate.compare(0, std::strlen(entry->ifa_name) + 1, std::string(entry->ifa_name) + ' ') == 0)
                line = candidate;
        }
        EXPECT_NE(line, "") << entry->ifa_name;
        if (entry->ifa_addr == nullptr || entry->ifa_addr->sa_family != AF_INET)
            continue;
        sockaddr_in address = {};
        char text[INET_ADDRSTRLEN] = "";
        std::memcpy(&address, entry->ifa_addr, sizeof address);
        inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
        EXPECT_TRUE(std::regex_search(line, std::regex(std::string("[ ,]") + text + "[ ,]"))) << line;
    }
    freeifaddrs(list);
}

// World Wide Names and the iSCSI name

TEST(ConsoleIdentifierText, HasTheFormOfItsClassWhereItFits) {
    using console::identifierText;
    EXPECT_EQ(identifierText("0x500A09818D5F1234"), "500a09818d5f1234");
    EXPECT_EQ(identifierText("naa.5000C500A1B2C3D4"), "5000c500a1b2c3d4");
    EXPECT_EQ(identifierText("00c0ff1122330000445566778899aabb"), "00c0ff1122330000445566778899aabb");
    EXPECT_EQ(identifierText("eui.0025388b710116a1"), "eui.0025388b710116a1");
    EXPECT_EQ(identifierText("0x123"), "0x123");
    EXPECT_EQ(identifierText(""), "");
}

TEST(ConsoleShowWwns, NamesHostsAndDisks) {
    const Machine machine;
    machine.file("sys/class/fc_host/host1/node_name", "0x500A09818D5F1234\n");
    machine.file("sys/class/fc_host/host1/port_name", "0x500a09828d5f1234\n");
    machine.file("sys/class/fc_host/host2/port_name", "unknown\n");
    machine.file("sys/block/sda/device/wwid", "naa.5000C500A1B2C3D4\n");
    machine.file("sys/block/sda/device/vpd_pg80", std::string("\0\x80\0\x0a", 4) + "  SER0042 ignored");
    machine.file("sys/block/nvme0n1/wwid", "eui.0025388b710116a1\n");
    machine.file("sys/block/nvme0n1/device/serial", "S4EVNX0M   \n");
    machine.file("sys/block/vda/device/vendor", "0x1af4\n");
    machine.file("sys/block/loop0/size", "0\n");
    machine.expectText("show wwns", "HOST         NODE             PORT\n"
                                    "host1        500a09818d5f1234 500a09828d5f1234\n"
                                    "host2        -                unknown\n"
                                    "DISK         WWN                  SERIAL\n"
                                    "nvme0n1      eui.0025388b710116a1 S4EVNX0M\n"
                                    "sda          5000c500a1b2c3d4     SER0042\n"
                                    "vda          -                    -\n");
    machine.expectJson("show wwns", "show wwns",
                       R"({"hosts":[{"host":"host1","node":"500a09818d5f1234","port":"500a09828d5f1234"},)"
                       R"({"host":"host2","node":null,"port":"unknown"}],)"
                       R"("disks":[{"disk":"nvme0n1","wwn":"eui.0025388b710116a1","serial":"S4EVNX0M"},)"
                       R"({"disk":"sda","wwn":"5000c500a1b2c3d4","serial":"SER0042"},)"
                       R"({"disk":"vda","wwn":null,"serial":null}]})");
}

TEST(ConsoleShowWwns, OfAMachineWithoutAnyAreNone) {
    const Machine machine;
    machine.file("sys/block/sda/device/vpd_pg80", std::string("\0\x80\xff\xff", 4));
    machine.file("sys/block/sdb/device/vpd_pg80", std::string("\0\x83", 2));
    machine.expectText("show wwns", "HOST         NODE             PORT\nno Fibre Channel hosts\n"
                                    "DISK         WWN              SERIAL\nsda          -                -\n"
                                    "sdb          -                -\n");
    const Machine empty;
    empty.expectText("show wwns", "HOST         NODE             PORT\nno Fibre Channel hosts\n"
                                  "DISK         WWN              SERIAL\nno disks\n");
    empty.expectJson("show wwns", "show wwns", R"({"hosts":[],"disks":[]})");
}

TEST(ConsoleShowInitiator, ShowsNameAndAlias) {
    const Machine machine;
    const std::string file = "etc/iscsi/initiatorname.iscsi";
    machine.file(file, "# a comment with InitiatorName=no\n\n InitiatorName = iqn.2024-03.com.example:host7 \r\n"
                       "InitiatorName=iqn.second\nInitiatorAlias=seven");
    machine.expectText("show initiator", "name       iqn.2024-03.com.example:host7\nalias      seven\n");
    machine.expectJson("show initiator", "show initiator",
                       R"({"name":"iqn.2024-03.com.example:host7","alias":"seven"})");
    machine.file(file, "InitiatorName=iqn.2024-03.com.example:host7\n");
    machine.expectText("show initiator", "name       iqn.2024-03.com.example:host7\nalias      -\n");
}

TEST(ConsoleShowInitiator, WithoutANameIsAFailure) {
    const Machine machine;
    const std::string file = "etc/iscsi/initiatorname.iscsi";
    machine.expectFailure("show initiator", "show initiator: " + machine.path(file) + ": No such file or directory");
    for (const std::string content : {"", "GenerateName=yes\n", "InitiatorName=\n"}) {
        machine.file(file, content);
        machine.expectFailure("show initiator",
                              "show initiator: " + machine.path(file) + ": does not contain a line InitiatorName=NAME");
    }
    std::filesystem::permissions(machine.path(file), std::filesystem::perms::none);
    const ChildResult child = runConsole({"--root", machine.path(), "-c", "show initiator"}, "", test::obeyPermissions);
    EXPECT_EQ(child.status, 1);
    EXPECT_NE(child.err.find("Permission denied"), std::string::npos) << child.err;
}

// Mounts, processes and memory

TEST(ConsoleWithoutOctal, ReplacesWholeNumbersOnly) {
    EXPECT_EQ(console::withoutOctal("/media/my\\040disk"), "/media/my disk");
    EXPECT_EQ(console::withoutOctal("\\134\\0401\\"), "\\ 1\\");
    EXPECT_EQ(console::withoutOctal("\\04x\\400\\04"), "\\04x\\400\\04");
    EXPECT_EQ(console::withoutOctal("\\377"), "\377");
}

TEST(ConsoleShowMounts, ShowsEachLineOfTheFile) {
    const Machine machine;
    machine.file("proc/mounts", "/dev/sda1 / ext4 rw,relatime 0 0\n"
                                "/dev/sdb1 /media/my\\040disk\\012two vfat ro 0 0\nbroken\n");
    machine.expectText("show mounts", "DEVICE    DIRECTORY             TYPE OPTIONS\n"
                                      "/dev/sda1 /                     ext4 rw,relatime\n"
                                      "/dev/sdb1 /media/my disk\\x0atwo vfat ro\n");
    machine.expectJson("show mounts", "show mounts",
                       R"({"mounts":[{"device":"/dev/sda1","directory":"/","type":"ext4",)"
                       R"("options":["rw","relatime"]},{"device":"/dev/sdb1",)"
                       R"("directory":"/media/my disk\ntwo","type":"vfat","options":["ro"]}]})");
    machine.file("proc/mounts", "");
    machine.expectText("show mounts", "DEVICE DIRECTORY TYPE OPTIONS\nno mounts\n");
    std::filesystem::remove(machine.path("proc/mounts"));
    machine.expectFailure("show mounts", "show mounts: " + machine.path("proc/mounts") + ": No such file or directory");
}

TEST(ConsoleShowMounts, OfThisMachineAreThoseOfTheKernel) {
    const ChildResult child = test::runCommand("show mounts");
    EXPECT_EQ(child.status, 0) << child.err;
    console::SmallFile file("/proc/mounts");
    std::size_t count = 0;
    while (file.readLine() != nullptr)
        ++count;
    EXPECT_EQ(linesOf(child.out).size(), count + 1);
}

// Three processes; one has a name that contains what ends names.
void addProcesses(const Machine& machine) {
    const long ticks = sysconf(_SC_CLK_TCK);
    machine.file("etc/passwd", "broken\nmonitor:x:" + std::to_string(geteuid()) + ":0::/:/bin/sh\n");
    machine.process(1, "init", std::to_string(2 * ticks) + " " + std::to_string(ticks), 100,
                    std::string("init\0--all\0", 11));
    machine.process(20, "a) (b", "0 0", 0, "");
    machine.process(3, "watcher", std::to_string(90000 * ticks) + " 0", 5, std::string("watcher\0a\nb\0", 12));
    machine.file("proc/4/stat", "4 (short) S 1\n");
    machine.file("proc/self", "");
}

TEST(ConsoleShowProcesses, SortsThemAsAsked) {
    const Machine machine;
    addProcesses(machine);
    const unsigned long page = static_cast<unsigned long>(sysconf(_SC_PAGESIZE));
    ASSERT_EQ(page, 4096U);
    const std::string title = "    PID USER     STATE           CPU    MEMORY COMMAND\n";
    const std::string init = "      1 monitor  S      00:00:03.000  409.6 kB init --all\n";
    const std::string kernel = "     20 monitor  S      00:00:00.000         0 [a) (b]\n";
    const std::string watcher = "      3 monitor  S     1 day 01:00:00.000  20.48 kB watcher a\\x0ab\n";
    machine.expectText("show processes", title + watcher + init + kernel);
    machine.expectText("show processes cpu", title + watcher + init + kernel);
    machine.expectText("show processes mem", title + init + watcher + kernel);
    machine.expectText("show processes pid", title + init + watcher + kernel);
    machine.expectJson("show processes pid", "show processes",
                       R"({"processes":[{"pid":1,"user":"monitor","state":"S","cpu":3.0,"memory":409600,)"
                       R"("command":"init --all"},{"pid":3,"user":"monitor","state":"S","cpu":90000.0,)"
                       R"("memory":20480,"command":"watcher a\nb"},{"pid":20,"user":"monitor","state":"S",)"
                       R"("cpu":0.0,"memory":0,"command":"[a) (b]"}]})");
    machine.expectFailure("show processes size", "show processes: size: sort by cpu, memory or pid");
    machine.expectFailure("show processes \"\"", "show processes: : sort by cpu, memory or pid");
}

TEST(ConsoleShowProcesses, WithoutAnyIsAFailure) {
    const Machine machine;
    machine.expectFailure("show processes",
                          "show processes: " + machine.path("proc") + ": does not describe any process");
}

TEST(ConsoleShowProcesses, OfThisMachineContainThisOne) {
    const ChildResult child = test::runCommand("show processes pid");
    EXPECT_EQ(child.status, 0) << child.err;
    EXPECT_TRUE(std::regex_search(child.out, std::regex("\n +" + std::to_string(getpid()) + " "))) << child.out;
}

TEST(ConsoleShowMemory, ShowsTheFiguresOfTheKernel) {
    const Machine machine;
    machine.file("proc/meminfo", "MemTotal:       2000000 kB\nMemFree: 1000 kB\nMemAvailable:   500 kB\n"
                                 "SwapCached:            7 kB\nCached:                0 kB\nHugePages_Total:   x\n");
    machine.expectText("show memory", "total      2,048 MB\navailable  512.0 kB\nfree       1,024 kB\nbuffers    -\n"
                                      "cached     0\nswapTotal  -\nswapFree   -\n");
    machine.expectJson("show memory", "show memory",
                       R"({"total":2048000000,"available":512000,"free":1024000,"buffers":null,"cached":0,)"
                       R"("swapTotal":null,"swapFree":null})");
    const std::string file = machine.path("proc/meminfo");
    machine.file("proc/meminfo", "MemFree: 1000 kB\n");
    machine.expectFailure("show memory", "show memory: " + file + ": does not contain a line MemTotal");
    std::filesystem::remove(file);
    machine.expectFailure("show memory", "show memory: " + file + ": No such file or directory");
    EXPECT_EQ(test::runCommand("show memory").status, 0);
}

// Clock

TEST(ConsoleDurationText, HasDaysFromOneOn) {
    EXPECT_EQ(console::durationText(0), "00:00:00.000");
    EXPECT_EQ(console::durationText(86399.999), "23:59:59.999");
    EXPECT_EQ(console::durationText(86400), "1 day 00:00:00.000");
    EXPECT_EQ(console::durationText(93784.56), "1 day 02:03:04.560");
    EXPECT_EQ(console::durationText(172800), "2 days 00:00:00.000");
    EXPECT_EQ(console::durationText(1e12), "11574074 days 01:46:40.000");
}

TEST(ConsoleUptime, OfAFileThatIsNotATimeIsAFailure) {
    const Machine machine;
    for (const std::string content : {"nan 0", "-1 0", "1e300 0"}) {
        machine.file("proc/uptime", content);
        machine.expectFailure("uptime", "uptime: " + machine.path("proc/uptime") + ": is not a time in seconds");
    }
    machine.file("proc/uptime", "93784.5 0\n");
    machine.expectJson("uptime", "uptime", R"({"seconds":93784.5})");
}

TEST(ConsoleDate, HasItsZone) {
    const ChildResult text = test::runCommand("date", [] { setenv("TZ", "ABC-5:30", 1); });
    EXPECT_TRUE(std::regex_search(text.out, std::regex(", [0-9]{2}:[0-9]{2}:[0-9]{2} ABC \\(\\+0530\\)\n$")))
        << text.out;
    const ChildResult json = runConsole({"--json", "-c", "date"}, "", [] { setenv("TZ", "ABC-5:30", 1); });
    EXPECT_TRUE(std::regex_search(json.out, std::regex(R"("epoch":[0-9]+,"zone":"ABC","offset":"\+0530"\})")))
        << json.out;
}

// Watch

TEST(ConsoleTextCollector, FailsBeyondItsLimit) {
    console::TextCollector collector(3);
    EXPECT_TRUE(collector.SendOutputStream("abc", 3));
    EXPECT_TRUE(collector.isOutputStreamGood());
    EXPECT_FALSE(collector.SendOutputStream("d", 1));
    EXPECT_FALSE(collector.isOutputStreamGood());
    EXPECT_EQ(collector.text(), "abc");
}

TEST(ConsoleWatch, NeedsATerminal) {
    const Machine machine;
    machine.expectFailure("watch 1 date",
                          "watch: needs a terminal for the keys and the answer, and does not work with --json");
    for (const std::string seconds : {"0", "x", "-1", "86401", "100000000000"})
        machine.expectFailure("watch " + seconds + " date",
                              "watch: " + seconds + ": not a number of seconds from 1 to 86400");
    machine.expectFailure("watch 1", "usage: watch SECONDS COMMAND");
}

TEST(ConsoleWatch, ShowsTheAnswerAgainUntilAKey) {
    const Machine machine;
    machine.file("proc/uptime", "11.5 0\n");
    Pty terminal(test::consoleCommand({"--root", machine.path()}), 80, 25, test::setConsoleEnvironment);
    terminal.expect("vx> ");
    terminal.type("watch 1 uptime\r");
    terminal.expect("\033[Huptime (every 1 s, any key ends)\033[K\r\n00:00:11.500\033[K\r\n\033[J");
    machine.file("proc/uptime", "22.5 0\n");
    terminal.expect("00:00:22.500\033[K\r\n");
    terminal.type("\033[A");
    terminal.expect("vx> ");
    terminal.type("uptime\r");
    terminal.expect("00:00:22.500\r\n");
    terminal.type("quit\r");
    EXPECT_EQ(terminal.waitForChange().status, 0);
    EXPECT_TRUE(terminal.isInFormerMode());
}

TEST(ConsoleWatch, ShowsFailuresAndAsMuchAsTheScreenHas) {
    const Machine machine;
    machine.file("lines", "1\n2\n3\n4\n5\n6\n");
    Pty terminal(test::consoleCommand({"--root", machine.path()}), 80, 5, test::setConsoleEnvironment);
    terminal.expect("vx> ");
    terminal.type("watch 60 uptime\r");
    terminal.expect("/proc/uptime cannot be read\033[K\r\n\033[J");
    terminal.type("x");
    terminal.expect("vx> ");
    terminal.type("watch 60 show file " + machine.path("lines") + "\r");
    terminal.expect("1\033[K\r\n2\033[K\r\n3\033[K\r\n\033[J");
    terminal.type("x");
    terminal.expect("vx> ");
    terminal.type("quit\r");
    EXPECT_EQ(terminal.waitForChange().status, 0);
}

TEST(ConsoleWatch, RefusesWhatCannotBeWatched) {
    Pty terminal(test::consoleCommand({}), 120, 25, test::setConsoleEnvironment);
    terminal.expect("vx> ");
    for (const std::string command : {"quit", "exit", "history", "watch 1 date"}) {
        terminal.type("watch 1 " + command + "\r");
        terminal.expect("watch: " + command.substr(0, command.find(' ')) + ": cannot be watched\r\n");
    }
    terminal.type("watch 1 bogus\r");
    terminal.expect("watch: unknown command: bogus (try help)\r\n");
    terminal.type("watch 1 md5\r");
    terminal.expect("watch: usage: md5");
    terminal.type("quit\r");
    EXPECT_EQ(terminal.waitForChange().status, 0);
}

} // namespace
