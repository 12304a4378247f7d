#include "ut_Int64Array.h"

#include <cstdint>

#include <gtest/gtest.h>

#include "ArrayCopySuite.h"
#include "TypedArraySuite.h"

namespace {

using utility::Int64Array;

struct Int64ArrayTraits : test::ArrayTraits {
    using ArrayType = Int64Array;
    using Value = int64_t;
    static constexpr const char* className = "Int64Array";
    static constexpr const char* valueName = "int64_t";
    static constexpr const char* greatestText = "9223372036854775807";
    static constexpr const char* leastText = "9223372036854775808";
    static constexpr unsigned int traceSwitch = 441;
    static constexpr bool isValueTracedFirst = true;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Int64Array, TypedArray, Int64ArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(Int64Array, ArrayCopy, Int64ArrayTraits);

TEST(Int64Array, UsageExample) {
    utility::Int64Array offsets(4);
    offsets.Append(-4096);
    offsets.InsertAt(1, 0x100000000);
    EXPECT_EQ(offsets[1], 4294967296);
}

} // namespace
