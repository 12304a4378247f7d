#include "ut_IPV6Address.h"

#include <climits>
#include <cstdio>
#include <cstring>
#include <string>

#include <arpa/inet.h>
#include <dlfcn.h>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "GuardedText.h"
#include "IPAddressSuite.h"
#include "TextOf.h"
#include "fw_Memory.h"
#include "ut_BufferStream.h"
#include "ut_VirtualPutStream.h"

namespace {

// An array, because tests count allocations.
char lastParsedText[64];

} // namespace

// The library's calls arrive here.
extern "C" int inet_pton(int family, const char* text, void* bytes) noexcept {
    static const auto platform = reinterpret_cast<decltype(&inet_pton)>(dlsym(RTLD_NEXT, "inet_pton"));
    std::snprintf(lastParsedText, sizeof lastParsedText, "%s", text);
    return platform(family, text, bytes);
}

namespace {

using test::textOf;
using utility::IPV6Address;

constexpr const char* writeAdvanceName = "virtual void utility::Buffer::WriteAdvance(int)";
constexpr const char* longest = "1111:2222:3333:4444:5555:6666:7777:8888";

struct IPV6Traits {
    typedef IPV6Address Address;
    static constexpr int family = AF_INET6;
    static constexpr unsigned int size = 16;
    static constexpr bool failureClears = true;
    static constexpr const char* example = "fe80::1";
    static constexpr const char* other = "2001:db8:3:4:5:6:7:fffe";
    static constexpr const char* zero = "::";
    static constexpr const char* characters = "0123456789abcdefABCDEF::::.g \xFF";
    static constexpr const char* invalid[] = {"",
                                              ":",
                                              ":::",
                                              "1",
                                              "1.2.3.4",
                                              "fe80:",
                                              "fe80::1::2",
                                              "1:2:3:4:5:6:7",
                                              "1:2:3:4:5:6:7:8:9",
                                              "12345::",
                                              "fe80::g",
                                              "::1.2.3",
                                              "::1.2.3.256",
                                              " fe80::1",
                                              "fe80::1 ",
                                              "fe80::1%eth0",
                                              "[fe80::1]",
                                              "fe80::1/64",
                                              "fe80-1",
                                              "fe80::\x01",
                                              "\xFF\xFE",
                                              "fe80::1\n",
                                              "\x7F::1"};
};

TEST(IPV6Address, UsageExample) {
    utility::IPV6Address address("FE80::1");
    char text[46];
    address.toBuffer(text, sizeof text);
    EXPECT_STREQ(text, "fe80::1");
}

TEST(IPV6Address, EightGroupsAreInHostOrder) {
    const IPV6Address address(0x2001, 0x0db8, 3, 4, 5, 6, 7, 0xFFFF);
    EXPECT_EQ(textOf(address), "2001:db8:3:4:5:6:7:ffff");
}

TEST(IPV6Address, SixteenBytesAreInWrittenOrder) {
    const IPV6Address address(0x20, 0x01, 0x0d, 0xb8, 0, 3, 0, 4, 0, 5, 0, 6, 0, 7, 0xFF, 0xFE);
    EXPECT_EQ(textOf(address), "2001:db8:3:4:5:6:7:fffe");
}

TEST(IPV6Address, ArraysOfGroupsAndBytesAreNotConverted) {
    in6_addr socketAddress;
    ASSERT_EQ(inet_pton(AF_INET6, "2001:db8::5", &socketAddress), 1);
    unsigned short groups[8];
    std::memcpy(groups, &socketAddress, sizeof groups);
    EXPECT_EQ(textOf(IPV6Address(groups)), "2001:db8::5");
    EXPECT_EQ(textOf(IPV6Address(socketAddress.s6_addr)), "2001:db8::5");
}

TEST(IPV6Address, GetHexChunkReturnsGroupsInNetworkOrder) {
    IPV6Address address(0x2001, 0x0db8, 0, 0, 0, 0, 0, 1);
    EXPECT_EQ(address.getHexChunk(0), htons(0x2001));
    EXPECT_EQ(address.getHexChunk(1), htons(0x0db8));
    EXPECT_EQ(address.getHexChunk(6), 0);
    EXPECT_EQ(address.getHexChunk(7), htons(1));
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    EXPECT_EQ(address.getHexChunk(0), 0x0120);
#endif
}

TEST(IPV6Address, GetHexChunkIsZeroOutOfRange) {
    IPV6Address addresses[] = {IPV6Address(longest), IPV6Address(longest)};
    EXPECT_EQ(addresses[0].getHexChunk(8), 0);
    EXPECT_EQ(addresses[0].getHexChunk(15), 0);
    EXPECT_EQ(addresses[0].getHexChunk(255), 0);
}

TEST(IPV6Address, SetCopiesAndIgnoresNull) {
    IPV6Address source("2001:db8::1");
    IPV6Address address("::5");
    address.set(static_cast<IPV6Address*>(nullptr));
    EXPECT_EQ(textOf(address), "::5");
    address.set(&source);
    EXPECT_EQ(textOf(address), "2001:db8::1");
    address.set(&address);
    EXPECT_EQ(textOf(address), "2001:db8::1");
    unsigned char bytes[16] = {0xFE, 0x80, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 9};
    address.set(bytes);
    EXPECT_EQ(textOf(address), "fe80::9");
    const IPV6Address copy(address);
    address = source;
    EXPECT_EQ(textOf(copy), "fe80::9");
    EXPECT_EQ(textOf(address), "2001:db8::1");
}

TEST(IPV6Address, NullTextIsTheUnspecifiedAddress) {
    IPV6Address address("fe80::1");
    EXPECT_TRUE(address.fromString(nullptr));
    EXPECT_TRUE(address.isZero());
    EXPECT_TRUE(IPV6Address(static_cast<const char*>(nullptr)).isZero());
}

TEST(IPV6Address, ParsesUpperAndLowerCase) {
    for (const char* spelling : {"FE80::1", "fe80::1", "Fe80::1", "fE80:0:0:0:0:0:0:0001"}) {
        IPV6Address address;
        EXPECT_TRUE(address.fromString(spelling)) << spelling;
        EXPECT_EQ(textOf(address), "fe80::1") << spelling;
    }
}

TEST(IPV6Address, PassesUpperCaseToThePlatform) {
    IPV6Address address;
    EXPECT_TRUE(address.fromString("abcd:ef09::1.2.3.4"));
    EXPECT_STREQ(lastParsedText, "ABCD:EF09::1.2.3.4");
    EXPECT_FALSE(address.fromString("`az{\xE4"));
    EXPECT_STREQ(lastParsedText, "`AZ{\xE4");
}

TEST(IPV6Address, AnInvalidTextConstructsTheUnspecifiedAddress) {
    for (const char* invalid : IPV6Traits::invalid)
        EXPECT_TRUE(IPV6Address(invalid).isZero()) << invalid;
}

TEST(IPV6Address, TextsLongerThan65534CharactersAreNotCopied) {
    IPV6Address address;
    for (const std::size_t length : {65534u, 65535u}) {
        const std::string text(length, '0');
        const unsigned long before = test::allocationCount();
        EXPECT_FALSE(address.fromString(text.c_str()));
        EXPECT_EQ(test::allocationCount() - before, length == 65534 ? 1u : 0u);
    }
}

TEST(IPV6Address, FromStringLeaksNoMemory) {
    const long before = framework::Memory::staticOutstanding();
    IPV6Address address;
    address.fromString("fe80::1");
    address.fromString("no address");
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(IPV6Address, ExhaustedMemoryReturnsFalseAndClearsTheValue) {
    IPV6Address address("fe80::9");
    bool parsed = true;
    int refused = 0;
    test::failEachAllocationOnce([&] { parsed = address.fromString("fe80::1"); },
                                 [&] {
                                     ++refused;
                                     EXPECT_FALSE(parsed);
                                     EXPECT_TRUE(address.isZero());
                                 });
    EXPECT_EQ(refused, 1);
    EXPECT_TRUE(parsed);
    EXPECT_EQ(textOf(address), "fe80::1");
}

TEST(IPV6Address, FormatsTheShortFormOfThePlatform) {
    EXPECT_EQ(textOf(IPV6Address("0001:0000:0000:0002:0000:0000:0000:0003")), "1:0:0:2::3");
    EXPECT_EQ(textOf(IPV6Address("::FFFF:1.2.3.4")), "::ffff:1.2.3.4");
    EXPECT_EQ(textOf(IPV6Address("::1.2.3.4")), "::1.2.3.4");
    EXPECT_EQ(textOf(IPV6Address(longest)), longest);
}

TEST(IPV6Address, IsV4OnlyInTheCompatibleForm) {
    EXPECT_TRUE(IPV6Address("::1.2.3.4").isV4());
    EXPECT_FALSE(IPV6Address("::ffff:1.2.3.4").isV4());
    EXPECT_FALSE(IPV6Address("::").isV4());
    EXPECT_TRUE(IPV6Address("::1").isV4());
    EXPECT_TRUE(IPV6Address("::1:0").isV4());
    EXPECT_FALSE(IPV6Address("::1:0:0").isV4());
    EXPECT_FALSE(IPV6Address("8000::1").isV4());
}

TEST(IPV6Address, IsValidIfAnyGroupIsNotZero) {
    for (unsigned int i = 0; i < 16; ++i) {
        unsigned char bytes[16] = {};
        bytes[i] = 1;
        EXPECT_TRUE(IPV6Address(bytes).isValid()) << i;
        EXPECT_FALSE(IPV6Address(bytes).isZero()) << i;
    }
    EXPECT_FALSE(IPV6Address("::").isValid());
    EXPECT_TRUE(IPV6Address("::").isZero());
}

TEST(IPV6Address, ComparesAsANumberOf128Bits) {
    const char* const ascending[] = {
        "::", "::1", "::ff", "::100", "::1:0", "1::", "1::2", "80::", "ff::", "8000::", "ffff::"};
    const int count = sizeof ascending / sizeof *ascending;
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < count; ++j) {
            const IPV6Address a(ascending[i]);
            const IPV6Address b(ascending[j]);
            EXPECT_EQ(a == b, i == j);
            EXPECT_EQ(a != b, i != j);
            EXPECT_EQ(a < b, i < j);
            EXPECT_EQ(a > b, i > j);
            EXPECT_EQ(a.compare(b) < 0, i < j);
            EXPECT_EQ(a.compare(b) > 0, i > j);
        }
    }
}

