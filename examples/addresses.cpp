// Parses addresses, names and URLs, and rejects texts that are not exactly one.

#include <cstdio>
#include <set>

#include "ut_ISCSIPortAddress.h"
#include "ut_Text.h"
#include "ut_URL.h"

namespace {

template<typename Address>
void show(const char* kind, const char* text) {
    if (const auto address = utility::fromText<Address>(text))
        std::printf("%-4s  %s\n", kind, utility::toText(*address).c_str());
    else
        std::printf("%-4s  not an address: '%s'\n", kind, text);
}

} // namespace

int main() {
    show<utility::IPV4Address>("IPv4", "10.1.2.3");
    show<utility::IPV4Address>("IPv4", "10.1.2.300");
    show<utility::IPV6Address>("IPv6", "FE80:0:0:0:0:0:0:1");
    show<utility::WWN>("WWN", "500A09818D5F1234");
    show<utility::WWN>("WWN", "500A09818D5F1234 ");

    // Addresses are ordered as numbers: they are keys of a set or a map.
    std::set<utility::IPV4Address> hosts;
    for (const char* text : {"10.0.0.10", "10.0.0.9", "9.255.0.1", "10.0.0.9"})
        hosts.insert(*utility::fromText<utility::IPV4Address>(text));
    for (const utility::IPV4Address& host : hosts)
        std::printf("host  %s\n", utility::toText(host).c_str());

    utility::IPV4Address portal("10.1.2.3");
    const utility::ISCSIPortAddress port(portal, 3260, "tgt1");
    std::printf("port  %s\n", utility::toText(port).c_str());

    const utility::URL url("abc://node:8080/a%20b?x=1");
    std::printf("URL   %s | %s | %s | %s\n", url.GetScheme(), url.GetAuthority(), url.GetPath(), url.GetQuery());
    return 0;
}
