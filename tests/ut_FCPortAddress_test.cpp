#include "ut_FCPortAddress.h"

#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <typeinfo>

#include "FailingAllocation.h"
#include "GuardedText.h"
#include "ut_BufferStream.h"

namespace {

using utility::FCPortAddress;
using utility::PortAddress;
using utility::WWN;

const FCPortAddress::WWNType TYPE = FCPortAddress::WWN_TYPE_0;
const FCPortAddress::WWNType OTHER_TYPE = FCPortAddress::WWN_TYPE_1;

static_assert(std::is_trivially_destructible<FCPortAddress>::value,
              "deleted through a base without virtual destructor");
static_assert(sizeof(FCPortAddress::WWNType) == 4, "stored as 32 bits");
static_assert(sizeof(FCPortAddress) == (sizeof(void*) + 12 + sizeof(void*) - 1) / sizeof(void*) * sizeof(void*),
              "a name and its type, and nothing else");

std::string text(const PortAddress& address) {
    char buf[17];
    return address.toBuffer(buf, sizeof buf);
}

// Claims to be a Fibre Channel address, but is of another class.
class False : public PortAddress {
public:
    PortAddress* clone() const override {
        return nullptr;
    }
    PortType getType() const override {
        return PORT_FC;
    }
    char* toBuffer(char* buf, unsigned int) const override {
        return buf;
    }
    bool fromString(const char*) override {
        return false;
    }
    bool operator==(const PortAddress&) const override {
        return false;
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
    const FCPortAddress fromText(TYPE, "500A09818D5F1234");
    const FCPortAddress fromName(TYPE, wwn);
    const FCPortAddress fromBytes(TYPE, bytes);
    EXPECT_EQ(text(fromText), "500a09818d5f1234");
    EXPECT_EQ(text(fromName), "500a09818d5f1234");
    EXPECT_EQ(text(fromBytes), "500a09818d5f1234");
    EXPECT_TRUE(fromText == fromName);
    EXPECT_TRUE(fromName == fromBytes);
    EXPECT_EQ(fromText.getType(), PortAddress::PORT_FC);
    EXPECT_TRUE(fromText.getWWN() == wwn);
    EXPECT_EQ(fromText.getWWNType(), TYPE);
}

TEST(FCPortAddress, IgnoresWhetherItsTextIsAName) {
    EXPECT_EQ(text(FCPortAddress(TYPE, "no name")), "0000000000000000");
    EXPECT_EQ(text(FCPortAddress(TYPE, "50x")), "5000000000000000");
    EXPECT_EQ(text(FCPortAddress(TYPE, static_cast<const char*>(nullptr))), "0000000000000000");
}

TEST(FCPortAddress, ParsesTextAsWWNDoes) {
    FCPortAddress address(OTHER_TYPE, "500a09818d5f1234");
    EXPECT_FALSE(address.fromString("6000"));
    EXPECT_EQ(text(address), "600009818d5f1234");
    EXPECT_TRUE(address.fromString("0123456789ABCDEFXYZ"));
    EXPECT_EQ(text(address), "0123456789abcdef");
    EXPECT_TRUE(address.fromString(nullptr));
    EXPECT_EQ(text(address), "0000000000000000");
    EXPECT_EQ(address.getWWNType(), OTHER_TYPE);
}

TEST(FCPortAddress, CopiesHaveTheSameNameAndType) {
    const FCPortAddress address(OTHER_TYPE, "500a09818d5f1234");
    const FCPortAddress copy(address);
    EXPECT_TRUE(copy == address);
    EXPECT_EQ(copy.getWWNType(), OTHER_TYPE);
    FCPortAddress assigned(TYPE, "0000000000000001");
    EXPECT_EQ(&(assigned = address), &assigned);
    EXPECT_TRUE(assigned == address);
    EXPECT_EQ(assigned.getWWNType(), OTHER_TYPE);
    const FCPortAddress& itself = assigned;
    assigned = itself;
    EXPECT_TRUE(assigned == address);
}

TEST(FCPortAddress, CloneIsAnIndependentEqualAddress) {
    FCPortAddress address(OTHER_TYPE, "500a09818d5f1234");
    const std::unique_ptr<FCPortAddress> copy(dynamic_cast<FCPortAddress*>(address.clone()));
    ASSERT_NE(copy, nullptr);
    EXPECT_TRUE(*copy == address);
    EXPECT_EQ(typeid(*copy), typeid(FCPortAddress));
    address.fromString(nullptr);
    EXPECT_EQ(text(*copy), "500a09818d5f1234");
}

TEST(FCPortAddress, CloneThrowsIfMemoryIsExhausted) {
    const FCPortAddress address(TYPE, "500a09818d5f1234");
    test::FailingAllocation failing(1);
    bool thrown = false;
    try {
        address.clone();
    } catch (const std::bad_alloc&) {
        thrown = true;
    }
    failing.stop();
    EXPECT_TRUE(thrown);
}

TEST(FCPortAddress, EqualsByNameAndType) {
    const FCPortAddress address(TYPE, "500a09818d5f1234");
    EXPECT_TRUE(address == FCPortAddress(TYPE, "500A09818D5F1234"));
    EXPECT_FALSE(address != FCPortAddress(TYPE, "500A09818D5F1234"));
    EXPECT_FALSE(address == FCPortAddress(OTHER_TYPE, "500a09818d5f1234"));
    EXPECT_TRUE(address != FCPortAddress(OTHER_TYPE, "500a09818d5f1234"));
    EXPECT_FALSE(address == FCPortAddress(TYPE, "500a09818d5f1235"));
    const FCPortAddress far(static_cast<FCPortAddress::WWNType>(0xFFFFFFFF), "500a09818d5f1234");
    EXPECT_TRUE(far == FCPortAddress(far));
    EXPECT_FALSE(far == address);
}

TEST(FCPortAddress, ComparingWithAnObjectOfAnotherClassThrowsBadCast) {
    const FCPortAddress address(TYPE, "500a09818d5f1234");
    const False other;
    EXPECT_THROW(static_cast<void>(address == other), std::bad_cast);
    EXPECT_THROW(static_cast<void>(address != other), std::bad_cast);
}

TEST(FCPortAddress, ToBufferNeverOverrunsItsArray) {
    const FCPortAddress address(TYPE, "500a09818d5f1234");
    for (unsigned int size = 0; size < 20; ++size) {
        test::GuardedText buf(size);
        EXPECT_EQ(address.toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), std::string("500a09818d5f1234").substr(0, size));
        EXPECT_EQ(buf.isTerminated(), size > 16);
        EXPECT_TRUE(buf.isGuardWhole());
    }
}

TEST(FCPortAddress, ToPutStreamWritesTheDigitsTruncated) {
    const FCPortAddress address(TYPE, "500a09818d5f1234");
    for (int capacity = 0; capacity < 20; ++capacity) {
        utility::BufferStream stream(capacity);
        address.toPutStream(stream);
        EXPECT_STREQ(stream.pBuffer(),
                     std::string("500a09818d5f1234").substr(0, static_cast<size_t>(capacity)).c_str());
        EXPECT_EQ(stream.WritePosition(), std::min(capacity, 16));
    }
}

} // namespace
