#include "ut_TokenSet.h"

#include <algorithm>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "DebugSwitch.h"
#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "FailingOperation.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "Token.h"
#include "TraceLines.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"

namespace {

using test::token;
using test::traceLine;
using utility::TokenSet;
using Tokens = std::vector<stringtoken>;
using Lines = std::vector<std::string>;

constexpr unsigned int traceSwitch = 625;
constexpr const char* reallocName = "static void* utility::Array::realloc(void*, unsigned int*, unsigned int, size_t)";
constexpr const char* appendName = "void utility::TokenSet::append(strings::stringtoken)";
constexpr const char* insertAtName = "void utility::TokenSet::insertAt(unsigned int, strings::stringtoken)";
constexpr const char* setAtName = "void utility::TokenSet::setAt(unsigned int, strings::stringtoken)";
constexpr const char* deleteAtName = "void utility::TokenSet::deleteAt(unsigned int)";
constexpr const char* indexName = "strings::stringtoken& utility::TokenSet::operator[](unsigned int)";
constexpr const char* constIndexName = "const strings::stringtoken& utility::TokenSet::operator[](unsigned int) const";

static_assert(!std::is_copy_assignable<TokenSet>::value, "assignment would share the block");
static_assert(!std::is_convertible<unsigned int, TokenSet>::value, "the constructor must be explicit");

Tokens contentOf(const TokenSet& set) {
    Tokens content;
    for (unsigned int index = 0; index < set.length(); ++index)
        content.push_back(set[index]);
    return content;
}

void fill(TokenSet& set, const Tokens& tokens) {
    for (const stringtoken t : tokens)
        set.set(t);
}

TEST(TokenSet, UsageExample) {
    utility::TokenSet names("volume,port,volume", 0);
    EXPECT_EQ(names.length(), 2u);
    EXPECT_TRUE(names.inSet(strings::GS.toToken("port")));
    EXPECT_FALSE(names.inSet(strings::GS.toToken("console")));
}

TEST(TokenSet, ContainsEachNameOfAListOnceInAscendingOrderOfTokens) {
    const stringtoken a = token("a");
    const stringtoken b = token("b");
    EXPECT_EQ(contentOf(TokenSet("a,b,a", 0)), (Tokens{std::min(a, b), std::max(a, b)}));
    EXPECT_EQ(contentOf(TokenSet("b,,a,b,", 0)), (Tokens{std::min(a, b), std::max(a, b)}));
    EXPECT_EQ(TokenSet("a", 0).size(), 20u);
    EXPECT_EQ(TokenSet("a", 3).size(), 3u);
    EXPECT_EQ(TokenSet("", 0).length(), 0u);
    EXPECT_EQ(TokenSet(nullptr, 0).length(), 0u);
}

TEST(TokenSet, ANewListReplacesAllTokens) {
    TokenSet set("a,b,c", 2);
    set.SetFromStringList("c");
    EXPECT_EQ(contentOf(set), Tokens{token("c")});
    EXPECT_EQ(set.size(), 22u);
}

TEST(TokenSet, NamesAfterTheFiftiethAndBytesAfterThe8192ndAreIgnored) {
    std::string list = "name0";
    for (int i = 1; i < 60; ++i)
        list += ",name" + std::to_string(i);
    const TokenSet set(list.c_str(), 0);
    EXPECT_EQ(set.length(), 50u);
    EXPECT_TRUE(set.inSet(token("name49")));
    EXPECT_FALSE(set.inSet(token("name50")));

    const std::string first(8189, 'x');
    const TokenSet cut((first + ",abc").c_str(), 0);
    EXPECT_EQ(cut.length(), 2u);
    EXPECT_TRUE(cut.inSet(token("ab")));
}

TEST(TokenSet, SetOfAPresentTokenChangesNothing) {
    for (stringtoken count = 0; count < 12; ++count) {
        TokenSet set(0);
        for (int round = 0; round < 2; ++round) {
            for (stringtoken t = count; t > 0; --t)
                set.set(t * 10);
        }
        EXPECT_EQ(set.length(), count);
        for (stringtoken t = 0; t <= count + 1; ++t) {
            EXPECT_EQ(set.inSet(t * 10), t >= 1 && t <= count) << t << " of " << count;
            EXPECT_FALSE(set.inSet(t * 10 + 5)) << t << " of " << count;
        }
    }
}

TEST(TokenSet, KeepsAscendingOrderWhereverATokenGoes) {
    TokenSet set(1);
    fill(set, {5, 0xFFFFFFFF, 0, 3, 0x80000000, 4});
    EXPECT_EQ(contentOf(set), (Tokens{0, 3, 4, 5, 0x80000000, 0xFFFFFFFF}));
    EXPECT_EQ(set.size(), 21u);
}

TEST(TokenSet, UnsetRemovesOnlyTheSmallestToken) {
    TokenSet set(0);
    fill(set, {3, 7, 9});
    set.unset(7);
    EXPECT_EQ(contentOf(set), (Tokens{3, 7, 9}));
    set.unset(9);
    set.unset(1);
    set.unset(100);
    EXPECT_EQ(contentOf(set), (Tokens{3, 7, 9}));
    set.unset(3);
    EXPECT_EQ(contentOf(set), (Tokens{7, 9}));
    set.unset(7);
    set.unset(9);
    set.unset(9);
    EXPECT_EQ(set.length(), 0u);
}

TEST(TokenSet, MergingChangesTheArgumentAndNotTheSetItself) {
    TokenSet a(0);
    TokenSet b(0);
    fill(a, {3, 7});
    fill(b, {5, 7, 9});
    a.mergeSet(b);
    EXPECT_EQ(contentOf(a), (Tokens{3, 7}));
    EXPECT_EQ(contentOf(b), (Tokens{3, 5, 7, 9}));
    a.mergeSet(a);
    EXPECT_EQ(contentOf(a), (Tokens{3, 7}));
}

TEST(TokenSet, MergingAnUnorderedSetIntoItselfTerminates) {
    TokenSet set(1);
    for (stringtoken t = 100; t > 0; --t)
        set.append(t);
    set.mergeSet(set);
    EXPECT_LE(set.length(), 200u);
}

TEST(TokenSet, ClearSetRemovesAllTokensAndKeepsTheBlock) {
    TokenSet set(0);
    for (stringtoken t = 0; t < 30; ++t)
        set.set(t);
    set.clearSet();
    EXPECT_EQ(set.length(), 0u);
    EXPECT_EQ(set.size(), 40u);
    for (stringtoken t = 0; t < 30; ++t)
        EXPECT_FALSE(set.inSet(t));
}

TEST(TokenSet, EqualsASetOfTheSameTokens) {
    TokenSet a(0);
    TokenSet b(50);
    EXPECT_TRUE(a == b);
    fill(a, {3, 7});
    fill(b, {7});
    EXPECT_FALSE(a == b);
    b.set(3);
    EXPECT_TRUE(a == b);
    EXPECT_TRUE(a == a);
    b.setAt(1, 8);
    EXPECT_FALSE(a == b);
}

TEST(TokenSet, WritesItsNamesWithoutSeparatorsAndOneCommaAtTheEnd) {
    token("x");
    token("y");
    char text[16];
    TokenSet("x,y", 0).toStringList(text, sizeof text);
    EXPECT_STREQ(text, token("x") < token("y") ? "xy," : "yx,");
    TokenSet("x", 0).toStringList(text, sizeof text);
    EXPECT_STREQ(text, "x,");
}

TEST(TokenSet, AnEmptySetIsWrittenAsTheEmptyText) {
    char text[4] = "abc";
    TokenSet(0).toStringList(text, sizeof text);
    EXPECT_STREQ(text, "");
    char untouched = 'z';
    TokenSet(0).toStringList(&untouched, 0);
    EXPECT_EQ(untouched, 'z');
    TokenSet(0).toStringList(nullptr, 0);
}

TEST(TokenSet, ATokenWithoutANameAddsNothingToTheText) {
    char text[16];
    TokenSet set("x", 0);
    set.set(0);
    set.set(0xFFFFFFFF);
    set.toStringList(text, sizeof text);
    EXPECT_STREQ(text, "x,");
}

TEST(TokenSet, ATextThatDoesNotFitThrowsAndWritesNothingOutsideItsBuffer) {
    const TokenSet set("xx,yy", 0);
    char text[8];
    set.toStringList(text, 6);
    EXPECT_EQ(std::string(text).size(), 5u);
    const char* const putC = "void utility::PutStream::PutC(char)";
    const char* const advance = "virtual void utility::Buffer::WriteAdvance(int)";
    EXPECT_FAILURE(TokenSet("xx", 0).toStringList(text, 1), 1239, "ut_PutStream",
                   "void utility::PutStream::PutS(const char*)", "Didn't fit. remaining=0 msg='xx'");
    EXPECT_FAILURE(TokenSet("xx", 0).toStringList(text, 3), 1239, "ut_Buffer", advance, "");
    TokenSet nameless(0);
    nameless.set(0);
    EXPECT_FAILURE(nameless.toStringList(text, 1), 1239, "ut_PutStream", putC, "");
    for (unsigned int size = 0; size < 6; ++size) {
        std::fill(std::begin(text), std::end(text), '#');
        EXPECT_NE(CATCH_FAILURE(set.toStringList(text, size)), nullptr) << size;
        for (unsigned int i = size; i < sizeof text; ++i)
            EXPECT_EQ(text[i], '#') << size;
    }
    EXPECT_NE(CATCH_FAILURE(set.toStringList(nullptr, 100)), nullptr);
}

TEST(TokenSet, AppendInsertAtAndSetAtDoNotCheckTheOrder) {
    TokenSet set(2);
    set.append(5);
    set.append(3);
    set.insertAt(1, 9);
    set.setAt(0, 6);
    EXPECT_EQ(contentOf(set), (Tokens{6, 9, 3}));
    EXPECT_EQ(set.size(), 22u);
    set.deleteAt(1);
    set[0] = 1;
    EXPECT_EQ(contentOf(set), (Tokens{1, 3}));
    set.insertAt(2, 4);
    EXPECT_EQ(contentOf(set), (Tokens{1, 3, 4}));
}

TEST(TokenSet, UnsetInADescendingSetSkipsGreaterTokens) {
    TokenSet set(0);
    for (const stringtoken t : {9u, 7u, 3u})
        set.append(t);
    set.unset(7);
    EXPECT_EQ(contentOf(set), (Tokens{9, 3}));
}

TEST(TokenSet, BadIndicesThrowAndChangeNothing) {
    TokenSet set(2);
    fill(set, {7, 8});
    const TokenSet& constant = set;
    EXPECT_FAILURE(set.insertAt(3, 9), 1229, "ut_TokenSet", insertAtName, "");
    EXPECT_FAILURE(set.insertAt(0xFFFFFFFF, 9), 1229, "ut_TokenSet", insertAtName, "");
    EXPECT_FAILURE(set.setAt(2, 9), 1229, "ut_TokenSet", setAtName, "");
    EXPECT_FAILURE(set.deleteAt(2), 1229, "ut_TokenSet", deleteAtName, "");
    EXPECT_FAILURE(set[2], 1229, "ut_TokenSet", indexName, "");
    EXPECT_FAILURE(constant[2], 1229, "ut_TokenSet", constIndexName, "");
    EXPECT_EQ(contentOf(set), (Tokens{7, 8}));
    EXPECT_EQ(set.size(), 2u);
}

TEST(TokenSet, ACopyHasTheSameCapacityAndItsOwnTokens) {
    TokenSet set(7);
    fill(set, {3, 7});
    TokenSet copy(set);
    EXPECT_EQ(copy.size(), 7u);
    set.set(5);
    EXPECT_EQ(contentOf(copy), (Tokens{3, 7}));
}

TEST(TokenSet, TracesEachStepOfAChange) {
    test::DebugSwitch trace(traceSwitch);
    test::LogCapture log;
    TokenSet set(4);
    fill(set, {7, 8, 7, 5});
    set.setAt(0, 1);
    set.unset(1);
    EXPECT_EQ(test::traceLines(log),
              (Lines{traceLine(3, appendName, "Appending [7] at 0"), traceLine(3, appendName, "Appending [8] at 1"),
                     traceLine(4, insertAtName, "Enter"), traceLine(3, insertAtName, "moving from 1 to 2"),
                     traceLine(3, insertAtName, "moving from 0 to 1"), traceLine(3, insertAtName, "setting 0 = 5")}));
}

TEST(TokenSet, DoesNotTraceWithItsSwitchOff) {
    test::LogCapture log;
    TokenSet set("a,b,c", 1);
    set.set(1);
    EXPECT_EQ(log.count(), 0u);
}

TEST(TokenSet, WithoutMemoryThrowsAndChangesNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        TokenSet set(2);
        fill(set, {7, 9});
        TokenSet other(1);
        other.set(1);
        EXPECT_FAILURE(test::failNth(1, [&] { set.set(8); }), 1230, "ut_Array", reallocName, "");
        EXPECT_FAILURE(test::failNth(1, [&] { set.set(10); }), 1230, "ut_Array", reallocName, "");
        EXPECT_FAILURE(test::failNth(1, [&] { other.mergeSet(set); }), 1230, "ut_Array", reallocName, "");
        EXPECT_EQ(contentOf(set), (Tokens{7, 9}));
        EXPECT_EQ(set.size(), 2u);
        EXPECT_FAILURE(test::failNth(1, [&] { TokenSet copy(set); }), 1230, "ut_Array", reallocName, "");
        EXPECT_FAILURE(test::failNth(1, [&] { TokenSet another(3); }), 1230, "ut_Array", reallocName, "");
        char text[100];
        test::FailingAllocation failure(test::failAll);
        set.toStringList(text, sizeof text);
        EXPECT_TRUE(set.inSet(9));
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(TokenSet, AListThatDoesNotFitThrowsWithoutMemoryAndDoesNotLeak) {
    token("a");
    token("b");
    const long before = framework::Memory::staticOutstanding();
    EXPECT_FAILURE(test::failNth(2, [&] { TokenSet("a,b", 1); }), 1230, "ut_Array", reallocName, "");
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

// Returns the names of `model` as the set writes them.
std::string listOf(const std::set<stringtoken>& model) {
    std::string list;
    for (const stringtoken t : model)
        list += strings::StringRepository::toString(t);
    return model.empty() ? list : list + ",";
}

TEST(TokenSet, BehavesAsASetUnderRandomOperations) {
    test::RandomRun random;
    Tokens names;
    for (int i = 0; i < 40; ++i)
        names.push_back(token("member" + std::to_string(i)));
    TokenSet set(random.below(30));
    TokenSet other(random.below(30));
    std::set<stringtoken> model;
    std::set<stringtoken> otherModel;
    while (random.steps(100000)) {
        const stringtoken t = names[random.below(40)];
        switch (random.below(12)) {
        case 0:
            set.unset(t);
            if (!model.empty() && *model.begin() == t)
                model.erase(t);
            break;
        case 1:
            if (!model.empty()) {
                set.unset(*model.begin());
                model.erase(model.begin());
            }
            break;
        case 2:
            if (random.below(20) == 0) {
                set.clearSet();
                model.clear();
            }
            break;
        case 3:
            set.mergeSet(other);
            otherModel.insert(model.begin(), model.end());
            break;
        case 4:
            other.clearSet();
            otherModel.clear();
            break;
        case 5: {
            const std::string list = std::string("member3,,") + strings::StringRepository::toString(t);
            other.SetFromStringList(list.c_str());
            otherModel = {names[3], t};
            break;
        }
        case 6: {
            char text[500];
            set.toStringList(text, sizeof text);
            ASSERT_EQ(text, listOf(model));
            break;
        }
        case 7:
            ASSERT_EQ(set == other, model == otherModel);
            ASSERT_TRUE(TokenSet(set) == set);
            break;
        default:
            set.set(t);
            model.insert(t);
        }
        ASSERT_EQ(set.inSet(t), model.count(t) == 1);
        ASSERT_EQ(contentOf(set), Tokens(model.begin(), model.end()));
        ASSERT_EQ(contentOf(other), Tokens(otherModel.begin(), otherModel.end()));
    }
}

} // namespace
