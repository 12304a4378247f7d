#include "ut_Int64Array.h"

#include <gtest/gtest.h>

#include <cstdint>
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

using utility::Int64Array;
using Content = std::vector<int64_t>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 441;
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(!std::is_copy_assignable<Int64Array>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, Int64Array>::value, "the constructor must be explicit");

Content contentOf(const Int64Array& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

void fill(Int64Array& array, unsigned int count) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(static_cast<int64_t>(index));
}

TEST(Int64Array, UsageExample) {
    utility::Int64Array offsets(4);
    offsets.Append(-4096);
    offsets.InsertAt(1, 0x100000000);
    EXPECT_EQ(offsets[1], 4294967296);
}

TEST(Int64Array, ACapacityOfZeroMeansTwenty) {
    const Int64Array array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST(Int64Array, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    Int64Array array(5);
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

TEST(Int64Array, KeepsTheExtremeValues) {
    Int64Array array(1);
    array.Append(std::numeric_limits<int64_t>::min());
    array.InsertAt(0, std::numeric_limits<int64_t>::max());
    EXPECT_EQ(contentOf(array), (Content{std::numeric_limits<int64_t>::max(), std::numeric_limits<int64_t>::min()}));
}

TEST(Int64Array, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    Int64Array array(4);
    array.InsertAt(0, 7);
    array.InsertAt(1, -1);
    array.InsertAt(0, 0x100000000);
    array.InsertAt(1, 42);
    EXPECT_EQ(contentOf(array), (Content{0x100000000, 42, 7, -1}));
    EXPECT_EQ(array.size(), 4u);
    array.InsertAt(2, -1);
    EXPECT_EQ(contentOf(array), (Content{0x100000000, 42, -1, 7, -1}));
    EXPECT_EQ(array.size(), 24u);
}

TEST(Int64Array, SetAtReplacesAndDeleteAtClosesTheGap) {
    Int64Array array(4);
    fill(array, 4);
    array.SetAt(0, -1);
    array.SetAt(3, 0x100000000);
    EXPECT_EQ(contentOf(array), (Content{-1, 1, 2, 0x100000000}));
    array.DeleteAt(1);
    EXPECT_EQ(contentOf(array), (Content{-1, 2, 0x100000000}));
    array.DeleteAt(2);
    array.DeleteAt(0);
    EXPECT_EQ(contentOf(array), (Content{2}));
    array.DeleteAt(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 4u);
}

TEST(Int64Array, TheIndexOperatorReturnsAReferenceToTheSlot) {
    Int64Array array(4);
    fill(array, 2);
    array[1] = -1;
    const Int64Array& constant = array;
    EXPECT_EQ(constant[1], -1);
    EXPECT_EQ(&constant[1], &array[1]);
}

TEST(Int64Array, BadIndicesThrowAndChangeNothing) {
    Int64Array array(2);
    fill(array, 2);
    const Int64Array& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, -1), 1229, "ut_Int64Array",
                   "void utility::Int64Array::InsertAt(unsigned int, int64_t)", "");
    EXPECT_FAILURE(array.SetAt(2, -1), 1229, "ut_Int64Array", "void utility::Int64Array::SetAt(unsigned int, int64_t)",
                   "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_Int64Array", "void utility::Int64Array::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[2], 1229, "ut_Int64Array", "int64_t& utility::Int64Array::operator[](unsigned int)", "");
    EXPECT_FAILURE(constant[2], 1229, "ut_Int64Array",
                   "const int64_t& utility::Int64Array::operator[](unsigned int) const", "");
    EXPECT_FAILURE(array.InsertAt(0xFFFFFFFF, -1), 1229, "ut_Int64Array",
                   "void utility::Int64Array::InsertAt(unsigned int, int64_t)", "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_Int64Array",
                   "const int64_t& utility::Int64Array::operator[](unsigned int) const", "");
    EXPECT_EQ(contentOf(array), (Content{0, 1}));
    EXPECT_EQ(array.size(), 2u);
}

TEST(Int64Array, AnEmptyArrayHasNoElementToSetDeleteOrRead) {
    Int64Array array(2);
    EXPECT_FAILURE(array.SetAt(0, -1), 1229, "ut_Int64Array", "void utility::Int64Array::SetAt(unsigned int, int64_t)",
                   "");
    EXPECT_FAILURE(array.DeleteAt(0), 1229, "ut_Int64Array", "void utility::Int64Array::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[0], 1229, "ut_Int64Array", "int64_t& utility::Int64Array::operator[](unsigned int)", "");
    EXPECT_EQ(array.length(), 0u);
}

TEST(Int64Array, ACopyHasTheSameCapacityAndItsOwnElements) {
    Int64Array array(7);
    fill(array, 5);
    array.truncate(3);
    Int64Array copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(contentOf(copy), (Content{0, 1, 2}));
    copy.SetAt(0, -1);
    EXPECT_EQ(array[0], 0);
    array.SetAt(1, 0x100000000);
    EXPECT_EQ(contentOf(copy), (Content{-1, 1, 2}));
}

TEST(Int64Array, TruncateNeverLengthens) {
    Int64Array array(4);
    fill(array, 3);
    array.truncate(4);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(3);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(1);
    EXPECT_EQ(contentOf(array), (Content{0}));
    EXPECT_EQ(array.size(), 4u);
    EXPECT_FAILURE(array[1], 1229, "ut_Int64Array", "int64_t& utility::Int64Array::operator[](unsigned int)", "");
    array.truncate(0);
    EXPECT_EQ(array.length(), 0u);
}

TEST(Int64Array, SortDoesNotChangeTheOrder) {
    Int64Array array(4);
    array.Append(9);
    array.Append(2);
    array.sort();
    EXPECT_EQ(contentOf(array), (Content{9, 2}));
}

TEST(Int64Array, AppendTraces) {
    Int64Array array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(7);
    array.Append(-1);
    EXPECT_EQ(test::traceLines(log),
              (Lines{"3 void utility::Int64Array::Append(int64_t): Appending [7] at 0",
                     "3 void utility::Int64Array::Append(int64_t): Appending [18446744073709551615] at 1"}));
}

TEST(Int64Array, InsertAtTracesEachMoveFromTheTopDown) {
    Int64Array array(4);
    array.Append(7);
    array.Append(-1);
    array.Append(0x100000000);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.InsertAt(1, 42);
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::Int64Array::InsertAt(unsigned int, int64_t): Enter",
                     "3 void utility::Int64Array::InsertAt(unsigned int, int64_t): moving from 2 to 3",
                     "3 void utility::Int64Array::InsertAt(unsigned int, int64_t): moving from 1 to 2",
                     "3 void utility::Int64Array::InsertAt(unsigned int, int64_t): setting 42 = 1"}));
}

