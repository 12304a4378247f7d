#include "ut_Arguments.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <ctime>
#include <initializer_list>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "GuardedText.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "ReferenceWords.h"
#include "VirtualSlot.h"
#include "fw_Entity.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"
#include "ut_BufferStream.h"
#include "ut_PutStream.h"

namespace {

using utility::Arguments;
using Words = std::vector<std::string>;

constexpr unsigned int nowhere = 0xFFFFFFFFu;
constexpr const char* noWord = "(null)";

static_assert(std::is_base_of<framework::Item, Arguments>::value, "arguments are an item");
static_assert(std::is_convertible<Arguments*, framework::Entity*>::value, "and an entity");
static_assert(!std::is_copy_constructible<Arguments>::value, "a copy would share the words");
static_assert(!std::is_copy_assignable<Arguments>::value, "an assignment would share the words");

Words wordsOf(const Arguments& arguments) {
    Words words;
    for (unsigned int i = 0; i < arguments.ArgCount(); ++i) {
        const char* const word = arguments.ArgValue(i);
        words.push_back(word != nullptr ? word : noWord);
    }
    return words;
}

Words split(const char* text) {
    return wordsOf(Arguments(text));
}

std::string textOf(const Arguments& arguments, unsigned int first = 0) {
    std::size_t capacity = 8;
    for (const std::string& word : wordsOf(arguments))
        capacity += word.size() + 3;
    utility::BufferStream out(static_cast<int>(capacity));
    arguments.ToString(first, out);
    return test::heldBytes(out);
}

// Whether `ToString` can express the word: it quotes only words with blanks, and cannot escape quotes.
bool survivesItsText(const std::string& word) {
    if (word.find(' ') != std::string::npos)
        return word.find('"') == std::string::npos;
    return !word.empty() && word[0] != '"' && word.find_first_of("\t\n\v\f\r") == std::string::npos;
}

TEST(Arguments, UsageExample) {
    utility::Arguments arguments("show file \"my notes\" -lines 20");
    EXPECT_STREQ(arguments.ArgValue(2), "my notes");
    EXPECT_EQ(arguments.ArgInt("-LINES"), 20);
}

// Splitting

TEST(Arguments, QuotesGroupWords) {
    const Arguments arguments("a \"b c\" d");
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "b c", "d"}));
    EXPECT_EQ(arguments.ArgCount(), 3U);
    EXPECT_FALSE(arguments.quoteUnmatched());
}

TEST(Arguments, UnmatchedQuoteIsRecordedAndWrittenBackOpen) {
    const Arguments arguments("x \"y");
    EXPECT_EQ(wordsOf(arguments), (Words{"x", "y"}));
    EXPECT_TRUE(arguments.quoteUnmatched());
    EXPECT_EQ(textOf(arguments), "x \"y");
}

TEST(Arguments, NullEmptyAndBlankTextsHaveNoWords) {
    for (const char* const text : {static_cast<const char*>(nullptr), "", " ", "\t\n\v\f\r ", "          "}) {
        const Arguments arguments(text);
        EXPECT_EQ(arguments.ArgCount(), 0U);
        EXPECT_EQ(arguments.ArgValue(0), nullptr);
        EXPECT_FALSE(arguments.quoteUnmatched());
        EXPECT_EQ(textOf(arguments), "");
    }
}

TEST(Arguments, WhiteSpaceSeparatesAndIsRemoved) {
    EXPECT_EQ(split("\t a\tb\nc\vd\fe\rf  g \r\n"), (Words{"a", "b", "c", "d", "e", "f", "g"}));
}

TEST(Arguments, EveryOtherByteBelongsToAWord) {
    for (int c = 1; c < 256; ++c) {
        if (std::string(" \t\n\v\f\r\"").find(static_cast<char>(c)) != std::string::npos)
            continue;
        const std::string word(3, static_cast<char>(c));
        EXPECT_EQ(split((" " + word + " x").c_str()), (Words{word, "x"})) << c;
    }
}

