#include "ut_ShortArray.h"

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

using utility::ShortArray;
using Content = std::vector<short>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 566;
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

static_assert(!std::is_copy_assignable<ShortArray>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, ShortArray>::value, "the constructor must be explicit");

Content contentOf(const ShortArray& array) {
    Content content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

void fill(ShortArray& array, unsigned int count) {
    for (unsigned int index = 0; index < count; ++index)
        array.Append(static_cast<short>(index));
}

TEST(ShortArray, UsageExample) {
    utility::ShortArray deltas(4);
    deltas.Append(-3);
    EXPECT_EQ(deltas.ElementAt(0), -3);
    EXPECT_EQ(deltas.ElementAt(1), 0);
}

TEST(ShortArray, ACapacityOfZeroMeansTwenty) {
    const ShortArray array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TEST(ShortArray, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    ShortArray array(5);
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

TEST(ShortArray, KeepsTheExtremeValues) {
    ShortArray array(1);
    array.Append(std::numeric_limits<short>::min());
    array.InsertAt(0, std::numeric_limits<short>::max());
    EXPECT_EQ(contentOf(array), (Content{std::numeric_limits<short>::max(), std::numeric_limits<short>::min()}));
}

TEST(ShortArray, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    ShortArray array(4);
    array.InsertAt(0, 7);
    array.InsertAt(1, -3);
    array.InsertAt(0, 32767);
    array.InsertAt(1, 42);
    EXPECT_EQ(contentOf(array), (Content{32767, 42, 7, -3}));
    EXPECT_EQ(array.size(), 4u);
    array.InsertAt(2, -3);
    EXPECT_EQ(contentOf(array), (Content{32767, 42, -3, 7, -3}));
    EXPECT_EQ(array.size(), 24u);
}

TEST(ShortArray, SetAtReplacesAndDeleteAtClosesTheGap) {
    ShortArray array(4);
    fill(array, 4);
    array.SetAt(0, -3);
    array.SetAt(3, 32767);
    EXPECT_EQ(contentOf(array), (Content{-3, 1, 2, 32767}));
    array.DeleteAt(1);
    EXPECT_EQ(contentOf(array), (Content{-3, 2, 32767}));
    array.DeleteAt(2);
    array.DeleteAt(0);
    EXPECT_EQ(contentOf(array), (Content{2}));
    array.DeleteAt(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 4u);
}

TEST(ShortArray, TheIndexOperatorReturnsAReferenceToTheSlot) {
    ShortArray array(4);
    fill(array, 2);
    array[1] = -3;
    const ShortArray& constant = array;
    EXPECT_EQ(constant[1], -3);
    EXPECT_EQ(&constant[1], &array[1]);
}

TEST(ShortArray, BadIndicesThrowAndChangeNothing) {
    ShortArray array(2);
    fill(array, 2);
    const ShortArray& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, -3), 1229, "ut_ShortArray",
                   "void utility::ShortArray::InsertAt(unsigned int, short int)", "");
    EXPECT_FAILURE(array.SetAt(2, -3), 1229, "ut_ShortArray",
                   "void utility::ShortArray::SetAt(unsigned int, short int)", "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_ShortArray", "void utility::ShortArray::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[2], 1229, "ut_ShortArray", "short int& utility::ShortArray::operator[](unsigned int)", "");
    EXPECT_FAILURE(constant[2], 1229, "ut_ShortArray",
                   "const short int& utility::ShortArray::operator[](unsigned int) const", "");
    EXPECT_FAILURE(array.InsertAt(0xFFFFFFFF, -3), 1229, "ut_ShortArray",
                   "void utility::ShortArray::InsertAt(unsigned int, short int)", "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, "ut_ShortArray",
                   "const short int& utility::ShortArray::operator[](unsigned int) const", "");
    EXPECT_EQ(contentOf(array), (Content{0, 1}));
    EXPECT_EQ(array.size(), 2u);
}

TEST(ShortArray, AnEmptyArrayHasNoElementToSetDeleteOrRead) {
    ShortArray array(2);
    EXPECT_FAILURE(array.SetAt(0, -3), 1229, "ut_ShortArray",
                   "void utility::ShortArray::SetAt(unsigned int, short int)", "");
    EXPECT_FAILURE(array.DeleteAt(0), 1229, "ut_ShortArray", "void utility::ShortArray::DeleteAt(unsigned int)", "");
    EXPECT_FAILURE(array[0], 1229, "ut_ShortArray", "short int& utility::ShortArray::operator[](unsigned int)", "");
    EXPECT_EQ(array.length(), 0u);
}

TEST(ShortArray, ACopyHasTheSameCapacityAndItsOwnElements) {
    ShortArray array(7);
    fill(array, 5);
    array.truncate(3);
    ShortArray copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_EQ(contentOf(copy), (Content{0, 1, 2}));
    copy.SetAt(0, -3);
    EXPECT_EQ(array[0], 0);
    array.SetAt(1, 32767);
    EXPECT_EQ(contentOf(copy), (Content{-3, 1, 2}));
}

TEST(ShortArray, TruncateNeverLengthens) {
    ShortArray array(4);
    fill(array, 3);
    array.truncate(4);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(3);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(1);
    EXPECT_EQ(contentOf(array), (Content{0}));
    EXPECT_EQ(array.size(), 4u);
    EXPECT_FAILURE(array[1], 1229, "ut_ShortArray", "short int& utility::ShortArray::operator[](unsigned int)", "");
    array.truncate(0);
    EXPECT_EQ(array.length(), 0u);
}

TEST(ShortArray, ElementAtIsZeroOutOfRange) {
    ShortArray array(4);
    array.Append(7);
    array.Append(-3);
    array.truncate(1);
    EXPECT_EQ(array.ElementAt(0), 7);
    EXPECT_EQ(array.ElementAt(1), 0);
    EXPECT_EQ(array.ElementAt(0xFFFFFFFF), 0);
}

TEST(ShortArray, SortDoesNotChangeTheOrder) {
    ShortArray array(4);
    array.Append(9);
    array.Append(2);
    array.sort();
    EXPECT_EQ(contentOf(array), (Content{9, 2}));
}

TEST(ShortArray, AppendTraces) {
    ShortArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.Append(7);
    array.Append(-3);
    EXPECT_EQ(test::traceLines(log), (Lines{"4 void utility::ShortArray::Append(short int): 7",
                                            "3 void utility::ShortArray::Append(short int): Appending [7] at 0",
                                            "4 void utility::ShortArray::Append(short int): -3",
                                            "3 void utility::ShortArray::Append(short int): Appending [-3] at 1"}));
}

TEST(ShortArray, InsertAtTracesEachMoveFromTheTopDown) {
    ShortArray array(4);
    array.Append(7);
    array.Append(-3);
    array.Append(32767);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.InsertAt(1, 42);
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::ShortArray::InsertAt(unsigned int, short int): 1, 42",
                     "3 void utility::ShortArray::InsertAt(unsigned int, short int): moving from 2 to 3",
                     "3 void utility::ShortArray::InsertAt(unsigned int, short int): moving from 1 to 2",
                     "3 void utility::ShortArray::InsertAt(unsigned int, short int): setting 1 = 42"}));
}

