#pragma once

// Tests of all typed arrays that grow by 20 slots and store their elements unchanged. A class's test file
// instantiates the suite with the traits of its class (ArrayTest.h).

#include <algorithm>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ArrayContent.h"
#include "ArrayModel.h"
#include "ArrayTest.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "TraceLines.h"
#include "fw_Memory.h"

namespace {

using test::contentOf;
using testing::ElementsAre;
using testing::StartsWith;

template<typename Traits>
class TypedArray : public test::ArrayTest<Traits> {
    static_assert(!std::is_convertible<unsigned int, typename Traits::ArrayType>::value,
                  "the constructor must be explicit");
};

TYPED_TEST_SUITE_P(TypedArray);

TYPED_TEST_P(TypedArray, ACapacityOfZeroMeansTwenty) {
    const typename TypeParam::ArrayType array(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 20u);
}

TYPED_TEST_P(TypedArray, GrowsByTwentySlotsWhenFullAndKeepsItsElements) {
    typename TypeParam::ArrayType array(5);
    EXPECT_EQ(array.size(), 5u);
    this->fill(array, 5);
    EXPECT_EQ(array.size(), 5u);
    array.Append(this->item(5));
    EXPECT_EQ(array.size(), 25u);
    EXPECT_THAT(contentOf(array),
                ElementsAre(this->item(0), this->item(1), this->item(2), this->item(3), this->item(4), this->item(5)));
    this->fill(array, 20);
    EXPECT_EQ(array.size(), 45u);
    EXPECT_EQ(array.length(), 26u);
    EXPECT_EQ(array[25], this->item(19));
}

TYPED_TEST_P(TypedArray, KeepsExtremeAndNullValues) {
    typename TypeParam::ArrayType array(1);
    array.Append(this->item(1));
    array.InsertAt(0, this->item(0));
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(0), this->item(1)));
    array.SetAt(1, this->item(0));
    array[0] = this->item(1);
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(1), this->item(0)));
}

TYPED_TEST_P(TypedArray, InsertAtMovesTheLaterElementsAndAppendsAtTheLength) {
    typename TypeParam::ArrayType array(4);
    array.InsertAt(0, this->item(7));
    array.InsertAt(1, this->item(0));
    array.InsertAt(0, this->item(1));
    array.InsertAt(1, this->item(42));
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(1), this->item(42), this->item(7), this->item(0)));
    EXPECT_EQ(array.size(), 4u);
    array.InsertAt(2, this->item(0));
    EXPECT_THAT(contentOf(array),
                ElementsAre(this->item(1), this->item(42), this->item(0), this->item(7), this->item(0)));
    EXPECT_EQ(array.size(), 24u);
}

TYPED_TEST_P(TypedArray, SetAtReplacesAndDeleteAtClosesTheGap) {
    typename TypeParam::ArrayType array(4);
    this->fill(array, 4);
    array.SetAt(0, this->item(7));
    array.SetAt(3, this->item(8));
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(7), this->item(1), this->item(2), this->item(8)));
    array.DeleteAt(1);
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(7), this->item(2), this->item(8)));
    array.DeleteAt(2);
    array.DeleteAt(0);
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(2)));
    array.DeleteAt(0);
    EXPECT_EQ(array.length(), 0u);
    EXPECT_EQ(array.size(), 4u);
}

TYPED_TEST_P(TypedArray, TheIndexOperatorReturnsAReferenceToTheSlot) {
    typename TypeParam::ArrayType array(4);
    this->fill(array, 2);
    array[1] = this->item(7);
    const auto& constant = std::as_const(array);
    EXPECT_EQ(constant[1], this->item(7));
    EXPECT_EQ(&constant[1], &array[1]);
    EXPECT_EQ(&constant[1], &constant[0] + 1);
}