TEST(Arguments, EmptyPairOfQuotesIsAnEmptyWord) {
    EXPECT_EQ(split("\"\""), (Words{""}));
    EXPECT_EQ(split("a \"\" b"), (Words{"a", "", "b"}));
    EXPECT_EQ(split("\"\"\"\""), (Words{"", ""}));
}

TEST(Arguments, QuotesInsideAWordAreOrdinaryCharacters) {
    const Arguments arguments("a\"b c\" name=\"x");
    EXPECT_EQ(wordsOf(arguments), (Words{"a\"b", "c\"", "name=\"x"}));
    EXPECT_FALSE(arguments.quoteUnmatched());
}

TEST(Arguments, TextDirectlyAfterAClosingQuoteIsANewWord) {
    EXPECT_EQ(split("\"a b\"c"), (Words{"a b", "c"}));
    EXPECT_EQ(split("\"a\"\"b\""), (Words{"a", "b"}));
    EXPECT_EQ(split("\"a\"b\"c"), (Words{"a", "b\"c"}));
}

TEST(Arguments, BackslashIsNotAnEscape) {
    const Arguments arguments("\"a\\\" b\\ c");
    EXPECT_EQ(wordsOf(arguments), (Words{"a\\", "b\\", "c"}));
    EXPECT_FALSE(arguments.quoteUnmatched());
}

TEST(Arguments, QuotedWordKeepsItsWhiteSpace) {
    EXPECT_EQ(split("\" \t\n a  \""), (Words{" \t\n a  "}));
}

TEST(Arguments, SingleQuoteIsAnEmptyWordInAnOpenQuote) {
    for (const char* const text : {"\"", "  \"", "\"\"\""}) {
        const Arguments arguments(text);
        EXPECT_TRUE(arguments.quoteUnmatched()) << text;
        EXPECT_STREQ(arguments.ArgValue(arguments.ArgCount() - 1), "") << text;
    }
    EXPECT_EQ(split("x \""), (Words{"x", ""}));
    EXPECT_EQ(textOf(Arguments("x \"")), "x \"");
    EXPECT_EQ(split("\"a b "), (Words{"a b "}));
}

TEST(Arguments, AddArgsAppendsWords) {
    Arguments arguments("a");
    arguments.addArgs("b \"c d\"");
    arguments.addArgs("");
    arguments.addArgs(nullptr);
    arguments.addArgs("e");
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "b", "c d", "e"}));
    EXPECT_FALSE(arguments.quoteUnmatched());
    arguments.addArgs("\"f");
    EXPECT_TRUE(arguments.quoteUnmatched());
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "b", "c d", "e", "f"}));
}

TEST(Arguments, AddArgsKeepsTheUnmatchedQuoteSet) {
    Arguments arguments("\"a");
    arguments.addArgs("b");
    EXPECT_TRUE(arguments.quoteUnmatched());
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "b"}));
    EXPECT_EQ(textOf(arguments), "a \"b");
}

TEST(Arguments, StoresCopies) {
    std::string text = "one \"two three\"";
    Arguments arguments(text.c_str());
    text.assign(text.size(), '#');
    EXPECT_EQ(wordsOf(arguments), (Words{"one", "two three"}));
}

TEST(Arguments, Accepts100000Words) {
    std::string text;
    for (int i = 0; i < 100000; ++i)
        text += (i % 3 == 0 ? "\"" + std::to_string(i) + " x\"" : std::to_string(i)) + (i % 2 == 0 ? " " : "\t\n");
    Arguments arguments(text.c_str());
    ASSERT_EQ(arguments.ArgCount(), 100000U);
    for (unsigned int i = 0; i < 100000; ++i)
        ASSERT_EQ(arguments.ArgValue(i), std::to_string(i) + (i % 3 == 0 ? " x" : ""));
    EXPECT_EQ(arguments.ArgValue(100000), nullptr);
    EXPECT_EQ(arguments.ArgIndex("99998"), 99998U);
    EXPECT_STREQ(arguments.ArgString("99998"), "99999 x");
    EXPECT_EQ(split(textOf(arguments).c_str()), wordsOf(arguments));
}

