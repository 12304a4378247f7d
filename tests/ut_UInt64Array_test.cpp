#include "ut_UInt64Array.h"

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

using utility::UInt64Array;
using Content = std::vector<unsigned long long>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 628;
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(!std::is_copy_assignable<UInt64Array>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, UInt64Array>::value, "the constructor must be explicit");

Content contentOf(const UInt64Array& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

void fill(UInt64Array& array, unsigned int count) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(static_cast<unsigned long long>(index));
}

TEST(UInt64Array, UsageExample) {
    utility::UInt64Array blocks(4);
    blocks.Append(0xFFFFFFFFFFFFFFFF);
    blocks.SetAt(0, 512);
    EXPECT_EQ(blocks[0], 512u);
}

TEST(UInt64Array, ACapacityOfZeroMeansTwenty) {
    const UInt64Array array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST(UInt64Array, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    UInt64Array array(5);
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

TEST(UInt64Array, KeepsTheExtremeValues) {
    UInt64Array array(1);
    array.Append(std::numeric_limits<unsigned long long>::min());
    array.InsertAt(0, std::numeric_limits<unsigned long long>::max());
    EXPECT_EQ(contentOf(array), (Content{std::numeric_limits<unsigned long long>::max(),
                                         std::numeric_limits<unsigned long long>::min()}));
}

TEST(UInt64Array, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    UInt64Array array(4);
    array.InsertAt(0, 7u);
    array.InsertAt(1, 0xFFFFFFFFFFFFFFFFu);
    array.InsertAt(0, 0x100000000u);
    array.InsertAt(1, 42u);
    EXPECT_EQ(contentOf(array), (Content{0x100000000u, 42u, 7u, 0xFFFFFFFFFFFFFFFFu}));
    EXPECT_EQ(array.size(), 4u);
    array.InsertAt(2, 0xFFFFFFFFFFFFFFFFu);
    EXPECT_EQ(contentOf(array), (Content{0x100000000u, 42u, 0xFFFFFFFFFFFFFFFFu, 7u, 0xFFFFFFFFFFFFFFFFu}));
    EXPECT_EQ(array.size(), 24u);
}

TEST(UInt64Array, SetAtReplacesAndDeleteAtClosesTheGap) {
    UInt64Array array(4);
    fill(array, 4);
    array.SetAt(0, 0xFFFFFFFFFFFFFFFFu);
    array.SetAt(3, 0x100000000u);
    EXPECT_EQ(contentOf(array), (Content{0xFFFFFFFFFFFFFFFFu, 1, 2, 0x100000000u}));
    array.DeleteAt(1);
    EXPECT_EQ(contentOf(array), (Content{0xFFFFFFFFFFFFFFFFu, 2, 0x100000000u}));
    array.DeleteAt(2);
    array.DeleteAt(0);
    EXPECT_EQ(contentOf(array), (Content{2}));
    array.DeleteAt(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 4u);
}

TEST(UInt64Array, TheIndexOperatorReturnsAReferenceToTheSlot) {
    UInt64Array array(4);
    fill(array, 2);
    array[1] = 0xFFFFFFFFFFFFFFFFu;
    const UInt64Array& constant = array;
    EXPECT_EQ(constant[1], 0xFFFFFFFFFFFFFFFFu);
    EXPECT_EQ(&constant[1], &array[1]);
}

TEST(UInt64Array, BadIndicesThrowAndChangeNothing) {
    UInt64Array array(2);
    fill(array, 2);
    const UInt64Array& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, 0xFFFFFFFFFFFFFFFFu), 1229, "ut_UInt64Array",
                   "void utility::UInt64Array::InsertAt(unsigned int, long long unsigned int)", "");
    EXPECT_FAILURE(array.SetAt(2, 0xFFFFFFFFFFFFFFFFu), 1229, "ut_UInt64Array",
                   "void utility::UInt64Array::SetAt(unsigned int, long long unsigned int)", "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_UInt64Array", "void utility::UInt64Array::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[2], 1229, "ut_UInt64Array",
                   "long long unsigned int& utility::UInt64Array::operator[](unsigned int)", "");
    EXPECT_FAILURE(constant[2], 1229, "ut_UInt64Array",
                   "const long long unsigned int& utility::UInt64Array::operator[](unsigned int) const", "");
    EXPECT_FAILURE(array.InsertAt(0xFFFFFFFF, 0xFFFFFFFFFFFFFFFFu), 1229, "ut_UInt64Array",
                   "void utility::UInt64Array::InsertAt(unsigned int, long long unsigned int)", "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_UInt64Array",
                   "const long long unsigned int& utility::UInt64Array::operator[](unsigned int) const", "");
    EXPECT_EQ(contentOf(array), (Content{0, 1}));
    EXPECT_EQ(array.size(), 2u);
}

