#pragma once

// Tests of the arrays of pointers in addition to TypedArraySuite.h: finding an element, and appending a whole array.

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ArrayContent.h"
#include "ArrayTest.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "TraceLines.h"
#include "fw_Memory.h"

namespace {

using test::contentOf;
using testing::ElementsAre;

template<typename Traits>
class PointerArray : public test::ArrayTest<Traits> {
protected:
    static constexpr unsigned int notFound = 0xFFFFFFFF;
};

TYPED_TEST_SUITE_P(PointerArray);

TYPED_TEST_P(PointerArray, FindReturnsTheFirstIndexOfAnElement) {
    typename TypeParam::ArrayType array(4);
    EXPECT_EQ(array.Find(this->item(1)), this->notFound);
    EXPECT_EQ(array.Find(nullptr), this->notFound);
    array.Append(this->item(1));
    array.Append(this->item(2));
    array.Append(nullptr);
    array.Append(this->item(2));
    array.Append(this->item(3));
    EXPECT_EQ(array.Find(this->item(1)), 0u);
    EXPECT_EQ(array.Find(this->item(2)), 1u);
    EXPECT_EQ(array.Find(nullptr), 2u);
    EXPECT_EQ(array.Find(this->item(3)), 4u);
    EXPECT_EQ(array.Find(this->item(4)), this->notFound);
    array.truncate(4);
    EXPECT_EQ(array.Find(this->item(3)), this->notFound);
}

TYPED_TEST_P(PointerArray, FindDoesNotTrace) {
    typename TypeParam::ArrayType array(4);
    this->fill(array, 2);
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    const test::LogCapture log;
    EXPECT_EQ(array.Find(this->item(1)), 1u);
    EXPECT_EQ(array.Find(this->item(9)), this->notFound);
    EXPECT_EQ(log.count(), 0u);
}

TYPED_TEST_P(PointerArray, AppendOfAnArrayAddsItsElementsInOrder) {
    typename TypeParam::ArrayType array(20);
    array.Append(this->item(1));
    typename TypeParam::ArrayType other(4);
    other.Append(this->item(2));
    other.Append(nullptr);
    other.Append(this->item(3));
    array.Append(other);
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(1), this->item(2), nullptr, this->item(3)));
    EXPECT_THAT(contentOf(other), ElementsAre(this->item(2), nullptr, this->item(3)));
    EXPECT_EQ(array.size(), 20u);
}

TYPED_TEST_P(PointerArray, AppendOfAnArrayGrowsOnceAsSoonAsItWouldBeFull) {
    typename TypeParam::ArrayType ten(10);
    this->fill(ten, 10);
    typename TypeParam::ArrayType array(20);
    this->fill(array, 9);
    array.Append(ten);
    EXPECT_EQ(array.length(), 19u);
    EXPECT_EQ(array.size(), 20u);

    typename TypeParam::ArrayType exact(20);
    this->fill(exact, 10);
    exact.Append(ten);
    EXPECT_EQ(exact.length(), 20u);
    EXPECT_EQ(exact.size(), 40u);
}

TYPED_TEST_P(PointerArray, AppendOfAnArrayGrowsByItsLengthIfMoreThanTwenty) {
    typename TypeParam::ArrayType many(30);
    typename TypeParam::ArrayType array(5);
    this->fill(array, 5);
    this->fill(many, 20);
    array.Append(many);
    EXPECT_EQ(array.length(), 25u);
    EXPECT_EQ(array.size(), 25u);
    many.Append(this->item(49));
    array.Append(many);
    EXPECT_EQ(array.length(), 46u);
    EXPECT_EQ(array.size(), 46u);
    EXPECT_EQ(array[45], this->item(49));
}

TYPED_TEST_P(PointerArray, AppendOfAnEmptyArrayToAFullOneStillGrows) {
    typename TypeParam::ArrayType none(0);
    typename TypeParam::ArrayType array(2);
    this->fill(array, 2);
    array.Append(none);
    EXPECT_THAT(contentOf(array), ElementsAre(this->item(0), this->item(1)));
    EXPECT_EQ(array.size(), 22u);
}

TYPED_TEST_P(PointerArray, AnArrayAppendedToItselfDoubles) {
    typename TypeParam::ArrayType array(3);
    this->fill(array, 3);
    array.Append(array);
    EXPECT_THAT(contentOf(array),
                ElementsAre(this->item(0), this->item(1), this->item(2), this->item(0), this->item(1), this->item(2)));
    EXPECT_EQ(array.size(), 23u);
}

TYPED_TEST_P(PointerArray, AppendOfAnArrayTracesEachElement) {
    typename TypeParam::ArrayType array(4);
    array.Append(this->item(7));
    typename TypeParam::ArrayType other(4);
    this->fill(other, 2);
    std::vector<std::string> expected = this->appending(0, 1);
    for (const std::string& line : this->appending(1, 2))
        expected.push_back(line);
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    const test::LogCapture log;
    array.Append(other);
    EXPECT_EQ(test::traceLines(log), expected);
}

TYPED_TEST_P(PointerArray, AppendOfAnArrayDoesNotTraceWithTheSwitchOff) {
    const test::LogCapture log;
    typename TypeParam::ArrayType array(1);
    this->fill(array, 2);
    array.Append(array);
    EXPECT_EQ(log.count(), 0u);
}

TYPED_TEST_P(PointerArray, WithoutMemoryAppendOfAnArrayThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        typename TypeParam::ArrayType array(2);
        this->fill(array, 2);
        std::unique_ptr<framework::Exception> failure;
        const auto appendItself = [&] {
            failure = CATCH_FAILURE(array.Append(array));
        };
        const auto check = [&] {
            EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", this->m_realloc, "", true));
            EXPECT_THAT(contentOf(array), ElementsAre(this->item(0), this->item(1)));
            EXPECT_EQ(array.size(), 2u);
            EXPECT_EQ(framework::Memory::staticOutstanding(), before + 1);
        };
        EXPECT_EQ(test::failEachAllocationOnce(appendItself, check), 1u);
        EXPECT_EQ(failure, nullptr);
        EXPECT_THAT(contentOf(array), ElementsAre(this->item(0), this->item(1), this->item(0), this->item(1)));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

REGISTER_TYPED_TEST_SUITE_P(PointerArray, FindReturnsTheFirstIndexOfAnElement, FindDoesNotTrace,
                            AppendOfAnArrayAddsItsElementsInOrder, AppendOfAnArrayGrowsOnceAsSoonAsItWouldBeFull,
                            AppendOfAnArrayGrowsByItsLengthIfMoreThanTwenty, AppendOfAnEmptyArrayToAFullOneStillGrows,
                            AnArrayAppendedToItselfDoubles, AppendOfAnArrayTracesEachElement,
                            AppendOfAnArrayDoesNotTraceWithTheSwitchOff,
                            WithoutMemoryAppendOfAnArrayThrowsAndChangesNothing);

} // namespace
