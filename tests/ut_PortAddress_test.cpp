#include "ut_PortAddress.h"

#include <cstdint>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "GuardedText.h"
#include "HeapGrowth.h"
#include "TraceLines.h"
#include "VirtualSlot.h"
#include "ut_BufferStream.h"
#include "ut_FCPortAddress.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_VirtualPutStream.h"

namespace {

using utility::FCPortAddress;
using utility::ISCSIPortAddress;
using utility::PortAddress;
using Lines = std::vector<std::string>;

constexpr unsigned int traceSwitch = 4499;

static_assert(sizeof(PortAddress) == sizeof(void*), "no data of its own");
static_assert(sizeof(PortAddress::PortType) == 4, "exchanged as 32 bits");
static_assert(std::is_trivially_destructible<PortAddress>::value, "no virtual destructor");
static_assert(std::is_abstract<PortAddress>::value, "a base");
static_assert(PortAddress::PORT_UNDEFINED == 1153 && PortAddress::PORT_FC == 1509 && PortAddress::PORT_ISCSI == 2152,
              "the numbers are stored");

// An address of no known kind, which records the size that is passed to it.
class OddAddress : public PortAddress {
public:
    explicit OddAddress(const char* text) : m_text(text) {}
    PortAddress* clone() const override {
        return new OddAddress(*this);
    }
    char* toBuffer(char* buf, unsigned int size) const override {
        m_given = size;
        if (m_text == nullptr)
            return nullptr;
        if (size > std::strlen(m_text))
            std::strcpy(buf, m_text);
        return buf;
    }
    bool fromString(const char*) override {
        return false;
    }
    bool operator==(const PortAddress& other) const override {
        return this == &other;
    }
    unsigned int given() const {
        return m_given;
    }

private:
    const char* m_text;
    mutable unsigned int m_given = 12345;
};

TEST(PortAddress, UsageExample) {
    utility::FCPortAddress port(utility::FCPortAddress::WWN_TYPE_0, "500a09818d5f1234");
    utility::PortAddress& address = port;
    EXPECT_EQ(utility::PortAddress::PortTypeToNumeric(address.getType()), 6u);
}

TEST(PortAddress, VirtualOperationsHaveTheirSlots) {
    EXPECT_EQ(test::virtualSlot(&PortAddress::clone), 0);
    EXPECT_EQ(test::virtualSlot(&PortAddress::getType), 1);
    EXPECT_EQ(test::virtualSlot(&PortAddress::toBuffer), 2);
    EXPECT_EQ(test::virtualSlot(&PortAddress::fromString), 3);
    EXPECT_EQ(test::virtualSlot(&PortAddress::operator==), 4);
    EXPECT_EQ(test::virtualSlot(&PortAddress::toPutStream), -1);
    using FCAssignment = FCPortAddress& (FCPortAddress::*)(const FCPortAddress&);
    EXPECT_EQ(test::virtualSlot(static_cast<FCAssignment>(&FCPortAddress::operator=)), 5);
    using ISCSIAssignment = ISCSIPortAddress& (ISCSIPortAddress::*)(const ISCSIPortAddress&);
    EXPECT_EQ(test::virtualSlot(static_cast<ISCSIAssignment>(&ISCSIPortAddress::operator=)), 5);
}

TEST(PortAddress, TypeIsUndefinedUnlessOverridden) {
    EXPECT_EQ(OddAddress("x").getType(), PortAddress::PORT_UNDEFINED);
}

TEST(PortAddress, InequalityNegatesTheEqualityOfTheSubclass) {
    const OddAddress a("x");
    const OddAddress b("x");
    EXPECT_FALSE(a != a);
    EXPECT_TRUE(a != b);
}

TEST(PortAddress, AddressesOfDifferentKindsAreNeverEqual) {
    utility::IPV4Address ip("10.1.2.3");
    const FCPortAddress fc(FCPortAddress::WWN_TYPE_0, "500a09818d5f1234");
    const ISCSIPortAddress iscsi(ip, 3260, "tgt1");
    const OddAddress odd("x");
    const PortAddress* const all[] = {&fc, &iscsi, &odd};
    for (const PortAddress* a : all) {
        for (const PortAddress* b : all) {
            EXPECT_EQ(*a == *b, a == b);
            EXPECT_EQ(*a != *b, a != b);
        }
    }
}

TEST(PortAddress, CanBeDeletedThroughTheBaseClass) {
    utility::IPV4Address ip("10.1.2.3");
    const ISCSIPortAddress iscsi(ip, 3260, "tgt1");
    EXPECT_LT(test::heapGrowth([&] { const std::unique_ptr<PortAddress> copy(iscsi.clone()); }), 16000u);
}

TEST(PortAddress, SupportsPlacementNew) {
    alignas(FCPortAddress) unsigned char place[sizeof(FCPortAddress)];
    PortAddress* const placed = new (place) FCPortAddress(FCPortAddress::WWN_TYPE_1, "500a09818d5f1234");
    EXPECT_EQ(static_cast<void*>(placed), place);
    EXPECT_EQ(placed->getType(), PortAddress::PORT_FC);
    FCPortAddress* const taken = new (std::nothrow) FCPortAddress(FCPortAddress::WWN_TYPE_1, "500a09818d5f1234");
    ASSERT_NE(taken, nullptr);
    EXPECT_TRUE(*taken == *placed);
    FCPortAddress::operator delete(taken);
}

TEST(PortAddress, ToPutStreamPassesTheSpaceThatIsLeft) {
    utility::BufferStream stream(32);
    stream.PutS("port ");
    const OddAddress odd("here");
    odd.toPutStream(stream);
    EXPECT_EQ(odd.given(), 27u);
    EXPECT_STREQ(stream.pBuffer(), "port here");
    EXPECT_EQ(stream.ReadAvailable(), 9);
}

TEST(PortAddress, ToPutStreamNeverAdvancesPastTheStorage) {
    char array[] = "0123456789";
    utility::PutStream stream(array, 5);
    std::memset(array, 'x', 10);
    OddAddress("far too long").toPutStream(stream);
    EXPECT_EQ(stream.WritePosition(), 4);
    EXPECT_STREQ(array, "xxxxxxxxxx");
}

TEST(PortAddress, ToPutStreamTreatsANullTextAsEmpty) {
    utility::BufferStream stream(32);
    OddAddress(nullptr).toPutStream(stream);
    EXPECT_EQ(stream.WritePosition(), 0);
}

TEST(PortAddress, ToPutStreamPassesZeroIfTheStreamIsFull) {
    const OddAddress odd("x");
    utility::PutStream none;
    odd.toPutStream(none);
    EXPECT_EQ(odd.given(), 0u);
    EXPECT_EQ(none.WritePosition(), 0);

    test::GuardedText buf(4);
    utility::BufferStream beyond(buf.array(), 4, false);
    CATCH_FAILURE(beyond.WriteAdvance(50));
    const OddAddress second("x");
    EXPECT_FAILURE(second.toPutStream(beyond), 1239, "ut_Buffer", "virtual void utility::Buffer::WriteAdvance(int)",
                   "");
    EXPECT_EQ(second.given(), 0u);
    EXPECT_TRUE(buf.isGuardWhole());
}

TEST(PortAddress, ToPutStreamFlushesAStreamWithATargetFirst) {
    utility::BufferStream target(200);
    utility::VirtualPutStream stream(target, 20, 10);
    ASSERT_TRUE(stream.StartOutputStream());
    stream.PutS("0123456789abcd");
    FCPortAddress(FCPortAddress::WWN_TYPE_0, "500a09818d5f1234").toPutStream(stream);
    stream.FlushOutputStream();
    EXPECT_STREQ(target.pBuffer(), "0123456789abcd500a09818d5f1234");
}

TEST(PortAddress, StrToPortTypeIgnoresCase) {
    for (const char* text : {"fc", "FC", "Fc"})
        EXPECT_EQ(PortAddress::StrToPortType(text), PortAddress::PORT_FC) << text;
    for (const char* text : {"iscsi", "iSCSI", "ISCSI"})
        EXPECT_EQ(PortAddress::StrToPortType(text), PortAddress::PORT_ISCSI) << text;
    for (const char* text : {"", "f", "fcx", " fc", "iscs", "iscsii", "sas", "6", "\xFF\x01"})
        EXPECT_EQ(PortAddress::StrToPortType(text), PortAddress::PORT_UNDEFINED) << text;
    EXPECT_EQ(PortAddress::StrToPortType(nullptr), PortAddress::PORT_UNDEFINED);
    EXPECT_EQ(PortAddress::StrToPortType(std::string(100000, 'f').c_str()), PortAddress::PORT_UNDEFINED);
}

TEST(PortAddress, PortTypeToNumericReturnsTheMessageNumbers) {
    EXPECT_EQ(PortAddress::PortTypeToNumeric(PortAddress::PORT_FC), 6u);
    EXPECT_EQ(PortAddress::PortTypeToNumeric(PortAddress::PORT_ISCSI), 9u);
    EXPECT_EQ(PortAddress::PortTypeToNumeric(PortAddress::PORT_UNDEFINED), 0u);
    for (const unsigned int other : {0u, 6u, 9u, 1510u, 0xFFFFFFFFu})
        EXPECT_EQ(PortAddress::PortTypeToNumeric(static_cast<PortAddress::PortType>(other)), 0u) << other;
}

TEST(PortAddress, PortTypeFromLinkTypeAcceptsSingleBitsOnly) {
    for (unsigned int linkType = 0; linkType < 256; ++linkType) {
        PortAddress::PortType expected = PortAddress::PORT_UNDEFINED;
        if (linkType == 1 || linkType == 64 || linkType == 128)
            expected = PortAddress::PORT_ISCSI;
        if (linkType == 2 || linkType == 8 || linkType == 16)
            expected = PortAddress::PORT_FC;
        EXPECT_EQ(PortAddress::PortTypeFromLinkType(static_cast<uint8_t>(linkType)), expected) << linkType;
    }
}

TEST(PortAddress, LinkTypesAreTraced) {
    const std::string where =
        "3 static utility::PortAddress::PortType utility::PortAddress::PortTypeFromLinkType(uint8_t): ";
    const test::DebugSwitch traced(traceSwitch);
    const test::LogCapture log;
    PortAddress::PortTypeFromLinkType(128);
    PortAddress::PortTypeFromLinkType(2);
    PortAddress::PortTypeFromLinkType(4);
    EXPECT_EQ(test::traceLines(log), (Lines{where + "link-type[128]", where + "iSCSI", where + "link-type[2]",
                                            where + "FC", where + "link-type[4]", where + "Undefined!"}));
}

TEST(PortAddress, TracesNothingWhileItsSwitchIsOff) {
    const test::LogCapture log;
    for (const uint8_t linkType : {uint8_t{1}, uint8_t{2}, uint8_t{3}})
        PortAddress::PortTypeFromLinkType(linkType);
    EXPECT_EQ(test::traceLines(log), Lines());
}

} // namespace
