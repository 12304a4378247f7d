#include "ut_UIntArray.h"

#include <gtest/gtest.h>

#include "ArrayCopySuite.h"
#include "SortedArraySuite.h"
#include "TypedArraySuite.h"

namespace {

using utility::UIntArray;

struct UIntArrayTraits : test::ArrayTraits {
    using ArrayType = UIntArray;
    using Value = unsigned int;
    static constexpr const char* className = "UIntArray";
    static constexpr const char* valueName = "unsigned int";
    static constexpr const char* greatestText = "-1";
    static constexpr const char* leastText = "0";
    static constexpr unsigned int traceSwitch = 629;
    static constexpr bool isSorted = true;

    static void sort(UIntArray& array) {
        array.sort();
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(UIntArray, TypedArray, UIntArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(UIntArray, ArrayCopy, UIntArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(UIntArray, SortedArray, UIntArrayTraits);

TEST(UIntArray, UsageExample) {
    utility::UIntArray tokens(4);
    tokens.Append(0xFFFFFFFF);
    tokens.Append(1);
    tokens.sort();
    EXPECT_EQ(tokens[0], 1u);
}

TEST(UIntArray, CompareIsUnsigned) {
    const unsigned int small = 1;
    const unsigned int great = 0x80000000u;
    const unsigned int same = 1;
    EXPECT_EQ(UIntArray::compare(&small, &great), -1);
    EXPECT_EQ(UIntArray::compare(&great, &small), 1);
    EXPECT_EQ(UIntArray::compare(&small, &same), 0);
}

} // namespace
