#include "ut_SerialNumberArray.h"

#include <vector>

#include <gtest/gtest.h>

#include "ArrayCopySuite.h"
#include "OwningArraySuite.h"
#include "PointerArraySuite.h"
#include "TypedArraySuite.h"
#include "ut_SerialNumber.h"

namespace {

using utility::SerialNumber;
using utility::SerialNumberArray;

struct SerialNumberArrayTraits : test::ArrayTraits {
    using ArrayType = test::Unowned<SerialNumberArray>;
    using OwningType = SerialNumberArray;
    using Value = SerialNumber*;
    static constexpr const char* className = "SerialNumberArray";
    static constexpr const char* valueName = "utility::SerialNumber*";
    static constexpr unsigned int traceSwitch = 4618;
    static SerialNumber* element(unsigned int index) {
        static std::vector<SerialNumber> numbers(50, SerialNumber("05"));
        return &numbers.at(index);
    }
    static SerialNumber* make() {
        return new SerialNumber("00c0ff112233aabb4455667788000000");
    }
};

INSTANTIATE_TYPED_TEST_SUITE_P(SerialNumberArray, TypedArray, SerialNumberArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(SerialNumberArray, ArrayCopy, SerialNumberArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(SerialNumberArray, PointerArray, SerialNumberArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(SerialNumberArray, OwningArray, SerialNumberArrayTraits);

TEST(SerialNumberArray, UsageExample) {
    utility::SerialNumberArray numbers(4);
    numbers.Append(new utility::SerialNumber("00c0ff112233aabb4455667788000000"));
    EXPECT_TRUE(numbers[0]->isValid());
}

} // namespace
