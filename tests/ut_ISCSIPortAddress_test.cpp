#include "ut_ISCSIPortAddress.h"

#include <climits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "GuardedText.h"
#include "PortAddressSuite.h"
#include "TextOf.h"
#include "TraceLines.h"
#include "ut_BufferStream.h"

namespace {

using test::textOf;
using utility::IPV4Address;
using utility::IPV6Address;
using utility::ISCSIPortAddress;
using utility::PortAddress;
using Lines = std::vector<std::string>;

static_assert(ISCSIPortAddress::IP_V4 == 1358 && ISCSIPortAddress::IP_V6 == 1359, "the numbers are stored");
static_assert(sizeof(ISCSIPortAddress) ==
                  (sizeof(void*) + 4 + 4 + 16 + 4 + 224 + sizeof(void*) - 1) / sizeof(void*) * sizeof(void*),
              "two addresses, their kind, a port and a name, and nothing else");

struct ISCSITraits {
    typedef ISCSIPortAddress Address;
    static constexpr PortAddress::PortType type = PortAddress::PORT_ISCSI;
    static Address example() {
        IPV4Address ip("10.1.2.3");
        return ISCSIPortAddress(ip, 3260, "tgt1");
    }
    static std::vector<Address> others() {
        IPV4Address ip("10.1.2.3");
        IPV4Address otherIP("10.1.2.4");
        IPV6Address otherKind("fe80::1");
        return {ISCSIPortAddress(otherIP, 3260, "tgt1"), ISCSIPortAddress(otherKind, 3260, "tgt1"),
                ISCSIPortAddress(ip, 3261, "tgt1"), ISCSIPortAddress(ip, 3260, "tgt2"),
                ISCSIPortAddress(ip, 3260, std::string(223, 'n').c_str())};
    }
};

class ISCSIPortAddressTest : public testing::Test {
protected:
    IPV4Address m_v4 = IPV4Address("10.1.2.3");
    IPV6Address m_v6 = IPV6Address("fe80::1");
};

TEST_F(ISCSIPortAddressTest, UsageExample) {
    utility::IPV4Address address("10.1.2.3");
    utility::ISCSIPortAddress port(address, 3260, "tgt1");
    char text[64];
    port.toBuffer(text, sizeof text);
    EXPECT_STREQ(text, "10.1.2.3:3260[tgt1]");
}

TEST_F(ISCSIPortAddressTest, StoresOneKindOfAddressAndLeavesTheOtherZero) {
    const ISCSIPortAddress first(m_v4, 3260, "tgt1");
    EXPECT_EQ(first.getType(), PortAddress::PORT_ISCSI);
    EXPECT_EQ(first.getIPType(), ISCSIPortAddress::IP_V4);
    EXPECT_TRUE(first.getIPV4() == m_v4);
    EXPECT_TRUE(first.getIPV6().isZero());
    EXPECT_EQ(first.getPort(), 3260u);
    EXPECT_STREQ(first.getName(), "tgt1");
    const ISCSIPortAddress second(m_v6, 0xFFFFFFFF, "tgt2");
    EXPECT_EQ(second.getType(), PortAddress::PORT_ISCSI);
    EXPECT_EQ(second.getIPType(), ISCSIPortAddress::IP_V6);
    EXPECT_TRUE(second.getIPV4().isZero());
    EXPECT_TRUE(second.getIPV6() == m_v6);
    EXPECT_EQ(second.getPort(), 0xFFFFFFFFu);
    EXPECT_STREQ(second.getName(), "tgt2");
}

TEST_F(ISCSIPortAddressTest, FormatsAddressPortAndName) {
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v4, 3260, "tgt1")), "10.1.2.3:3260[tgt1]");
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v4, 0, "tgt1")), "10.1.2.3[tgt1]");
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v4, 3260, "")), "10.1.2.3:3260");
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v4, 0, "")), "10.1.2.3");
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v4, 0, nullptr)), "10.1.2.3");
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v6, 0, "host")), "fe80::1[host]");
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v6, 3260, nullptr)), "fe80::1:3260");
}

