#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include <arpa/inet.h>

#include "Bytes.h"
#include "ut_IPV4Address.h"
#include "ut_IPV6Address.h"

namespace {

using fuzz::require;

// A rejected text leaves the value unchanged. An accepted one gives the platform's value and its text.
void checkIPV4(const char* text) {
    in_addr expected = {0x04030201};
    const bool accepted = inet_pton(AF_INET, text, &expected) == 1;
    utility::IPV4Address address(0x04030201u);
    require(address.fromString(text) == accepted);
    require(address.getValue() == expected.s_addr);

    char printed[INET_ADDRSTRLEN];
    char platform[INET_ADDRSTRLEN];
    address.toBuffer(printed, sizeof printed);
    require(std::strcmp(printed, inet_ntop(AF_INET, &expected, platform, sizeof platform)) == 0);
}

void checkIPV6(const char* text) {
    in6_addr expected = {};
    const bool accepted = std::strlen(text) <= 65534 && inet_pton(AF_INET6, text, &expected) == 1;
    utility::IPV6Address address("fe80::1");
    require(address.fromString(text) == accepted);
    require(std::memcmp(&address, &expected, sizeof expected) == 0);
    require(address.isValid() != address.isZero());

    char printed[64];
    char platform[INET6_ADDRSTRLEN];
    address.toBuffer(printed, sizeof printed);
    require(std::strcmp(printed, inet_ntop(AF_INET6, &expected, platform, sizeof platform)) == 0);
}

} // namespace

// Compares the conversions of IPv4 and IPv6 addresses with the platform's.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    checkIPV4(text.c_str());
    checkIPV6(text.c_str());
    return 0;
}
