#include "ut_ControllerSelector.h"

#include <gtest/gtest.h>

namespace {

using utility::ControllerSelector;
using utility::decodeControllerSelector;

static_assert(sizeof(ControllerSelector) == 4, "exchanged as 32 bits");

TEST(ControllerSelector, UsageExample) {
    EXPECT_EQ(utility::decodeControllerSelector(utility::CONTROLLER_B), 'B');
}

TEST(ControllerSelector, SelectorZeroIsControllerB) {
    EXPECT_EQ(decodeControllerSelector(static_cast<ControllerSelector>(0)), 'B');
    EXPECT_EQ(decodeControllerSelector(static_cast<ControllerSelector>(1)), 'A');
    EXPECT_EQ(decodeControllerSelector(static_cast<ControllerSelector>(2)), '*');
    EXPECT_EQ(decodeControllerSelector(static_cast<ControllerSelector>(3)), '?');
}

TEST(ControllerSelector, AnyOtherNumberIsADash) {
    for (const unsigned int number : {4u, 5u, 65u, 66u, 255u, 256u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_EQ(decodeControllerSelector(static_cast<ControllerSelector>(number)), '-') << number;
}

} // namespace
