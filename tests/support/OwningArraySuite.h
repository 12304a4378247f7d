#pragma once

// Tests of when the arrays that own their elements delete them. The traits of a class (ArrayTest.h) also have
// `OwningType`, the class itself, and `make()`, which returns a new element, equal to every other that it returns.

#include <memory>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include "ArrayTest.h"
#include "HeapGrowth.h"

namespace {

template<typename Traits>
class OwningArray : public test::ArrayTest<Traits> {
protected:
    static auto make() {
        return std::unique_ptr<std::remove_pointer_t<typename Traits::Value>>(Traits::make());
    }
};

TYPED_TEST_SUITE_P(OwningArray);

TYPED_TEST_P(OwningArray, TheDestructorDeletesTheElements) {
    const auto fillAndDestroy = [] {
        typename TypeParam::OwningType array(2);
        array.Append(TypeParam::make());
        array.Append(nullptr);
        array.InsertAt(0, TypeParam::make());
    };
    EXPECT_LT(test::heapGrowth(fillAndDestroy), 8000u);
}

TYPED_TEST_P(OwningArray, TheDestructorDeletesTheElementsThroughTheBaseClass) {
    const auto fillAndDestroy = [] {
        auto array = std::make_unique<typename TypeParam::OwningType>(2);
        array->Append(TypeParam::make());
        const std::unique_ptr<utility::Array> base(std::move(array));
    };
    EXPECT_LT(test::heapGrowth(fillAndDestroy), 8000u);
}

TYPED_TEST_P(OwningArray, ReplacedRemovedAndTruncatedElementsAreNotDeleted) {
    const auto first = this->make();
    const auto second = this->make();
    const auto third = this->make();
    {
        typename TypeParam::OwningType array(4);
        array.Append(first.get());
        array.Append(second.get());
        array.Append(third.get());
        array.SetAt(0, nullptr);
        array.DeleteAt(1);
        array.truncate(1);
    }
    const auto expected = this->make();
    EXPECT_TRUE(*first == *expected);
    EXPECT_TRUE(*second == *expected);
    EXPECT_TRUE(*third == *expected);
}

TYPED_TEST_P(OwningArray, ACopyDeletesTheSameElementsUnlessTheyAreTruncated) {
    typename TypeParam::OwningType array(4);
    array.Append(TypeParam::make());
    typename TypeParam::OwningType copy(array);
    EXPECT_EQ(copy[0], array[0]);
    array.truncate(0);
    EXPECT_TRUE(*copy[0] == *this->make());
}

REGISTER_TYPED_TEST_SUITE_P(OwningArray, TheDestructorDeletesTheElements,
                            TheDestructorDeletesTheElementsThroughTheBaseClass,
                            ReplacedRemovedAndTruncatedElementsAreNotDeleted,
                            ACopyDeletesTheSameElementsUnlessTheyAreTruncated);

} // namespace