TYPED_TEST_P(TypedArray, BadIndicesThrowAndChangeNothing) {
    typename TypeParam::ArrayType array(2);
    this->fill(array, 2);
    const auto& constant = std::as_const(array);
    EXPECT_FAILURE(array.InsertAt(3, this->item(7)), 1229, this->m_file, this->m_insertAt, "");
    EXPECT_FAILURE(array.SetAt(2, this->item(7)), 1229, this->m_file, this->m_setAt, "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, this->m_file, this->m_deleteAt, "");
    EXPECT_FAILURE(array[2], 1229, this->m_file, this->m_at, "");
    EXPECT_FAILURE(constant[2], 1229, this->m_file, this->m_atConst, "");
    EXPECT_FAILURE(array.InsertAt(0xFFFFFFFF, this->item(7)), 1229, this->m_file, this->m_insertAt, "");
    EXPECT_FAILURE(array.SetAt(0xFFFFFFFF, this->item(7)), 1229, this->m_file, this->m_setAt, "");
    EXPECT_FAILURE(array.DeleteAt(0xFFFFFFFF), 1229, this->m_file, this->m_deleteAt, "");
    EXPECT_FAILURE(array[0xFFFFFFFF], 1229, this->m_file, this->m_at, "");
    EXPECT_FAILURE(constant[0xFFFFFFFF], 1229, this->m_file, this->m_atConst, "");
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(0), this->item(1)));
    EXPECT_EQ(array.size(), 2u);
}

TYPED_TEST_P(TypedArray, AnEmptyArrayHasNoElementToSetDeleteOrRead) {
    typename TypeParam::ArrayType array(2);
    EXPECT_FAILURE(array.SetAt(0, this->item(7)), 1229, this->m_file, this->m_setAt, "");
    EXPECT_FAILURE(array.DeleteAt(0), 1229, this->m_file, this->m_deleteAt, "");
    EXPECT_FAILURE(array[0], 1229, this->m_file, this->m_at, "");
    EXPECT_FAILURE(std::as_const(array)[0], 1229, this->m_file, this->m_atConst, "");
    EXPECT_EQ(array.length(), 0u);
}

TYPED_TEST_P(TypedArray, TruncateNeverLengthens) {
    typename TypeParam::ArrayType array(4);
    this->fill(array, 3);
    array.truncate(4);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(3);
    EXPECT_EQ(array.length(), 3u);
    array.truncate(1);
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(0)));
    EXPECT_EQ(array.size(), 4u);
    EXPECT_FAILURE(array[1], 1229, this->m_file, this->m_at, "");
    array.truncate(0);
    EXPECT_EQ(array.length(), 0u);
}

TYPED_TEST_P(TypedArray, TheVirtualSortChangesTheOrderOnlyIfOverridden) {
    typename TypeParam::ArrayType array(4);
    array.Append(this->item(9));
    array.Append(this->item(2));
    utility::Array& base = array;
    base.sort();
    if (TypeParam::isSorted)
        EXPECT_THAT(contentOf(array), ElementsAre(this->item(2), this->item(9)));
    else
        EXPECT_THAT(contentOf(array), ElementsAre(this->item(9), this->item(2)));
}

TYPED_TEST_P(TypedArray, AppendTraces) {
    typename TypeParam::ArrayType array(4);
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    for (unsigned int number = 0; number < 3; ++number) {
        const test::LogCapture log;
        array.Append(this->item(number));
        EXPECT_EQ(test::traceLines(log), this->appending(number, number));
    }
}

TYPED_TEST_P(TypedArray, InsertAtTracesEachMoveFromTheTopDown) {
    typename TypeParam::ArrayType array(4);
    this->fill(array, 3);
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    const test::LogCapture log;
    array.InsertAt(1, this->item(42));
    const std::string start = "3 " + this->m_insertAt + ": ";
    const std::string value = this->text(42);
    EXPECT_THAT(test::traceLines(log),
                ElementsAre(this->insertAtEntry(1, 42), start + "moving from 2 to 3", start + "moving from 1 to 2",
                            start + "setting " + (TypeParam::isValueTracedFirst ? value + " = 1" : "1 = " + value)));
}

