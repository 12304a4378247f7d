#include "fw_gettext.h"

#include <gtest/gtest.h>

namespace {

TEST(Gettext, TextWithoutACatalogueIsItself) {
    const char* message = "Press any key to continue (Q to quit)";
    EXPECT_EQ(vx_gettext(message), message);
}

TEST(Gettext, EmptyTextIsItself) {
    const char* message = "";
    EXPECT_EQ(vx_gettext(message), message);
}

TEST(Gettext, NullIsNull) {
    EXPECT_EQ(vx_gettext(nullptr), nullptr);
}

} // namespace
