#include "ut_UIntArray.h"

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

using utility::UIntArray;
using Content = std::vector<unsigned int>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 629;
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(!std::is_copy_assignable<UIntArray>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, UIntArray>::value, "the constructor must be explicit");

Content contentOf(const UIntArray& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

void fill(UIntArray& array, unsigned int count) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(static_cast<unsigned int>(index));
}

TEST(UIntArray, UsageExample) {
    utility::UIntArray tokens(4);
    tokens.Append(0xFFFFFFFF);
    tokens.Append(1);
    tokens.sort();
    EXPECT_EQ(tokens[0], 1u);
}

TEST(UIntArray, ACapacityOfZeroMeansTwenty) {
    const UIntArray array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST(UIntArray, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    UIntArray array(5);
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

TEST(UIntArray, KeepsTheExtremeValues) {
    UIntArray array(1);
    array.Append(std::numeric_limits<unsigned int>::min());
    array.InsertAt(0, std::numeric_limits<unsigned int>::max());
    EXPECT_EQ(contentOf(array),
              (Content{std::numeric_limits<unsigned int>::max(), std::numeric_limits<unsigned int>::min()}));
}

TEST(UIntArray, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    UIntArray array(4);
    array.InsertAt(0, 7u);
    array.InsertAt(1, 0xFFFFFFFFu);
    array.InsertAt(0, 0x80000000u);
    array.InsertAt(1, 42u);
    EXPECT_EQ(contentOf(array), (Content{0x80000000u, 42u, 7u, 0xFFFFFFFFu}));
    EXPECT_EQ(array.size(), 4u);
    array.InsertAt(2, 0xFFFFFFFFu);
    EXPECT_EQ(contentOf(array), (Content{0x80000000u, 42u, 0xFFFFFFFFu, 7u, 0xFFFFFFFFu}));
    EXPECT_EQ(array.size(), 24u);
}

TEST(UIntArray, SetAtReplacesAndDeleteAtClosesTheGap) {
    UIntArray array(4);
    fill(array, 4);
    array.SetAt(0, 0xFFFFFFFFu);
    array.SetAt(3, 0x80000000u);
    EXPECT_EQ(contentOf(array), (Content{0xFFFFFFFFu, 1, 2, 0x80000000u}));
    array.DeleteAt(1);
    EXPECT_EQ(contentOf(array), (Content{0xFFFFFFFFu, 2, 0x80000000u}));
    array.DeleteAt(2);
    array.DeleteAt(0);
    EXPECT_EQ(contentOf(array), (Content{2}));
    array.DeleteAt(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 4u);
}

TEST(UIntArray, TheIndexOperatorReturnsAReferenceToTheSlot) {
    UIntArray array(4);
    fill(array, 2);
    array[1] = 0xFFFFFFFFu;
    const UIntArray& constant = array;
    EXPECT_EQ(constant[1], 0xFFFFFFFFu);
    EXPECT_EQ(&constant[1], &array[1]);
}

TEST(UIntArray, BadIndicesThrowAndChangeNothing) {
    UIntArray array(2);
    fill(array, 2);
    const UIntArray& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, 0xFFFFFFFFu), 1229, "ut_UIntArray",
                   "void utility::UIntArray::InsertAt(unsigned int, unsigned int)", "");
    EXPECT_FAILURE(array.SetAt(2, 0xFFFFFFFFu), 1229, "ut_UIntArray",
                   "void utility::UIntArray::SetAt(unsigned int, unsigned int)", "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_UIntArray", "void utility::UIntArray::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[2], 1229, "ut_UIntArray", "unsigned int& utility::UIntArray::operator[](unsigned int)", "");
    EXPECT_FAILURE(constant[2], 1229, "ut_UIntArray",
                   "const unsigned int& utility::UIntArray::operator[](unsigned int) const", "");
    EXPECT_FAILURE(array.InsertAt(0xFFFFFFFF, 0xFFFFFFFFu), 1229, "ut_UIntArray",
                   "void utility::UIntArray::InsertAt(unsigned int, unsigned int)", "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_UIntArray",
                   "const unsigned int& utility::UIntArray::operator[](unsigned int) const", "");
    EXPECT_EQ(contentOf(array), (Content{0, 1}));
    EXPECT_EQ(array.size(), 2u);
}

TEST(UIntArray, AnEmptyArrayHasNoElementToSetDeleteOrRead) {
    UIntArray array(2);
    EXPECT_FAILURE(array.SetAt(0, 0xFFFFFFFFu), 1229, "ut_UIntArray",
                   "void utility::UIntArray::SetAt(unsigned int, unsigned int)", "");
    EXPECT_FAILURE(array.DeleteAt(0), 1229, "ut_UIntArray", "void utility::UIntArray::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[0], 1229, "ut_UIntArray", "unsigned int& utility::UIntArray::operator[](unsigned int)", "");
    EXPECT_EQ(array.length(), 0u);
}

TEST(UIntArray, ACopyHasTheSameCapacityAndItsOwnElements) {
    UIntArray array(7);
    fill(array, 5);
    array.truncate(3);
    UIntArray copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(contentOf(copy), (Content{0, 1, 2}));
    copy.SetAt(0, 0xFFFFFFFFu);
    EXPECT_EQ(array[0], 0);
    array.SetAt(1, 0x80000000u);
    EXPECT_EQ(contentOf(copy), (Content{0xFFFFFFFFu, 1, 2}));
}

TEST(UIntArray, TruncateNeverLengthens) {
    UIntArray array(4);
    fill(array, 3);
    array.truncate(4);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(3);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(1);
    EXPECT_EQ(contentOf(array), (Content{0}));
    EXPECT_EQ(array.size(), 4u);
    EXPECT_FAILURE(array[1], 1229, "ut_UIntArray", "unsigned int& utility::UIntArray::operator[](unsigned int)", "");
    array.truncate(0);
    EXPECT_EQ(array.length(), 0u);
}

TEST(UIntArray, SortIsAscendingAndUnsignedAlsoThroughTheBaseClass) {
    UIntArray array(8);
    for (const unsigned int value : {0x80000000u, 3u, 0xFFFFFFFFu, 0u, 3u, 0x7FFFFFFFu})
        array.Append(value);
    utility::Array& base = array;
    base.sort();
    EXPECT_EQ(contentOf(array), (Content{0u, 3u, 3u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}));
}

TEST(UIntArray, SortTouchesOnlyTheElementsInUse) {
    UIntArray array(4);
    array.sort();
    EXPECT_EQ(array.length(), 0u);
    for (const unsigned int value : {9u, 8u, 1u})
        array.Append(value);
    array.truncate(2);
    array.sort();
    EXPECT_EQ(contentOf(array), (Content{8u, 9u}));
}

TEST(UIntArray, SortAgreesWithTheStandardSortOnRandomArrays) {
    std::mt19937 random(1);
    for (int round = 0; round < 200; ++round) {
        UIntArray array(0);
        for (unsigned int left = static_cast<unsigned int>(random() % 60); left > 0; --left)
            array.Append(static_cast<unsigned int>(random()));
        Content expected = contentOf(array);
        std::sort(expected.begin(), expected.end());
        array.sort();
        ASSERT_EQ(contentOf(array), expected);
    }
}

TEST(UIntArray, CompareIsUnsigned) {
    const unsigned int small = 1;
    const unsigned int great = 0x80000000u;
    const unsigned int same = 1;
    EXPECT_EQ(UIntArray::compare(&small, &great), -1);
    EXPECT_EQ(UIntArray::compare(&great, &small), 1);
    EXPECT_EQ(UIntArray::compare(&small, &same), 0);
}

TEST(UIntArray, AppendTraces) {
    UIntArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(7u);
    array.Append(0xFFFFFFFFu);
    EXPECT_EQ(test::traceLines(log), (Lines{"3 void utility::UIntArray::Append(unsigned int): Appending [7] at 0",
                                            "3 void utility::UIntArray::Append(unsigned int): Appending [-1] at 1"}));
}

TEST(UIntArray, InsertAtTracesEachMoveFromTheTopDown) {
    UIntArray array(4);
    array.Append(7u);
    array.Append(0xFFFFFFFFu);
    array.Append(0x80000000u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.InsertAt(1, 42u);
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::UIntArray::InsertAt(unsigned int, unsigned int): Enter",
                     "3 void utility::UIntArray::InsertAt(unsigned int, unsigned int): moving from 2 to 3",
                     "3 void utility::UIntArray::InsertAt(unsigned int, unsigned int): moving from 1 to 2",
                     "3 void utility::UIntArray::InsertAt(unsigned int, unsigned int): setting 1 = 42"}));
}

