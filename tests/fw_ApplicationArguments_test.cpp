#include <gtest/gtest.h>

#include <memory>

#include "fw_ApplicationArguments.h"

using framework::ApplicationArguments;

namespace {

char* word(const char* text) {
    return const_cast<char*>(text);
}

} // namespace

TEST(ApplicationArguments, UsageExample) {
    char* argv[] = {word("console"), word("-v"), nullptr};
    framework::ApplicationArguments arguments(2, argv);
    EXPECT_STREQ(framework::ApplicationArguments::getArgs()->ArgValue(0), "console");
}

TEST(ApplicationArguments, WithoutAHolderThereAreNone) {
    EXPECT_EQ(ApplicationArguments::m_singleton, nullptr);
    EXPECT_EQ(ApplicationArguments::getArgs(), nullptr);
}

TEST(ApplicationArguments, HoldsCopiesOfTheWordsWhileItLives) {
    {
        char text[] = "-name";
        char* argv[] = {word("console"), text, word("b c"), nullptr};
        const ApplicationArguments arguments(3, argv);
        text[1] = 'X';
        EXPECT_EQ(ApplicationArguments::m_singleton, &arguments);
        utility::Arguments* held = ApplicationArguments::getArgs();
        ASSERT_NE(held, nullptr);
        EXPECT_EQ(held->ArgCount(), 3U);
        EXPECT_STREQ(held->ArgValue(1), "-name");
        EXPECT_STREQ(held->ArgValue(2), "b c");
    }
    EXPECT_EQ(ApplicationArguments::getArgs(), nullptr);
}

TEST(ApplicationArguments, EndOfAFormerHolderLeavesTheLastOne) {
    char* argv[] = {word("console"), nullptr};
    auto former = std::make_unique<ApplicationArguments>(1, argv);
    const ApplicationArguments last(1, argv);
    former.reset();
    EXPECT_EQ(ApplicationArguments::m_singleton, &last);
}
