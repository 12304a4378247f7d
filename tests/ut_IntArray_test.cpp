#include "ut_IntArray.h"

#include <gtest/gtest.h>

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

using utility::IntArray;
using Content = std::vector<int>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 442;
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(!std::is_copy_assignable<IntArray>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, IntArray>::value, "the constructor must be explicit");

Content contentOf(const IntArray& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

void fill(IntArray& array, unsigned int count) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(static_cast<int>(index));
}

TEST(IntArray, UsageExample) {
    utility::IntArray ports(4);
    ports.Append(7);
    ports.InsertAt(0, 3);
    EXPECT_EQ(ports[1], 7);
}

TEST(IntArray, ACapacityOfZeroMeansTwenty) {
    const IntArray array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST(IntArray, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    IntArray array(5);
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

TEST(IntArray, KeepsTheExtremeValues) {
    IntArray array(1);
    array.Append(std::numeric_limits<int>::min());
    array.InsertAt(0, std::numeric_limits<int>::max());
    EXPECT_EQ(contentOf(array), (Content{std::numeric_limits<int>::max(), std::numeric_limits<int>::min()}));
}

TEST(IntArray, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    IntArray array(4);
    array.InsertAt(0, 7);
    array.InsertAt(1, -3);
    array.InsertAt(0, 1000000);
    array.InsertAt(1, 42);
    EXPECT_EQ(contentOf(array), (Content{1000000, 42, 7, -3}));
    EXPECT_EQ(array.size(), 4u);
    array.InsertAt(2, -3);
    EXPECT_EQ(contentOf(array), (Content{1000000, 42, -3, 7, -3}));
    EXPECT_EQ(array.size(), 24u);
}

TEST(IntArray, SetAtReplacesAndDeleteAtClosesTheGap) {
    IntArray array(4);
    fill(array, 4);
    array.SetAt(0, -3);
    array.SetAt(3, 1000000);
    EXPECT_EQ(contentOf(array), (Content{-3, 1, 2, 1000000}));
    array.DeleteAt(1);
    EXPECT_EQ(contentOf(array), (Content{-3, 2, 1000000}));
    array.DeleteAt(2);
    array.DeleteAt(0);
    EXPECT_EQ(contentOf(array), (Content{2}));
    array.DeleteAt(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 4u);
}

TEST(IntArray, TheIndexOperatorReturnsAReferenceToTheSlot) {
    IntArray array(4);
    fill(array, 2);
    array[1] = -3;
    const IntArray& constant = array;
    EXPECT_EQ(constant[1], -3);
    EXPECT_EQ(&constant[1], &array[1]);
}

TEST(IntArray, BadIndicesThrowAndChangeNothing) {
    IntArray array(2);
    fill(array, 2);
    const IntArray& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, -3), 1229, "ut_IntArray", "void utility::IntArray::InsertAt(unsigned int, int)",
                   "");
    EXPECT_FAILURE(array.SetAt(2, -3), 1229, "ut_IntArray", "void utility::IntArray::SetAt(unsigned int, int)", "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_IntArray", "void utility::IntArray::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[2], 1229, "ut_IntArray", "int& utility::IntArray::operator[](unsigned int)", "");
    EXPECT_FAILURE(constant[2], 1229, "ut_IntArray", "const int& utility::IntArray::operator[](unsigned int) const",
                   "");
    EXPECT_FAILURE(array.InsertAt(0xFFFFFFFF, -3), 1229, "ut_IntArray",
                   "void utility::IntArray::InsertAt(unsigned int, int)", "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_IntArray",
                   "const int& utility::IntArray::operator[](unsigned int) const", "");
    EXPECT_EQ(contentOf(array), (Content{0, 1}));
    EXPECT_EQ(array.size(), 2u);
}

TEST(IntArray, AnEmptyArrayHasNoElementToSetDeleteOrRead) {
    IntArray array(2);
    EXPECT_FAILURE(array.SetAt(0, -3), 1229, "ut_IntArray", "void utility::IntArray::SetAt(unsigned int, int)", "");
    EXPECT_FAILURE(array.DeleteAt(0), 1229, "ut_IntArray", "void utility::IntArray::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[0], 1229, "ut_IntArray", "int& utility::IntArray::operator[](unsigned int)", "");
    EXPECT_EQ(array.length(), 0u);
}

TEST(IntArray, ACopyHasTheSameCapacityAndItsOwnElements) {
    IntArray array(7);
    fill(array, 5);
    array.truncate(3);
    IntArray copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(contentOf(copy), (Content{0, 1, 2}));
    copy.SetAt(0, -3);
    EXPECT_EQ(array[0], 0);
    array.SetAt(1, 1000000);
    EXPECT_EQ(contentOf(copy), (Content{-3, 1, 2}));
}

TEST(IntArray, TruncateNeverLengthens) {
    IntArray array(4);
    fill(array, 3);
    array.truncate(4);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(3);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(1);
    EXPECT_EQ(contentOf(array), (Content{0}));
    EXPECT_EQ(array.size(), 4u);
    EXPECT_FAILURE(array[1], 1229, "ut_IntArray", "int& utility::IntArray::operator[](unsigned int)", "");
    array.truncate(0);
    EXPECT_EQ(array.length(), 0u);
}

TEST(IntArray, SortDoesNotChangeTheOrder) {
    IntArray array(4);
    array.Append(9);
    array.Append(2);
    array.sort();
    EXPECT_EQ(contentOf(array), (Content{9, 2}));
}

TEST(IntArray, AppendTraces) {
    IntArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(7);
    array.Append(-3);
    EXPECT_EQ(test::traceLines(log), (Lines{"3 void utility::IntArray::Append(int): Appending [7] at 0",
                                            "3 void utility::IntArray::Append(int): Appending [-3] at 1"}));
}

TEST(IntArray, InsertAtTracesEachMoveFromTheTopDown) {
    IntArray array(4);
    array.Append(7);
    array.Append(-3);
    array.Append(1000000);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.InsertAt(1, 42);
    EXPECT_EQ(test::traceLines(log), (Lines{"4 void utility::IntArray::InsertAt(unsigned int, int): Enter",
                                            "3 void utility::IntArray::InsertAt(unsigned int, int): moving from 2 to 3",
                                            "3 void utility::IntArray::InsertAt(unsigned int, int): moving from 1 to 2",
                                            "3 void utility::IntArray::InsertAt(unsigned int, int): setting 1 = 42"}));
}

TEST(IntArray, ARejectedInsertAtTracesOnlyItsEntry) {
    IntArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, 1000000));
    EXPECT_EQ(test::traceLines(log), (Lines{"4 void utility::IntArray::InsertAt(unsigned int, int): Enter"}));
}