TEST(UIntArray, ARejectedInsertAtTracesOnlyItsEntry) {
    UIntArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, 0x80000000u));
    EXPECT_EQ(test::traceLines(log), (Lines{"4 void utility::UIntArray::InsertAt(unsigned int, unsigned int): Enter"}));
}

TEST(UIntArray, OtherOperationsDoNotTrace) {
    UIntArray array(4);
    array.Append(7u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.SetAt(0, 0xFFFFFFFFu);
    CATCH_FAILURE(array.SetAt(9, 0xFFFFFFFFu));
    CATCH_FAILURE(array[9]);
    UIntArray copy(array);
    copy.DeleteAt(0);
    copy.truncate(0);
    copy.sort();
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(UIntArray, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    UIntArray array(1);
    fill(array, 2);
    array.InsertAt(0, 0xFFFFFFFFu);
    array.SetAt(0, 7u);
    array.DeleteAt(0);
    CATCH_FAILURE(array.InsertAt(9, 7u));
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(UIntArray, GrowthIsTracedBeforeTheElement) {
    UIntArray array(1);
    array.Append(7u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::DebugSwitch growthTraced(292);
    test::LogCapture log;
    array.Append(0xFFFFFFFFu);
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(texts[0].find("growing array from " + std::to_string(sizeof(unsigned int)) + " to " +
                            std::to_string(21 * sizeof(unsigned int)) + ", old ["),
              0u)
        << texts[0];
    EXPECT_EQ(texts.back(), "Appending [-1] at 1");
}

TEST(UIntArray, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        UIntArray array(2);
        fill(array, 50);
        const std::unique_ptr<utility::Array> copy(new UIntArray(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(UIntArray, WithoutMemoryEveryOperationThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        UIntArray full(2);
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
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(UIntArray(3)); }, check);
        EXPECT_EQ(failures, 1);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(UIntArray{full}); }, check);
        EXPECT_EQ(failures, 2);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(full.Append(2)); }, check);
        EXPECT_EQ(failures, 3);
        EXPECT_EQ(contentOf(full), (Content{0, 1, 2}));
        UIntArray other(1);
        other.Append(0xFFFFFFFFu);
        const auto checkOther = [&] {
            ++failures;
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
            EXPECT_EQ(contentOf(other), (Content{0xFFFFFFFFu}));
            EXPECT_EQ(other.size(), 1u);
        };
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(other.InsertAt(0, 0x80000000u)); }, checkOther);
        EXPECT_EQ(failures, 4);
        EXPECT_EQ(contentOf(other), (Content{0x80000000u, 0xFFFFFFFFu}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(UIntArray, OperationsThatNeedNoNewBlockDoNotAllocate) {
    UIntArray array(4);
    const unsigned long before = test::allocationCount();
    array.Append(7u);
    array.InsertAt(0, 0xFFFFFFFFu);
    array.SetAt(0, 0x80000000u);
    array.DeleteAt(1);
    array.truncate(0);
    EXPECT_EQ(test::allocationCount(), before);
}

TEST(UIntArray, BehavesAsAVectorUnderRandomOperations) {
    const auto makeValue = [](std::mt19937& random) {
        return static_cast<unsigned int>(random());
    };
    for (unsigned int seed = 1; seed <= 4; ++seed)
        test::ArrayModel<UIntArray, unsigned int>(seed, 10 * (seed - 1)).run(1000, makeValue);
}

} // namespace
