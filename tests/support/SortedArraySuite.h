#pragma once

// Tests of the typed arrays that can sort their elements. The traits of a class (ArrayTest.h) also have
// `sort(array)`, which calls the sorting operation of the class.

#include <algorithm>
#include <limits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ArrayContent.h"
#include "ArrayTest.h"
#include "RandomRun.h"

namespace {

template<typename Traits>
class SortedArray : public test::ArrayTest<Traits> {};

TYPED_TEST_SUITE_P(SortedArray);

TYPED_TEST_P(SortedArray, SortIsAscendingByTheWholeValue) {
    const auto least = std::numeric_limits<typename TypeParam::Value>::min();
    const auto greatest = std::numeric_limits<typename TypeParam::Value>::max();
    const auto half = static_cast<typename TypeParam::Value>(greatest / 2);
    const auto more = static_cast<typename TypeParam::Value>(half + 1);
    typename TypeParam::ArrayType array(8);
    test::appendAll(array, std::vector<typename TypeParam::Value>{more, 3, greatest, 3, least, half, 1, more});
    for (int run = 0; run < 2; ++run) {
        TypeParam::sort(array);
        EXPECT_THAT(test::contentOf(array), testing::ElementsAre(least, 1, 3, 3, half, more, more, greatest));
    }
}

TYPED_TEST_P(SortedArray, SortLeavesFewerThanTwoElementsUnchanged) {
    typename TypeParam::ArrayType array(2);
    TypeParam::sort(array);
    EXPECT_EQ(array.length(), 0u);
    array.Append(9);
    TypeParam::sort(array);
    EXPECT_THAT(test::contentOf(array), testing::ElementsAre(9));
    array.Append(2);
    TypeParam::sort(array);
    EXPECT_THAT(test::contentOf(array), testing::ElementsAre(2, 9));
}

TYPED_TEST_P(SortedArray, SortTouchesOnlyTheElementsInUse) {
    typename TypeParam::ArrayType array(4);
    for (const int value : {9, 8, 1})
        array.Append(static_cast<typename TypeParam::Value>(value));
    array.truncate(2);
    TypeParam::sort(array);
    EXPECT_THAT(test::contentOf(array), testing::ElementsAre(8, 9));
}

TYPED_TEST_P(SortedArray, SortAgreesWithTheStandardSortOnRandomArrays) {
    test::RandomRun random;
    while (random.steps(200)) {
        const bool hasEqual = random.below(2) == 0;
        typename TypeParam::ArrayType array(0);
        for (unsigned int left = random.below(60); left > 0; --left)
            array.Append(hasEqual ? this->item(random.below(10)) : this->randomItem(random));
        std::vector<typename TypeParam::Value> expected = test::contentOf(array);
        std::sort(expected.begin(), expected.end());
        TypeParam::sort(array);
        ASSERT_EQ(test::contentOf(array), expected);
    }
}

REGISTER_TYPED_TEST_SUITE_P(SortedArray, SortIsAscendingByTheWholeValue, SortLeavesFewerThanTwoElementsUnchanged,
                            SortTouchesOnlyTheElementsInUse, SortAgreesWithTheStandardSortOnRandomArrays);

} // namespace
