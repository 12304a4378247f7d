#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "console_Clock.h"
#include "console_CommandGroup.h"
#include "console_CommandTable.h"
#include "console_EscapingOutputStream.h"
#include "console_Initiator.h"
#include "console_Interfaces.h"
#include "console_Memory.h"
#include "console_Mounts.h"
#include "console_Processes.h"
#include "console_Watch.h"
#include "console_WorldWideNames.h"
#include "ut_Misc.h"

namespace console {

namespace {

constexpr unsigned int digitsShown = 4;

bool endWith(Invocation& call, const std::string& failure) {
    return failure.empty() || call.fail("%s", failure.c_str());
}

// Returns no value for an empty text.
Value known(const std::string& text) {
    return text.empty() ? Value() : Value(text);
}

Value sizeValue(unsigned long long bytes) {
    char text[40];
    return Value(bytes).shownAs(
        utility::Misc::toDSdecimal(static_cast<long long>(bytes), digitsShown, text, sizeof text));
}

// Returns the width of a column: that of the longest text that `textOf` gives for a row, but at most `most`.
template<typename Rows, typename TextOf>
unsigned int widthOf(const Rows& rows, unsigned int least, unsigned int most, TextOf textOf) {
    std::size_t width = least;
    for (const auto& row : rows)
        width = std::max(width, textOf(row).size());
    return static_cast<unsigned int>(std::min<std::size_t>(width, most));
}

// Returns 0 if `text` is not a TCP port.
unsigned int portFrom(const std::string& text) {
    constexpr unsigned long largestPort = 65535;
    constexpr std::size_t mostDigits = 5;
    if (text.empty() || text.size() > mostDigits || text.find_first_not_of("0123456789") != std::string::npos)
        return 0;
    const unsigned long port = std::strtoul(text.c_str(), nullptr, 10);
    return port <= largestPort ? static_cast<unsigned int>(port) : 0;
}

// Returns the addresses, followed by the port if there is one.
std::vector<std::string> withPort(const std::vector<std::string>& addresses, unsigned int port, bool isIPV6) {
    std::vector<std::string> texts;
    for (const std::string& address : addresses) {
        const std::string host = isIPV6 && port != 0 ? '[' + address + ']' : address;
        texts.push_back(port != 0 ? host + ':' + std::to_string(port) : host);
    }
    return texts;
}

bool showAddresses(Invocation& call) {
    const unsigned int port = call.wordCount() > 0 ? portFrom(call.word(0)) : 0;
    if (call.wordCount() > 0 && port == 0)
        return call.fail("%s: not a port from 1 to 65535", call.word(0));
    std::string failure;
    const std::string& root = call.settings().root;
    const std::vector<Interface> interfaces =
        root.empty() ? interfacesOfThisMachine(&failure) : interfacesUnder(root, &failure);
    call.answer().table("interfaces", {left("name", 12), left("mac", 17), left("ipv4", 21), left("ipv6")},
                        Answer::WITH_TITLES);
    for (const Interface& interface : interfaces)
        call.answer().row({known(interface.name), known(interface.mac), withPort(interface.ipv4, port, false),
                           withPort(interface.ipv6, port, true)});
    return endWith(call, failure);
}

bool showWwns(Invocation& call) {
    std::string failure;
    const std::vector<FibreChannelHost> hosts = fibreChannelHostsUnder(call.settings().root, &failure);
    call.answer().table("hosts", {left("host", 12), left("node", 16), left("port")}, Answer::WITH_TITLES);
    for (const FibreChannelHost& host : hosts)
        call.answer().row({host.name, known(host.node), known(host.port)});
    if (hosts.empty())
        call.answer().remark("no Fibre Channel hosts");
    const std::vector<DiskIdentity> disks = disksUnder(call.settings().root, &failure);
    const unsigned int width = widthOf(disks, 16, 40, [](const DiskIdentity& disk) { return disk.wwn; });
    call.answer().table("disks", {left("disk", 12), left("wwn", width), left("serial")}, Answer::WITH_TITLES);
    for (const DiskIdentity& disk : disks)
        call.answer().row({disk.name, known(disk.wwn), known(disk.serial)});
    if (disks.empty())
        call.answer().remark("no disks");
    return endWith(call, failure);
}

bool showInitiator(Invocation& call) {
    std::string failure;
    const Initiator initiator = readInitiator(call.systemPath("/etc/iscsi/initiatorname.iscsi"), &failure);
    if (!failure.empty())
        return endWith(call, failure);
    call.answer().field("name", initiator.name);
    call.answer().field("alias", known(initiator.alias));
    return true;
}

bool showMounts(Invocation& call) {
    std::string failure;
    const std::vector<Mount> mounts = readMounts(call.systemPath("/proc/mounts"), &failure);
    if (!failure.empty())
        return endWith(call, failure);
    const unsigned int device = widthOf(mounts, 6, 30, [](const Mount& mount) { return escapedLine(mount.device); });
    const unsigned int directory =
        widthOf(mounts, 9, 40, [](const Mount& mount) { return escapedLine(mount.directory); });
    const unsigned int type = widthOf(mounts, 4, 20, [](const Mount& mount) { return mount.type; });
    call.answer().table("mounts",
                        {left("device", device), left("directory", directory), left("type", type), left("options")},
                        Answer::WITH_TITLES);
    for (const Mount& mount : mounts) {
        // A name may contain a newline.
        call.answer().row({Value(mount.device).shownAs(escapedLine(mount.device)),
                           Value(mount.directory).shownAs(escapedLine(mount.directory)), mount.type, mount.options});
    }
    if (mounts.empty())
        call.answer().remark("no mounts");
    return true;
}

// Sets `order` to the one order whose name begins with `word`. Returns false if there is none.
bool orderFrom(const std::string& word, ProcessOrder* order) {
    const std::vector<std::string> found = matches({"cpu", "memory", "pid"}, word);
    if (found.size() != 1)
        return false;
    *order = found[0] == "cpu" ? ProcessOrder::CPU : found[0] == "memory" ? ProcessOrder::MEMORY : ProcessOrder::ID;
    return true;
}

bool showProcesses(Invocation& call) {
    ProcessOrder order = ProcessOrder::CPU;
    if (call.wordCount() > 0 && !orderFrom(call.word(0), &order))
        return call.fail("%s: sort by cpu, memory or pid", call.word(0));
    std::string failure;
    std::vector<Process> processes = processesUnder(call.settings().root, &failure);
    sortProcesses(&processes, order);
    const unsigned int user = widthOf(processes, 8, 20, [](const Process& process) { return process.user; });
    call.answer().table(
        "processes",
        {right("pid", 7), left("user", user), left("state", 5), right("cpu", 13), right("memory", 9), left("command")},
        Answer::WITH_TITLES);
    for (const Process& process : processes) {
        if (!call.isWanted())
            break;
        call.answer().row({process.id, process.user, std::string(1, process.state),
                           Value(process.cpuSeconds).shownAs(durationText(process.cpuSeconds)),
                           sizeValue(process.bytes), Value(process.command).shownAs(escapedLine(process.command))});
    }
    return endWith(call, failure);
}

bool showMemory(Invocation& call) {
    std::string failure;
    const Memory memory = readMemory(call.systemPath("/proc/meminfo"), &failure);
    if (!failure.empty())
        return endWith(call, failure);
    const auto show = [&](const char* name, const Memory::Bytes& bytes) {
        call.answer().field(name, bytes ? sizeValue(*bytes) : Value());
    };
    show("total", memory.total);
    show("available", memory.available);
    show("free", memory.free);
    show("buffers", memory.buffers);
    show("cached", memory.cached);
    show("swapTotal", memory.swapTotal);
    show("swapFree", memory.swapFree);
    return true;
}

constexpr unsigned int mostWords = 64;

constexpr Command commands[] = {
    {"show addresses", "[PORT]", "show network interfaces with their IP addresses", 0, 1, showAddresses},
    {"show wwns", "", "show WWNs and serial numbers of hosts and disks", 0, 0, showWwns},
    {"show initiator", "", "show the name of the iSCSI initiator", 0, 0, showInitiator},
    {"show mounts", "", "show the mounted file systems", 0, 0, showMounts},
    {"show processes", "[ORDER]", "show the processes by cpu, memory or pid", 0, 1, showProcesses},
    {"show memory", "", "show how much memory there is", 0, 0, showMemory},
    {"watch", "SECONDS COMMAND", "run a command every few seconds until a key", 2, mostWords, watch}};

} // namespace

constexpr CommandGroup machineCommands("Addresses and load", commands);

} // namespace console
