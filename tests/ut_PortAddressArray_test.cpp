#include "ut_PortAddressArray.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include "ArrayModel.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "HeapGrowth.h"
#include "LogCapture.h"
#include "TraceLines.h"
#include "fw_Memory.h"
#include "ut_BufferStream.h"
#include "ut_FCPortAddress.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_PortAddress.h"

namespace {

using utility::FCPortAddress;
using utility::PortAddress;
using utility::PortAddressArray;
using Content = std::vector<PortAddress*>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 4500;
const FCPortAddress::WWNType TYPE = FCPortAddress::WWN_TYPE_0;
const unsigned int NOT_FOUND = 0xFFFFFFFF;
const char* const BOTH_KINDS = "500a09818d5f1234,,10.1.2.3:3260[tgt1]";
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";
const char* const APPEND = "3 void utility::PortAddressArray::Append(utility::PortAddress*): ";
const char* const INSERT_AT = "void utility::PortAddressArray::InsertAt(unsigned int, utility::PortAddress*)";
const char* const SET_AT = "void utility::PortAddressArray::SetAt(unsigned int, utility::PortAddress*)";
const char* const DELETE_AT = "void utility::PortAddressArray::DeleteAt(unsigned int)";
const char* const AT = "utility::PortAddress*& utility::PortAddressArray::operator[](unsigned int)";
const char* const AT_CONST = "utility::PortAddress* const& utility::PortAddressArray::operator[](unsigned int) const";

static_assert(!std::is_convertible<unsigned int, PortAddressArray>::value, "the constructor must be explicit");

// An array that does not delete its elements.
class Unowned : public PortAddressArray {
public:
    using PortAddressArray::PortAddressArray;
    Unowned(const Unowned& other) : PortAddressArray(other.size()) {
        for (unsigned int index = 0; index < other.length(); ++index)
            Append(other[index]);
    }
    ~Unowned() override {
        truncate(0);
    }
};

Content contentOf(const PortAddressArray& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

void fill(PortAddressArray& array, unsigned int count, PortAddress* element) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(element);
}

std::string text(PortAddress* element) {
    char result[40];
    std::snprintf(result, sizeof result, "%p", static_cast<void*>(element));
    return result;
}

std::string appending(PortAddress* element, int index) {
    return APPEND + ("Appending [" + text(element) + "] at ") + std::to_string(index);
}

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
        array.Append(new FCPortAddress(TYPE, "500a09818d5f1234"));
        array.Append(nullptr);
        array.Append(new utility::ISCSIPortAddress(address, 3260, "tgt1"));
    }

    FCPortAddress a{TYPE, "01"};
    FCPortAddress b{TYPE, "02"};
    FCPortAddress c{TYPE, "03"};
    FCPortAddress d{TYPE, "04"};
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

TEST_F(PortAddressArrayTest, ACapacityOfZeroMeansTwenty) {
    const Unowned array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST_F(PortAddressArrayTest, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    Unowned array(2);
    array.Append(&a);
    array.Append(nullptr);
    EXPECT_EQ(array.size(), 2u);
    array.Append(&c);
    EXPECT_EQ(array.size(), 22u);
    EXPECT_EQ(contentOf(array), (Content{&a, nullptr, &c}));
}

TEST_F(PortAddressArrayTest, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    Unowned array(3);
    array.InsertAt(0, &a);
    array.InsertAt(1, &b);
    array.InsertAt(0, &c);
    array.InsertAt(2, &d);
    EXPECT_EQ(contentOf(array), (Content{&c, &a, &d, &b}));
    EXPECT_EQ(array.size(), 23u);
}

TEST_F(PortAddressArrayTest, SetAtReplacesAndDeleteAtClosesTheGap) {
    Unowned array(3);
    fill(array, 3, &a);
    array.SetAt(1, &b);
    array.SetAt(2, &c);
    EXPECT_EQ(contentOf(array), (Content{&a, &b, &c}));
    array.DeleteAt(0);
    EXPECT_EQ(contentOf(array), (Content{&b, &c}));
    array.DeleteAt(1);
    array.DeleteAt(0);
    EXPECT_EQ(array.length(), 0u);
}

TEST_F(PortAddressArrayTest, TheIndexOperatorReturnsAReferenceToTheSlot) {
    Unowned array(2);
    fill(array, 2, &a);
    array[1] = &b;
    const PortAddressArray& constant = array;
    EXPECT_EQ(constant[1], &b);
    EXPECT_EQ(&constant[1], &array[1]);
}

TEST_F(PortAddressArrayTest, BadIndicesThrowAndChangeNothing) {
    Unowned array(2);
    fill(array, 2, &a);
    const PortAddressArray& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, &b), 1229, "ut_PortAddressArray", INSERT_AT, "");
    EXPECT_FAILURE(array.SetAt(2, &b), 1229, "ut_PortAddressArray", SET_AT, "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_PortAddressArray", DELETE_AT, "");
    EXPECT_FAILURE(array[2], 1229, "ut_PortAddressArray", AT, "");
    EXPECT_FAILURE(constant[2], 1229, "ut_PortAddressArray", AT_CONST, "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_PortAddressArray", AT_CONST, "");
    EXPECT_EQ(contentOf(array), (Content{&a, &a}));
    EXPECT_EQ(array.size(), 2u);
}