TEST(Arguments, AcceptsAWordOfAMillionCharacters) {
    const std::string word(1000000, 'w');
    EXPECT_EQ(split(("a " + word + " \"" + word + " " + word + "\"").c_str()), (Words{"a", word, word + " " + word}));
}

// argc and argv

TEST(Arguments, CopiesTheWordsOfArgvUnchanged) {
    char name[] = "console", option[] = "-f", quoted[] = "\"b c\"", blank[] = " d  e ", empty[] = "", open[] = "\"x";
    char* argv[] = {name, option, quoted, blank, empty, open, nullptr};
    const Arguments arguments(6, argv);
    EXPECT_EQ(wordsOf(arguments), (Words{"console", "-f", "\"b c\"", " d  e ", "", "\"x"}));
    EXPECT_FALSE(arguments.quoteUnmatched());
    name[0] = 'X';
    EXPECT_STREQ(arguments.ArgValue(0), "console");
}

TEST(Arguments, SkipsNullEntriesOfArgv) {
    char first[] = "a", last[] = "b";
    char* argv[] = {nullptr, first, nullptr, last, nullptr};
    EXPECT_EQ(wordsOf(Arguments(5, argv)), (Words{"a", "b"}));
    EXPECT_EQ(wordsOf(Arguments(2, argv)), (Words{"a"}));
    EXPECT_EQ(wordsOf(Arguments(1, argv)), Words{});
}

TEST(Arguments, NullArgvHasNoWords) {
    char word[] = "a";
    char* argv[] = {word, nullptr};
    EXPECT_EQ(wordsOf(Arguments(0, argv)), Words{});
    EXPECT_EQ(wordsOf(Arguments(-1, argv)), Words{});
    EXPECT_EQ(wordsOf(Arguments(0, nullptr)), Words{});
    EXPECT_EQ(wordsOf(Arguments(3, nullptr)), Words{});
}

// Lookups

TEST(Arguments, WordsOutOfRangeAreNull) {
    const Arguments arguments("a b");
    EXPECT_STREQ(arguments.ArgValue(1), "b");
    EXPECT_EQ(arguments.ArgValue(2), nullptr);
    EXPECT_EQ(arguments.ArgValue(nowhere), nullptr);
    EXPECT_EQ(arguments.ArgValue(0x80000000u), nullptr);
}

TEST(Arguments, LookupsIgnoreCase) {
    const Arguments arguments("Show -FILE x -file y \"two Words\"");
    EXPECT_TRUE(arguments.isArg("sHOW"));
    EXPECT_TRUE(arguments.isArg("TWO wORDS"));
    EXPECT_FALSE(arguments.isArg("sho"));
    EXPECT_FALSE(arguments.isArg("shows"));
    EXPECT_FALSE(arguments.isArg(""));
    EXPECT_EQ(arguments.ArgIndex("show"), 0U);
    EXPECT_EQ(arguments.ArgIndex("-File"), 1U);
    EXPECT_EQ(arguments.ArgIndex("Y"), 4U);
    EXPECT_EQ(arguments.ArgIndex("two"), nowhere);
    EXPECT_STREQ(arguments.ArgString("-file"), "x");
}

TEST(Arguments, FindsTheEmptyWord) {
    const Arguments arguments("a \"\" b");
    EXPECT_TRUE(arguments.isArg(""));
    EXPECT_EQ(arguments.ArgIndex(""), 1U);
    EXPECT_STREQ(arguments.ArgString(""), "b");
    EXPECT_STREQ(arguments.ArgString("a"), "");
}

TEST(Arguments, FindsTheTextOfAToken) {
    const Arguments arguments("a ARGUMENTS -volume b");
    EXPECT_EQ(arguments.ArgIndexByToken(291), 1U);
    EXPECT_EQ(arguments.ArgIndexByToken(strings::GS.toToken("-Volume")), 2U);
    EXPECT_EQ(arguments.ArgIndexByToken(630), nowhere);
    EXPECT_EQ(arguments.ArgIndexByToken(0), nowhere);
    EXPECT_EQ(arguments.ArgIndexByToken(nowhere), nowhere);
}