TEST(IPV6Address, OrderComparesEveryByte) {
    const IPV6Address address(longest);
    for (unsigned int i = 0; i < 16; ++i) {
        unsigned char bytes[16];
        std::memcpy(bytes, &address, sizeof bytes);
        ++bytes[i];
        EXPECT_TRUE(IPV6Address(bytes) > address) << i;
        EXPECT_TRUE(address < IPV6Address(bytes)) << i;
    }
}

TEST(IPV6Address, HashIsTheMaskedSumOfSevenGroupsInNetworkOrder) {
    const IPV6Address address(1, 2, 3, 4, 5, 6, 7, 8);
    EXPECT_EQ(address.hash(0xFFFFFFFF), 28u * htons(1));
    EXPECT_EQ(address.hash(0x0F00), (28u * htons(1)) & 0x0F00);
    EXPECT_EQ(address.hash(0), 0u);
    const IPV6Address highest(0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF, 0xFFFF);
    EXPECT_EQ(highest.hash(0xFFFFFFFF), 7u * 0xFFFF);
}

TEST(IPV6Address, HashIgnoresTheLastGroup) {
    const IPV6Address a("2001:db8::1");
    const IPV6Address b("2001:db8::ffff");
    for (unsigned int bits = 0; bits <= 32; ++bits) {
        const unsigned int mask = bits < 32 ? (1u << bits) - 1 : 0xFFFFFFFF;
        EXPECT_EQ(a.hash(mask), b.hash(mask));
    }
    for (unsigned int group = 0; group < 7; ++group) {
        unsigned char bytes[16];
        std::memcpy(bytes, &a, sizeof bytes);
        bytes[2 * group + 1] ^= 0x40;
        EXPECT_NE(IPV6Address(bytes).hash(0xFFFFFFFF), a.hash(0xFFFFFFFF)) << group;
    }
}