TEST(Int64Array, ARejectedInsertAtTracesOnlyItsEntry) {
    Int64Array array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, 0x100000000));
    EXPECT_EQ(test::traceLines(log), (Lines{"4 void utility::Int64Array::InsertAt(unsigned int, int64_t): Enter"}));
}

TEST(Int64Array, OtherOperationsDoNotTrace) {
    Int64Array array(4);
    array.Append(7);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.SetAt(0, -1);
    CATCH_FAILURE(array.SetAt(9, -1));
    CATCH_FAILURE(array[9]);
    Int64Array copy(array);
    copy.DeleteAt(0);
    copy.truncate(0);
    copy.sort();
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(Int64Array, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    Int64Array array(1);
    fill(array, 2);
    array.InsertAt(0, -1);
    array.SetAt(0, 7);
    array.DeleteAt(0);
    CATCH_FAILURE(array.InsertAt(9, 7));
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(Int64Array, GrowthIsTracedBeforeTheElement) {
    Int64Array array(1);
    array.Append(7);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::DebugSwitch growthTraced(292);
    test::LogCapture log;
    array.Append(-1);
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(texts[0].find("growing array from " + std::to_string(sizeof(int64_t)) + " to " +
                            std::to_string(21 * sizeof(int64_t)) + ", old ["),
              0u)
        << texts[0];
    EXPECT_EQ(texts.back(), "Appending [18446744073709551615] at 1");
}

TEST(Int64Array, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        Int64Array array(2);
        fill(array, 50);
        const std::unique_ptr<utility::Array> copy(new Int64Array(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(Int64Array, WithoutMemoryEveryOperationThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        Int64Array full(2);
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
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(Int64Array(3)); }, check);
        EXPECT_EQ(failures, 1);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(Int64Array{full}); }, check);
        EXPECT_EQ(failures, 2);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(full.Append(2)); }, check);
        EXPECT_EQ(failures, 3);
        EXPECT_EQ(contentOf(full), (Content{0, 1, 2}));
        Int64Array other(1);
        other.Append(-1);
        const auto checkOther = [&] {
            ++failures;
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
            EXPECT_EQ(contentOf(other), (Content{-1}));
            EXPECT_EQ(other.size(), 1u);
        };
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(other.InsertAt(0, 0x100000000)); }, checkOther);
        EXPECT_EQ(failures, 4);
        EXPECT_EQ(contentOf(other), (Content{0x100000000, -1}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(Int64Array, OperationsThatNeedNoNewBlockDoNotAllocate) {
    Int64Array array(4);
    const unsigned long before = test::allocationCount();
    array.Append(7);
    array.InsertAt(0, -1);
    array.SetAt(0, 0x100000000);
    array.DeleteAt(1);
    array.truncate(0);
    EXPECT_EQ(test::allocationCount(), before);
}

TEST(Int64Array, BehavesAsAVectorUnderRandomOperations) {
    const auto makeValue = [](std::mt19937& random) {
        return static_cast<int64_t>(uint64_t{random()} << 32 | random());
    };
    for (unsigned int seed = 1; seed <= 4; ++seed)
        test::ArrayModel<Int64Array, int64_t>(seed, 10 * (seed - 1)).run(1000, makeValue);
}

} // namespace
