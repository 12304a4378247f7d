#include "ut_TokenArray.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ArrayContent.h"
#include "ArrayCopySuite.h"
#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "FailingOperation.h"
#include "LogCapture.h"
#include "Token.h"
#include "TraceLines.h"
#include "TypedArraySuite.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"

namespace {

using test::contentOf;
using test::token;
using utility::TokenArray;
using Tokens = std::vector<stringtoken>;

constexpr const char* reallocName = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";

struct TokenArrayTraits : test::ArrayTraits {
    using ArrayType = TokenArray;
    using Value = stringtoken;
    static constexpr const char* className = "TokenArray";
    static constexpr const char* valueName = "strings::stringtoken";
    static constexpr const char* greatestText = "-1";
    static constexpr const char* leastText = "0";
    static constexpr unsigned int traceSwitch = 624;
};

INSTANTIATE_TYPED_TEST_SUITE_P(TokenArray, TypedArray, TokenArrayTraits);
INSTANTIATE_TYPED_TEST_SUITE_P(TokenArray, ArrayCopy, TokenArrayTraits);

TEST(TokenArray, UsageExample) {
    utility::TokenArray names("volume,port,volume", 0);
    EXPECT_EQ(names.length(), 3u);
    EXPECT_TRUE(names[0] == names[2]);
}

TEST(TokenArray, KeepsTheOrderAndTheDuplicatesOfAList) {
    const TokenArray array("a,b,a", 0);
    EXPECT_EQ(contentOf(array), (Tokens{token("a"), token("b"), token("a")}));
    EXPECT_EQ(array.size(), 20u);
    EXPECT_EQ(TokenArray("a", 3).size(), 3u);
}

TEST(TokenArray, ANewListReplacesAllTokens) {
    TokenArray array("a,b,c", 2);
    EXPECT_EQ(array.size(), 22u);
    array.SetFromStringList("c");
    EXPECT_EQ(contentOf(array), Tokens{token("c")});
    EXPECT_EQ(array.size(), 22u);
    array.SetFromStringList("");
    EXPECT_EQ(array.length(), 0u);
}

TEST(TokenArray, EmptyNamesInAListAreSkipped) {
    const TokenArray array(",,a,,b c,", 0);
    EXPECT_EQ(contentOf(array), (Tokens{token("a"), token("b c")}));
    EXPECT_EQ(TokenArray(",,,", 0).length(), 0u);
    EXPECT_EQ(TokenArray("", 0).length(), 0u);
    EXPECT_EQ(TokenArray(nullptr, 0).length(), 0u);
}

TEST(TokenArray, NamesAfterTheFiftiethAreIgnored) {
    for (const int count : {49, 50, 51, 60}) {
        std::string list;
        Tokens expected;
        for (int i = 0; i < count; ++i) {
            const std::string name = "name" + std::to_string(i);
            list += (i > 0 ? "," : "") + name;
            if (i < 50)
                expected.push_back(token(name));
        }
        EXPECT_EQ(contentOf(TokenArray(list.c_str(), 0)), expected) << count;
    }
}

TEST(TokenArray, BytesAfterThe8192ndAreIgnored) {
    const std::string first(8189, 'x');
    EXPECT_EQ(contentOf(TokenArray((first + ",ab").c_str(), 0)), (Tokens{token(first), token("ab")}));
    EXPECT_EQ(contentOf(TokenArray((first + ",abc").c_str(), 0)), (Tokens{token(first), token("ab")}));
    EXPECT_EQ(contentOf(TokenArray((first + "yzz,a").c_str(), 0)), Tokens{token(first + "yzz")});
    EXPECT_EQ(contentOf(TokenArray(std::string(100000, 'x').c_str(), 0)), Tokens{token(std::string(8192, 'x'))});
}

TEST(TokenArray, AListIsTracedTokenByToken) {
    const std::string a = std::to_string(token("a"));
    const std::string b = std::to_string(token("b"));
    const test::DebugSwitch traced(TokenArrayTraits::traceSwitch);
    const test::LogCapture log;
    const TokenArray array("a,b", 1);
    const std::string append = "3 void utility::TokenArray::Append(strings::stringtoken): ";
    EXPECT_EQ(test::traceLines(log),
              (std::vector<std::string>{append + "Appending [" + a + "] at 0", append + "Appending [" + b + "] at 1"}));
}

TEST(TokenArray, AListThatDoesNotFitThrowsWithoutMemoryAndDoesNotLeak) {
    const stringtoken tokens[] = {token("a"), token("b")};
    const long before = framework::Memory::staticOutstanding();
    EXPECT_FAILURE(test::failNth(2, [&] { TokenArray("a,b", 1); }), 1230, "ut_Array", reallocName, "");
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
    TokenArray array(1);
    EXPECT_FAILURE(test::failNth(1, [&] { array.SetFromStringList("a,b"); }), 1230, "ut_Array", reallocName, "");
    EXPECT_EQ(contentOf(array), Tokens{tokens[0]});
}

TEST(TokenArray, ANewNameWithoutMemoryGetsTheTokenZero) {
    TokenArray array(4);
    {
        test::FailingAllocation failing(test::failAll);
        array.SetFromStringList("never seen before by this array");
    }
    EXPECT_EQ(contentOf(array), Tokens{0});
}

} // namespace