TYPED_TEST_P(TypedArray, ARejectedInsertAtTracesOnlyItsEntry) {
    typename TypeParam::ArrayType array(4);
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    const test::LogCapture log;
    CATCH_FAILURE(array.InsertAt(1, this->item(0)));
    EXPECT_THAT(test::traceLines(log), ElementsAre(this->insertAtEntry(1, 0)));
}

TYPED_TEST_P(TypedArray, SetAtAndDeleteAtTraceAtMostTheirArguments) {
    typename TypeParam::ArrayType array(4);
    array.Append(this->item(7));
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    const test::LogCapture log;
    array.SetAt(0, this->item(0));
    CATCH_FAILURE(array.SetAt(1, this->item(1)));
    array.DeleteAt(0);
    CATCH_FAILURE(array.DeleteAt(7));
    std::vector<std::string> expected;
    if (TypeParam::tracedArguments == test::TracedArguments::ofEveryChange)
        expected = {"4 " + this->m_setAt + ": 0, " + this->text(0), "4 " + this->m_setAt + ": 1, " + this->text(1),
                    "4 " + this->m_deleteAt + ": 0", "4 " + this->m_deleteAt + ": 7"};
    EXPECT_EQ(test::traceLines(log), expected);
}

TYPED_TEST_P(TypedArray, ReadTruncateAndSortDoNotTrace) {
    typename TypeParam::ArrayType array(4);
    this->fill(array, 2);
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    const test::LogCapture log;
    EXPECT_EQ(array[1], this->item(1));
    CATCH_FAILURE(array[9]);
    CATCH_FAILURE(std::as_const(array)[9]);
    array.sort();
    array.truncate(0);
    EXPECT_EQ(log.count(), 0u);
}

TYPED_TEST_P(TypedArray, DoesNotTraceWithItsSwitchOff) {
    const test::LogCapture log;
    typename TypeParam::ArrayType array(1);
    this->fill(array, 2);
    array.InsertAt(0, this->item(0));
    array.SetAt(0, this->item(7));
    array.DeleteAt(0);
    CATCH_FAILURE(array.InsertAt(9, this->item(7)));
    EXPECT_EQ(log.count(), 0u);
}

TYPED_TEST_P(TypedArray, GrowthIsTracedBeforeTheElement) {
    typename TypeParam::ArrayType array(1);
    array.Append(this->item(7));
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    const test::DebugSwitch growthTraced(292);
    const test::LogCapture log;
    array.Append(this->item(0));
    const std::vector<std::string> expected = this->appending(0, 1);
    const std::vector<std::string> lines = test::traceLines(log);
    ASSERT_EQ(lines.size(), expected.size() + 3);
    EXPECT_TRUE(std::equal(expected.begin(), expected.end() - 1, lines.begin()));
    const std::size_t width = sizeof(typename TypeParam::Value);
    EXPECT_THAT(lines[expected.size() - 1],
                StartsWith("3 " + this->m_realloc + ": growing array from " + std::to_string(width) + " to " +
                           std::to_string(21 * width) + ", old ["));
    EXPECT_EQ(lines.back(), expected.back());
}