TEST(Arguments, ArgStringIsTheWordAfterTheFirstMatch) {
    const Arguments arguments("-a 1 -a 2 -b");
    EXPECT_STREQ(arguments.ArgString("-a"), "1");
    EXPECT_STREQ(arguments.ArgString("-A"), "1");
    EXPECT_EQ(arguments.ArgString("-b"), nullptr);
    EXPECT_EQ(arguments.ArgString("-c"), nullptr);
    EXPECT_STREQ(Arguments("-a -a b").ArgString("-a"), "-a");
}

TEST(Arguments, ArgIntIsTheNumberAtTheStartOfTheValue) {
    const Arguments arguments(
        "-a 12 -b -7 -c 12abc -d abc -e \"\" -f \"  42\" -g 2147483647 -h -2147483648 -i 0x10 -j");
    EXPECT_EQ(arguments.ArgInt("-A"), 12);
    EXPECT_EQ(arguments.ArgInt("-b"), -7);
    EXPECT_EQ(arguments.ArgInt("-c"), 12);
    EXPECT_EQ(arguments.ArgInt("-d"), 0);
    EXPECT_EQ(arguments.ArgInt("-e"), 0);
    EXPECT_EQ(arguments.ArgInt("-f"), 42);
    EXPECT_EQ(arguments.ArgInt("-g"), 2147483647L);
    EXPECT_EQ(arguments.ArgInt("-h"), -2147483647L - 1);
    EXPECT_EQ(arguments.ArgInt("-i"), 0);
    EXPECT_EQ(arguments.ArgInt("-j"), 0);
    EXPECT_EQ(arguments.ArgInt("-k"), 0);
}

TEST(Arguments, NullWordsAreNotFound) {
    const Arguments arguments("a \"\" (null)");
    EXPECT_FALSE(arguments.isArg(nullptr));
    EXPECT_EQ(arguments.ArgIndex(nullptr), nowhere);
    EXPECT_EQ(arguments.ArgString(nullptr), nullptr);
    EXPECT_EQ(arguments.ArgInt(nullptr), 0);
}

// Changes

TEST(Arguments, AddArgAppendsAWordUnchanged) {
    Arguments arguments(nullptr);
    for (const char* const word : {"a", " b c ", "\"d\"", "", "\t"})
        arguments.AddArg(word);
    EXPECT_EQ(wordsOf(arguments), (Words{"a", " b c ", "\"d\"", "", "\t"}));
    EXPECT_FALSE(arguments.quoteUnmatched());
}

TEST(Arguments, NullWordsAreNotAdded) {
    Arguments arguments("a b");
    arguments.AddArg(nullptr);
    EXPECT_EQ(arguments.ArgCount(), 2U);
    arguments.ModifyArg(0, nullptr);
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "b"}));
}

TEST(Arguments, ModifyArgReplacesAWordInRange) {
    Arguments arguments("a b c");
    arguments.ModifyArg(1, "x y");
    arguments.ModifyArg(2, "");
    arguments.ModifyArg(3, "no");
    arguments.ModifyArg(nowhere, "no");
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "x y", ""}));
    Arguments none(nullptr);
    none.ModifyArg(0, "no");
    EXPECT_EQ(none.ArgCount(), 0U);
}

TEST(Arguments, DeleteArgByIndexDeletesAWordInRange) {
    Arguments arguments("a b c d");
    arguments.DeleteArg(1U);
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "c", "d"}));
    arguments.DeleteArg(3U);
    arguments.DeleteArg(nowhere);
    EXPECT_EQ(arguments.ArgCount(), 3U);
    arguments.DeleteArg(2U);
    arguments.DeleteArg(0U);
    EXPECT_EQ(wordsOf(arguments), (Words{"c"}));
    arguments.DeleteArg(0U);
    arguments.DeleteArg(0U);
    EXPECT_EQ(arguments.ArgCount(), 0U);
}