TEST(IPV6Address, ToBufferNeedsOneByteAfterTheTerminator) {
    for (const unsigned int size : {9u, 10u, 41u, 1000u}) {
        test::GuardedText buf(size);
        EXPECT_EQ(IPV6Address("fe80::1").toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), "fe80::1");
        EXPECT_TRUE(buf.isTerminated());
        EXPECT_TRUE(buf.isGuardWhole());
    }
    test::GuardedText whole(41);
    IPV6Address(longest).toBuffer(whole.array(), whole.size());
    EXPECT_EQ(whole.text(), longest);
}

TEST(IPV6Address, ToBufferWritesTheEmptyTextIfTheTextDoesNotFit) {
    for (unsigned int size = 1; size < 9; ++size) {
        test::GuardedText buf(size);
        EXPECT_EQ(IPV6Address("fe80::1").toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), "");
        EXPECT_TRUE(buf.isTerminated());
        EXPECT_TRUE(buf.isGuardWhole());
    }
    test::GuardedText tight(40);
    IPV6Address(longest).toBuffer(tight.array(), tight.size());
    EXPECT_EQ(tight.text(), "");
}

TEST(IPV6Address, ToBufferIgnoresANullBuffer) {
    test::GuardedText none(0);
    EXPECT_EQ(IPV6Address("fe80::1").toBuffer(none.array(), 0), none.array());
    EXPECT_EQ(IPV6Address("fe80::1").toBuffer(none.array(), UINT_MAX), none.array());
    EXPECT_TRUE(none.isUntouched());
    EXPECT_EQ(IPV6Address("fe80::1").toBuffer(nullptr, 0), nullptr);
    EXPECT_EQ(IPV6Address("fe80::1").toBuffer(nullptr, 100), nullptr);
}

