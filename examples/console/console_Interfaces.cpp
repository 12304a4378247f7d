#include "console_Interfaces.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <set>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <netinet/in.h>

#include "console_Files.h"
#include "console_SmallFile.h"
#include "ut_IPV4Address.h"
#include "ut_IPV6Address.h"
#include "ut_Misc.h"

namespace console {

namespace {

constexpr std::size_t macLength = 17;
constexpr int macSize = 6;
constexpr unsigned int loopbackNet = 127;
// More than any line has.
constexpr int wordCapacity = 32;

using Interfaces = std::map<std::string, Interface>;

std::vector<Interface> listOf(Interfaces& interfaces) {
    std::vector<Interface> list;
    for (auto& [name, interface] : interfaces) {
        interface.name = name;
        list.push_back(interface);
    }
    return list;
}

std::string textOf(const utility::IPV4Address& address) {
    char text[16];
    return address.toBuffer(text, sizeof text);
}

std::string textOf(const utility::IPV6Address& address) {
    char text[46];
    return address.toBuffer(text, sizeof text);
}

void addAddress(Interface& interface, const sockaddr* address) {
    if (address->sa_family == AF_INET) {
        sockaddr_in in = {};
        std::memcpy(&in, address, sizeof in);
        interface.ipv4.push_back(textOf(utility::IPV4Address(static_cast<unsigned int>(in.sin_addr.s_addr))));
    } else if (address->sa_family == AF_INET6) {
        sockaddr_in6 in = {};
        std::memcpy(&in, address, sizeof in);
        interface.ipv6.push_back(textOf(utility::IPV6Address(in.sin6_addr.s6_addr)));
    } else if (address->sa_family == AF_PACKET) {
        sockaddr_ll link = {};
        char text[macLength + 1];
        std::memcpy(&link, address, sizeof link);
        if (link.sll_halen == macSize)
            interface.mac =
                utility::Misc::toMacAddress(utility::Misc::uint64FromMACAddress(link.sll_addr), text, sizeof text);
    }
}

// A file that does not exist has no lines; a kernel without IPv6 does not have the file of its addresses.
template<typename Take>
void forEachLine(const std::string& path, std::string* failure, Take take) {
    SmallFile file(path);
    if (!file.isRead() && file.error() != ENOENT && failure->empty())
        *failure = file.failure();
    while (char* line = file.readLine())
        take(line);
}

// Adds the addresses of lines such as "fe800000000000005054 ... 02 40 20 80 eth0", where the first of six words has 32
// digits.
void addIPV6(Interfaces& interfaces, const std::string& path, std::string* failure) {
    constexpr std::size_t digitCount = 32;
    constexpr std::size_t groupSize = 4;
    forEachLine(path, failure, [&](char* line) {
        char* words[wordCapacity];
        if (utility::Misc::parseTokens(words, wordCapacity, line, " ") < 6 || std::strlen(words[0]) != digitCount)
            return;
        std::string text;
        for (std::size_t at = 0; at < digitCount; at += groupSize)
            text += (at > 0 ? ":" : "") + std::string(words[0] + at, groupSize);
        utility::IPV6Address address;
        if (address.fromString(text.c_str()))
            interfaces[words[5]].ipv6.push_back(textOf(address));
    });
}

// A route to a network without a gateway. The numbers are in host order.
struct Route {
    std::string interface;
    unsigned int network;
    unsigned int mask;
};

// The file writes addresses as hexadecimal numbers of their words in network order.
std::vector<Route> directRoutes(const std::string& path, std::string* failure) {
    std::vector<Route> routes;
    forEachLine(path, failure, [&](char* line) {
        char* words[wordCapacity];
        if (utility::Misc::parseTokens(words, wordCapacity, line, " \t") < 8 || std::strcmp(words[2], "00000000") != 0)
            return;
        const auto number = [](const char* digits) {
            return ntohl(static_cast<uint32_t>(std::strtoul(digits, nullptr, 16)));
        };
        routes.push_back({words[0], number(words[1]), number(words[7])});
    });
    return routes;
}

std::string interfaceOf(unsigned int address, const std::vector<Route>& routes) {
    const Route* narrowest = nullptr;
    for (const Route& route : routes) {
        if ((address & route.mask) == route.network && (narrowest == nullptr || route.mask > narrowest->mask))
            narrowest = &route;
    }
    if (narrowest != nullptr)
        return narrowest->interface;
    return address >> 24U == loopbackNet ? "lo" : "";
}

// Returns the machine's own addresses: in the table of routes, a line such as "|-- 192.0.2.1" is followed by the line
// "/32 host LOCAL". The same address may be in several tables.
std::set<unsigned int> ownIPV4(const std::string& path, std::string* failure) {
    std::set<unsigned int> own;
    utility::IPV4Address last;
    forEachLine(path, failure, [&](const char* line) {
        const char* leaf = std::strstr(line, "|-- ");
        if (leaf != nullptr && !last.fromString(leaf + 4))
            last.set(0);
        if (std::strstr(line, "/32 host LOCAL") != nullptr && !last.isZero())
            own.insert(ntohl(last.getValue()));
    });
    return own;
}

} // namespace

std::vector<Interface> interfacesOfThisMachine(std::string* failure) {
    ifaddrs* list = nullptr;
    if (getifaddrs(&list) != 0) {
        *failure = std::string("network interfaces: ") + std::strerror(errno);
        return {};
    }
    const std::unique_ptr<ifaddrs, void (*)(ifaddrs*)> owner(list, freeifaddrs);
    Interfaces interfaces;
    for (const ifaddrs* entry = list; entry != nullptr; entry = entry->ifa_next) {
        Interface& interface = interfaces[entry->ifa_name];
        if (entry->ifa_addr != nullptr)
            addAddress(interface, entry->ifa_addr);
    }
    return listOf(interfaces);
}

std::vector<Interface> interfacesUnder(const std::string& root, std::string* failure) {
    const std::string folder = root + "/sys/class/net";
    Interfaces interfaces;
    for (const std::string& name : namesIn(folder, failure)) {
        const std::string mac = firstLineOf(std::string(folder).append("/").append(name).append("/address"), failure);
        interfaces[name].mac = mac.size() == macLength ? mac : "";
    }
    const std::vector<Route> routes = directRoutes(root + "/proc/net/route", failure);
    for (const unsigned int address : ownIPV4(root + "/proc/net/fib_trie", failure))
        interfaces[interfaceOf(address, routes)].ipv4.push_back(
            textOf(utility::IPV4Address(static_cast<unsigned int>(htonl(address)))));
    addIPV6(interfaces, root + "/proc/net/if_inet6", failure);
    return listOf(interfaces);
}

} // namespace console