TEST(IntArray, OtherOperationsDoNotTrace) {
    IntArray array(4);
    array.Append(7);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.SetAt(0, -3);
    CATCH_FAILURE(array.SetAt(9, -3));
    CATCH_FAILURE(array[9]);
    IntArray copy(array);
    copy.DeleteAt(0);
    copy.truncate(0);
    copy.sort();
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(IntArray, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    IntArray array(1);
    fill(array, 2);
    array.InsertAt(0, -3);
    array.SetAt(0, 7);
    array.DeleteAt(0);
    CATCH_FAILURE(array.InsertAt(9, 7));
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(IntArray, GrowthIsTracedBeforeTheElement) {
    IntArray array(1);
    array.Append(7);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::DebugSwitch growthTraced(292);
    test::LogCapture log;
    array.Append(-3);
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(texts[0].find("growing array from " + std::to_string(sizeof(int)) + " to " +
                            std::to_string(21 * sizeof(int)) + ", old ["),
              0u)
        << texts[0];
    EXPECT_EQ(texts.back(), "Appending [-3] at 1");
}

TEST(IntArray, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        IntArray array(2);
        fill(array, 50);
        const std::unique_ptr<utility::Array> copy(new IntArray(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(IntArray, WithoutMemoryEveryOperationThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        IntArray full(2);
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
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(IntArray(3)); }, check);
        EXPECT_EQ(failures, 1);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(IntArray{full}); }, check);
        EXPECT_EQ(failures, 2);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(full.Append(2)); }, check);
        EXPECT_EQ(failures, 3);
        EXPECT_EQ(contentOf(full), (Content{0, 1, 2}));
        IntArray other(1);
        other.Append(-3);
        const auto checkOther = [&] {
            ++failures;
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
            EXPECT_EQ(contentOf(other), (Content{-3}));
            EXPECT_EQ(other.size(), 1u);
        };
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(other.InsertAt(0, 1000000)); }, checkOther);
        EXPECT_EQ(failures, 4);
        EXPECT_EQ(contentOf(other), (Content{1000000, -3}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(IntArray, OperationsThatNeedNoNewBlockDoNotAllocate) {
    IntArray array(4);
    const unsigned long before = test::allocationCount();
    array.Append(7);
    array.InsertAt(0, -3);
    array.SetAt(0, 1000000);
    array.DeleteAt(1);
    array.truncate(0);
    EXPECT_EQ(test::allocationCount(), before);
}

TEST(IntArray, BehavesAsAVectorUnderRandomOperations) {
    const auto makeValue = [](std::mt19937& random) {
        return static_cast<int>(random());
    };
    for (unsigned int seed = 1; seed <= 4; ++seed)
        test::ArrayModel<IntArray, int>(seed, 10 * (seed - 1)).run(1000, makeValue);
}

} // namespace
