#include "fw_ApplicationArguments.h"

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

using framework::ApplicationArguments;

namespace {

static_assert(!std::is_copy_constructible<ApplicationArguments>::value, "there is one holder");
static_assert(!std::is_copy_assignable<ApplicationArguments>::value, "there is one holder");
static_assert(std::is_same<decltype(ApplicationArguments::getArgs()), utility::Arguments*>::value,
              "words can be changed");

char* word(const char* text) {
    return const_cast<char*>(text);
}

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

TEST(ApplicationArguments, TakesTheWordsWithoutLookingForQuotes) {
    char* argv[] = {word("console"), word("\"a b\""), word(""), word("\"open"), nullptr};
    const ApplicationArguments arguments(4, argv);
    utility::Arguments* const held = ApplicationArguments::getArgs();
    ASSERT_EQ(held->ArgCount(), 4U);
    EXPECT_STREQ(held->ArgValue(1), "\"a b\"");
    EXPECT_STREQ(held->ArgValue(2), "");
    EXPECT_STREQ(held->ArgValue(3), "\"open");
    EXPECT_FALSE(held->quoteUnmatched());
}

TEST(ApplicationArguments, WithoutWordsTheHolderIsEmpty) {
    for (const int count : {0, -1}) {
        const ApplicationArguments arguments(count, nullptr);
        ASSERT_NE(ApplicationArguments::getArgs(), nullptr);
        EXPECT_EQ(ApplicationArguments::getArgs()->ArgCount(), 0U);
        EXPECT_EQ(ApplicationArguments::getArgs()->ArgValue(0), nullptr);
    }
    char* argv[] = {nullptr, word("a"), nullptr};
    const ApplicationArguments arguments(3, argv);
    EXPECT_STREQ(ApplicationArguments::getArgs()->ArgValue(0), "a");
    const ApplicationArguments missing(3, nullptr);
    EXPECT_EQ(ApplicationArguments::getArgs()->ArgCount(), 0U);
}

TEST(ApplicationArguments, TheHeldWordsCanBeChanged) {
    char* argv[] = {word("console"), word("-v"), nullptr};
    const ApplicationArguments arguments(2, argv);
    ApplicationArguments::getArgs()->addArgs("-file \"my notes\"");
    ApplicationArguments::getArgs()->DeleteArg("-V");
    EXPECT_STREQ(ApplicationArguments::getArgs()->ArgString("-FILE"), "my notes");
    EXPECT_EQ(ApplicationArguments::getArgs()->ArgCount(), 3U);
}

TEST(ApplicationArguments, TheLastHolderIsTheHolder) {
    char* first[] = {word("first"), nullptr};
    char* second[] = {word("second"), nullptr};
    const ApplicationArguments former(1, first);
    EXPECT_STREQ(ApplicationArguments::getArgs()->ArgValue(0), "first");
    const ApplicationArguments last(1, second);
    EXPECT_STREQ(ApplicationArguments::getArgs()->ArgValue(0), "second");
}

TEST(ApplicationArguments, HoldsAHundredThousandWords) {
    std::vector<std::string> words;
    for (int i = 0; i < 100000; ++i)
        words.push_back(std::to_string(i));
    std::vector<char*> argv;
    for (std::string& each : words)
        argv.push_back(each.data());
    const ApplicationArguments arguments(100000, argv.data());
    ASSERT_EQ(ApplicationArguments::getArgs()->ArgCount(), 100000U);
    EXPECT_EQ(ApplicationArguments::getArgs()->ArgIndex("99999"), 99999U);
}

} // namespace