TEST_F(ISCSIPortAddressTest, FormatsPortsAsSignedNumbers) {
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v4, 65535, nullptr)), "10.1.2.3:65535");
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v4, INT_MAX, nullptr)), "10.1.2.3:2147483647");
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v4, 0x80000000u, nullptr)), "10.1.2.3:-2147483648");
    EXPECT_EQ(textOf(ISCSIPortAddress(m_v4, UINT_MAX, nullptr)), "10.1.2.3:-1");
}

TEST_F(ISCSIPortAddressTest, KeepsUpTo223CharactersOfAName) {
    for (const size_t length : {222u, 223u, 224u, 225u, 300u, 100000u}) {
        const std::string name(length, 'n');
        EXPECT_EQ(ISCSIPortAddress(m_v4, 1, name.c_str()).getName(), name.substr(0, 223)) << length;
        EXPECT_EQ(ISCSIPortAddress(m_v6, 1, name.c_str()).getName(), name.substr(0, 223)) << length;
    }
}

TEST_F(ISCSIPortAddressTest, CopiesItsName) {
    char name[] = "iqn.a\xC3\xA9\x01";
    const ISCSIPortAddress address(m_v4, 1, name);
    name[0] = 'X';
    EXPECT_STREQ(address.getName(), "iqn.a\xC3\xA9\x01");
}

TEST_F(ISCSIPortAddressTest, AssignmentReplacesTheKindOfAddress) {
    ISCSIPortAddress assigned(m_v4, 1, "x");
    assigned = ISCSIPortAddress(m_v6, 3260, "tgt1");
    EXPECT_EQ(assigned.getIPType(), ISCSIPortAddress::IP_V6);
    EXPECT_TRUE(assigned.getIPV4().isZero());
    EXPECT_TRUE(assigned.getIPV6() == m_v6);
}

TEST_F(ISCSIPortAddressTest, EqualsByKindAddressPortAndName) {
    const ISCSIPortAddress address(m_v4, 3260, "tgt1");
    IPV4Address otherV4("10.1.2.4");
    IPV6Address otherV6("fe80::2");
    EXPECT_TRUE(address == ISCSIPortAddress(m_v4, 3260, "tgt1"));
    EXPECT_FALSE(address != ISCSIPortAddress(m_v4, 3260, "tgt1"));
    EXPECT_FALSE(address == ISCSIPortAddress(otherV4, 3260, "tgt1"));
    EXPECT_FALSE(address == ISCSIPortAddress(m_v4, 3261, "tgt1"));
    EXPECT_FALSE(address == ISCSIPortAddress(m_v4, 3260, "TGT1"));
    EXPECT_FALSE(address == ISCSIPortAddress(m_v4, 3260, "tgt"));
    EXPECT_FALSE(address == ISCSIPortAddress(m_v4, 3260, nullptr));
    EXPECT_FALSE(address == ISCSIPortAddress(m_v6, 3260, "tgt1"));
    EXPECT_TRUE(ISCSIPortAddress(m_v6, 1, "") == ISCSIPortAddress(m_v6, 1, nullptr));
    EXPECT_FALSE(ISCSIPortAddress(m_v6, 1, "") == ISCSIPortAddress(otherV6, 1, ""));
    IPV4Address zero4;
    IPV6Address zero6;
    EXPECT_FALSE(ISCSIPortAddress(zero4, 0, "") == ISCSIPortAddress(zero6, 0, ""));
}

TEST_F(ISCSIPortAddressTest, NamesAreComparedAfterTruncation) {
    const std::string name(223, 'n');
    EXPECT_TRUE(ISCSIPortAddress(m_v4, 1, (name + "a").c_str()) == ISCSIPortAddress(m_v4, 1, (name + "b").c_str()));
}

TEST_F(ISCSIPortAddressTest, ParsingIsNotSupported) {
    ISCSIPortAddress address(m_v4, 3260, "tgt1");
    const test::LogCapture log;
    EXPECT_FALSE(address.fromString("10.9.9.9:1[x]"));
    EXPECT_FALSE(address.fromString(nullptr));
    EXPECT_EQ(test::traceLines(log), (Lines{"0 : this isn't implemented", "0 : this isn't implemented"}));
    EXPECT_EQ(textOf(address), "10.1.2.3:3260[tgt1]");
}

