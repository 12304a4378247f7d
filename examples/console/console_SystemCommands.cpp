#include <algorithm>
#include <cerrno>
#include <csignal>
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

#include "console_CommandGroups.h"
#include "console_Files.h"
#include "ut_DateTime.h"
#include "ut_Debug.h"
#include "ut_DirIterator.h"
#include "ut_Environment.h"
#include "ut_GetStream.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_Misc.h"
#include "ut_PortAddressArray.h"
#include "ut_TimeMeasure.h"
#include "ut_WWN.h"

namespace console {

namespace {

constexpr unsigned int iscsiPort = 3260;
constexpr long long bytesPerSector = 512;
constexpr const char* blockDevices = "/sys/block";
constexpr const char* fibreChannelHosts = "/sys/class/fc_host";

// Returns the names in a directory in alphabetical order, without those that begin with a dot; none if there is no
// such directory.
// - `failure`: set to the path and the reason if the directory exists but cannot be read to its end, unless it is set
//   already
std::vector<std::string> namesIn(const char* directory, std::string* failure) {
    std::vector<std::string> names;
    utility::DirIterator entries(directory, "[!.]*");
    if (!entries.open()) {
        if (errno != ENOENT && failure->empty())
            *failure = std::string(directory) + ": " + std::strerror(errno);
        return names;
    }
    for (const char* name = entries.getFirst(nullptr); name != nullptr; name = entries.getNext())
        names.emplace_back(name);
    if (entries.inError() && failure->empty())
        *failure = std::string(directory) + ": cannot be read to its end";
    std::sort(names.begin(), names.end());
    return names;
}

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
    for (const auto& entry : interfaces) {
        const Interface& interface = entry.second;
        call.out().PutF("%-12s %-*s", entry.first.c_str(), interface.addresses.length() > 0 ? 18 : 0,
                        interface.mac.empty() ? "-" : interface.mac.c_str());
        interface.addresses.toPutStream(call.out());
        call.out().PutC('\n');
    }
    std::string failure;
    for (const std::string& host : namesIn(fibreChannelHosts, &failure)) {
        const std::string name = firstLineOf(std::string(fibreChannelHosts) + '/' + host + "/port_name", &failure);
        const utility::WWN wwn(name.compare(0, 2, "0x") == 0 ? name.c_str() + 2 : name.c_str());
        call.out().PutF("%-12s ", host.c_str());
        wwn.toPutStream(call.out());
        call.out().PutC('\n');
    }
    return failure.empty() || call.fail("%s", failure.c_str());
}

bool showDisks(Invocation& call) {
    call.out().PutF("%-12s %10s %11s  %-10s %s\n", "NAME", "SIZE", "", "KIND", "MODEL");
    std::string failure;
    for (const std::string& name : namesIn(blockDevices, &failure)) {
        const std::string folder = std::string(blockDevices) + '/' + name;
        const std::string sectors = firstLineOf(folder + "/size", &failure);
        const long long size = std::strtoll(sectors.c_str(), nullptr, 10) * bytesPerSector;
        const std::string model = firstLineOf(folder + "/device/model", &failure);
        char three[40];
        char four[40];
        utility::Misc::toDSdecimal(size, 3, three, sizeof three);
        utility::Misc::toDSdecimal(size, 4, four, sizeof four);
        const std::string rotational = firstLineOf(folder + "/queue/rotational", &failure);
        call.out().PutF("%-12s %10s %11s  %-10s %s\n", name.c_str(), three, four,
                        rotational == "1"   ? "rotational"
                        : rotational == "0" ? "solid"
                                            : "-",
                        model.empty() ? "-" : model.c_str());
    }
    return failure.empty() || call.fail("%s", failure.c_str());
}

bool date(Invocation& call) {
    const utility::DateTime now = utility::DateTime::Now();
    if (!now.getEpochValid())
        return call.fail("the clock cannot be read");
    now.ToBuffer(call.out());
    call.out().PutC('\n');
    return true;
}

bool uptime(Invocation& call) {
    std::string failure;
    const std::string text = firstLineOf("/proc/uptime", &failure);
    if (text.empty())
        return call.fail("%s", failure.empty() ? "/proc/uptime cannot be read" : failure.c_str());
    const double seconds = std::strtod(text.c_str(), nullptr);
    char duration[20];
    utility::TimeMeasure::printDurationMillisec(static_cast<int64_t>(seconds * 1e6), duration, sizeof duration);
    call.out().PutF("%s\n", duration);
    return true;
}

// A temporary folder for context files. The destructor removes it and the files, unless `remove` did.
class ContextFolder {
public:
    ContextFolder() : m_made(false) {
        const char* folder = utility::Environment::GetEnv("TMPDIR");
        const char* former = utility::Environment::GetEnv("VX_MEM");
        m_hadRoot = former != nullptr;
        m_formerRoot = m_hadRoot ? former : "";
        m_root = std::string(folder != nullptr && *folder != 0 ? folder : "/tmp") + "/vxconsoleXXXXXX";
        m_made = mkdtemp(&m_root[0]) != nullptr;
        if (m_made)
            utility::Environment::SetEnv("VX_MEM", m_root.c_str());
    }
    ContextFolder(const ContextFolder&) = delete;
    ContextFolder& operator=(const ContextFolder&) = delete;
    ~ContextFolder() {
        remove();
    }

