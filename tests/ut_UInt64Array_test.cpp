#include "ut_UInt64Array.h"

#include <gtest/gtest.h>

#include "ArrayCopySuite.h"
#include "TypedArraySuite.h"

namespace {

using utility::UInt64Array;

struct UInt64ArrayTraits : test::ArrayTraits {
    using ArrayType = UInt64Array;
    using Value = unsigned long long;
    static constexpr const char* className = "UInt64Array";
    static constexpr const char* valueName = "long long unsigned int";
    static constexpr const char* greatestText = "18446744073709551615";
    static constexpr const char* leastText = "0";
    static constexpr unsigned int traceSwitch = 628;
    static constexpr bool isValueTracedFirst = true;
};

INSTANTIATE_TYPED_TEST_SUITE_P(UInt64Array, TypedArray, UInt64ArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(UInt64Array, ArrayCopy, UInt64ArrayTraits);

TEST(UInt64Array, UsageExample) {
    utility::UInt64Array blocks(4);
    blocks.Append(0xFFFFFFFFFFFFFFFF);
    blocks.SetAt(0, 512);
    EXPECT_EQ(blocks[0], 512u);
}

} // namespace
