#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <ifaddrs.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <netinet/in.h>
#include <sys/stat.h>
#include <unistd.h>

#include "console_Clock.h"
#include "console_CommandGroup.h"
#include "console_ContextFolder.h"
#include "console_Files.h"
#include "ut_Debug.h"
#include "ut_DirIterator.h"
#include "ut_Environment.h"
#include "ut_GetStream.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_Misc.h"
#include "ut_PortAddressArray.h"
#include "ut_WWN.h"

namespace console {

namespace {

constexpr unsigned int iscsiPort = 3260;
constexpr long long bytesPerSector = 512;
constexpr const char* blockDevices = "/sys/block";
constexpr const char* fibreChannelHosts = "/sys/class/fc_host";

struct Interface {
    std::string mac;
    utility::PortAddressArray addresses{0};
};

void addAddress(Interface& interface, const sockaddr* address) {
    if (address->sa_family == AF_INET) {
        sockaddr_in in = {};
        std::memcpy(&in, address, sizeof in);
        utility::IPV4Address ip(static_cast<unsigned int>(in.sin_addr.s_addr));
        interface.addresses.Append(new utility::ISCSIPortAddress(ip, iscsiPort, nullptr));
    } else if (address->sa_family == AF_INET6) {
        sockaddr_in6 in = {};
        std::memcpy(&in, address, sizeof in);
        utility::IPV6Address ip(in.sin6_addr.s6_addr);
        interface.addresses.Append(new utility::ISCSIPortAddress(ip, iscsiPort, nullptr));
    } else if (address->sa_family == AF_PACKET) {
        sockaddr_ll link = {};
        char text[18];
        std::memcpy(&link, address, sizeof link);
        interface.mac =
            utility::Misc::toMacAddress(utility::Misc::uint64FromMACAddress(link.sll_addr), text, sizeof text);
    }
}

// Returns the addresses of an interface, each with the port of iSCSI.
Value portalsOf(const Interface& interface) {
    std::vector<std::string> portals;
    for (unsigned int i = 0; i < interface.addresses.length(); ++i) {
        char text[80];
        portals.emplace_back(interface.addresses[i]->toBuffer(text, sizeof text));
    }
    return portals.empty() ? Value(portals).shownAs("") : Value(portals);
}

bool showPorts(Invocation& call) {
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0)
        return call.fail("network interfaces: %s", std::strerror(errno));
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> owner(list, freeifaddrs);
    std::map<std::string, Interface> interfaces;
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        Interface& interface = interfaces[entry->ifa_name];
        if (entry->ifa_addr != nullptr)
            addAddress(interface, entry->ifa_addr);
    }
    call.answer().table("ports", {left("name", 12), left("address", 17), left("portals")});
    for (const auto& [name, interface] : interfaces)
        call.answer().row({name, interface.mac.empty() ? Value() : Value(interface.mac), portalsOf(interface)});
    std::string failure;
    const std::string hosts = call.systemPath(fibreChannelHosts);
    for (const std::string& host : namesIn(hosts, &failure)) {
        const std::string name =
            firstLineOf(std::string(hosts).append("/").append(host).append("/port_name"), &failure);
        const utility::WWN wwn(name.compare(0, 2, "0x") == 0 ? name.c_str() + 2 : name.c_str());
        char text[40];
        call.answer().row({host, wwn.toBuffer(text, sizeof text), std::vector<std::string>()});
    }
    return failure.empty() || call.fail("%s", failure.c_str());
}

// Returns a size with three and with four significant digits, at the right edges of two columns.
std::string sizeText(long long size) {
    char three[40];
    char four[40];
    char both[82];
    utility::Misc::toDSdecimal(size, 3, three, sizeof three);
    utility::Misc::toDSdecimal(size, 4, four, sizeof four);
    std::snprintf(both, sizeof both, "%10s %11s", three, four);
    return both;
}

Value kindOf(const std::string& rotational) {
    if (rotational == "1")
        return "rotational";
    return rotational == "0" ? Value("solid") : Value();
}

bool showDisks(Invocation& call) {
    call.answer().table("disks", {left("name", 12), left("size", 22, "  "), left("kind", 10), left("model")},
                        Answer::WITH_TITLES);
    std::string failure;
    const std::string devices = call.systemPath(blockDevices);
    for (const std::string& name : namesIn(devices, &failure)) {
        const std::string folder = std::string(devices).append("/").append(name);
        const std::string sectors = firstLineOf(folder + "/size", &failure);
        const long long size = std::strtoll(sectors.c_str(), nullptr, 10) * bytesPerSector;
        const std::string model = firstLineOf(folder + "/device/model", &failure);
        const std::string rotational = firstLineOf(folder + "/queue/rotational", &failure);
        call.answer().row(
            {name, Value(size).shownAs(sizeText(size)), kindOf(rotational), model.empty() ? Value() : Value(model)});
    }
    return failure.empty() || call.fail("%s", failure.c_str());
}

std::string contentsOf(const std::string& path) {
    utility::GetStream file(path.c_str());
    return std::string(file.pTail() != nullptr ? file.pTail() : "", static_cast<std::size_t>(file.ReadAvailable()));
}

// The row that shows the report adds a newline.
std::string withoutLastNewline(const std::string& text) {
    return !text.empty() && text.back() == '\n' ? text.substr(0, text.size() - 1) : text;
}

bool isWhole(const std::string& report) {
    return report.find("<<<Backtrace End") != std::string::npos;
}

bool context(Invocation& call) {
    const unsigned int threadCount = 2;
    const int longestWait = 2000;
    ContextFolder folder;
    if (!folder.isMade())
        return call.fail("%s: %s", folder.root().c_str(), std::strerror(errno));
    utility::Debug::SignalThreads(SIGUSR2);
    std::map<std::string, std::string> reports;
    std::string failure;
    unsigned int whole = 0;
    for (int i = 0; i < longestWait && whole < threadCount && failure.empty() && !Interruption::isRequested(); ++i) {
        utility::Misc::sleepMicroseconds(10000);
        for (const std::string& name : folder.names(&failure))
            reports[name] = contentsOf(folder.path() + '/' + name);
        whole = static_cast<unsigned int>(
            std::count_if(reports.begin(), reports.end(), [](const auto& report) { return isWhole(report.second); }));
    }
    call.answer().table("threads", {left("name", 0, "\n"), left("context")});
    for (const auto& report : reports)
        call.answer().row({report.first, withoutLastNewline(report.second)});
    const int removeError = folder.remove() ? 0 : errno;
    if (!failure.empty())
        return call.fail("%s", failure.c_str());
    if (Interruption::isRequested())
        return call.fail("interrupted");
    if (whole < threadCount)
        return call.fail("%s: %u of %u threads left their context", folder.path().c_str(), whole, threadCount);
    return removeError == 0 ||
           call.fail("%s: cannot be removed: %s", folder.root().c_str(), std::strerror(removeError));
}

constexpr Command commands[] = {{"show ports", "", "show network interfaces and Fibre Channel hosts", 0, 0, showPorts},
                                {"show disks", "", "show the block devices", 0, 0, showDisks},
                                {"date", "", "show the date and time", 0, 0, date},
                                {"uptime", "", "show how long the system has been running", 0, 0, uptime},
                                {"context", "", "show the back trace of every thread", 0, 0, context}};

} // namespace

constexpr CommandGroup systemCommands("This machine", commands);

} // namespace console
