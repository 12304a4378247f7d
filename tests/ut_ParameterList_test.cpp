#include "ut_ParameterList.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "LogCapture.h"
#include "RandomRun.h"

namespace {

using utility::ParameterList;
using Tokens = std::vector<std::string>;

// Allocates exactly the text and its terminator, so that sanitizers detect a read past them.
std::unique_ptr<char[]> exactly(const std::string& text) {
    std::unique_ptr<char[]> copy(new char[text.size() + 1]);
    std::memcpy(copy.get(), text.c_str(), text.size() + 1);
    return copy;
}

Tokens tokensOf(const std::string& text, char separator) {
    const std::unique_ptr<char[]> copy = exactly(text);
    const std::unique_ptr<char[]> token(new char[text.size() + 1]);
    ParameterList list(copy.get(), separator);
    Tokens tokens;
    while (const char* const next = list.nextToken(token.get())) {
        EXPECT_EQ(next, token.get());
        tokens.push_back(next);
        if (tokens.size() > text.size())
            throw std::string("more tokens than characters");
    }
    EXPECT_FALSE(list.hasNextToken());
    EXPECT_EQ(list.nextToken(token.get()), nullptr);
    EXPECT_EQ(std::string(copy.get()), text);
    return tokens;
}

TEST(ParameterList, UsageExample) {
    char text[] = "a,,b";
    char token[sizeof text];
    utility::ParameterList list(text, ',');
    Tokens tokens;
    while (list.nextToken(token) != nullptr)
        tokens.push_back(token);
    EXPECT_EQ(tokens, (Tokens{"a", "b"}));
}

TEST(ParameterList, EmptyTokensAreSkipped) {
    EXPECT_EQ(tokensOf(",,x,y", ','), (Tokens{"x", "y"}));
    EXPECT_EQ(tokensOf("x,,,,y", ','), (Tokens{"x", "y"}));
    EXPECT_EQ(tokensOf("x,y,", ','), (Tokens{"x", "y"}));
    EXPECT_EQ(tokensOf("x,y,,,", ','), (Tokens{"x", "y"}));
    EXPECT_EQ(tokensOf(",", ','), Tokens{});
    EXPECT_EQ(tokensOf(",,,,,", ','), Tokens{});
}

TEST(ParameterList, OnlyTheSeparatorSeparates) {
    EXPECT_EQ(tokensOf("a b;c", ','), (Tokens{"a b;c"}));
    EXPECT_EQ(tokensOf(" a , \"b,c\" ", ','), (Tokens{" a ", " \"b", "c\" "}));
    EXPECT_EQ(tokensOf("a\xFF"
                       "b",
                       '\xFF'),
              (Tokens{"a", "b"}));
    EXPECT_EQ(tokensOf("a b", ' '), (Tokens{"a", "b"}));
}

TEST(ParameterList, EmptyTextHasNoTokens) {
    char text[] = "";
    char token[] = "unchanged";
    ParameterList list(text, ',');
    EXPECT_TRUE(list.hasNextToken());
    EXPECT_EQ(list.nextToken(token), nullptr);
    EXPECT_FALSE(list.hasNextToken());
    EXPECT_STREQ(token, "unchanged");
}

TEST(ParameterList, NullTextHasNoTokens) {
    char token[] = "unchanged";
    ParameterList list(nullptr, ',');
    EXPECT_FALSE(list.hasNextToken());
    EXPECT_EQ(list.nextToken(token), nullptr);
    EXPECT_EQ(list.nextToken(nullptr), nullptr);
    EXPECT_FALSE(list.hasNextToken());
    EXPECT_STREQ(token, "unchanged");
}

TEST(ParameterList, NullDestinationReturnsNull) {
    char text[] = "a,b";
    ParameterList list(text, ',');
    EXPECT_EQ(list.nextToken(nullptr), nullptr);
    EXPECT_STREQ(text, "a,b");
}

TEST(ParameterList, HasNoNextTokenAfterTheLastToken) {
    char text[] = "a,b";
    char token[4];
    ParameterList list(text, ',');
    EXPECT_TRUE(list.hasNextToken());
    EXPECT_STREQ(list.nextToken(token), "a");
    EXPECT_TRUE(list.hasNextToken());
    EXPECT_STREQ(list.nextToken(token), "b");
    EXPECT_FALSE(list.hasNextToken());
    EXPECT_EQ(list.nextToken(token), nullptr);
}

TEST(ParameterList, HasNextTokenIsTrueBeforeATrailingSeparator) {
    char text[] = "a,";
    char token[3];
    ParameterList list(text, ',');
    EXPECT_STREQ(list.nextToken(token), "a");
    EXPECT_TRUE(list.hasNextToken());
    EXPECT_EQ(list.nextToken(token), nullptr);
    EXPECT_FALSE(list.hasNextToken());
}

TEST(ParameterList, NulAsSeparatorMakesTheTextOneToken) {
    EXPECT_EQ(tokensOf("a,b", '\0'), (Tokens{"a,b"}));
    EXPECT_EQ(tokensOf("", '\0'), Tokens{});
}

TEST(ParameterList, SeesChangesOfTheText) {
    char text[] = "a,bb,c";
    char token[8];
    ParameterList list(text, ',');
    EXPECT_STREQ(list.nextToken(token), "a");
    text[2] = 'X';
    text[4] = 'Y';
    EXPECT_STREQ(list.nextToken(token), "XbYc");
}

TEST(ParameterList, AcceptsATokenOfAMillionCharactersAndTenThousandTokens) {
    const std::string large(1000000, 'x');
    EXPECT_EQ(tokensOf(large + "," + large, ','), (Tokens{large, large}));
    std::string text;
    for (int i = 0; i < 10000; ++i)
        text += std::to_string(i) + ",";
    const Tokens tokens = tokensOf(text, ',');
    ASSERT_EQ(tokens.size(), 10000U);
    EXPECT_EQ(tokens[9999], "9999");
}

TEST(ParameterList, LogsNothing) {
    const test::LogCapture log;
    tokensOf(",a,b,", ',');
    EXPECT_EQ(log.count(), 0U);
}

TEST(ParameterList, RandomTextsAreSplitLikeTheModel) {
    test::RandomRun random;
    while (random.steps(50000)) {
        const std::string text = random.text(16, "ab,,");
        Tokens expected;
        std::string token;
        for (const char c : text + ",") {
            if (c != ',')
                token += c;
            else if (!token.empty())
                expected.push_back(std::exchange(token, ""));
        }
        ASSERT_EQ(tokensOf(text, ','), expected) << text;
    }
}

} // namespace