TEST_F(PortAddressArrayTest, ElementAtIsNullOutOfRange) {
    Unowned array(4);
    fill(array, 2, &a);
    EXPECT_EQ(array.ElementAt(0), &a);
    EXPECT_EQ(array.ElementAt(1), &a);
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
    EXPECT_EQ(textOf(copy), BOTH_KINDS);
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
    assigned.Append(new FCPortAddress(TYPE, "99"));
    EXPECT_EQ(&(assigned = array), &assigned);
    EXPECT_EQ(assigned.size(), 7u);
    expectClones(assigned, array);
    array.DeleteAll();
    EXPECT_EQ(textOf(assigned), BOTH_KINDS);
    assigned = array;
    EXPECT_EQ(assigned.length(), 0u);
    EXPECT_EQ(assigned.size(), 7u);
}

TEST_F(PortAddressArrayTest, SelfAssignmentChangesNothing) {
    PortAddressArray array(7);
    fillWithBothKinds(array);
    const Content before = contentOf(array);
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
    EXPECT_EQ(textOf(array), BOTH_KINDS);
}

TEST_F(PortAddressArrayTest, ReplacedRemovedAndTruncatedElementsAreNotDeleted) {
    PortAddressArray array(4);
    array.Append(&a);
    array.Append(&b);
    array.Append(&c);
    array.SetAt(0, nullptr);
    array.DeleteAt(1);
    array.truncate(1);
    array.DeleteAll();
    EXPECT_EQ(array.length(), 0u);
}

TEST_F(PortAddressArrayTest, WritesItsElementsWithCommasBetween) {
    Unowned array(4);
    EXPECT_EQ(textOf(array), "");
    array.Append(&a);
    EXPECT_EQ(textOf(array), "0100000000000000");
    array.Append(&b);
    EXPECT_EQ(textOf(array), "0100000000000000,0200000000000000");
}

TEST_F(PortAddressArrayTest, WritesTheCommasOfNullElementsToo) {
    Unowned array(4);
    array.Append(nullptr);
    EXPECT_EQ(textOf(array), "");
    array.Append(nullptr);
    EXPECT_EQ(textOf(array), ",");
    array.Append(&a);
    array.Append(nullptr);
    EXPECT_EQ(textOf(array), ",,0100000000000000,");
}

TEST_F(PortAddressArrayTest, AStreamWithoutSpaceForACommaThrows) {
    Unowned array(4);
    fill(array, 2, &a);
    utility::BufferStream stream(16);
    EXPECT_FAILURE(array.toPutStream(stream), 1239, "ut_PutStream", "void utility::PutStream::PutC(char)", "");
    EXPECT_STREQ(stream.pBuffer(), "0100000000000000");
}