TEST(Arguments, DeleteArgByWordDeletesEveryEqualWordIgnoringCase) {
    Arguments arguments("x a X b xx \"\" x x");
    arguments.DeleteArg("X");
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "b", "xx", ""}));
    arguments.DeleteArg("c");
    EXPECT_EQ(arguments.ArgCount(), 4U);
    arguments.DeleteArg("");
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "b", "xx"}));
    arguments.DeleteArg(static_cast<const char*>(nullptr));
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "b", "xx"}));
}

TEST(Arguments, DeleteArgByWordComparesEachOf100000WordsOnce) {
    std::string text;
    for (int i = 0; i < 80000; ++i)
        text += std::to_string(i) + " ";
    for (int i = 0; i < 20000; ++i)
        text += "x ";
    Arguments arguments(text.c_str());
    ASSERT_EQ(arguments.ArgCount(), 100000U);
    const std::clock_t start = std::clock();
    arguments.DeleteArg("X");
    EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 5);
    ASSERT_EQ(arguments.ArgCount(), 80000U);
    for (unsigned int i = 0; i < 80000; ++i)
        ASSERT_EQ(arguments.ArgValue(i), std::to_string(i));
}

TEST(Arguments, AcceptsItsOwnWords) {
    Arguments arguments("one Two ONE one");
    arguments.AddArg(arguments.ArgValue(1));
    arguments.ModifyArg(1, arguments.ArgValue(0));
    arguments.ModifyArg(0, arguments.ArgValue(0));
    arguments.ModifyArg(2, arguments.ArgValue(2) + 1);
    EXPECT_EQ(wordsOf(arguments), (Words{"one", "one", "NE", "one", "Two"}));
    EXPECT_EQ(arguments.ArgIndex(arguments.ArgValue(4)), 4U);
    arguments.DeleteArg(arguments.ArgValue(1));
    EXPECT_EQ(wordsOf(arguments), (Words{"NE", "Two"}));
    arguments.ModifyArg(0, "p \"q r\"");
    for (int i = 0; i < 30; ++i)
        arguments.addArgs(arguments.ArgValue(0));
    EXPECT_EQ(arguments.ArgCount(), 62U);
    EXPECT_STREQ(arguments.ArgValue(61), "q r");
}

// Writing back

TEST(Arguments, ToStringQuotesOnlyWordsWithBlanks) {
    Arguments arguments("show \"my notes\" a\"b");
    arguments.AddArg("tab\there");
    arguments.AddArg("");
    arguments.AddArg(" ");
    EXPECT_EQ(textOf(arguments), "show \"my notes\" a\"b tab\there  \" \"");
}

TEST(Arguments, ToStringBeginsAtTheGivenIndex) {
    const Arguments arguments("a \"b c\" d");
    EXPECT_EQ(textOf(arguments, 1), "\"b c\" d");
    EXPECT_EQ(textOf(arguments, 2), "d");
    EXPECT_EQ(textOf(arguments, 3), "");
    EXPECT_EQ(textOf(arguments, nowhere), "");
    EXPECT_EQ(textOf(Arguments("a \"b"), 1), "\"b");
    EXPECT_EQ(textOf(Arguments("a \"b"), 2), "");
}

TEST(Arguments, OpenQuoteIsWrittenBeforeTheLastWordOnly) {
    EXPECT_EQ(textOf(Arguments("\"a b\" \"c d")), "\"a b\" \"c d");
    Arguments arguments("a \"b c");
    arguments.AddArg("d");
    EXPECT_EQ(textOf(arguments), "a \"b c\" \"d");
    arguments.DeleteArg(2U);
    EXPECT_EQ(textOf(arguments), "a \"b c");
}

TEST(Arguments, ToStringReturnsTheEndOfTheText) {
    char text[32] = "";
    utility::PutStream out(text, sizeof text);
    out.PutS("> ");
    const Arguments arguments("a \"b c\"");
    EXPECT_EQ(arguments.ToString(0, out), text + 9);
    EXPECT_STREQ(text, "> a \"b c\"");
    EXPECT_EQ(arguments.ToString(2, out), text + 9);
    const char* const end = arguments.ToString(0, out);
    EXPECT_EQ(end, out.pHead());
}

