#include "ut_Options.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <strings.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "FailingAllocation.h"
#include "GuardedText.h"
#include "HeapGrowth.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "ReferenceOptions.h"
#include "Token.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"
#include "fw_StringRepository.h"
#include "ut_BufferStream.h"
#include "ut_PutStream.h"

namespace {

using test::ReferenceOptions;
using test::token;
using utility::Options;
using Value = ReferenceOptions::Value;
using Option = ReferenceOptions::Option;
using Content = ReferenceOptions::Content;

const Value none = std::nullopt;
constexpr unsigned int continued = 1153;

static_assert(sizeof(Options) == (sizeof(void*) == 8 ? 136 : 84), "clients hold options in their own objects");
static_assert(std::has_virtual_destructor<Options>::value, "options may be deleted as their base");
static_assert(!std::is_copy_constructible<Options>::value, "a copy would share the pool");
static_assert(!std::is_copy_assignable<Options>::value, "an assignment would share the pool");

void set(Options& options, const std::string& text) {
    std::vector<char> copy(text.begin(), text.end());
    copy.push_back(0);
    options.set(copy.data());
    EXPECT_EQ(std::string(copy.data()), text) << "the caller's text was changed";
    copy.assign(copy.size(), '#');
}

// The options with their keys and values. Shows a missing value differently from an empty one.
Content contentOf(const Options& options) {
    Content content;
    for (unsigned int i = 0; i < options.count(); ++i) {
        const unsigned int key = options.getKey(i);
        unsigned int index = 0;
        for (unsigned int before = 0; before < i; ++before)
            index += options.getKey(before) == key ? 1 : 0;
        const char* const text = strings::StringRepository::toString(key);
        const char* const value = options.getAsString(key, index);
        const bool missing = value != nullptr && *value == 0 && options.getAsInt(key, index) == -1;
        content.push_back({text != nullptr ? text : "(unknown)", value != nullptr && !missing ? Value(value) : none});
    }
    return content;
}

std::string textOf(const Options& options) {
    std::size_t capacity = 8;
    for (const Option& option : contentOf(options))
        capacity += option.first.size() + option.second.value_or("").size() + 2;
    utility::BufferStream out(static_cast<int>(capacity));
    options.toStream(out);
    return test::heldBytes(out);
}

Content contentOfText(const std::string& text) {
    Options options;
    set(options, text);
    return contentOf(options);
}

TEST(Options, UsageExample) {
    char text[] = "sort=name,size&reverse";
    utility::Options options;
    options.set(text);
    EXPECT_STREQ(options.getAsString(strings::GS.toToken("sort"), 1), "size");
}

TEST(Options, BeginEmpty) {
    const Options options;
    EXPECT_EQ(options.count(), 0U);
    EXPECT_EQ(options.getKey(0), 0U);
    EXPECT_FALSE(options.isOption(token("a")));
    EXPECT_EQ(textOf(options), "");
}

// Parsing

TEST(Options, ATextHoldsOneOptionForEachValue) {
    Options options;
    set(options, "a=1,2&b");
    EXPECT_EQ(contentOf(options), (Content{{"a", "1"}, {"a", "2"}, {"b", none}}));
    EXPECT_STREQ(options.getAsString(token("b"), 0), "");
    EXPECT_EQ(options.getAsInt(token("b"), 0), -1);
    EXPECT_EQ(options.getAsInt(token("a"), 1), 2);
    EXPECT_EQ(textOf(options), "a=1&a=2&b");
}

TEST(Options, NullAndTheEmptyTextAddNothing) {
    Options options;
    set(options, "a=1");
    options.set(nullptr);
    set(options, "");
    EXPECT_EQ(contentOf(options), (Content{{"a", "1"}}));
}

TEST(Options, EmptyValuesAreKept) {
    EXPECT_EQ(contentOfText("a="), (Content{{"a", ""}}));
    EXPECT_EQ(contentOfText("a=,"), (Content{{"a", ""}, {"a", ""}}));
    EXPECT_EQ(contentOfText("a=1,,2,"), (Content{{"a", "1"}, {"a", ""}, {"a", "2"}, {"a", ""}}));
    EXPECT_EQ(contentOfText("a=&b"), (Content{{"a", ""}, {"b", none}}));
}

TEST(Options, EmptyKeysAreKept) {
    EXPECT_EQ(contentOfText("=v"), (Content{{"", "v"}}));
    EXPECT_EQ(contentOfText("="), (Content{{"", ""}}));
    EXPECT_EQ(contentOfText("a=1&=2,3"), (Content{{"a", "1"}, {"", "2"}, {"", "3"}}));
}

TEST(Options, EmptyItemsAreOptionsWithAnEmptyKeyAndNoValue) {
    EXPECT_EQ(contentOfText("a&&b"), (Content{{"a", none}, {"", none}, {"b", none}}));
    EXPECT_EQ(contentOfText("&a"), (Content{{"", none}, {"a", none}}));
    EXPECT_EQ(contentOfText("a=1&"), (Content{{"a", "1"}, {"", none}}));
    EXPECT_EQ(contentOfText("&"), (Content{{"", none}, {"", none}}));
}

TEST(Options, AnItemIsSplitAtItsFirstEqualsSign) {
    EXPECT_EQ(contentOfText("a=b=c,d=e"), (Content{{"a", "b=c"}, {"a", "d=e"}}));
    EXPECT_EQ(contentOfText("a=="), (Content{{"a", "="}}));
    EXPECT_EQ(contentOfText("a,b=1"), (Content{{"a,b", "1"}}));
    EXPECT_EQ(contentOfText("a,b"), (Content{{"a,b", none}}));
}

TEST(Options, NothingIsTrimmedOrDecoded) {
    EXPECT_EQ(contentOfText(" a = 1 , %20 &+b"), (Content{{" a ", " 1 "}, {" a ", " %20 "}, {"+b", none}}));
}

TEST(Options, FurtherTextsAddTheirOptions) {
    Options options;
    set(options, "a=1");
    set(options, "b&a=2");
    EXPECT_EQ(contentOf(options), (Content{{"a", "1"}, {"b", none}, {"a", "2"}}));
}

TEST(Options, OfNineOptionsTheNinthIsDropped) {
    const Content eight = {{"a", "1"}, {"a", "2"}, {"a", "3"},  {"a", "4"},
                           {"b", "5"}, {"b", "6"}, {"c", none}, {"d", none}};
    EXPECT_EQ(contentOfText("a=1,2,3,4&b=5,6&c&d"), eight);
    Options options;
    const test::LogCapture log;
    set(options, "a=1,2,3,4&b=5,6&c&d&e=9,10&f");
    EXPECT_EQ(contentOf(options), eight);
    options.addOption(token("g"), "11");
    options.addOption(token("a"), nullptr);
    options.setOption(token("g"), "12", 0);
    options.setOption(token("a"), "13", 4);
    EXPECT_EQ(contentOf(options), eight);
    EXPECT_EQ(options.count(), 8U);
    EXPECT_EQ(options.getKey(7), token("d"));
    EXPECT_EQ(options.getKey(8), 0U);
    EXPECT_EQ(options.getKey(0xFFFFFFFFu), 0U);
    EXPECT_FALSE(options.isOption(token("e")));
    EXPECT_EQ(log.count(), 0U);
    options.deleteOption(token("d"));
    options.addOption(token("g"), "14");
    EXPECT_STREQ(options.getAsString(token("g"), 0), "14");
}

TEST(Options, TakesTextsFarBeyondThePool) {
    const std::string key(70000, 'k');
    const std::string value(200000, 'v');
    EXPECT_EQ(contentOfText(key + "=" + value + "," + value), (Content{{key, value}, {key, value}}));
    std::string many = "a";
    for (int i = 0; i < 20000; ++i)
        many += "&" + std::to_string(i % 10) + "=1,2";
    EXPECT_EQ(contentOfText(many).size(), 8U);
}

// Adding, replacing, deleting

TEST(Options, AddOptionAppendsACopy) {
    Options options;
    char text[] = "value";
    options.addOption(token("k"), text);
    text[0] = '#';
    options.addOption(token("k"), nullptr);
    options.addOption(token("k"), "");
    EXPECT_EQ(contentOf(options), (Content{{"k", "value"}, {"k", none}, {"k", ""}}));
}

TEST(Options, SetOptionReplacesTheValueAtTheIndex) {
    Options options;
    set(options, "a=1&b=2&a=3");
    options.setOption(token("a"), "x", 1);
    EXPECT_EQ(contentOf(options), (Content{{"a", "1"}, {"b", "2"}, {"a", "x"}}));
    options.setOption(token("a"), "y", 0);
    options.setOption(token("b"), nullptr, 0);
    EXPECT_EQ(contentOf(options), (Content{{"a", "y"}, {"b", none}, {"a", "x"}}));
    options.setOption(token("b"), "", 0);
    EXPECT_EQ(contentOf(options), (Content{{"a", "y"}, {"b", ""}, {"a", "x"}}));
}

TEST(Options, SetOptionAddsAMissingOption) {
    Options options;
    options.setOption(token("a"), "1", 0);
    options.setOption(token("a"), "2", 1);
    options.setOption(token("a"), "3", 7);
    options.setOption(token("b"), nullptr, 0xFFFFFFFFu);
    EXPECT_EQ(contentOf(options), (Content{{"a", "1"}, {"a", "2"}, {"a", "3"}, {"b", none}}));
}

TEST(Options, DeleteOptionRemovesEveryOneWithTheKey) {
    Options options;
    set(options, "a=1&b=2&a=3&c&a");
    options.deleteOption(token("a"));
    EXPECT_EQ(contentOf(options), (Content{{"b", "2"}, {"c", none}}));
    options.deleteOption(token("a"));
    options.deleteOption(0);
    EXPECT_EQ(options.count(), 2U);
    options.deleteOption(token("c"));
    options.deleteOption(token("b"));
    EXPECT_EQ(options.count(), 0U);
}

TEST(Options, DeleteOptionByValueRemovesExactMatches) {
    Options options;
    set(options, "a=x,X,x,xx,&a&b=x");
    options.deleteOption(token("a"), "x");
    EXPECT_EQ(contentOf(options), (Content{{"a", "X"}, {"a", "xx"}, {"a", ""}, {"a", none}, {"b", "x"}}));
    options.deleteOption(token("a"), "");
    EXPECT_EQ(contentOf(options), (Content{{"a", "X"}, {"a", "xx"}, {"a", none}, {"b", "x"}}));
    options.deleteOption(token("a"), nullptr);
    EXPECT_EQ(options.count(), 4U);
}

TEST(Options, ClearRemovesEverything) {
    Options options;
    set(options, "a=1,2&b");
    options.clear();
    EXPECT_EQ(options.count(), 0U);
    EXPECT_FALSE(options.isOption(token("a")));
    EXPECT_EQ(options.getAsString(token("a"), 0), nullptr);
    EXPECT_EQ(textOf(options), "");
    options.clear();
    set(options, "c=3");
    EXPECT_EQ(contentOf(options), (Content{{"c", "3"}}));
}

TEST(Options, ClearFreesThePool) {
    Options options;
    const std::string text = "a=" + std::string(5000, 'x') + ",2&b=3";
    EXPECT_LT(test::heapGrowth([&] {
                  set(options, text);
                  options.clear();
              }),
              8000U);
}

TEST(Options, AcceptsItsOwnValues) {
    Options options;
    set(options, "a=text&b=c=1,2");
    options.addOption(token("d"), options.getAsString(token("a"), 0));
    options.setOption(token("a"), options.getAsString(token("a"), 0), 0);
    options.setOption(token("d"), options.getAsString(token("a"), 0) + 2, 0);
    options.set(options.getAsString(token("b"), 0));
    EXPECT_EQ(contentOf(options), (Content{{"a", "text"}, {"b", "c=1"}, {"b", "2"}, {"d", "xt"}, {"c", "1"}}));
    options.deleteOption(token("b"), options.getAsString(token("b"), 0));
    EXPECT_EQ(contentOf(options), (Content{{"a", "text"}, {"b", "2"}, {"d", "xt"}, {"c", "1"}}));
}

// Lookups

TEST(Options, ValuesAreFoundByKeyAndIndex) {
    Options options;
    set(options, "a=1&b=x&a=&a");
    const Options& constant = options;
    EXPECT_STREQ(options.getAsString(token("a"), 0), "1");
    EXPECT_STREQ(constant.getAsString(token("a"), 0), "1");
    EXPECT_STREQ(options.getAsString(token("a"), 1), "");
    EXPECT_STREQ(constant.getAsString(token("a"), 2), "");
    EXPECT_STREQ(options.getAsString(token("a"), 2), "");
    EXPECT_EQ(options.getAsString(token("a"), 3), nullptr);
    EXPECT_EQ(constant.getAsString(token("a"), 0xFFFFFFFFu), nullptr);
    EXPECT_EQ(constant.getAsString(token("c"), 0), nullptr);
    EXPECT_EQ(options.getAsString(0, 0), nullptr);
    static_assert(std::is_same<decltype(options.getAsString(0, 0)), char*>::value, "");
    static_assert(std::is_same<decltype(constant.getAsString(0, 0)), const char*>::value, "");
}

TEST(Options, EmptyTextOfAnOptionWithoutAValueIsSharedAndReadOnly) {
    std::optional<Options> options(std::in_place);
    set(*options, "a&b");
    Options other;
    set(other, "c");
    const Options& constant = *options;
    const char* const empty = options->getAsString(token("a"), 0);
    EXPECT_EQ(options->getAsString(token("b"), 0), empty);
    EXPECT_EQ(constant.getAsString(token("a"), 0), empty);
    EXPECT_EQ(other.getAsString(token("c"), 0), empty);
    options.reset();
    EXPECT_STREQ(empty, "");
}

TEST(Options, GetAsIntIsTheNumberAtTheStartOfTheValue) {
    Options options;
    set(options, "a=12,-7, 5x,abc,,2147483647,-2147483648&a");
    const unsigned int key = token("a");
    const int expected[] = {12, -7, 5, 0, 0, 2147483647, -2147483647 - 1, -1, -1};
    for (unsigned int i = 0; i < 9; ++i)
        EXPECT_EQ(options.getAsInt(key, i), expected[i]) << i;
    EXPECT_EQ(options.getAsInt(token("b"), 0), -1);
}

TEST(Options, IsOptionComparesExactlyAndIsOptionCaseIgnoresCase) {
    Options options;
    set(options, "a=Name,&b");
    EXPECT_TRUE(options.isOption(token("a")));
    EXPECT_TRUE(options.isOption(token("b")));
    EXPECT_FALSE(options.isOption(token("A")));
    EXPECT_FALSE(options.isOption(0));
    EXPECT_TRUE(options.isOption(token("a"), "Name"));
    EXPECT_TRUE(options.isOption(token("a"), ""));
    EXPECT_FALSE(options.isOption(token("a"), "name"));
    EXPECT_FALSE(options.isOption(token("a"), "Nam"));
    EXPECT_FALSE(options.isOption(token("b"), "Name"));
    EXPECT_TRUE(options.isOptionCase(token("a"), "nAME"));
    EXPECT_TRUE(options.isOptionCase(token("a"), ""));
    EXPECT_FALSE(options.isOptionCase(token("a"), "nAMEs"));
    EXPECT_FALSE(options.isOptionCase(token("b"), "nAME"));
}

TEST(Options, MissingValueIsNotEqualToAnyText) {
    Options options;
    set(options, "b");
    EXPECT_FALSE(options.isOption(token("b"), ""));
    EXPECT_FALSE(options.isOptionCase(token("b"), ""));
    options.deleteOption(token("b"), "");
    EXPECT_EQ(options.count(), 1U);
}

TEST(Options, NullValueIsNotFound) {
    Options options;
    set(options, "a=,x&b");
    EXPECT_FALSE(options.isOption(token("a"), nullptr));
    EXPECT_FALSE(options.isOption(token("b"), nullptr));
    EXPECT_FALSE(options.isOptionCase(token("a"), nullptr));
    EXPECT_FALSE(options.isOptionCase(token("b"), nullptr));
}

// Writing

TEST(Options, AreWrittenWithAnAmpersandBeforeAllButTheFirst) {
    Options options;
    set(options, "a&b=&=x&a=1,2");
    EXPECT_EQ(textOf(options), "a&b=&=x&a=1&a=2");
}

TEST(Options, ContinuationWritesOnlyItsValue) {
    Options options;
    options.addOption(token("a"), "1");
    options.addOption(continued, "2");
    options.addOption(continued, nullptr);
    options.addOption(continued, "");
    options.addOption(token("b"), nullptr);
    options.addOption(continued, "3");
    options.addOption(continued, "4");
    options.addOption(token("c"), nullptr);
    EXPECT_EQ(textOf(options), "a=1,2,&b=3,4&c");
}

TEST(Options, ContinuationAtTheStartWritesItsValue) {
    Options options;
    options.addOption(continued, "1");
    options.addOption(continued, "2");
    options.addOption(token("a"), "3");
    EXPECT_EQ(textOf(options), "=1,2&a=3");
    options.clear();
    options.addOption(continued, nullptr);
    options.addOption(token("a"), nullptr);
    EXPECT_EQ(textOf(options), "&a");
}

TEST(Options, TheContinuationKeyIsWhatAnUnknownDecorationGives) {
    EXPECT_STREQ(strings::StringRepository::toString(continued), "Undefined");
    Options options;
    set(options, "a=1&Undefined=2");
    EXPECT_EQ(options.getKey(1), continued);
    EXPECT_EQ(textOf(options), "a=1,2");
}

TEST(Options, KeyWithoutATextIsWrittenAsEmpty) {
    Options options;
    options.addOption(token("a"), "1");
    options.addOption(0xFFFFFFF0u, "2");
    options.addOption(token("b"), nullptr);
    EXPECT_EQ(textOf(options), "a=1&=2&b");
}

TEST(Options, ToStreamThrowsIfTheTextDoesNotFitAndNeverOverruns) {
    Options options;
    set(options, "first=1,2&second&third=x");
    const unsigned int length = static_cast<unsigned int>(textOf(options).size());
    for (unsigned int size = 0; size <= length + 2; ++size) {
        test::GuardedText text(size);
        utility::PutStream out(text.array(), static_cast<int>(size));
        const std::unique_ptr<framework::Exception> failure = CATCH_FAILURE(options.toStream(out));
        EXPECT_EQ(failure != nullptr, size <= length) << size;
        EXPECT_EQ(failure != nullptr ? failure->code() : 1239U, 1239U) << size;
        EXPECT_TRUE(text.isGuardWhole()) << size;
    }
}

// Comparison with a simple model

TEST(Options, RandomTextsAreSplitLikeTheModel) {
    test::RandomRun random;
    while (random.steps(20000)) {
        const std::string text = random.text(20, "ab1&&==,,");
        ReferenceOptions model;
        model.addText(text);
        ASSERT_EQ(contentOfText(text), model.content) << text;
        ASSERT_EQ(contentOfText(model.text()), model.content) << text;
    }
}

TEST(Options, RandomChangesLikeTheModel) {
    test::RandomRun random;
    Options options;
    ReferenceOptions model;
    while (random.steps(20000)) {
        const std::string key = random.text(1, "abc");
        const unsigned int index = random.below(4);
        const Value value = random.below(4) == 0 ? none : Value(random.text(2, "xX1"));
        const char* const text = value ? value->c_str() : nullptr;
        const auto found = model.at(key, index);
        const bool isThere = found != model.content.end();
        const char* const string = options.getAsString(token(key), index);
        ASSERT_EQ(string != nullptr, isThere);
        ASSERT_EQ(string != nullptr ? string : "", isThere ? found->second.value_or("") : "");
        ASSERT_EQ(options.getAsInt(token(key), index),
                  isThere && found->second ? std::atoi(found->second->c_str()) : -1);
        const auto any = [&](auto equal) {
            return std::any_of(model.content.begin(), model.content.end(), [&](const Option& option) {
                return option.first == key && value && option.second && equal(option.second->c_str(), text);
            });
        };
        ASSERT_EQ(options.isOption(token(key), text), any([](const char* a, const char* b) { return !strcmp(a, b); }));
        ASSERT_EQ(options.isOptionCase(token(key), text),
                  any([](const char* a, const char* b) { return !strcasecmp(a, b); }));
        switch (random.below(7)) {
        case 0:
            options.deleteOption(token(key));
            model.removeIf([&](const Option& option) { return option.first == key; });
            break;
        case 1:
            options.deleteOption(token(key), text);
            model.removeIf([&](const Option& option) {
                return option.first == key && value && option.second && *option.second == *value;
            });
            break;
        case 2:
        case 3:
            options.setOption(token(key), text, index);
            if (isThere)
                found->second = value;
            else
                model.add(key, value);
            break;
        case 4: {
            const std::string more = random.text(6, "ab&=,");
            set(options, more);
            model.addText(more);
            break;
        }
        case 5:
            if (random.below(20) == 0) {
                options.clear();
                model.content.clear();
            }
            break;
        default:
            options.addOption(token(key), text);
            model.add(key, value);
        }
        ASSERT_EQ(contentOf(options), model.content);
        ASSERT_EQ(textOf(options), model.text());
    }
}

TEST(Options, ValuesAreMissingIfMemoryIsExhausted) {
    char text[] = "a=1,2&b";
    const std::string large(5000, 'x');
    token("a");
    token("b");
    unsigned long failures = 1;
    for (unsigned long nth = 1; failures > 0; ++nth) {
        ASSERT_LE(nth, 100U);
        test::FailingAllocation failing(nth);
        Options options;
        options.set(text);
        options.addOption(291, large.c_str());
        options.setOption(291, "4", 0);
        options.setOption(630, large.c_str(), 0);
        failing.stop();
        failures = failing.failures();
        EXPECT_LE(options.count(), 5U);
        textOf(options);
        options.clear();
        set(options, "a=1");
        EXPECT_EQ(contentOf(options), (Content{{"a", "1"}}));
    }
}

TEST(Options, LeaksNothing) {
    const long before = framework::Memory::staticOutstanding();
    {
        std::unique_ptr<Options> options(new Options);
        set(*options, "a=" + std::string(10000, 'x') + ",2&b");
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

} // namespace
