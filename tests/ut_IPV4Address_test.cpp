#include "ut_IPV4Address.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

#include "ExpectFailure.h"
#include "GuardedText.h"
#include "ut_BufferStream.h"

namespace {

using utility::IPV4Address;

const char* const PUT_F = "void utility::PutStream::PutF(const char*, ...)";

static_assert(sizeof(IPV4Address) == 4, "copied to and from socket addresses");
static_assert(std::is_trivially_copyable<IPV4Address>::value, "a plain value");
static_assert(std::is_trivially_destructible<IPV4Address>::value, "a plain value");
static_assert(!std::is_polymorphic<IPV4Address>::value, "a plain value");

template<class T, class = void>
struct IsOrdered : std::false_type {};
template<class T>
struct IsOrdered<T, std::void_t<decltype(std::declval<T>() < std::declval<T>())>> : std::true_type {};
static_assert(!IsOrdered<IPV4Address>::value, "the bytes of a word in network order are no order of addresses");

std::string text(const IPV4Address& address) {
    char buf[16];
    return address.toBuffer(buf, sizeof buf);
}

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

TEST(IPV4Address, IsInitiallyZero) {
    const IPV4Address address;
    EXPECT_EQ(address.getValue(), 0u);
    EXPECT_TRUE(address.isZero());
    EXPECT_FALSE(address.isValid());
    EXPECT_EQ(text(address), "0.0.0.0");
}

TEST(IPV4Address, WordIsTheOneOfTheSocketAddress) {
    in_addr socketAddress;
    ASSERT_EQ(inet_pton(AF_INET, "10.0.0.1", &socketAddress), 1);
    EXPECT_EQ(IPV4Address("10.0.0.1").getValue(), socketAddress.s_addr);
    EXPECT_EQ(text(IPV4Address(socketAddress.s_addr)), "10.0.0.1");
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
    EXPECT_EQ(text(address), "192.168.0.255");
    unsigned char out[5] = {0, 0, 0, 0, 77};
    address.toArray(out);
    EXPECT_EQ(std::memcmp(out, bytes, sizeof bytes), 0);
    EXPECT_EQ(out[4], 77);
    address.set(10, 0, 0, 1);
    EXPECT_EQ(text(address), "10.0.0.1");
    EXPECT_EQ(address.getValue(), word(10, 0, 0, 1));
}

TEST(IPV4Address, CanBeCopied) {
    IPV4Address address("1.2.3.4");
    const IPV4Address copy(address);
    address.set(0);
    EXPECT_EQ(text(copy), "1.2.3.4");
    address = copy;
    EXPECT_EQ(address, copy);
}

TEST(IPV4Address, IsValidUnlessItsFirstByteIsZero) {
    EXPECT_FALSE(IPV4Address("0.1.2.3").isValid());
    EXPECT_FALSE(IPV4Address("0.255.255.255").isValid());
    EXPECT_TRUE(IPV4Address("1.0.0.0").isValid());
    EXPECT_TRUE(IPV4Address("255.255.255.255").isValid());
}

TEST(IPV4Address, IsZeroOnlyIfAllBytesAreZero) {
    EXPECT_TRUE(IPV4Address("0.0.0.0").isZero());
    EXPECT_FALSE(IPV4Address("1.0.0.0").isZero());
    EXPECT_FALSE(IPV4Address("0.1.0.0").isZero());
    EXPECT_FALSE(IPV4Address("0.0.1.0").isZero());
    EXPECT_FALSE(IPV4Address("0.0.0.1").isZero());
}

TEST(IPV4Address, EqualsIfAllBytesAreEqual) {
    const IPV4Address address("1.2.3.4");
    EXPECT_TRUE(address == IPV4Address("1.2.3.4"));
    EXPECT_FALSE(address != IPV4Address("1.2.3.4"));
    for (const char* other : {"9.2.3.4", "1.9.3.4", "1.2.9.4", "1.2.3.9", "4.3.2.1"}) {
        EXPECT_FALSE(address == IPV4Address(other)) << other;
        EXPECT_TRUE(address != IPV4Address(other)) << other;
    }
}

TEST(IPV4Address, InvalidTextReturnsFalseAndChangesNothing) {
    const std::string good = "1.2.3.4";
    const std::string refused[] = {"",
                                   ".",
                                   "1",
                                   "1.2.3",
                                   "1.2.3.",
                                   "1.2.3.4.",
                                   "1.2.3.4.5",
                                   "1.2.3.256",
                                   "256.2.3.4",
                                   "-1.2.3.4",
                                   "1.2.3.-4",
                                   " 1.2.3.4",
                                   "1.2.3.4 ",
                                   "1,2,3,4",
                                   "1:2:3:4",
                                   "0x1.2.3.4",
                                   "1.2.3.a",
                                   "1..3.4",
                                   "::1.2.3.4",
                                   "1.2.3.4/24",
                                   "1.2.3.4\n",
                                   "\x01",
                                   "1.2.\xB3.4",
                                   "\xFF.2.3.4",
                                   "1.2.3.4\x01",
                                   std::string(100000, '1'),
                                   std::string(100000, '.'),
                                   good + std::string(100000, ' ')};
    for (const std::string& bad : refused) {
        IPV4Address address("9.8.7.6");
        EXPECT_FALSE(address.fromString(bad.c_str())) << bad.substr(0, 40);
        EXPECT_EQ(text(address), "9.8.7.6") << bad.substr(0, 40);
    }
}

TEST(IPV4Address, NullTextReturnsFalseAndChangesNothing) {
    IPV4Address address("9.8.7.6");
    EXPECT_FALSE(address.fromString(nullptr));
    EXPECT_EQ(text(address), "9.8.7.6");
}

TEST(IPV4Address, ParsesAndFormatsAsThePlatformDoes) {
    std::mt19937 random(4);
    for (int i = 0; i < 10000; ++i) {
        const unsigned int value = static_cast<unsigned int>(random());
        char expected[INET_ADDRSTRLEN];
        ASSERT_NE(inet_ntop(AF_INET, &value, expected, sizeof expected), nullptr);
        ASSERT_EQ(text(IPV4Address(value)), expected);
        IPV4Address address;
        ASSERT_TRUE(address.fromString(expected));
        ASSERT_EQ(address.getValue(), value);
    }
}

TEST(IPV4Address, AcceptsTheSameTextsAsThePlatform) {
    const char characters[] = "0123456789.0123456789. -xa\xFF";
    std::mt19937 random(40);
    int taken = 0;
    for (int i = 0; i < 10000; ++i) {
        std::string mutated = text(IPV4Address(static_cast<unsigned int>(random())));
        mutated[random() % mutated.size()] = characters[random() % (sizeof characters - 1)];
        unsigned int expected = 0x01020304;
        const bool accepted = inet_pton(AF_INET, mutated.c_str(), &expected) == 1;
        IPV4Address address(0x01020304u);
        ASSERT_EQ(address.fromString(mutated.c_str()), accepted) << mutated;
        ASSERT_EQ(address.getValue(), expected) << mutated;
        taken += accepted;
    }
    EXPECT_GT(taken, 100);
    EXPECT_LT(taken, 9900);
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
        EXPECT_FAILURE(address.toBuffer(buf.array(), size), 1239, "ut_PutStream", PUT_F,
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
    EXPECT_FAILURE(address.toBuffer(none.array(), 0), 1239, "ut_PutStream", PUT_F, message);
    EXPECT_FAILURE(address.toBuffer(none.array(), UINT_MAX), 1239, "ut_PutStream", PUT_F, message);
    EXPECT_TRUE(none.isUntouched());
    EXPECT_FAILURE(address.toBuffer(nullptr, 0), 1239, "ut_PutStream", PUT_F, message);
}

TEST(IPV4Address, ToPutStreamAppends) {
    utility::BufferStream stream(64);
    stream.PutS("ip=");
    IPV4Address("255.255.255.255").toPutStream(stream);
    IPV4Address("0.0.0.0").toPutStream(stream);
    EXPECT_STREQ(stream.pBuffer(), "ip=255.255.255.2550.0.0.0");
    EXPECT_EQ(stream.ReadAvailable(), 25);
}

} // namespace
