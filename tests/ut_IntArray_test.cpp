#include "ut_IntArray.h"

#include <gtest/gtest.h>

#include "ArrayCopySuite.h"
#include "TypedArraySuite.h"

namespace {

using utility::IntArray;

struct IntArrayTraits : test::ArrayTraits {
    using ArrayType = IntArray;
    using Value = int;
    static constexpr const char* className = "IntArray";
    static constexpr const char* valueName = "int";
    static constexpr const char* greatestText = "2147483647";
    static constexpr const char* leastText = "-2147483648";
    static constexpr unsigned int traceSwitch = 442;
};

INSTANTIATE_TYPED_TEST_SUITE_P(IntArray, TypedArray, IntArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(IntArray, ArrayCopy, IntArrayTraits);

TEST(IntArray, UsageExample) {
    utility::IntArray ports(4);
    ports.Append(7);
    ports.InsertAt(0, 3);
    EXPECT_EQ(ports[1], 7);
}

} // namespace