TEST(ShortArray, ARejectedInsertAtTracesOnlyItsEntry) {
    ShortArray array(4);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, 32767));
    EXPECT_EQ(test::traceLines(log),
              (Lines{"4 void utility::ShortArray::InsertAt(unsigned int, short int): 1, 32767"}));
}

TEST(ShortArray, OtherOperationsDoNotTrace) {
    ShortArray array(4);
    array.Append(7);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::LogCapture log;
    array.SetAt(0, -3);
    CATCH_FAILURE(array.SetAt(9, -3));
    CATCH_FAILURE(array[9]);
    ShortArray copy(array);
    copy.DeleteAt(0);
    copy.truncate(0);
    copy.sort();
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(ShortArray, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    ShortArray array(1);
    fill(array, 2);
    array.InsertAt(0, -3);
    array.SetAt(0, 7);
    array.DeleteAt(0);
    CATCH_FAILURE(array.InsertAt(9, 7));
    EXPECT_EQ(test::traceLines(log), Lines());
}

TEST(ShortArray, GrowthIsTracedBeforeTheElement) {
    ShortArray array(1);
    array.Append(7);
    const test::DebugSwitch traced(TRACE_SWITCH);
    const test::DebugSwitch growthTraced(292);
    test::LogCapture log;
    array.Append(-3);
    const std::vector<std::string> texts = log.texts();
    ASSERT_EQ(texts.size(), 5u);
    EXPECT_EQ(texts[1].find("growing array from " + std::to_string(sizeof(short)) + " to " +
                            std::to_string(21 * sizeof(short)) + ", old ["),
              0u)
        << texts[1];
    EXPECT_EQ(texts.back(), "Appending [-3] at 1");
}

TEST(ShortArray, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        ShortArray array(2);
        fill(array, 50);
        const std::unique_ptr<utility::Array> copy(new ShortArray(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(ShortArray, WithoutMemoryEveryOperationThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        ShortArray full(2);
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
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(ShortArray(3)); }, check);
        EXPECT_EQ(failures, 1);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(ShortArray{full}); }, check);
        EXPECT_EQ(failures, 2);
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(full.Append(2)); }, check);
        EXPECT_EQ(failures, 3);
        EXPECT_EQ(contentOf(full), (Content{0, 1, 2}));
        ShortArray other(1);
        other.Append(-3);
        const auto checkOther = [&] {
            ++failures;
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", REALLOC, "", true));
            EXPECT_EQ(contentOf(other), (Content{-3}));
            EXPECT_EQ(other.size(), 1u);
        };
        test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(other.InsertAt(0, 32767)); }, checkOther);
        EXPECT_EQ(failures, 4);
        EXPECT_EQ(contentOf(other), (Content{32767, -3}));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(ShortArray, OperationsThatNeedNoNewBlockDoNotAllocate) {
    ShortArray array(4);
    const unsigned long before = test::allocationCount();
    array.Append(7);
    array.InsertAt(0, -3);
    array.SetAt(0, 32767);
    array.DeleteAt(1);
    array.truncate(0);
    EXPECT_EQ(test::allocationCount(), before);
}

TEST(ShortArray, BehavesAsAVectorUnderRandomOperations) {
    const auto makeValue = [](std::mt19937& random) {
        return static_cast<short>(random());
    };
    for (unsigned int seed = 1; seed <= 4; ++seed)
        test::ArrayModel<ShortArray, short>(seed, 10 * (seed - 1)).run(1000, makeValue);
}

} // namespace