TYPED_TEST_P(TypedArray, TheDestructorFreesTheBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        typename TypeParam::ArrayType array(2);
        this->fill(array, 50);
        const std::unique_ptr<utility::Array> other(new typename TypeParam::ArrayType(3));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TYPED_TEST_P(TypedArray, WithoutMemoryConstructionAndAppendThrowAndChangeNothing) {
    using ArrayType = typename TypeParam::ArrayType;
    const long before = framework::Memory::staticOutstanding();
    {
        ArrayType array(2);
        this->fill(array, 2);
        std::unique_ptr<framework::Exception> failure;
        const auto check = [&] {
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", this->m_realloc, "", true));
            EXPECT_THAT(contentOf(array), ElementsAre(this->item(0), this->item(1)));
            EXPECT_EQ(array.size(), 2u);
            EXPECT_EQ(framework::Memory::staticOutstanding(), before + 1);
        };
        const auto failOnce = [&](auto&& operation) {
            EXPECT_EQ(test::failEachAllocationOnce([&] { failure = CATCH_FAILURE(operation()); }, check), 1u);
            EXPECT_EQ(failure, nullptr);
        };
        failOnce([] { ArrayType(3); });
        failOnce([&] { array.Append(this->item(2)); });
        EXPECT_THAT(contentOf(array), ElementsAre(this->item(0), this->item(1), this->item(2)));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TYPED_TEST_P(TypedArray, WithoutMemoryInsertAtThrowsAndChangesNothing) {
    typename TypeParam::ArrayType array(1);
    array.Append(this->item(0));
    std::unique_ptr<framework::Exception> failure;
    const auto check = [&] {
        EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", this->m_realloc, "", true));
        EXPECT_THAT(contentOf(array), ElementsAre(this->item(0)));
        EXPECT_EQ(array.size(), 1u);
    };
    const auto insert = [&] {
        failure = CATCH_FAILURE(array.InsertAt(0, this->item(1)));
    };
    EXPECT_EQ(test::failEachAllocationOnce(insert, check), 1u);
    EXPECT_EQ(failure, nullptr);
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(1), this->item(0)));
}

TYPED_TEST_P(TypedArray, OperationsThatNeedNoNewBlockDoNotAllocate) {
    typename TypeParam::ArrayType array(4);
    const unsigned long before = test::allocationCount();
    array.Append(this->item(7));
    array.InsertAt(0, this->item(1));
    array.SetAt(0, this->item(0));
    array.DeleteAt(1);
    array.truncate(0);
    EXPECT_EQ(test::allocationCount(), before);
}

TYPED_TEST_P(TypedArray, BehavesAsAVectorUnderRandomOperations) {
    test::RandomRun random;
    for (const unsigned int capacity : {0u, 10u, 20u, 30u}) {
        test::ArrayModel<typename TypeParam::ArrayType, typename TypeParam::Value> model(random, capacity);
        model.run(5000, [&] { return this->randomItem(random); });
    }
}

TYPED_TEST_P(TypedArray, BehavesAsAVectorAlsoWhileItsOperationsAreTraced) {
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    test::RandomRun random;
    for (const unsigned int capacity : {0u, 30u}) {
        const test::LogCapture log;
        test::ArrayModel<typename TypeParam::ArrayType, typename TypeParam::Value> model(random, capacity);
        model.run(200, [&] { return this->randomItem(random); });
    }
}

REGISTER_TYPED_TEST_SUITE_P(TypedArray, ACapacityOfZeroMeansTwenty, GrowsByTwentySlotsWhenFullAndKeepsItsElements,
                            KeepsExtremeAndNullValues, InsertAtMovesTheLaterElementsAndAppendsAtTheLength,
                            SetAtReplacesAndDeleteAtClosesTheGap, TheIndexOperatorReturnsAReferenceToTheSlot,
                            BadIndicesThrowAndChangeNothing, AnEmptyArrayHasNoElementToSetDeleteOrRead,
                            TruncateNeverLengthens, TheVirtualSortChangesTheOrderOnlyIfOverridden, AppendTraces,
                            InsertAtTracesEachMoveFromTheTopDown, ARejectedInsertAtTracesOnlyItsEntry,
                            SetAtAndDeleteAtTraceAtMostTheirArguments, ReadTruncateAndSortDoNotTrace,
                            DoesNotTraceWithItsSwitchOff, GrowthIsTracedBeforeTheElement,
                            TheDestructorFreesTheBlockAlsoThroughTheBaseClass,
                            WithoutMemoryConstructionAndAppendThrowAndChangeNothing,
                            WithoutMemoryInsertAtThrowsAndChangesNothing, OperationsThatNeedNoNewBlockDoNotAllocate,
                            BehavesAsAVectorUnderRandomOperations, BehavesAsAVectorAlsoWhileItsOperationsAreTraced);

} // namespace
