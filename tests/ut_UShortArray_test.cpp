#include "ut_UShortArray.h"

#include <gtest/gtest.h>

#include "ArrayCopySuite.h"
#include "SortedArraySuite.h"
#include "TypedArraySuite.h"

namespace {

using utility::UShortArray;

struct UShortArrayTraits : test::ArrayTraits {
    using ArrayType = UShortArray;
    using Value = unsigned short;
    static constexpr const char* className = "UShortArray";
    static constexpr const char* valueName = "short unsigned int";
    static constexpr const char* greatestText = "65535";
    static constexpr const char* leastText = "0";
    static constexpr unsigned int traceSwitch = 634;
    static constexpr test::TracedArguments tracedArguments = test::TracedArguments::ofEveryChange;

    static void sort(UShortArray& array) {
        array.Sort();
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(UShortArray, TypedArray, UShortArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(UShortArray, ArrayCopy, UShortArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(UShortArray, SortedArray, UShortArrayTraits);

TEST(UShortArray, UsageExample) {
    utility::UShortArray lanes(4);
    lanes.Append(9);
    lanes.Append(2);
    lanes.Sort();
    EXPECT_EQ(lanes.ElementAt(0), 2);
}

TEST(UShortArray, ElementAtIsZeroOutOfRange) {
    UShortArray array(4);
    array.Append(7u);
    array.Append(65535u);
    array.truncate(1);
    EXPECT_EQ(array.ElementAt(0), 7u);
    EXPECT_EQ(array.ElementAt(1), 0);
    EXPECT_EQ(array.ElementAt(0xFFFFFFFF), 0);
}

} // namespace
