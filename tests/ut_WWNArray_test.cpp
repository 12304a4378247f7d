#include "ut_WWNArray.h"

#include <array>

#include <gtest/gtest.h>

#include "ArrayCopySuite.h"
#include "OwningArraySuite.h"
#include "PointerArraySuite.h"
#include "TypedArraySuite.h"
#include "ut_WWN.h"

namespace {

using utility::WWN;
using utility::WWNArray;

struct WWNArrayTraits : test::ArrayTraits {
    using ArrayType = test::Unowned<WWNArray>;
    using OwningType = WWNArray;
    using Value = WWN*;
    static constexpr const char* className = "WWNArray";
    static constexpr const char* valueName = "utility::WWN*";
    static constexpr unsigned int traceSwitch = 5154;
    static WWN* element(unsigned int index) {
        static std::array<WWN, 50> names;
        return &names.at(index);
    }
    static WWN* make() {
        return new WWN("500a09818d5f1234");
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(WWNArray, TypedArray, WWNArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(WWNArray, ArrayCopy, WWNArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(WWNArray, PointerArray, WWNArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(WWNArray, OwningArray, WWNArrayTraits);

TEST(WWNArray, UsageExample) {
    utility::WWNArray names(4);
    names.Append(new utility::WWN("500a09818d5f1234"));
    char text[17];
    names[0]->toBuffer(text, sizeof text);
    EXPECT_STREQ(text, "500a09818d5f1234");
}

} // namespace