TEST_F(ISCSIPortAddressTest, ToBufferWritesATextThatFitsExactly) {
    const ISCSIPortAddress address(m_v4, 3260, "tgt1");
    const test::LogCapture log;
    for (const unsigned int size : {20u, 21u, 1000u}) {
        test::GuardedText buf(size);
        EXPECT_EQ(address.toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), "10.1.2.3:3260[tgt1]");
        EXPECT_TRUE(buf.isTerminated());
        EXPECT_TRUE(buf.isGuardWhole());
    }
    EXPECT_EQ(log.count(), 0u);
}

TEST_F(ISCSIPortAddressTest, ToBufferTruncatesAndLogsATextThatDoesNotFit) {
    const ISCSIPortAddress address(m_v4, 3260, "tgt1");
    for (unsigned int size = 1; size < 20; ++size) {
        const test::LogCapture log;
        test::GuardedText buf(size);
        EXPECT_EQ(address.toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), std::string("10.1.2.3:3260[tgt1]").substr(0, size - 1));
        EXPECT_TRUE(buf.isTerminated());
        EXPECT_TRUE(buf.isGuardWhole());
        EXPECT_EQ(log.count(), size < 9 ? 3u : size < 14 ? 2u : 1u) << size;
    }
    const test::LogCapture log;
    char buf[16];
    address.toBuffer(buf, sizeof buf);
    EXPECT_EQ(test::traceLines(log), (Lines{"0 : PutStream::PutF: Didn't fit. wrote=6 remaining=2 msg='[%s]'"}));
}

TEST_F(ISCSIPortAddressTest, IPV6AddressThatDoesNotFitIsOmitted) {
    const ISCSIPortAddress address(m_v6, 3260, "h");
    test::GuardedText tight(8);
    const test::LogCapture log;
    address.toBuffer(tight.array(), tight.size());
    EXPECT_EQ(tight.text(), ":3260[h");
    test::GuardedText spare(9);
    address.toBuffer(spare.array(), spare.size());
    EXPECT_EQ(spare.text(), "fe80::1:");
    EXPECT_TRUE(tight.isGuardWhole());
    EXPECT_TRUE(spare.isGuardWhole());
}

TEST_F(ISCSIPortAddressTest, NameIsTruncatedAtACompleteCharacter) {
    const ISCSIPortAddress address(m_v4, 0, "a\xC3\xA9\xC3\xA9");
    const test::LogCapture log;
    test::GuardedText buf(13);
    address.toBuffer(buf.array(), buf.size());
    EXPECT_EQ(buf.text(), "10.1.2.3[a\xC3\xA9");
    test::GuardedText tight(12);
    address.toBuffer(tight.array(), tight.size());
    EXPECT_EQ(tight.text(), "10.1.2.3[a");
}

TEST_F(ISCSIPortAddressTest, ToBufferIgnoresANullBuffer) {
    const test::LogCapture log;
    test::GuardedText none(0);
    for (const ISCSIPortAddress& address : {ISCSIPortAddress(m_v4, 1, "x"), ISCSIPortAddress(m_v6, 1, "x")}) {
        EXPECT_EQ(address.toBuffer(none.array(), 0), none.array());
        EXPECT_EQ(address.toBuffer(none.array(), UINT_MAX), none.array());
        EXPECT_EQ(address.toBuffer(nullptr, 0), nullptr);
    }
    EXPECT_TRUE(none.isUntouched());
}

TEST_F(ISCSIPortAddressTest, ToPutStreamReservesAByteForTheTerminator) {
    const ISCSIPortAddress address(m_v4, 3260, "tgt1");
    const test::LogCapture log;
    utility::BufferStream spare(20);
    address.toPutStream(spare);
    EXPECT_STREQ(spare.pBuffer(), "10.1.2.3:3260[tgt1]");
    EXPECT_EQ(spare.WritePosition(), 19);
    EXPECT_EQ(log.count(), 0u);
    utility::BufferStream tight(19);
    address.toPutStream(tight);
    EXPECT_STREQ(tight.pBuffer(), "10.1.2.3:3260[tgt1");
    EXPECT_EQ(log.count(), 1u);
    utility::BufferStream none(0);
    address.toPutStream(none);
    EXPECT_EQ(none.WritePosition(), 0);
}

} // namespace

namespace test {
INSTANTIATE_TYPED_TEST_SUITE_P(ISCSIPortAddress, PortAddressTest, ISCSITraits);
} // namespace test
