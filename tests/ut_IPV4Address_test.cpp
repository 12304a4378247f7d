#include "ut_IPV4Address.h"

#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

#include <arpa/inet.h>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "GuardedText.h"
#include "IPAddressSuite.h"
#include "TextOf.h"

namespace {

using test::textOf;
using utility::IPV4Address;

constexpr const char* putFName = "void utility::PutStream::PutF(const char*, ...)";

template<typename T, typename = void>
struct IsOrdered : std::false_type {};
template<typename T>
struct IsOrdered<T, std::void_t<decltype(std::declval<T>() < std::declval<T>())>> : std::true_type {};
static_assert(!IsOrdered<IPV4Address>::value, "the bytes of a word in network order are no order of addresses");

struct IPV4Traits {
    typedef IPV4Address Address;
    static constexpr int family = AF_INET;
    static constexpr unsigned int size = 4;
    static constexpr bool failureClears = false;
    static constexpr const char* example = "1.2.3.4";
    static constexpr const char* other = "9.8.7.6";
    static constexpr const char* zero = "0.0.0.0";
    static constexpr const char* characters = "0123456789.0123456789. -xa\xFF";
    static constexpr const char* invalid[] = {"",          ".",         "1",          "1.2.3",      "1.2.3.",
                                              "1.2.3.4.",  "1.2.3.4.5", "1.2.3.256",  "256.2.3.4",  "-1.2.3.4",
                                              "1.2.3.-4",  " 1.2.3.4",  "1.2.3.4 ",   "1,2,3,4",    "1:2:3:4",
                                              "0x1.2.3.4", "1.2.3.a",   "1..3.4",     "::1.2.3.4",  "1.2.3.4/24",
                                              "1.2.3.4\n", "\x01",      "1.2.\xB3.4", "\xFF.2.3.4", "1.2.3.4\x01"};
};

unsigned int word(unsigned char a, unsigned char b, unsigned char c, unsigned char d) {
    const unsigned char bytes[] = {a, b, c, d};
    unsigned int result;
    std::memcpy(&result, bytes, sizeof result);
    return result;
}

TEST(IPV4Address, UsageExample) {
    utility::IPV4Address address("10.0.0.1");
    char text[16];
    address.toBuffer(text, sizeof text);
    EXPECT_STREQ(text, "10.0.0.1");
}

TEST(IPV4Address, WordIsTheOneOfTheSocketAddress) {
    in_addr socketAddress;
    ASSERT_EQ(inet_pton(AF_INET, "10.0.0.1", &socketAddress), 1);
    EXPECT_EQ(IPV4Address("10.0.0.1").getValue(), socketAddress.s_addr);
    EXPECT_EQ(textOf(IPV4Address(socketAddress.s_addr)), "10.0.0.1");
#if __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
    EXPECT_EQ(IPV4Address("10.0.0.1").getValue(), 0x0100000Au);
#endif
}

TEST(IPV4Address, WordsRoundTrip) {
    std::mt19937 random(41);
    for (const unsigned int edge : {0u, 1u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(IPV4Address(edge).getValue(), edge);
        IPV4Address address("1.2.3.4");
        address.set(edge);
        EXPECT_EQ(address.getValue(), edge);
    }
    for (int i = 0; i < 10000; ++i) {
        const unsigned int value = static_cast<unsigned int>(random());
        ASSERT_EQ(IPV4Address(value).getValue(), value);
    }
}

TEST(IPV4Address, BytesAreInWrittenOrder) {
    unsigned char bytes[] = {192, 168, 0, 255};
    IPV4Address address(bytes);
    EXPECT_EQ(textOf(address), "192.168.0.255");
    unsigned char out[5] = {0, 0, 0, 0, 77};
    address.toArray(out);
    EXPECT_EQ(std::memcmp(out, bytes, sizeof bytes), 0);
    EXPECT_EQ(out[4], 77);
    address.set(10, 11, 12, 13);
    EXPECT_EQ(textOf(address), "10.11.12.13");
    EXPECT_EQ(address.getValue(), word(10, 11, 12, 13));
}

TEST(IPV4Address, IsValidUnlessItsFirstByteIsZero) {
    EXPECT_FALSE(IPV4Address("0.1.2.3").isValid());
    EXPECT_FALSE(IPV4Address("0.255.255.255").isValid());
    EXPECT_TRUE(IPV4Address("1.0.0.0").isValid());
    EXPECT_TRUE(IPV4Address("255.255.255.255").isValid());
}

TEST(IPV4Address, NullTextReturnsFalseAndChangesNothing) {
    IPV4Address address("9.8.7.6");
    EXPECT_FALSE(address.fromString(nullptr));
    EXPECT_EQ(textOf(address), "9.8.7.6");
}

TEST(IPV4Address, ToBufferTerminatesATextThatFitsExactly) {
    for (const unsigned int size : {9u, 10u, 16u, 1000u}) {
        test::GuardedText buf(size);
        EXPECT_EQ(IPV4Address("10.0.0.1").toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), "10.0.0.1");
        EXPECT_TRUE(buf.isTerminated());
        EXPECT_TRUE(buf.isGuardWhole());
    }
}

TEST(IPV4Address, ToBufferThrowsIfTheTextDoesNotFitAndKeepsTheBeginning) {
    const IPV4Address address("10.0.0.1");
    for (unsigned int size = 1; size < 9; ++size) {
        test::GuardedText buf(size);
        EXPECT_FAILURE(address.toBuffer(buf.array(), size), 1239, "ut_PutStream", putFName,
                       "Didn't fit. wrote=8 remaining=" + std::to_string(size - 1) + " msg='%d.%d.%d.%d'");
        EXPECT_EQ(buf.text(), std::string("10.0.0.1").substr(0, size - 1));
        EXPECT_TRUE(buf.isTerminated());
        EXPECT_TRUE(buf.isGuardWhole());
    }
}

TEST(IPV4Address, ToBufferThrowsIfTheBufferIsNull) {
    const IPV4Address address("10.0.0.1");
    const char* const message = "Didn't fit. wrote=8 remaining=0 msg='%d.%d.%d.%d'";
    test::GuardedText none(0);
    EXPECT_FAILURE(address.toBuffer(none.array(), 0), 1239, "ut_PutStream", putFName, message);
    EXPECT_FAILURE(address.toBuffer(none.array(), UINT_MAX), 1239, "ut_PutStream", putFName, message);
    EXPECT_TRUE(none.isUntouched());
    EXPECT_FAILURE(address.toBuffer(nullptr, 0), 1239, "ut_PutStream", putFName, message);
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(IPV4Address, IPAddressTest, IPV4Traits);
} // namespace test
