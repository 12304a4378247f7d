// Reads and writes a WWN and an IPv6 address.
#include <cstdio>

#include <VXut/ut_IPV6Address.h>
#include <VXut/ut_WWN.h>

int main() {
    char name[17];
    char address[46];
    utility::WWN("500A09818D5F1234").toBuffer(name, sizeof name);
    utility::IPV6Address("FE80::1").toBuffer(address, sizeof address);
    return std::printf("%s %s\n", name, address) < 0 ? 1 : 0;
}