    // Removes the folder. Returns false and sets `errno` if that fails.
    bool remove() {
        if (!m_made)
            return true;
        m_made = false;
        if (m_hadRoot) {
            utility::Environment::SetEnv("VX_MEM", m_formerRoot.c_str());
        } else {
            utility::Environment::UnsetEnv("VX_MEM");
        }
        std::string failure;
        for (const std::string& name : names(&failure))
            unlink((path() + '/' + name).c_str());
        rmdir(path().c_str());
        return rmdir(m_root.c_str()) == 0;
    }

    bool isMade() const {
        return m_made;
    }
    const std::string& root() const {
        return m_root;
    }
    std::string path() const {
        return m_root + "/vxconsoleContext";
    }
    std::vector<std::string> names(std::string* failure) const {
        return namesIn(path().c_str(), failure);
    }

private:
    bool m_made;
    bool m_hadRoot;
    std::string m_formerRoot;
    std::string m_root;
};

std::string contentsOf(const std::string& path) {
    utility::GetStream file(path.c_str());
    return std::string(file.pTail() != nullptr ? file.pTail() : "", static_cast<std::size_t>(file.ReadAvailable()));
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
    for (int i = 0; i < longestWait && whole < threadCount && failure.empty(); ++i) {
        utility::Misc::sleepMicroseconds(10000);
        for (const std::string& name : folder.names(&failure))
            reports[name] = contentsOf(folder.path() + '/' + name);
        whole = static_cast<unsigned int>(
            std::count_if(reports.begin(), reports.end(), [](const auto& report) { return isWhole(report.second); }));
    }
    for (const auto& report : reports)
        call.out().PutF("%s\n%s", report.first.c_str(), report.second.c_str());
    const int removeError = folder.remove() ? 0 : errno;
    if (!failure.empty())
        return call.fail("%s", failure.c_str());
    if (whole < threadCount)
        return call.fail("%s: %u of %u threads left their context", folder.path().c_str(), whole, threadCount);
    return removeError == 0 ||
           call.fail("%s: cannot be removed: %s", folder.root().c_str(), std::strerror(removeError));
}

} // namespace

constexpr Command systemCommands[] = {
    {"show ports", "", "show network interfaces and Fibre Channel hosts", 0, 0, showPorts},
    {"show disks", "", "show the block devices", 0, 0, showDisks},
    {"date", "", "show the date and time", 0, 0, date},
    {"uptime", "", "show how long the system has been running", 0, 0, uptime},
    {"context", "", "show the back trace of every thread", 0, 0, context},
    {nullptr, nullptr, nullptr, 0, 0, nullptr}};

} // namespace console