TEST(Arguments, ToStringThrowsIfTheTextDoesNotFitAndNeverOverruns) {
    const Arguments arguments("show \"my notes\" \"and more");
    const unsigned int length = static_cast<unsigned int>(textOf(arguments).size());
    for (unsigned int size = 0; size <= length + 2; ++size) {
        test::GuardedText text(size);
        utility::PutStream out(text.array(), static_cast<int>(size));
        const std::unique_ptr<framework::Exception> failure = CATCH_FAILURE(arguments.ToString(0, out));
        EXPECT_EQ(failure != nullptr, size <= length) << size;
        EXPECT_EQ(failure != nullptr ? failure->code() : 1239U, 1239U) << size;
        EXPECT_TRUE(text.isGuardWhole()) << size;
    }
}

// Combinations

TEST(Arguments, SplitsRandomTextsLikeTheReference) {
    test::RandomRun random;
    while (random.steps(20000)) {
        const std::string first = random.text(24, "ab\"\" \t\n\\\xA0");
        const std::string second = random.text(8, "c\" ");
        test::ReferenceWords expected;
        Arguments arguments(first.c_str());
        expected.add(first);
        ASSERT_EQ(wordsOf(arguments), expected.words) << first;
        ASSERT_EQ(arguments.quoteUnmatched(), expected.quoteUnmatched) << first;
        arguments.addArgs(second.c_str());
        expected.add(second);
        ASSERT_EQ(wordsOf(arguments), expected.words) << first << "|" << second;
        ASSERT_EQ(arguments.quoteUnmatched(), expected.quoteUnmatched) << first << "|" << second;
        for (unsigned int i = 0; i < 4; ++i)
            ASSERT_EQ(textOf(arguments, i), expected.text(i)) << first;
    }
}

TEST(Arguments, RandomWordsThatATextCanExpressRoundTrip) {
    test::RandomRun random;
    while (random.steps(20000)) {
        Arguments arguments(nullptr);
        for (unsigned int count = random.below(8); count > 0; --count) {
            const std::string word = random.text(5, "ab\" \t");
            if (survivesItsText(word))
                arguments.AddArg(word.c_str());
        }
        const bool open = random.below(2) != 0;
        if (open)
            arguments.addArgs(("\"" + random.text(5, "ab \t")).c_str());
        const std::string text = textOf(arguments);
        const Arguments again(text.c_str());
        ASSERT_EQ(wordsOf(again), wordsOf(arguments)) << text;
        ASSERT_EQ(again.quoteUnmatched(), open) << text;
        ASSERT_EQ(textOf(again), text);
    }
}

TEST(Arguments, RandomChangesLikeAVectorOfWords) {
    const auto equal = [](const std::string& a, const std::string& b) {
        return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
                   return std::tolower(static_cast<unsigned char>(x)) == std::tolower(static_cast<unsigned char>(y));
               });
    };
    test::RandomRun random;
    Arguments arguments(nullptr);
    Words model;
    while (random.steps(30000)) {
        const std::string word = random.text(2, "aAb");
        const unsigned int i = random.below(static_cast<unsigned int>(model.size()) + 3);
        const auto found =
            std::find_if(model.begin(), model.end(), [&](const std::string& w) { return equal(w, word); });
        const unsigned int index = found == model.end() ? nowhere : static_cast<unsigned int>(found - model.begin());
        ASSERT_EQ(arguments.ArgIndex(word.c_str()), index);
        ASSERT_EQ(arguments.isArg(word.c_str()), index != nowhere);
        const char* const value = arguments.ArgString(word.c_str());
        ASSERT_EQ(value == nullptr, index == nowhere || index + 1 == model.size());
        ASSERT_EQ(value != nullptr ? value : "", value != nullptr ? model[index + 1] : "");
        switch (random.below(model.size() < 40 ? 6 : 3)) {
        case 0:
            arguments.DeleteArg(i);
            if (i < model.size())
                model.erase(model.begin() + static_cast<std::ptrdiff_t>(i));
            break;
        case 1:
            arguments.DeleteArg(word.c_str());
            model.erase(
                std::remove_if(model.begin(), model.end(), [&](const std::string& w) { return equal(w, word); }),
                model.end());
            break;
        case 2:
            arguments.ModifyArg(i, word.c_str());
            if (i < model.size())
                model[i] = word;
            break;
        default:
            arguments.AddArg(word.c_str());
            model.push_back(word);
        }
        ASSERT_EQ(wordsOf(arguments), model);
    }
}

