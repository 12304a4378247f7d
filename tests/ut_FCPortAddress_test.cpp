#include "ut_FCPortAddress.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GuardedText.h"
#include "PortAddressSuite.h"
#include "TextOf.h"
#include "ut_BufferStream.h"

namespace {

using test::textOf;
using utility::FCPortAddress;
using utility::PortAddress;
using utility::WWN;

constexpr FCPortAddress::WWNType type = FCPortAddress::WWN_TYPE_0;
constexpr FCPortAddress::WWNType otherType = FCPortAddress::WWN_TYPE_1;

static_assert(sizeof(FCPortAddress::WWNType) == 4, "stored as 32 bits");
static_assert(sizeof(FCPortAddress) == (sizeof(void*) + 12 + sizeof(void*) - 1) / sizeof(void*) * sizeof(void*),
              "a name and its type, and nothing else");

struct FCTraits {
    typedef FCPortAddress Address;
    static constexpr PortAddress::PortType type = PortAddress::PORT_FC;
    static Address example() {
        return FCPortAddress(FCPortAddress::WWN_TYPE_0, "500a09818d5f1234");
    }
    static std::vector<Address> others() {
        return {FCPortAddress(FCPortAddress::WWN_TYPE_1, "500a09818d5f1234"),
                FCPortAddress(FCPortAddress::WWN_TYPE_0, "500a09818d5f1235")};
    }
};

TEST(FCPortAddress, UsageExample) {
    utility::FCPortAddress port(utility::FCPortAddress::WWN_TYPE_0, "500A09818D5F1234");
    char text[17];
    port.toBuffer(text, sizeof text);
    EXPECT_STREQ(text, "500a09818d5f1234");
}

TEST(FCPortAddress, CanBeConstructedFromTextNameOrBytes) {
    WWN wwn("500a09818d5f1234");
    unsigned char bytes[] = {0x50, 0x0A, 0x09, 0x81, 0x8D, 0x5F, 0x12, 0x34};
    const FCPortAddress fromText(type, "500A09818D5F1234");
    const FCPortAddress fromName(type, wwn);
    const FCPortAddress fromBytes(type, bytes);
    EXPECT_EQ(textOf(fromText), "500a09818d5f1234");
    EXPECT_EQ(textOf(fromName), "500a09818d5f1234");
    EXPECT_EQ(textOf(fromBytes), "500a09818d5f1234");
    EXPECT_TRUE(fromText == fromName);
    EXPECT_TRUE(fromName == fromBytes);
    EXPECT_EQ(fromText.getType(), PortAddress::PORT_FC);
    EXPECT_TRUE(fromText.getWWN() == wwn);
    EXPECT_EQ(fromText.getWWNType(), type);
}

TEST(FCPortAddress, IgnoresWhetherItsTextIsAName) {
    EXPECT_EQ(textOf(FCPortAddress(type, "no name")), "0000000000000000");
    EXPECT_EQ(textOf(FCPortAddress(type, "50x")), "5000000000000000");
    EXPECT_EQ(textOf(FCPortAddress(type, static_cast<const char*>(nullptr))), "0000000000000000");
}

TEST(FCPortAddress, ParsesTextAsWWNDoes) {
    FCPortAddress address(otherType, "500a09818d5f1234");
    EXPECT_FALSE(address.fromString("6000"));
    EXPECT_EQ(textOf(address), "600009818d5f1234");
    EXPECT_TRUE(address.fromString("0123456789ABCDEFXYZ"));
    EXPECT_EQ(textOf(address), "0123456789abcdef");
    EXPECT_TRUE(address.fromString(nullptr));
    EXPECT_EQ(textOf(address), "0000000000000000");
    EXPECT_EQ(address.getWWNType(), otherType);
}

TEST(FCPortAddress, EqualsByNameAndType) {
    const FCPortAddress address(type, "500a09818d5f1234");
    EXPECT_TRUE(address == FCPortAddress(type, "500A09818D5F1234"));
    EXPECT_FALSE(address != FCPortAddress(type, "500A09818D5F1234"));
    EXPECT_FALSE(address == FCPortAddress(otherType, "500a09818d5f1234"));
    EXPECT_TRUE(address != FCPortAddress(otherType, "500a09818d5f1234"));
    EXPECT_FALSE(address == FCPortAddress(type, "500a09818d5f1235"));
    const FCPortAddress far(static_cast<FCPortAddress::WWNType>(0xFFFFFFFF), "500a09818d5f1234");
    EXPECT_TRUE(far == FCPortAddress(far));
    EXPECT_FALSE(far == address);
}

TEST(FCPortAddress, ToBufferNeverOverrunsItsArray) {
    const FCPortAddress address(type, "500a09818d5f1234");
    for (unsigned int size = 0; size < 20; ++size) {
        test::GuardedText buf(size);
        EXPECT_EQ(address.toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), std::string("500a09818d5f1234").substr(0, size));
        EXPECT_EQ(buf.isTerminated(), size > 16);
        EXPECT_TRUE(buf.isGuardWhole());
    }
}

TEST(FCPortAddress, ToPutStreamWritesTheDigitsTruncated) {
    const FCPortAddress address(type, "500a09818d5f1234");
    for (int capacity = 0; capacity < 20; ++capacity) {
        utility::BufferStream stream(capacity);
        address.toPutStream(stream);
        EXPECT_STREQ(stream.pBuffer(),
                     std::string("500a09818d5f1234").substr(0, static_cast<size_t>(capacity)).c_str());
        EXPECT_EQ(stream.WritePosition(), std::min(capacity, 16));
    }
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(FCPortAddress, PortAddressTest, FCTraits);
} // namespace test
