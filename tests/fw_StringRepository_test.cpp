#include <gtest/gtest.h>

#include "fw_StableStringRepository.h"

using strings::GS;
using strings::StringRepository;

namespace {

TEST(StringRepository, UsageExample) {
    const char* name = strings::StringRepository::toString(630);
    EXPECT_STREQ(name, "URL");
}

TEST(StringRepository, UnknownNumbersHaveNoText) {
    EXPECT_EQ(StringRepository::toString(0), nullptr);
    EXPECT_EQ(StringRepository::toString(1), nullptr);
    EXPECT_EQ(StringRepository::toString(290), nullptr);
    EXPECT_EQ(StringRepository::toString(5860), nullptr);
    EXPECT_EQ(StringRepository::toString(6910), nullptr);
    EXPECT_EQ(StringRepository::toString(0x7fffffff), nullptr);
    EXPECT_EQ(StringRepository::toString(0x80000000), nullptr);
    EXPECT_EQ(StringRepository::toString(0xffffffff), nullptr);
}

TEST(StringRepository, NumbersNotYetGivenHaveNoText) {
    const stringtoken last = GS.toToken("the last one made");
    EXPECT_STREQ(StringRepository::toString(last), "the last one made");
    for (stringtoken token = last + 1; token < last + 2000; ++token)
        EXPECT_EQ(StringRepository::toString(token), nullptr) << token;
}

TEST(StringRepository, GivesTheSamePointerEachTime) {
    const stringtoken token = GS.toToken("a text of run time");
    const char* text = StringRepository::toString(token);
    for (int i = 0; i < 1000; ++i)
        GS.toToken(("other text " + std::to_string(i)).c_str());
    EXPECT_EQ(StringRepository::toString(token), text);
}

} // namespace