// Item interface

TEST(Arguments, IsNamedAsItsClass) {
    const Arguments arguments("a");
    const framework::Entity& entity = arguments;
    EXPECT_EQ(arguments.getName(), 291U);
    EXPECT_EQ(entity.getName(), 291U);
    EXPECT_EQ(arguments.getNameString(), pGSArguments);
    EXPECT_EQ(entity.getNameString(), pGSArguments);
    EXPECT_EQ(strings::GS.toToken("Arguments"), 291U);
}

TEST(Arguments, StoresNothingAsAnItem) {
    Arguments arguments("a \"b");
    char text[8] = "";
    utility::BufferStream stream(text, sizeof text, false);
    arguments.information(stream, 2, true);
    arguments.setChanged();
    EXPECT_FALSE(arguments.isChanged());
    EXPECT_EQ(arguments.getAccess(), 0U);
    EXPECT_EQ(arguments.clone(), nullptr);
    EXPECT_FALSE(arguments.toStream(stream));
    EXPECT_FALSE(arguments.fromStream(stream));
    EXPECT_EQ(stream.ReadAvailable(), 0);
    EXPECT_FALSE(arguments.inError());
    arguments.setError("%d words", 2);
    EXPECT_STREQ(arguments.ErrorMessage(), "2 words");
    EXPECT_EQ(wordsOf(arguments), (Words{"a", "b"}));
}

TEST(Arguments, VirtualOperationsHaveTheirSlots) {
    // A destructor has two slots.
    EXPECT_EQ(test::virtualSlot(&Arguments::getName), 2);
    EXPECT_EQ(test::virtualSlot(&Arguments::getNameString), 3);
    EXPECT_EQ(test::virtualSlot(&Arguments::information), 4);
    EXPECT_EQ(test::virtualSlot(&Arguments::clone), 5);
    EXPECT_EQ(test::virtualSlot(&Arguments::getAccess), 6);
    EXPECT_EQ(test::virtualSlot(&Arguments::isChanged), 7);
    EXPECT_EQ(test::virtualSlot(&Arguments::setChanged), 8);
    EXPECT_EQ(test::virtualSlot(&Arguments::clearChanged), 9);
    EXPECT_EQ(test::virtualSlot(&Arguments::discardChanged), 10);
    EXPECT_EQ(test::virtualSlot(&Arguments::toStream), 11);
    EXPECT_EQ(test::virtualSlot(&Arguments::toFile), 12);
    EXPECT_EQ(test::virtualSlot(&Arguments::fromStream), 13);
    EXPECT_EQ(test::virtualSlot(&Arguments::fromFile), 14);
    EXPECT_EQ(test::virtualSlot(&Arguments::fromXML), 15);
    EXPECT_EQ(test::virtualSlot(&Arguments::inError), 16);
    EXPECT_EQ(test::virtualSlot(&Arguments::ErrorMessage), 17);
    EXPECT_EQ(test::virtualSlot(&Arguments::ClearError), 18);
    EXPECT_EQ(test::virtualSlot(&Arguments::setResources), 19);
    EXPECT_EQ(test::virtualSlot(&Arguments::setError), 20);
    EXPECT_EQ(test::virtualSlot(&Arguments::addArgs), -1);
    EXPECT_EQ(test::virtualSlot(&Arguments::ToString), -1);
}