TEST(UInt64Array, AnEmptyArrayHasNoElementToSetDeleteOrRead) {
    UInt64Array array(2);
    EXPECT_FAILURE(array.SetAt(0, 0xFFFFFFFFFFFFFFFFu), 1229, "ut_UInt64Array",
                   "void utility::UInt64Array::SetAt(unsigned int, long long unsigned int)", "");
    EXPECT_FAILURE(array.DeleteAt(0), 1229, "ut_UInt64Array", "void utility::UInt64Array::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[0], 1229, "ut_UInt64Array",
                   "long long unsigned int& utility::UInt64Array::operator[](unsigned int)", "");
    EXPECT_EQ(array.length(), 0u);
}

TEST(UInt64Array, ACopyHasTheSameCapacityAndItsOwnElements) {
    UInt64Array array(7);
    fill(array, 5);
    array.truncate(3);
    UInt64Array copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(contentOf(copy), (Content{0, 1, 2}));
    copy.SetAt(0, 0xFFFFFFFFFFFFFFFFu);
    EXPECT_EQ(array[0], 0);
    array.SetAt(1, 0x100000000u);
    EXPECT_EQ(contentOf(copy), (Content{0xFFFFFFFFFFFFFFFFu, 1, 2}));
}

TEST(UInt64Array, TruncateNeverLengthens) {
    UInt64Array array(4);
    fill(array, 3);
    array.truncate(4);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(3);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(1);
    EXPECT_EQ(contentOf(array), (Content{0}));
    EXPECT_EQ(array.size(), 4u);
    EXPECT_FAILURE(array[1], 1229, "ut_UInt64Array",
                   "long long unsigned int& utility::UInt64Array::operator[](unsigned int)", "");
    array.truncate(0);
    EXPECT_EQ(array.length(), 0u);
}

TEST(UInt64Array, SortDoesNotChangeTheOrder) {
    UInt64Array array(4);
    array.Append(9);
    array.Append(2);
    array.sort();
    EXPECT_EQ(contentOf(array), (Content{9, 2}));
}

TEST(UInt64Array, AppendTraces) {
    UInt64Array array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(7u);
    array.Append(0xFFFFFFFFFFFFFFFFu);
    EXPECT_EQ(
        test::traceLines(log),
        (Lines{"3 void utility::UInt64Array::Append(long long unsigned int): Appending [7] at 0",
               "3 void utility::UInt64Array::Append(long long unsigned int): Appending [18446744073709551615] at 1"}));
}

TEST(UInt64Array, InsertAtTracesEachMoveFromTheTopDown) {
    UInt64Array array(4);
    array.Append(7u);
    array.Append(0xFFFFFFFFFFFFFFFFu);
    array.Append(0x100000000u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.InsertAt(1, 42u);
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::UInt64Array::InsertAt(unsigned int, long long unsigned int): Enter",
                     "3 void utility::UInt64Array::InsertAt(unsigned int, long long unsigned int): moving from 2 to 3",
                     "3 void utility::UInt64Array::InsertAt(unsigned int, long long unsigned int): moving from 1 to 2",
                     "3 void utility::UInt64Array::InsertAt(unsigned int, long long unsigned int): setting 42 = 1"}));
}

