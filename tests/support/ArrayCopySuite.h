#pragma once

// Tests of copying, for the typed arrays that copy their block byte by byte: all except those of texts and of port
// addresses.

#include <memory>
#include <type_traits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ArrayContent.h"
#include "ArrayTest.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "LogCapture.h"
#include "fw_Memory.h"

namespace {

template<typename Traits>
class ArrayCopy : public test::ArrayTest<Traits> {
    static_assert(!std::is_copy_assignable<typename Traits::ArrayType>::value, "assignment would share the block");
};

TYPED_TEST_SUITE_P(ArrayCopy);

TYPED_TEST_P(ArrayCopy, ACopyHasTheSameCapacityAndItsOwnBlock) {
    typename TypeParam::ArrayType array(7);
    this->fill(array, 5);
    array.truncate(3);
    typename TypeParam::ArrayType copy(array);
    EXPECT_EQ(copy.size(), 7u);
    EXPECT_THAT(test::contentOf(copy), testing::ElementsAre(this->item(0), this->item(1), this->item(2)));
    copy.SetAt(0, this->item(7));
    EXPECT_EQ(array[0], this->item(0));
    array.SetAt(1, this->item(8));
    EXPECT_THAT(test::contentOf(copy), testing::ElementsAre(this->item(7), this->item(1), this->item(2)));
}

TYPED_TEST_P(ArrayCopy, ACopyOfAnEmptyOrFullArrayIsEmptyOrFull) {
    typename TypeParam::ArrayType array(2);
    EXPECT_EQ(typename TypeParam::ArrayType(array).length(), 0u);
    this->fill(array, 2);
    const typename TypeParam::ArrayType copy(array);
    EXPECT_EQ(copy.size(), 2u);
    EXPECT_THAT(test::contentOf(copy), testing::ElementsAre(this->item(0), this->item(1)));
}

TYPED_TEST_P(ArrayCopy, ACopyFreesItsBlockAlsoThroughTheBaseClass) {
    const long before = framework::Memory::staticOutstanding();
    {
        typename TypeParam::ArrayType array(2);
        this->fill(array, 50);
        const std::unique_ptr<utility::Array> copy(new typename TypeParam::ArrayType(array));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before + 2);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TYPED_TEST_P(ArrayCopy, CopyingDoesNotTrace) {
    typename TypeParam::ArrayType array(2);
    this->fill(array, 2);
    const test::DebugSwitch traced(TypeParam::traceSwitch);
    const test::LogCapture log;
    EXPECT_EQ(typename TypeParam::ArrayType(array).length(), 2u);
    EXPECT_EQ(log.count(), 0u);
}

TYPED_TEST_P(ArrayCopy, WithoutMemoryCopyingThrowsAndDoesNotLeak) {
    typename TypeParam::ArrayType array(2);
    this->fill(array, 2);
    const long before = framework::Memory::staticOutstanding();
    std::unique_ptr<framework::Exception> failure;
    const auto copy = [&] {
        failure = CATCH_FAILURE(typename TypeParam::ArrayType{array});
    };
    const auto check = [&] {
        EXPECT_TRUE(test::isFailure(failure.get(), 1230, "ut_Array", this->m_realloc, "", true));
        EXPECT_EQ(framework::Memory::staticOutstanding(), before);
    };
    EXPECT_EQ(test::failEachAllocationOnce(copy, check), 1u);
    EXPECT_EQ(failure, nullptr);
    EXPECT_THAT(test::contentOf(array), testing::ElementsAre(this->item(0), this->item(1)));
    EXPECT_EQ(array.size(), 2u);
}

REGISTER_TYPED_TEST_SUITE_P(ArrayCopy, ACopyHasTheSameCapacityAndItsOwnBlock, ACopyOfAnEmptyOrFullArrayIsEmptyOrFull,
                            ACopyFreesItsBlockAlsoThroughTheBaseClass, CopyingDoesNotTrace,
                            WithoutMemoryCopyingThrowsAndDoesNotLeak);

} // namespace
