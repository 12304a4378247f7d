#include "ut_UShortArray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "ArrayModel.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "TraceLines.h"
#include "fw_Memory.h"

namespace {

using utility::UShortArray;
using Content = std::vector<unsigned short>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 634;
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(!std::is_copy_assignable<UShortArray>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, UShortArray>::value, "the constructor must be explicit");

Content contentOf(const UShortArray& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

void fill(UShortArray& array, unsigned int count) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(static_cast<unsigned short>(index));
}

TEST(UShortArray, UsageExample) {
    utility::UShortArray lanes(4);
    lanes.Append(9);
    lanes.Append(2);
    lanes.Sort();
    EXPECT_EQ(lanes.ElementAt(0), 2);
}

TEST(UShortArray, ACapacityOfZeroMeansTwenty) {
    const UShortArray array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST(UShortArray, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    UShortArray array(5);
    EXPECT_EQ(array.size(), 5u);
    fill(array, 5);
    EXPECT_EQ(array.size(), 5u);
    array.Append(5);
    EXPECT_EQ(array.size(), 25u);
    EXPECT_EQ(array.length(), 6u);
    EXPECT_EQ(contentOf(array), (Content{0, 1, 2, 3, 4, 5}));
    fill(array, 20);
    EXPECT_EQ(array.size(), 45u);
}

TEST(UShortArray, KeepsTheExtremeValues) {
    UShortArray array(1);
    array.Append(std::numeric_limits<unsigned short>::min());
    array.InsertAt(0, std::numeric_limits<unsigned short>::max());
    EXPECT_EQ(contentOf(array),
              (Content{std::numeric_limits<unsigned short>::max(), std::numeric_limits<unsigned short>::min()}));
}

TEST(UShortArray, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    UShortArray array(4);
    array.InsertAt(0, 7u);
    array.InsertAt(1, 65535u);
    array.InsertAt(0, 32768u);
    array.InsertAt(1, 42u);
    EXPECT_EQ(contentOf(array), (Content{32768u, 42u, 7u, 65535u}));
    EXPECT_EQ(array.size(), 4u);
    array.InsertAt(2, 65535u);
    EXPECT_EQ(contentOf(array), (Content{32768u, 42u, 65535u, 7u, 65535u}));
    EXPECT_EQ(array.size(), 24u);
}

TEST(UShortArray, SetAtReplacesAndDeleteAtClosesTheGap) {
    UShortArray array(4);
    fill(array, 4);
    array.SetAt(0, 65535u);
    array.SetAt(3, 32768u);
    EXPECT_EQ(contentOf(array), (Content{65535u, 1, 2, 32768u}));
    array.DeleteAt(1);
    EXPECT_EQ(contentOf(array), (Content{65535u, 2, 32768u}));
    array.DeleteAt(2);
    array.DeleteAt(0);
    EXPECT_EQ(contentOf(array), (Content{2}));
    array.DeleteAt(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 4u);
}

TEST(UShortArray, TheIndexOperatorReturnsAReferenceToTheSlot) {
    UShortArray array(4);
    fill(array, 2);
    array[1] = 65535u;
    const UShortArray& constant = array;
    EXPECT_EQ(constant[1], 65535u);
    EXPECT_EQ(&constant[1], &array[1]);
}

TEST(UShortArray, BadIndicesThrowAndChangeNothing) {
    UShortArray array(2);
    fill(array, 2);
    const UShortArray& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, 65535u), 1229, "ut_UShortArray",
                   "void utility::UShortArray::InsertAt(unsigned int, short unsigned int)", "");
    EXPECT_FAILURE(array.SetAt(2, 65535u), 1229, "ut_UShortArray",
                   "void utility::UShortArray::SetAt(unsigned int, short unsigned int)", "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_UShortArray", "void utility::UShortArray::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[2], 1229, "ut_UShortArray",
                   "short unsigned int& utility::UShortArray::operator[](unsigned int)", "");
    EXPECT_FAILURE(constant[2], 1229, "ut_UShortArray",
                   "const short unsigned int& utility::UShortArray::operator[](unsigned int) const", "");
    EXPECT_FAILURE(array.InsertAt(0xFFFFFFFF, 65535u), 1229, "ut_UShortArray",
                   "void utility::UShortArray::InsertAt(unsigned int, short unsigned int)", "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_UShortArray",
                   "const short unsigned int& utility::UShortArray::operator[](unsigned int) const", "");
    EXPECT_EQ(contentOf(array), (Content{0, 1}));
    EXPECT_EQ(array.size(), 2u);
}

