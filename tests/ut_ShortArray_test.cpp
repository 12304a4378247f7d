#include "ut_ShortArray.h"

#include <gtest/gtest.h>

#include "ArrayCopySuite.h"
#include "TypedArraySuite.h"

namespace {

using utility::ShortArray;

struct ShortArrayTraits : test::ArrayTraits {
    using ArrayType = ShortArray;
    using Value = short;
    static constexpr const char* className = "ShortArray";
    static constexpr const char* valueName = "short int";
    static constexpr const char* greatestText = "32767";
    static constexpr const char* leastText = "-32768";
    static constexpr unsigned int traceSwitch = 566;
    static constexpr test::TracedArguments tracedArguments = test::TracedArguments::ofAppendAndInsertAt;
};

INSTANTIATE_TYPED_TEST_SUITE_P(ShortArray, TypedArray, ShortArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(ShortArray, ArrayCopy, ShortArrayTraits);

TEST(ShortArray, UsageExample) {
    utility::ShortArray deltas(4);
    deltas.Append(-3);
    EXPECT_EQ(deltas.ElementAt(0), -3);
    EXPECT_EQ(deltas.ElementAt(1), 0);
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

} // namespace