TEST_F(PortAddressArrayTest, FindReturnsTheFirstIndexOfAnElement) {
    Unowned array(4);
    EXPECT_EQ(array.Find(&a), NOT_FOUND);
    EXPECT_EQ(array.Find(nullptr), NOT_FOUND);
    array.Append(&a);
    array.Append(&b);
    array.Append(nullptr);
    array.Append(&b);
    array.Append(&c);
    EXPECT_EQ(array.Find(&a), 0u);
    EXPECT_EQ(array.Find(&b), 1u);
    EXPECT_EQ(array.Find(nullptr), 2u);
    EXPECT_EQ(array.Find(&c), 4u);
    EXPECT_EQ(array.Find(&d), NOT_FOUND);
    array.truncate(4);
    EXPECT_EQ(array.Find(&c), NOT_FOUND);
}

TEST_F(PortAddressArrayTest, AppendOfAnArrayAddsItsElementsInOrder) {
    Unowned array(20);
    array.Append(&a);
    Unowned other(4);
    other.Append(&b);
    other.Append(nullptr);
    other.Append(&c);
    array.Append(other);
    EXPECT_EQ(contentOf(array), (Content{&a, &b, nullptr, &c}));
    EXPECT_EQ(contentOf(other), (Content{&b, nullptr, &c}));
    EXPECT_EQ(array.size(), 20u);
}

TEST_F(PortAddressArrayTest, AppendOfAnArrayGrowsOnceAsSoonAsItWouldBeFull) {
    Unowned ten(10);
    fill(ten, 10, &b);
    Unowned array(20);
    fill(array, 9, &a);
    array.Append(ten);
    EXPECT_EQ(array.length(), 19u);
    EXPECT_EQ(array.size(), 20u);

    Unowned exact(20);
    fill(exact, 10, &a);
    exact.Append(ten);
    EXPECT_EQ(exact.length(), 20u);
    EXPECT_EQ(exact.size(), 40u);
}

TEST_F(PortAddressArrayTest, AppendOfAnArrayGrowsByItsLengthIfMoreThanTwenty) {
    Unowned many(30);
    Unowned array(5);
    fill(array, 5, &a);
    fill(many, 20, &b);
    array.Append(many);
    EXPECT_EQ(array.length(), 25u);
    EXPECT_EQ(array.size(), 25u);
    fill(many, 1, &c);
    array.Append(many);
    EXPECT_EQ(array.length(), 46u);
    EXPECT_EQ(array.size(), 46u);
    EXPECT_EQ(array[45], &c);
}

TEST_F(PortAddressArrayTest, AppendOfAnEmptyArrayToAFullOneStillGrows) {
    Unowned none(0);
    Unowned array(2);
    fill(array, 2, &a);
    array.Append(none);
    EXPECT_EQ(contentOf(array), (Content{&a, &a}));
    EXPECT_EQ(array.size(), 22u);
}

TEST_F(PortAddressArrayTest, AnArrayAppendedToItselfDoubles) {
    Unowned array(3);
    array.Append(&a);
    array.Append(&b);
    array.Append(&c);
    array.Append(array);
    EXPECT_EQ(contentOf(array), (Content{&a, &b, &c, &a, &b, &c}));
    EXPECT_EQ(array.size(), 23u);
}

TEST_F(PortAddressArrayTest, AppendTraces) {
    Unowned array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(&a);
    array.Append(nullptr);
    EXPECT_EQ(test::traceLines(log), (Lines{appending(&a, 0), std::string(APPEND) + "Appending [(nil)] at 1"}));
}

TEST_F(PortAddressArrayTest, AppendOfAnArrayTracesEachElement) {
    Unowned array(4);
    array.Append(&a);
    Unowned other(4);
    other.Append(&b);
    other.Append(&c);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(other);
    EXPECT_EQ(test::traceLines(log), (Lines{appending(&b, 1), appending(&c, 2)}));
}

TEST_F(PortAddressArrayTest, InsertAtTracesEachMoveFromTheTopDown) {
    Unowned array(4);
    fill(array, 3, &a);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.InsertAt(1, &b);
    const std::string start = std::string("3 ") + INSERT_AT + ": ";
    EXPECT_EQ(test::traceLines(log), (Lines{std::string("4 ") + INSERT_AT + ": Enter", start + "moving from 2 to 3",
                                            start + "moving from 1 to 2", start + "setting 1 = " + text(&b)}));
}