TEST(UShortArray, AnEmptyArrayHasNoElementToSetDeleteOrRead) {
    UShortArray array(2);
    EXPECT_FAILURE(array.SetAt(0, 65535u), 1229, "ut_UShortArray",
                   "void utility::UShortArray::SetAt(unsigned int, short unsigned int)", "");
    EXPECT_FAILURE(array.DeleteAt(0), 1229, "ut_UShortArray", "void utility::UShortArray::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[0], 1229, "ut_UShortArray",
                   "short unsigned int& utility::UShortArray::operator[](unsigned int)", "");
    EXPECT_EQ(array.length(), 0u);
}

TEST(UShortArray, ACopyHasTheSameCapacityAndItsOwnElements) {
    UShortArray array(7);
    fill(array, 5);
    array.truncate(3);
    UShortArray copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(contentOf(copy), (Content{0, 1, 2}));
    copy.SetAt(0, 65535u);
    EXPECT_EQ(array[0], 0);
    array.SetAt(1, 32768u);
    EXPECT_EQ(contentOf(copy), (Content{65535u, 1, 2}));
}

TEST(UShortArray, TruncateNeverLengthens) {
    UShortArray array(4);
    fill(array, 3);
    array.truncate(4);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(3);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(1);
    EXPECT_EQ(contentOf(array), (Content{0}));
    EXPECT_EQ(array.size(), 4u);
    EXPECT_FAILURE(array[1], 1229, "ut_UShortArray",
                   "short unsigned int& utility::UShortArray::operator[](unsigned int)", "");
    array.truncate(0);
    EXPECT_EQ(array.length(), 0u);
}

TEST(UShortArray, ElementAtIsZeroOutOfRange) {
    UShortArray array(4);
    array.Append(7u);
    array.Append(65535u);
    array.truncate(1);
    EXPECT_EQ(array.ElementAt(0), 7u);
    EXPECT_EQ(array.ElementAt(1), 0);
    EXPECT_EQ(array.ElementAt(0xFFFFFFFF), 0);
}

TEST(UShortArray, TheVirtualSortDoesNotChangeTheOrder) {
    UShortArray array(4);
    array.Append(9);
    array.Append(2);
    array.sort();
    EXPECT_EQ(contentOf(array), (Content{9, 2}));
}

TEST(UShortArray, SortSortsAscending) {
    UShortArray array(8);
    for (const unsigned short value : Content{40000, 3, 65535, 3, 0, 40000, 1})
        array.Append(value);
    array.Sort();
    EXPECT_EQ(contentOf(array), (Content{0, 1, 3, 3, 40000, 40000, 65535}));
    array.Sort();
    EXPECT_EQ(contentOf(array), (Content{0, 1, 3, 3, 40000, 40000, 65535}));
}

TEST(UShortArray, SortLeavesFewerThanTwoElementsUnchanged) {
    UShortArray array(2);
    array.Sort();
    EXPECT_EQ(array.length(), 0u);
    array.Append(9);
    array.Sort();
    EXPECT_EQ(contentOf(array), (Content{9}));
    array.Append(2);
    array.Sort();
    EXPECT_EQ(contentOf(array), (Content{2, 9}));
}

TEST(UShortArray, SortTouchesOnlyTheElementsInUse) {
    UShortArray array(4);
    for (const unsigned short value : Content{9, 8, 1})
        array.Append(value);
    array.truncate(2);
    array.Sort();
    EXPECT_EQ(contentOf(array), (Content{8, 9}));
}

TEST(UShortArray, SortAgreesWithTheStandardSortOnRandomArrays) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        UShortArray array(0);
        const unsigned int range = random() % 2 == 0 ? 10 : 65536;
        for (unsigned int left = static_cast<unsigned int>(random() % 60); left > 0; --left)
            array.Append(static_cast<unsigned short>(random() % range));
        Content expected = contentOf(array);
        std::sort(expected.begin(), expected.end());
        array.Sort();
        ASSERT_EQ(contentOf(array), expected);
    }
}

TEST(UShortArray, AppendTraces) {
    UShortArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(7u);
    array.Append(65535u);
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::UShortArray::Append(short unsigned int): 7",
                     "3 void utility::UShortArray::Append(short unsigned int): Appending [7] at 0",
                     "4 void utility::UShortArray::Append(short unsigned int): 65535",
                     "3 void utility::UShortArray::Append(short unsigned int): Appending [65535] at 1"}));
}

