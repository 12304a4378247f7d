#include "ut_TokenArray.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "FailingOperation.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "TraceLines.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"

namespace {

using utility::TokenArray;
using Tokens = std::vector<stringtoken>;
using Lines = std::vector<std::string>;

const unsigned int TRACE_SWITCH = 624;
const char* const REALLOC = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";
const char* const APPEND = "void utility::TokenArray::Append(strings::stringtoken)";
const char* const INSERT_AT = "void utility::TokenArray::InsertAt(unsigned int, strings::stringtoken)";
const char* const SET_AT = "void utility::TokenArray::SetAt(unsigned int, strings::stringtoken)";
const char* const DELETE_AT = "void utility::TokenArray::DeleteAt(unsigned int)";
const char* const INDEX = "strings::stringtoken& utility::TokenArray::operator[](unsigned int)";
const char* const CONST_INDEX = "const strings::stringtoken& utility::TokenArray::operator[](unsigned int) const";

static_assert(!std::is_copy_assignable<TokenArray>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, TokenArray>::value, "the constructor must be explicit");

Tokens contentOf(const TokenArray& array) {
    Tokens content;
    for (unsigned int index = 0; index < array.length(); ++index)
        content.push_back(array[index]);
    return content;
}

stringtoken token(const std::string& name) {
    return strings::GS.toToken(name.c_str());
}

std::string line(int type, const char* function, const std::string& text) {
    return std::to_string(type) + " " + function + ": " + text;
}

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

TEST(TokenArray, GrowsByTwentySlotsWhenFull) {
    TokenArray array(0);
    EXPECT_EQ(array.size(), 20u);
    for (stringtoken t = 0; t < 21; ++t)
        array.Append(t);
    EXPECT_EQ(array.size(), 40u);
    TokenArray small(5);
    EXPECT_EQ(small.size(), 5u);
    for (stringtoken t = 0; t < 6; ++t)
        small.InsertAt(0, t);
    EXPECT_EQ(small.size(), 25u);
    EXPECT_EQ(contentOf(small), (Tokens{5, 4, 3, 2, 1, 0}));
}

TEST(TokenArray, SetAtReplacesAndDeleteAtClosesTheGap) {
    TokenArray array(4);
    for (stringtoken t = 0; t < 4; ++t)
        array.Append(t);
    array.SetAt(0, 0xFFFFFFFF);
    array[3] = 0;
    array.DeleteAt(1);
    EXPECT_EQ(contentOf(array), (Tokens{0xFFFFFFFF, 2, 0}));
    array.DeleteAt(2);
    array.DeleteAt(0);
    EXPECT_EQ(contentOf(array), Tokens{2});
}

TEST(TokenArray, BadIndicesThrowAndChangeNothing) {
    TokenArray array(2);
    array.Append(7);
    array.Append(8);
    const TokenArray& constant = array;
    EXPECT_FAILURE(array.InsertAt(3, 9), 1229, "ut_TokenArray", INSERT_AT, "");
    EXPECT_FAILURE(array.InsertAt(0xFFFFFFFF, 9), 1229, "ut_TokenArray", INSERT_AT, "");
    EXPECT_FAILURE(array.SetAt(2, 9), 1229, "ut_TokenArray", SET_AT, "");
    EXPECT_FAILURE(array.DeleteAt(2), 1229, "ut_TokenArray", DELETE_AT, "");
    EXPECT_FAILURE(array[2], 1229, "ut_TokenArray", INDEX, "");
    EXPECT_FAILURE(constant[2], 1229, "ut_TokenArray", CONST_INDEX, "");
    EXPECT_EQ(contentOf(array), (Tokens{7, 8}));
    EXPECT_EQ(array.size(), 2u);
    array.InsertAt(2, 9);
    EXPECT_EQ(contentOf(array), (Tokens{7, 8, 9}));
}

TEST(TokenArray, ACopyHasTheSameCapacityAndItsOwnTokens) {
    TokenArray array("a,b", 7);
    TokenArray copy(array);
    EXPECT_EQ(copy.size(), 7u);
    array.SetAt(0, token("c"));
    EXPECT_EQ(contentOf(copy), (Tokens{token("a"), token("b")}));
}

TEST(TokenArray, TracesEachStepOfAChange) {
    test::DebugSwitch trace(TRACE_SWITCH);
    test::LogCapture log;
    TokenArray array(4);
    array.Append(7);
    array.Append(8);
    array.InsertAt(0, 9);
    array.SetAt(0, 1);
    array.DeleteAt(0);
    EXPECT_EQ(test::traceLines(log),
              (Lines{line(3, APPEND, "Appending [7] at 0"), line(3, APPEND, "Appending [8] at 1"),
                     line(4, INSERT_AT, "Enter"), line(3, INSERT_AT, "moving from 1 to 2"),
                     line(3, INSERT_AT, "moving from 0 to 1"), line(3, INSERT_AT, "setting 0 = 9")}));
    log.clear();
    EXPECT_NE(CATCH_FAILURE(array.InsertAt(3, 1)), nullptr);
    EXPECT_EQ(test::traceLines(log), Lines{line(4, INSERT_AT, "Enter")});
}

TEST(TokenArray, DoesNotTraceWithItsSwitchOff) {
    test::LogCapture log;
    TokenArray array("a,b", 1);
    array.InsertAt(0, 9);
    EXPECT_EQ(log.count(), 0u);
}

TEST(TokenArray, WithoutMemoryThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        TokenArray array(2);
        array.Append(7);
        array.Append(8);
        EXPECT_FAILURE(test::failNth(1, [&] { array.Append(9); }), 1230, "ut_Array", REALLOC, "");
        EXPECT_FAILURE(test::failNth(1, [&] { array.InsertAt(0, 9); }), 1230, "ut_Array", REALLOC, "");
        EXPECT_EQ(contentOf(array), (Tokens{7, 8}));
        EXPECT_EQ(array.size(), 2u);
        EXPECT_FAILURE(test::failNth(1, [&] { TokenArray copy(array); }), 1230, "ut_Array", REALLOC, "");
        EXPECT_FAILURE(test::failNth(1, [&] { TokenArray other(3); }), 1230, "ut_Array", REALLOC, "");
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(TokenArray, AListThatDoesNotFitThrowsWithoutMemoryAndDoesNotLeak) {
    const stringtoken tokens[] = {token("a"), token("b")};
    const long before = framework::Memory::staticOutstanding();
    EXPECT_FAILURE(test::failNth(2, [&] { TokenArray("a,b", 1); }), 1230, "ut_Array", REALLOC, "");
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
    TokenArray array(1);
    EXPECT_FAILURE(test::failNth(1, [&] { array.SetFromStringList("a,b"); }), 1230, "ut_Array", REALLOC, "");
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

// Reference implementation with a vector; an index out of range throws.
void takeRandomStep(test::RandomRun& random, TokenArray& array, Tokens& model) {
    const unsigned int length = array.length();
    const unsigned int index = random.below(length + 2);
    const auto at = [&] {
        return model.begin() + static_cast<std::ptrdiff_t>(index);
    };
    const stringtoken value = random.below(100);
    switch (random.below(5)) {
    case 0:
        array.Append(value);
        model.push_back(value);
        break;
    case 1:
        EXPECT_EQ(CATCH_FAILURE(array.InsertAt(index, value)) == nullptr, index <= length);
        if (index <= length)
            model.insert(at(), value);
        break;
    case 2:
        EXPECT_EQ(CATCH_FAILURE(array.SetAt(index, value)) == nullptr, index < length);
        if (index < length)
            *at() = value;
        break;
    case 3:
        EXPECT_EQ(CATCH_FAILURE(array.DeleteAt(index)) == nullptr, index < length);
        if (index < length)
            model.erase(at());
        break;
    default:
        if (random.below(20) > 0)
            break;
        array.truncate(index);
        if (index < length)
            model.resize(index);
    }
}

TEST(TokenArray, BehavesAsAVectorUnderRandomOperations) {
    test::RandomRun random;
    TokenArray array(random.below(30));
    Tokens model;
    while (random.steps(100000)) {
        takeRandomStep(random, array, model);
        ASSERT_EQ(contentOf(array), model);
    }
}

} // namespace