TEST(Arguments, CanBeDeletedAsAnEntity) {
    const long before = framework::Memory::staticOutstanding();
    framework::Entity* const entity = new Arguments("a \"b c\" d");
    EXPECT_GT(framework::Memory::staticOutstanding(), before);
    delete entity;
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(Arguments, LogsNothing) {
    const test::LogCapture log;
    Arguments arguments("a \"b");
    arguments.ArgString("z");
    arguments.ModifyArg(7, "x");
    arguments.DeleteArg(7U);
    arguments.addArgs(nullptr);
    EXPECT_EQ(log.count(), 0U);
}

// Exhausted memory

// Runs `operation`. If memory is exhausted, it may throw a failure of its array or `std::bad_alloc`.
template<class Operation>
void withFewWords(Operation&& operation) {
    try {
        operation();
    } catch (framework::Exception* failure) {
        const std::unique_ptr<framework::Exception> owner(failure);
        if (failure->code() != 1230)
            throw std::string(failure->message());
    } catch (const std::bad_alloc&) {
    }
}

TEST(Arguments, ConstructionSucceedsOrThrowsIfMemoryIsExhausted) {
    const long before = framework::Memory::staticOutstanding();
    const unsigned long failed = test::failEachAllocationOnce(
        [] {
            withFewWords([] {
                const Arguments arguments("show \"my notes\" -lines 20");
                arguments.ArgInt("-lines");
                arguments.ArgIndexByToken(291);
            });
        },
        [&] { EXPECT_EQ(framework::Memory::staticOutstanding(), before); });
    EXPECT_GE(failed, 5U);
}

TEST(Arguments, WithoutMemoryForAChangeItCanStillBeAskedAndWritten) {
    const long before = framework::Memory::staticOutstanding();
    unsigned long failures = 1;
    for (unsigned long nth = 1; failures > 0; ++nth) {
        Arguments arguments("a A bb");
        {
            test::FailingAllocation failing(nth);
            withFewWords([&] { arguments.addArgs("\"c c\" d"); });
            withFewWords([&] { arguments.AddArg("x"); });
            withFewWords([&] { arguments.ModifyArg(1, "y"); });
            withFewWords([&] { arguments.DeleteArg("BB"); });
            failures = failing.failures();
        }
        for (const std::string& word : wordsOf(arguments))
            EXPECT_THAT((Words{"a", "A", "y", "c c", "d", "x", noWord}), testing::Contains(word)) << nth;
        EXPECT_FALSE(arguments.isArg("bb")) << nth;
        EXPECT_FALSE(arguments.isArg("z")) << nth;
        EXPECT_EQ(arguments.ArgString("z"), nullptr) << nth;
        EXPECT_NE(textOf(arguments).find("a "), std::string::npos) << nth;
        arguments.DeleteArg("z");
        arguments.AddArg("z");
        EXPECT_TRUE(arguments.isArg("Z")) << nth;
        ASSERT_LE(nth, 50U);
        if (failures == 0) {
            EXPECT_EQ(wordsOf(arguments), (Words{"a", "y", "c c", "d", "x", "z"}));
        }
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(Arguments, DeletesWordsWithoutMemory) {
    const std::string longWord(1000, 'w');
    Arguments arguments("a b");
    for (int i = 0; i < 3; ++i)
        arguments.AddArg(longWord.c_str());
    {
        const test::FailingAllocation failing(test::failAll);
        EXPECT_NO_THROW(arguments.DeleteArg(longWord.c_str()));
        EXPECT_NO_THROW(arguments.DeleteArg(0U));
    }
    EXPECT_EQ(wordsOf(arguments), (Words{"b"}));
}

TEST(Arguments, WithoutMemoryForALargerTableTheWordsStay) {
    const long before = framework::Memory::staticOutstanding();
    unsigned long failures = 1;
    for (unsigned long nth = 1; failures > 0; ++nth) {
        Arguments arguments("1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20");
        {
            test::FailingAllocation failing(nth);
            withFewWords([&] { arguments.addArgs("21 22"); });
            failures = failing.failures();
        }
        ASSERT_GE(arguments.ArgCount(), 20U);
        for (unsigned int i = 0; i < 20; ++i)
            EXPECT_EQ(arguments.ArgValue(i), std::to_string(i + 1));
        ASSERT_LE(nth, 50U);
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

} // namespace