TEST(UShortArray, InsertAtTracesEachMoveFromTheTopDown) {
    UShortArray array(4);
    array.Append(7u);
    array.Append(65535u);
    array.Append(32768u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.InsertAt(1, 42u);
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::UShortArray::InsertAt(unsigned int, short unsigned int): 1, 42",
                     "3 void utility::UShortArray::InsertAt(unsigned int, short unsigned int): moving from 2 to 3",
                     "3 void utility::UShortArray::InsertAt(unsigned int, short unsigned int): moving from 1 to 2",
                     "3 void utility::UShortArray::InsertAt(unsigned int, short unsigned int): setting 1 = 42"}));
}

TEST(UShortArray, ARejectedInsertAtTracesOnlyItsEntry) {
    UShortArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, 32768u));
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::UShortArray::InsertAt(unsigned int, short unsigned int): 1, 32768"}));
}

TEST(UShortArray, SetAtAndDeleteAtTraceTheirArgumentsEvenIfTheyFail) {
    UShortArray array(4);
    array.Append(7u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.SetAt(0, 65535u);
    CATCH_FAILURE(array.SetAt(1, 32768u));
    array.DeleteAt(0);
    CATCH_FAILURE(array.DeleteAt(7));
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::UShortArray::SetAt(unsigned int, short unsigned int): 0, 65535",
                     "4 void utility::UShortArray::SetAt(unsigned int, short unsigned int): 1, 32768",
                     "4 void utility::UShortArray::DeleteAt(unsigned int): 0",
                     "4 void utility::UShortArray::DeleteAt(unsigned int): 7"}));
}

TEST(UShortArray, ReadCopyTruncateAndSortDoNotTrace) {
    UShortArray array(4);
    array.Append(7u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array[9]);
    UShortArray copy(array);
    copy.ElementAt(0);
    copy.truncate(0);
    copy.Sort();
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(UShortArray, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    UShortArray array(1);
    fill(array, 2);
    array.InsertAt(0, 65535u);
    array.SetAt(0, 7u);
    array.DeleteAt(0);
    CATCH_FAILURE(array.InsertAt(9, 7u));
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(UShortArray, GrowthIsTracedBeforeTheElement) {
    UShortArray array(1);
    array.Append(7u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::DebugSwitch growthTraced(292);
    test::LogCapture log;
    array.Append(65535u);
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 5u);
    EXPECT_EQ(texts[1].find("growing array from " + std::to_string(sizeof(unsigned short)) + " to " +
                            std::to_string(21 * sizeof(unsigned short)) + ", old ["),
              0u)
        << texts[1];
    EXPECT_EQ(texts.back(), "Appending [65535] at 1");
}

TEST(UShortArray, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        UShortArray array(2);
        fill(array, 50);
        const std::unique_ptr<utility::Array> copy(new UShortArray(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(UShortArray, WithoutMemoryEveryOperationThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        UShortArray full(2);
        fill(full, 2);
        std::unique_ptr<framework::Exception> failure;
        int failures = 0;
        const auto check = [&] {
            ++failures;
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
            EXPECT_EQ(contentOf(full), (Content{0, 1}));
            EXPECT_EQ(full.size(), 2u);
            EXPECT_EQ(framework::Memory::staticOutstanding(), before + 1);
        };
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(UShortArray(3)); }, check);
        EXPECT_EQ(failures, 1);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(UShortArray{full}); }, check);
        EXPECT_EQ(failures, 2);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(full.Append(2)); }, check);
        EXPECT_EQ(failures, 3);
        EXPECT_EQ(contentOf(full), (Content{0, 1, 2}));
        UShortArray other(1);
        other.Append(65535u);
        const auto checkOther = [&] {
            ++failures;
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
            EXPECT_EQ(contentOf(other), (Content{65535u}));
            EXPECT_EQ(other.size(), 1u);
        };
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(other.InsertAt(0, 32768u)); }, checkOther);
        EXPECT_EQ(failures, 4);
        EXPECT_EQ(contentOf(other), (Content{32768u, 65535u}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(UShortArray, OperationsThatNeedNoNewBlockDoNotAllocate) {
    UShortArray array(4);
    const unsigned long before = test::allocationCount();
    array.Append(7u);
    array.InsertAt(0, 65535u);
    array.SetAt(0, 32768u);
    array.DeleteAt(1);
    array.truncate(0);
    EXPECT_EQ(test::allocationCount(), before);
}

TEST(UShortArray, BehavesAsAVectorUnderRandomOperations) {
    const auto makeValue = [](std::mt19937& random) {
        return static_cast<unsigned short>(random());
    };
    for (unsigned int seed = 1; seed <= 4; ++seed)
        test::ArrayModel<UShortArray, unsigned short>(seed, 10 * (seed - 1)).run(1000, makeValue);
}

} // namespace
