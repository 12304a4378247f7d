#include "ut_PortAddressArray.h"

#include <memory>
#include <new>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ArrayContent.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "HeapGrowth.h"
#include "LogCapture.h"
#include "PointerArraySuite.h"
#include "TypedArraySuite.h"
#include "fw_Memory.h"
#include "ut_BufferStream.h"
#include "ut_FCPortAddress.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_PortAddress.h"

namespace {

using test::contentOf;
using utility::FCPortAddress;
using utility::PortAddress;
using utility::PortAddressArray;

constexpr FCPortAddress::WWNType type = FCPortAddress::WWN_TYPE_0;
constexpr const char* bothKinds = "500a09818d5f1234,,10.1.2.3:3260[tgt1]";

// A copy would clone the elements and not delete the clones.
class Unowned : public test::Unowned<PortAddressArray> {
public:
    using test::Unowned<PortAddressArray>::Unowned;
    Unowned(const Unowned&) = delete;
};

struct PortAddressArrayTraits : test::ArrayTraits {
    using ArrayType = Unowned;
    using Value = PortAddress*;
    static constexpr const char* className = "PortAddressArray";
    static constexpr const char* valueName = "utility::PortAddress*";
    static constexpr unsigned int traceSwitch = 4500;
    static PortAddress* element(unsigned int index) {
        static std::vector<FCPortAddress> addresses(50, FCPortAddress(type, "05"));
        return &addresses.at(index);
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(PortAddressArray, TypedArray, PortAddressArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(PortAddressArray, PointerArray, PortAddressArrayTraits);

std::string textOf(const PortAddressArray& array) {
    utility::BufferStream stream(1000);
    array.toPutStream(stream);
    return stream.pBuffer();
}

// Expects that the elements are equal, but not the same objects.
void expectClones(const PortAddressArray& copy, const PortAddressArray& original) {
    ASSERT_EQ(copy.length(), original.length());
    for (unsigned int index = 0; index < copy.length(); ++index) {
        if (original[index] == nullptr) {
            EXPECT_EQ(copy[index], nullptr);
            continue;
        }
        ASSERT_NE(copy[index], nullptr);
        EXPECT_NE(copy[index], original[index]);
        EXPECT_TRUE(*copy[index] == *original[index]);
    }
}

class PortAddressArrayTest : public testing::Test {
protected:
    void fillWithBothKinds(PortAddressArray& array) {
        utility::IPV4Address address("10.1.2.3");
        array.Append(new FCPortAddress(type, "500a09818d5f1234"));
        array.Append(nullptr);
        array.Append(new utility::ISCSIPortAddress(address, 3260, "tgt1"));
    }

    FCPortAddress m_a{type, "01"};
    FCPortAddress m_b{type, "02"};
    FCPortAddress m_c{type, "03"};
};

TEST_F(PortAddressArrayTest, UsageExample) {
    utility::IPV4Address address("10.1.2.3");
    utility::PortAddressArray ports(4);
    ports.Append(new utility::FCPortAddress(utility::FCPortAddress::WWN_TYPE_0, "500a09818d5f1234"));
    ports.Append(new utility::ISCSIPortAddress(address, 3260, "tgt1"));
    char text[64];
    utility::PutStream out(text, sizeof text);
    ports.toPutStream(out);
    EXPECT_STREQ(text, "500a09818d5f1234,10.1.2.3:3260[tgt1]");
}

TEST_F(PortAddressArrayTest, ElementAtIsNullOutOfRange) {
    Unowned array(4);
    array.Append(&m_a);
    array.Append(&m_b);
    EXPECT_EQ(array.ElementAt(0), &m_a);
    EXPECT_EQ(array.ElementAt(1), &m_b);
    EXPECT_EQ(array.ElementAt(2), nullptr);
    EXPECT_EQ(array.ElementAt(0xFFFFFFFF), nullptr);
}

TEST_F(PortAddressArrayTest, ACopyClonesTheElementsAndHasTheSameCapacity) {
    PortAddressArray array(7);
    fillWithBothKinds(array);
    const PortAddressArray copy(array);
    EXPECT_EQ(copy.size(), 7u);
    expectClones(copy, array);
    array.DeleteAll();
    EXPECT_EQ(textOf(copy), bothKinds);
}

TEST_F(PortAddressArrayTest, AnEmptyCopyHasTheSameCapacity) {
    const PortAddressArray array(7);
    const PortAddressArray copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(copy.length(), 0u);
}

TEST_F(PortAddressArrayTest, AnAssignmentReplacesTheElementsByClones) {
    PortAddressArray array(7);
    fillWithBothKinds(array);
    PortAddressArray assigned(30);
    fillWithBothKinds(assigned);
    assigned.Append(new FCPortAddress(type, "99"));
    EXPECT_EQ(&(assigned = array), &assigned);
    EXPECT_EQ(assigned.size(), 7u);
    expectClones(assigned, array);
    array.DeleteAll();
    EXPECT_EQ(textOf(assigned), bothKinds);
    assigned = array;
    EXPECT_EQ(assigned.length(), 0u);
    EXPECT_EQ(assigned.size(), 7u);
}

TEST_F(PortAddressArrayTest, SelfAssignmentChangesNothing) {
    PortAddressArray array(7);
    fillWithBothKinds(array);
    const std::vector<PortAddress*> before = contentOf(array);
    const PortAddressArray& itself = array;
    array = itself;
    EXPECT_EQ(contentOf(array), before);
    EXPECT_EQ(array.size(), 7u);
}

TEST_F(PortAddressArrayTest, AssignmentLeavesTheOldBlockCountedAsOutstanding) {
    const long before = framework::Memory::staticOutstanding();
    {
        PortAddressArray array(7);
        PortAddressArray assigned(7);
        assigned = array;
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 3);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before + 1);
}

TEST_F(PortAddressArrayTest, CopyAssignmentAndDeletionDoNotLeak) {
    EXPECT_LT(test::heapGrowth([this] {
                  PortAddressArray array(2);
                  fillWithBothKinds(array);
                  const PortAddressArray copy(array);
                  PortAddressArray assigned(3);
                  fillWithBothKinds(assigned);
                  assigned = array;
                  array.DeleteAll();
                  fillWithBothKinds(array);
                  const std::unique_ptr<utility::Array> base(new PortAddressArray(copy));
              }),
              8000u);
}

TEST_F(PortAddressArrayTest, DeleteAllEmptiesTheArrayAndKeepsItsBlock) {
    PortAddressArray array(2);
    fillWithBothKinds(array);
    EXPECT_EQ(array.size(), 22u);
    array.DeleteAll();
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 22u);
    array.DeleteAll();
    fillWithBothKinds(array);
    EXPECT_EQ(textOf(array), bothKinds);
}

TEST_F(PortAddressArrayTest, ReplacedRemovedAndTruncatedElementsAreNotDeleted) {
    PortAddressArray array(4);
    array.Append(&m_a);
    array.Append(&m_b);
    array.Append(&m_c);
    array.SetAt(0, nullptr);
    array.DeleteAt(1);
    array.truncate(1);
    array.DeleteAll();
    EXPECT_EQ(array.length(), 0u);
}

TEST_F(PortAddressArrayTest, WritesItsElementsWithCommasBetween) {
    Unowned array(4);
    EXPECT_EQ(textOf(array), "");
    array.Append(&m_a);
    EXPECT_EQ(textOf(array), "0100000000000000");
    array.Append(&m_b);
    EXPECT_EQ(textOf(array), "0100000000000000,0200000000000000");
}

TEST_F(PortAddressArrayTest, WritesTheCommasOfNullElementsToo) {
    Unowned array(4);
    array.Append(nullptr);
    EXPECT_EQ(textOf(array), "");
    array.Append(nullptr);
    EXPECT_EQ(textOf(array), ",");
    array.Append(&m_a);
    array.Append(nullptr);
    EXPECT_EQ(textOf(array), ",,0100000000000000,");
}

TEST_F(PortAddressArrayTest, AStreamWithoutSpaceForACommaThrows) {
    Unowned array(4);
    array.Append(&m_a);
    array.Append(&m_b);
    utility::BufferStream stream(16);
    EXPECT_FAILURE(array.toPutStream(stream), 1239, "ut_PutStream", "void utility::PutStream::PutC(char)", "");
    EXPECT_STREQ(stream.pBuffer(), "0100000000000000");
}

TEST_F(PortAddressArrayTest, CopyAssignmentAndDeletionDoNotTrace) {
    Unowned array(4);
    array.Append(&m_a);
    const test::DebugSwitch traced(PortAddressArrayTraits::traceSwitch);
    const test::LogCapture log;
    const PortAddressArray copy(array);
    PortAddressArray assigned(1);
    assigned = copy;
    EXPECT_NE(assigned.ElementAt(0), nullptr);
    assigned.DeleteAll();
    EXPECT_EQ(log.count(), 0u);
}

TEST_F(PortAddressArrayTest, WithoutMemoryCopyThrowsAndDoesNotLeak) {
    PortAddressArray array(4);
    fillWithBothKinds(array);
    PortAddressArray assigned(3);
    assigned.Append(new FCPortAddress(type, "99"));
    const long before = framework::Memory::staticOutstanding();
    int blocks = 0;
    int clones = 0;
    const auto attempt = [&](auto&& operation) {
        return test::failEachAllocationOnce(
            [&] {
                try {
                    operation();
                } catch (framework::Exception* failure) {
                    blocks += failure->code() == 1230;
                    delete failure;
                } catch (const std::bad_alloc&) {
                    ++clones;
                }
            },
            [&] {
                EXPECT_EQ(framework::Memory::staticOutstanding(), before);
                EXPECT_EQ(textOf(array), bothKinds);
                EXPECT_EQ(textOf(assigned), "9900000000000000");
                EXPECT_EQ(assigned.size(), 3u);
            });
    };
    EXPECT_EQ(attempt([&] { const PortAddressArray copy(array); }), 3u);
    EXPECT_EQ(attempt([&] { assigned = array; }), 3u);
    EXPECT_EQ(blocks, 2);
    EXPECT_EQ(clones, 4);
    EXPECT_EQ(textOf(assigned), bothKinds);
}

} // namespace