TEST(UInt64Array, ARejectedInsertAtTracesOnlyItsEntry) {
    UInt64Array array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, 0x100000000u));
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::UInt64Array::InsertAt(unsigned int, long long unsigned int): Enter"}));
}

TEST(UInt64Array, OtherOperationsDoNotTrace) {
    UInt64Array array(4);
    array.Append(7u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.SetAt(0, 0xFFFFFFFFFFFFFFFFu);
    CATCH_FAILURE(array.SetAt(9, 0xFFFFFFFFFFFFFFFFu));
    CATCH_FAILURE(array[9]);
    UInt64Array copy(array);
    copy.DeleteAt(0);
    copy.truncate(0);
    copy.sort();
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(UInt64Array, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    UInt64Array array(1);
    fill(array, 2);
    array.InsertAt(0, 0xFFFFFFFFFFFFFFFFu);
    array.SetAt(0, 7u);
    array.DeleteAt(0);
    CATCH_FAILURE(array.InsertAt(9, 7u));
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(UInt64Array, GrowthIsTracedBeforeTheElement) {
    UInt64Array array(1);
    array.Append(7u);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::DebugSwitch growthTraced(292);
    test::LogCapture log;
    array.Append(0xFFFFFFFFFFFFFFFFu);
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 4u);
    EXPECT_EQ(texts[0].find("growing array from " + std::to_string(sizeof(unsigned long long)) + " to " +
                            std::to_string(21 * sizeof(unsigned long long)) + ", old ["),
              0u)
        << texts[0];
    EXPECT_EQ(texts.back(), "Appending [18446744073709551615] at 1");
}

TEST(UInt64Array, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        UInt64Array array(2);
        fill(array, 50);
        const std::unique_ptr<utility::Array> copy(new UInt64Array(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(UInt64Array, WithoutMemoryEveryOperationThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        UInt64Array full(2);
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
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(UInt64Array(3)); }, check);
        EXPECT_EQ(failures, 1);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(UInt64Array{full}); }, check);
        EXPECT_EQ(failures, 2);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(full.Append(2)); }, check);
        EXPECT_EQ(failures, 3);
        EXPECT_EQ(contentOf(full), (Content{0, 1, 2}));
        UInt64Array other(1);
        other.Append(0xFFFFFFFFFFFFFFFFu);
        const auto checkOther = [&] {
            ++failures;
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
            EXPECT_EQ(contentOf(other), (Content{0xFFFFFFFFFFFFFFFFu}));
            EXPECT_EQ(other.size(), 1u);
        };
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(other.InsertAt(0, 0x100000000u)); }, checkOther);
        EXPECT_EQ(failures, 4);
        EXPECT_EQ(contentOf(other), (Content{0x100000000u, 0xFFFFFFFFFFFFFFFFu}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(UInt64Array, OperationsThatNeedNoNewBlockDoNotAllocate) {
    UInt64Array array(4);
    const unsigned long before = test::allocationCount();
    array.Append(7u);
    array.InsertAt(0, 0xFFFFFFFFFFFFFFFFu);
    array.SetAt(0, 0x100000000u);
    array.DeleteAt(1);
    array.truncate(0);
    EXPECT_EQ(test::allocationCount(), before);
}

TEST(UInt64Array, BehavesAsAVectorUnderRandomOperations) {
    const auto makeValue = [](std::mt19937& random) {
        return static_cast<unsigned long long>(random()) << 32 | random();
    };
    for (unsigned int seed = 1; seed <= 4; ++seed)
        test::ArrayModel<UInt64Array, unsigned long long>(seed, 10 * (seed - 1)).run(1000, makeValue);
}

} // namespace