TEST(IPV6Address, ToPutStreamNeedsSpaceForTheTerminator) {
    utility::BufferStream exact(7);
    IPV6Address("fe80::1").toPutStream(exact);
    EXPECT_EQ(exact.WritePosition(), 0);
    utility::BufferStream spare(8);
    IPV6Address("fe80::1").toPutStream(spare);
    EXPECT_EQ(spare.WritePosition(), 7);
    EXPECT_STREQ(spare.pBuffer(), "fe80::1");
}

TEST(IPV6Address, ToPutStreamAdvancesPastTheExistingTextIfItsOwnDoesNotFit) {
    char array[12];
    utility::BufferStream stream(array, sizeof array, false);
    stream.PutS("ip=");
    std::strcpy(array + 3, "old");
    IPV6Address(longest).toPutStream(stream);
    EXPECT_EQ(stream.WritePosition(), 6);
    EXPECT_STREQ(array, "ip=old");
}

TEST(IPV6Address, ToPutStreamNeverAdvancesPastTheStorage) {
    char array[] = "0123456789";
    utility::PutStream stream(array, 6);
    std::memset(array, 'x', 10);
    IPV6Address(longest).toPutStream(stream);
    EXPECT_EQ(stream.WritePosition(), 5);
    EXPECT_STREQ(array, "xxxxxxxxxx");
}

TEST(IPV6Address, ToPutStreamOfAFullStreamWritesNothing) {
    char array[5];
    utility::BufferStream stream(array, sizeof array, false);
    stream.PutB("full", 4);
    IPV6Address("::").toPutStream(stream);
    EXPECT_EQ(stream.WritePosition(), 4);
    EXPECT_EQ(std::memcmp(array, "full", 4), 0);
}

TEST(IPV6Address, ToPutStreamWithoutStorageWritesNothing) {
    utility::PutStream stream;
    IPV6Address("::").toPutStream(stream);
    EXPECT_EQ(stream.WritePosition(), 0);
}

TEST(IPV6Address, ToPutStreamIgnoresSpaceReportedPastTheStorage) {
    class Boaster : public utility::PutStream {
    public:
        Boaster(char* storage, int size, int remaining) : PutStream(storage, size), m_remaining(remaining) {}
        int WriteRemaining() const override {
            return m_remaining;
        }

    private:
        int m_remaining;
    };
    for (const int remaining : {INT_MIN, -1, 0, 100, INT_MAX}) {
        test::GuardedText buf(8);
        Boaster stream(buf.array(), 8, remaining);
        IPV6Address(longest).toPutStream(stream);
        // The stream reserves the last byte of the array for its own terminator.
        IPV6Address("fe80::1").toPutStream(stream);
        EXPECT_EQ(stream.WritePosition(), 0) << remaining;
        EXPECT_EQ(buf.text(), "") << remaining;
        EXPECT_TRUE(buf.isGuardWhole()) << remaining;
    }
}

TEST(IPV6Address, ToPutStreamPastTheEndOfAStreamFailsAsTheStreamDoes) {
    test::GuardedText buf(8);
    utility::BufferStream stream(buf.array(), 8, false);
    CATCH_FAILURE(stream.WriteAdvance(20));
    EXPECT_FAILURE(IPV6Address("::").toPutStream(stream), 1239, "ut_Buffer", writeAdvanceName, "");
    EXPECT_EQ(stream.WritePosition(), 20);
    CATCH_FAILURE(stream.WriteAdvance(-40));
    EXPECT_EQ(stream.WritePosition(), -20);
    IPV6Address("::").toPutStream(stream);
    EXPECT_EQ(stream.WritePosition(), -20);
    EXPECT_EQ(buf.text(), "");
    EXPECT_TRUE(buf.isGuardWhole());
}

TEST(IPV6Address, ToPutStreamFlushesAStreamWithATargetFirst) {
    utility::BufferStream target(200);
    utility::VirtualPutStream stream(target, 20, 10);
    ASSERT_TRUE(stream.StartOutputStream());
    stream.PutS("0123456789abcd");
    IPV6Address("fe80::1:2").toPutStream(stream);
    EXPECT_STREQ(target.pBuffer(), "0123456789abcd");
    EXPECT_EQ(stream.WritePosition(), 9);
    stream.FlushOutputStream();
    EXPECT_STREQ(target.pBuffer(), "0123456789abcdfe80::1:2");
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(IPV6Address, IPAddressTest, IPV6Traits);
} // namespace test