TEST_F(PortAddressArrayTest, ARejectedInsertAtTracesOnlyItsEntry) {
    Unowned array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, &b));
    EXPECT_EQ(test::traceLines(log), (Lines{std::string("4 ") + INSERT_AT + ": Enter"}));
}

TEST_F(PortAddressArrayTest, OtherOperationsDoNotTrace) {
    Unowned array(4);
    array.Append(&a);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.SetAt(0, &b);
    array.Find(&b);
    CATCH_FAILURE(array[9]);
    PortAddressArray copy(array);
    PortAddressArray assigned(1);
    assigned = copy;
    assigned.ElementAt(0);
    assigned.DeleteAll();
    copy.sort();
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST_F(PortAddressArrayTest, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    Unowned array(1);
    fill(array, 2, &a);
    array.InsertAt(0, &b);
    array.Append(array);
    array.DeleteAt(0);
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST_F(PortAddressArrayTest, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        Unowned array(2);
        fill(array, 50, &a);
        const std::unique_ptr<utility::Array> copy(new Unowned(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST_F(PortAddressArrayTest, WithoutMemoryEveryOperationThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        Unowned array(2);
        array.Append(&a);
        array.Append(&b);
        std::unique_ptr<framework::Exception> failure;
        int failures = 0;
        const auto check = [&] {
            ++failures;
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
            EXPECT_EQ(contentOf(array), (Content{&a, &b}));
            EXPECT_EQ(array.size(), 2u);
            EXPECT_EQ(framework::Memory::staticOutstanding(), before + 1);
        };
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(Unowned(3)); }, check);
        EXPECT_EQ(failures, 1);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(array.Append(array)); }, check);
        EXPECT_EQ(failures, 2);
        EXPECT_EQ(contentOf(array), (Content{&a, &b, &a, &b}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST_F(PortAddressArrayTest, WithoutMemoryCopyThrowsAndDoesNotLeak) {
    PortAddressArray array(4);
    fillWithBothKinds(array);
    PortAddressArray assigned(3);
    assigned.Append(new FCPortAddress(TYPE, "99"));
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
                EXPECT_EQ(textOf(array), BOTH_KINDS);
                EXPECT_EQ(textOf(assigned), "9900000000000000");
                EXPECT_EQ(assigned.size(), 3u);
            });
    };
    EXPECT_EQ(attempt([&] { const PortAddressArray copy(array); }), 3u);
    EXPECT_EQ(attempt([&] { assigned = array; }), 3u);
    EXPECT_EQ(blocks, 2);
    EXPECT_EQ(clones, 4);
    EXPECT_EQ(textOf(assigned), BOTH_KINDS);
}

TEST_F(PortAddressArrayTest, WithoutMemoryAFullArrayStaysUnchanged) {
    Unowned array(1);
    array.Append(&a);
    std::unique_ptr<framework::Exception> failure;
    int failures = 0;
    const auto check = [&] {
        ++failures;
        EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
        EXPECT_EQ(array.length(), array.size());
    };
    test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(array.Append(&b)); }, check);
    EXPECT_EQ(failures, 1);
    EXPECT_EQ(contentOf(array), (Content{&a, &b}));
    fill(array, 19, &c);
    test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(array.InsertAt(0, &d)); }, check);
    EXPECT_EQ(failures, 2);
    EXPECT_EQ(array.length(), 22u);
    EXPECT_EQ(array[0], &d);
}

TEST_F(PortAddressArrayTest, BehavesAsAVectorUnderRandomOperations) {
    std::vector<FCPortAddress> elements(5, FCPortAddress(TYPE, "05"));
    const auto makeValue = [&](std::mt19937& random) {
        const size_t pick = random() % 6;
        return pick < elements.size() ? static_cast<PortAddress*>(&elements[pick]) : nullptr;
    };
    for (unsigned int seed = 1; seed <= 4; ++seed)
        test::ArrayModel<Unowned, PortAddress*>(seed, 10 * (seed - 1)).run(1000, makeValue);
}

} // namespace
