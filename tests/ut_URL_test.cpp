#include "ut_URL.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "FailingAllocation.h"
#include "HeapGrowth.h"
#include "LogCapture.h"
#include "RandomRun.h"
#include "ReferenceURL.h"
#include "VirtualSlot.h"
#include "fw_Entity.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"
#include "ut_BufferStream.h"

namespace {

using Parts = test::ReferenceURL;
using test::referenceDecoded;
using utility::URL;
using Part = std::optional<std::string>;

const Part none = std::nullopt;

static_assert(std::is_base_of<framework::Item, URL>::value, "a URL is an item");
static_assert(std::is_convertible<URL*, framework::Entity*>::value, "and an entity");
static_assert(!std::is_convertible<const char*, URL>::value, "a text is no URL by itself");

Part partOf(const char* text) {
    return text != nullptr ? Part(text) : none;
}

Parts partsOf(const URL& url) {
    return {partOf(url.GetScheme()), partOf(url.GetAuthority()), partOf(url.GetPath()), partOf(url.GetQuery())};
}

Parts partsOf(const std::string& text) {
    return partsOf(URL(text.c_str()));
}

Part valueOf(URL& url) {
    return partOf(url.GetValue());
}

std::string decoded(const std::string& text) {
    URL url(nullptr);
    // Exactly these bytes, so that sanitizers detect a read past them.
    const std::unique_ptr<char[]> bytes(new char[text.size()]);
    std::memcpy(bytes.get(), text.data(), text.size());
    const char* const result = url.decodeAndAlloc(bytes.get(), static_cast<unsigned int>(text.size()));
    return result != nullptr ? result : "(null)";
}

TEST(URL, UsageExample) {
    utility::URL url("abc://node:8080/a%20b?x=1");
    EXPECT_STREQ(url.GetPath(), "/a b");
    EXPECT_STREQ(url.GetValue(), "abc://node:8080/a b?x=1");
}

// Splitting

TEST(URL, IsSplitIntoItsFourParts) {
    URL url("abc://node:8080/a/b?x=1");
    EXPECT_EQ(partsOf(url), (Parts{"abc", "node:8080", "/a/b", "x=1"}));
    EXPECT_STREQ(url.GetValue(), "abc://node:8080/a/b?x=1");
}

TEST(URL, OpaquePartIsThePath) {
    EXPECT_EQ(partsOf("news:item.42"), (Parts{"news", none, "item.42", none}));
    EXPECT_EQ(partsOf("mailto:a@b.c?subject=x"), (Parts{"mailto", none, "a@b.c", "subject=x"}));
    EXPECT_EQ(partsOf("a:b/c//d"), (Parts{"a", none, "b/c//d", none}));
    EXPECT_EQ(partsOf("a:b:c"), (Parts{"a", none, "b:c", none}));
}

TEST(URL, SchemeBeginsWithALetter) {
    for (const char* const text : {"1abc:x", "+a:x", "-a:x", ".a:x", ":x", "://x", ":", "a_b:x", "a b:x", "a%41:x",
                                   "\xC3\xA4:x", "a\xC3\xA4:x", "abc", "a;b:c", "a@b:c", "[::1]"}) {
        const Parts parts = partsOf(text);
        EXPECT_EQ(parts, (Parts{none, none, referenceDecoded(text), none})) << text;
    }
    EXPECT_EQ(partsOf("a1+-.Z:x"), (Parts{"a1+-.Z", none, "x", none}));
    EXPECT_EQ(partsOf("Z:x"), (Parts{"Z", none, "x", none}));
    for (int c = 1; c < 256; ++c) {
        const std::string text = std::string(1, static_cast<char>(c)) + "x:y";
        const bool isLetter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
        EXPECT_EQ(partsOf(text).scheme.has_value(), isLetter) << c;
    }
}

TEST(URL, SlashOrQuestionMarkEndsTheSearchForAScheme) {
    EXPECT_EQ(partsOf("a/b:c"), (Parts{none, none, "a/b:c", none}));
    EXPECT_EQ(partsOf("a?b:c"), (Parts{none, none, "a", "b:c"}));
    EXPECT_EQ(partsOf("/a:b"), (Parts{none, none, "/a:b", none}));
}

TEST(URL, AuthorityEndsAtTheNextSlashOrQuestionMark) {
    EXPECT_EQ(partsOf("//host/p?q"), (Parts{none, "host", "/p", "q"}));
    EXPECT_EQ(partsOf("//host"), (Parts{none, "host", none, none}));
    EXPECT_EQ(partsOf("//host?q"), (Parts{none, "host", none, "q"}));
    EXPECT_EQ(partsOf("a://u:p@h:1"), (Parts{"a", "u:p@h:1", none, none}));
    EXPECT_EQ(partsOf("a://h#f/x"), (Parts{"a", "h#f", "/x", none}));
    EXPECT_EQ(partsOf("a://[::1]:80/"), (Parts{"a", "[::1]:80", "/", none}));
}

TEST(URL, PathEndsAtTheQuestionMarkAndTheQueryAtTheEnd) {
    EXPECT_EQ(partsOf("/p/q//r?s?t/u//v"), (Parts{none, none, "/p/q//r", "s?t/u//v"}));
    EXPECT_EQ(partsOf("/"), (Parts{none, none, "/", none}));
    EXPECT_EQ(partsOf("?q"), (Parts{none, none, none, "q"}));
    EXPECT_EQ(partsOf("p"), (Parts{none, none, "p", none}));
    EXPECT_EQ(partsOf("a:?q"), (Parts{"a", none, none, "q"}));
    EXPECT_EQ(partsOf("a:/p"), (Parts{"a", none, "/p", none}));
    EXPECT_EQ(partsOf("a://h//p"), (Parts{"a", "h", "//p", none}));
    EXPECT_EQ(partsOf("a:b#c?d#e"), (Parts{"a", none, "b#c", "d#e"}));
}

TEST(URL, EmptyPartIsNull) {
    EXPECT_EQ(partsOf("a:"), (Parts{"a", none, none, none}));
    EXPECT_EQ(partsOf("a:///p"), (Parts{"a", none, "/p", none}));
    EXPECT_EQ(partsOf("//"), (Parts{none, none, none, none}));
    EXPECT_EQ(partsOf("//?"), (Parts{none, none, none, none}));
    EXPECT_EQ(partsOf("?"), (Parts{none, none, none, none}));
    EXPECT_EQ(partsOf("p?"), (Parts{none, none, "p", none}));
    EXPECT_EQ(partsOf("a://h?"), (Parts{"a", "h", none, none}));
}

TEST(URL, NullAndTheEmptyTextChangeNothing) {
    URL url("a://b/c?d");
    url.SetURL(nullptr);
    url.SetURL("");
    EXPECT_EQ(partsOf(url), (Parts{"a", "b", "/c", "d"}));
    EXPECT_EQ(partsOf(URL(nullptr)), Parts{});
    EXPECT_EQ(partsOf(""), Parts{});
}

TEST(URL, PartsThatATextDoesNotHaveKeepTheirValues) {
    URL url("a://b/c?d");
    url.SetURL("/x");
    EXPECT_EQ(partsOf(url), (Parts{"a", "b", "/x", "d"}));
    url.SetURL("e:");
    EXPECT_EQ(partsOf(url), (Parts{"e", "b", "/x", "d"}));
    url.SetURL("//h");
    EXPECT_EQ(partsOf(url), (Parts{"e", "h", "/x", "d"}));
    url.SetURL("?q");
    EXPECT_EQ(partsOf(url), (Parts{"e", "h", "/x", "q"}));
    url.SetURL("f:y");
    EXPECT_EQ(partsOf(url), (Parts{"f", "h", "y", "q"}));
}

TEST(URL, EmptyPartReplacesItsValueByNull) {
    URL url("a://b/c?d");
    url.SetURL("///x?");
    EXPECT_EQ(partsOf(url), (Parts{"a", none, "/x", none}));
}

TEST(URL, TextTruncatedAtEveryPositionIsSplitLikeTheReference) {
    for (const std::string whole : {"abc://node:8080/a/b?x=1", "a+b-c.1:opaque/part?q?r/s",
                                    "//u%40v@h%3a1//p%2Fq?%3f%25%", "x:///%00y?", "%61%62:%63", "1:/?://"}) {
        for (std::size_t length = 0; length <= whole.size(); ++length) {
            const std::string text = whole.substr(0, length);
            URL url(text.c_str());
            EXPECT_EQ(partsOf(url), test::referenceURL(text)) << text;
            EXPECT_EQ(valueOf(url), test::referenceURL(text).value()) << text;
            EXPECT_EQ(partsOf(whole.substr(length)), test::referenceURL(whole.substr(length))) << whole.substr(length);
        }
    }
}

TEST(URL, AcceptsAMillionCharactersInEachPart) {
    const std::string large(1000000, 'x');
    const std::string text = large + "://" + large + "/" + large + "?" + large;
    URL url(text.c_str());
    EXPECT_EQ(partsOf(url), (Parts{large, large, "/" + large, large}));
    EXPECT_EQ(url.GetValue(), text);
}

// Decoding

TEST(URL, EachPartIsDecoded) {
    EXPECT_EQ(partsOf("a://b%3A%2f/c%20d?e%3F"), (Parts{"a", "b:/", "/c d", "e?"}));
    EXPECT_EQ(partsOf("/a%20b").path, Part("/a b"));
    EXPECT_EQ(partsOf("a%4").path, Part("a"));
    EXPECT_EQ(partsOf("/a+b?c+d"), (Parts{none, none, "/a+b", "c+d"}));
}

TEST(URL, EveryByteCanBeEscaped) {
    for (int byte = 1; byte < 256; ++byte) {
        char text[16];
        std::snprintf(text, sizeof text, "x%%%02xy", byte);
        EXPECT_EQ(decoded(text), std::string("x") + static_cast<char>(byte) + "y");
        std::snprintf(text, sizeof text, "x%%%02Xy", byte);
        EXPECT_EQ(decoded(text), std::string("x") + static_cast<char>(byte) + "y");
    }
    EXPECT_EQ(decoded("%aF%Fa"), "\xAF\xFA");
}

TEST(URL, EveryOtherByteIsCopied) {
    for (int byte = 1; byte < 256; ++byte) {
        if (byte == '%')
            continue;
        const std::string text(3, static_cast<char>(byte));
        EXPECT_EQ(decoded(text), text) << byte;
    }
}

TEST(URL, InvalidHexDigitHasTheValue255) {
    EXPECT_EQ(decoded("%zz"), "\xFF");
    EXPECT_EQ(decoded("%g1"), "\xF1");
    EXPECT_EQ(decoded("%1g"), "\xFF");
    EXPECT_EQ(decoded("%g0x"), "\xF0x");
    EXPECT_EQ(decoded("%%41"), "\xF4"
                               "1");
    EXPECT_EQ(decoded("%4%41"), "\xFF"
                                "41");
    EXPECT_EQ(decoded("%  x"), "\xFFx");
    EXPECT_EQ(decoded("%+1"), "\xF1");
}

TEST(URL, EveryPairAfterAPercentSignIsDecodedLikeTheReference) {
    for (int first = 1; first < 256; ++first) {
        for (int second = 1; second < 256; ++second) {
            const std::string text = {'a', '%', static_cast<char>(first), static_cast<char>(second), 'b'};
            ASSERT_EQ(decoded(text), referenceDecoded(text)) << first << " " << second;
        }
    }
}

TEST(URL, TruncatedEscapeIsDropped) {
    EXPECT_EQ(decoded("a%"), "a");
    EXPECT_EQ(decoded("a%4"), "a");
    EXPECT_EQ(decoded("a%z"), "a");
    EXPECT_EQ(decoded("%"), "");
    EXPECT_EQ(decoded("%4"), "");
    EXPECT_EQ(decoded("%%"), "");
    EXPECT_EQ(decoded("%41%"), "A");
    EXPECT_EQ(partsOf("a://b%/c%4?d%"), (Parts{"a", "b", "/c", "d"}));
}

TEST(URL, EscapedNulEndsTheText) {
    EXPECT_EQ(decoded("a%00b"), "a");
    EXPECT_EQ(decoded("%00"), "");
    EXPECT_EQ(partsOf("/x%00y?z%00"), (Parts{none, none, "/x", "z"}));
}

TEST(URL, DecodesOnce) {
    EXPECT_EQ(decoded("%2541"), "%41");
    EXPECT_EQ(partsOf("/%3Fx%3a?y"), (Parts{none, none, "/?x:", "y"}));
    EXPECT_EQ(partsOf("/a%2Fb"), (Parts{none, none, "/a/b", none}));
}

TEST(URL, DecodesOnlyTheGivenLength) {
    URL url(nullptr);
    EXPECT_STREQ(url.decodeAndAlloc("abcdef", 3), "abc");
    EXPECT_STREQ(url.decodeAndAlloc("ab%41", 4), "ab");
    EXPECT_STREQ(url.decodeAndAlloc("ab%41", 3), "ab");
    EXPECT_EQ(url.decodeAndAlloc("abc", 0), nullptr);
    EXPECT_EQ(url.decodeAndAlloc(nullptr, 0), nullptr);
    EXPECT_EQ(url.decodeAndAlloc(nullptr, 5), nullptr);
    EXPECT_EQ(partsOf(url), Parts{});
}

TEST(URL, DecodesTextsAroundTheSizeOfItsLocalBuffer) {
    for (const std::size_t length : {1U, 253U, 254U, 255U, 256U, 257U, 258U, 511U, 512U, 4096U, 100000U}) {
        const std::string plain(length, 'x');
        EXPECT_EQ(decoded(plain), plain) << length;
        const std::string escaped = plain.substr(0, length - 1) + "%41";
        EXPECT_EQ(decoded(escaped), plain.substr(0, length - 1) + "A") << length;
    }
}

TEST(URL, DecodedTextsAreValidUntilThePoolIsFreed) {
    URL url(nullptr);
    const char* const first = url.decodeAndAlloc("first", 5);
    for (int i = 0; i < 1000; ++i)
        url.decodeAndAlloc("%41%42%43", 9);
    EXPECT_STREQ(first, "first");
}

// Counts allocations.
class CountedMemory : public framework::Memory {
public:
    void* allocate(unsigned long size) override {
        sizes.push_back(size);
        return std::malloc(size);
    }
    void release(const void* piece) override {
        if (piece == nullptr)
            return;
        ++released;
        std::free(const_cast<void*>(piece));
    }

    std::vector<unsigned long> sizes;
    unsigned int released = 0;
};

TEST(URL, LongTextIsDecodedInMemoryOfTheEntity) {
    CountedMemory memory;
    URL url(nullptr);
    url.setMemory(&memory);
    const std::string text(256, 'x');
    url.decodeAndAlloc(text.c_str(), 255);
    EXPECT_TRUE(memory.sizes.empty());
    EXPECT_EQ(url.decodeAndAlloc(text.c_str(), 256), text);
    EXPECT_EQ(memory.sizes, (std::vector<unsigned long>{257}));
    EXPECT_EQ(memory.released, 1U);
    url.setMemory(nullptr);
}

// Setters

TEST(URL, CanBeConstructedFromItsParts) {
    URL url("a", "b%41", "/c?", "%");
    EXPECT_EQ(partsOf(url), (Parts{"a", "b%41", "/c?", "%"}));
    EXPECT_STREQ(url.GetValue(), "a://b%41/c??%");
    EXPECT_EQ(partsOf(URL(nullptr, nullptr, nullptr, nullptr)), Parts{});
    EXPECT_EQ(partsOf(URL(nullptr, "h", nullptr, nullptr)), (Parts{none, "h", none, none}));
}

TEST(URL, SettersCopyAndIgnoreNull) {
    char text[] = "text";
    URL url(nullptr);
    url.SetScheme(text);
    url.SetAuthority(text);
    url.SetPath(text);
    url.SetQuery(text);
    text[0] = '#';
    const Parts all = {"text", "text", "text", "text"};
    EXPECT_EQ(partsOf(url), all);
    url.SetScheme(nullptr);
    url.SetAuthority(nullptr);
    url.SetPath(nullptr);
    url.SetQuery(nullptr);
    EXPECT_EQ(partsOf(url), all);
    url.SetAuthority("other");
    EXPECT_EQ(partsOf(url), (Parts{"text", "other", "text", "text"}));
}

TEST(URL, AcceptsItsOwnTexts) {
    URL url("abc://node:8080/a/b?x=1");
    url.SetScheme(url.GetScheme());
    url.SetAuthority(url.GetAuthority() + 2);
    url.SetPath(url.GetPath());
    url.SetQuery(url.GetPath());
    EXPECT_EQ(partsOf(url), (Parts{"abc", "de:8080", "/a/b", "/a/b"}));
    url.SetURL(url.GetValue());
    EXPECT_EQ(partsOf(url), (Parts{"abc", "de:8080", "/a/b", "/a/b"}));
    url.SetURL(url.GetPath());
    url.SetURL(url.GetQuery() + 1);
    EXPECT_EQ(partsOf(url), (Parts{"abc", "de:8080", "a/b", "/a/b"}));
    EXPECT_STREQ(url.decodeAndAlloc(url.GetPath(), 2), "a/");
}

// Composing

TEST(URL, WithoutPartsThereIsNoValue) {
    URL url(nullptr);
    EXPECT_EQ(url.GetValue(), nullptr);
    url.SetScheme("");
    url.SetAuthority("");
    url.SetPath("");
    url.SetQuery("");
    EXPECT_EQ(url.GetValue(), nullptr);
    EXPECT_EQ(URL("", "", "", "").GetValue(), nullptr);
}

TEST(URL, EachPartIsWrittenWithItsDelimiter) {
    for (int present = 1; present < 16; ++present) {
        const Parts parts = {present & 1 ? Part("s") : none, present & 2 ? Part("a") : none,
                             present & 4 ? Part("/p") : none, present & 8 ? Part("q") : none};
        URL url(parts.scheme ? "s" : nullptr, parts.authority ? "a" : nullptr, parts.path ? "/p" : nullptr,
                parts.query ? "q" : nullptr);
        EXPECT_EQ(valueOf(url), parts.value());
        URL again(url.GetValue());
        EXPECT_EQ(partsOf(again), parts);
    }
}

TEST(URL, EmptyPartIsPresent) {
    URL url("", "", "p", "");
    EXPECT_EQ(partsOf(url), (Parts{"", "", "p", ""}));
    EXPECT_STREQ(url.GetValue(), "://p?");
}

TEST(URL, PartsAreNotEncoded) {
    URL url("a://h/x%2Fy%3Fz?%25");
    EXPECT_STREQ(url.GetValue(), "a://h/x/y?z?%");
    EXPECT_EQ(partsOf(url.GetValue()), (Parts{"a", "h", "/x/y", "z?"}));
}

TEST(URL, EachValueIsANewAllocation) {
    URL url("a:b");
    char* const first = url.GetValue();
    char* const second = url.GetValue();
    EXPECT_NE(first, second);
    first[0] = '#';
    EXPECT_STREQ(second, "a:b");
    url.SetPath("c");
    EXPECT_STREQ(second, "a:b");
    EXPECT_STREQ(url.GetValue(), "a:c");
    EXPECT_EQ(partsOf(url), (Parts{"a", none, "c", none}));
}

TEST(URL, ClearRemovesThePartsAndFreesThePool) {
    URL url("a://b/c?d");
    url.GetValue();
    url.clear();
    EXPECT_EQ(partsOf(url), Parts{});
    EXPECT_EQ(url.GetValue(), nullptr);
    url.clear();
    url.SetURL("/e");
    EXPECT_STREQ(url.GetValue(), "/e");
    const std::string large = "a://" + std::string(5000, 'h') + "/p?q";
    EXPECT_LT(test::heapGrowth([&] {
                  url.SetURL(large.c_str());
                  url.GetValue();
                  url.clear();
              }),
              8000U);
}

// Copies

TEST(URL, AssignmentMakesADeepCopy) {
    URL copy("x://y/z?w");
    {
        URL original("a://b/c");
        copy = original;
        EXPECT_EQ(partsOf(copy), (Parts{"a", "b", "/c", none}));
        EXPECT_NE(copy.GetScheme(), original.GetScheme());
        original.clear();
        original.SetURL("e:f");
        EXPECT_EQ(partsOf(original), (Parts{"e", none, "f", none}));
    }
    EXPECT_STREQ(copy.GetValue(), "a://b/c");
    copy = URL(nullptr);
    EXPECT_EQ(partsOf(copy), Parts{});
    EXPECT_EQ(copy.GetValue(), nullptr);
}

TEST(URL, SelfAssignmentChangesNothing) {
    URL url("a://b/c?d");
    const char* const scheme = url.GetScheme();
    char* const value = url.GetValue();
    URL& same = url;
    url = same;
    EXPECT_EQ(url.GetScheme(), scheme);
    EXPECT_STREQ(value, "a://b/c?d");
    EXPECT_EQ(partsOf(url), (Parts{"a", "b", "/c", "d"}));
}

TEST(URL, AssignmentsCanBeChainedAndDecodeNothing) {
    const URL original("%41", "%42", "%43", "%44");
    URL first(nullptr);
    URL second(nullptr);
    second = first = original;
    EXPECT_EQ(partsOf(second), (Parts{"%41", "%42", "%43", "%44"}));
    EXPECT_EQ(partsOf(first), partsOf(second));
}

TEST(URL, CopyConstructorMakesADeepCopy) {
    auto original = std::make_unique<URL>("a://b/c?d");
    original->setError("%s", "lost");
    URL copy(*original);
    EXPECT_NE(copy.GetPath(), original->GetPath());
    original.reset();
    EXPECT_EQ(partsOf(copy), (Parts{"a", "b", "/c", "d"}));
    EXPECT_STREQ(copy.GetValue(), "a://b/c?d");
    EXPECT_FALSE(copy.inError());
}

// Item interface

TEST(URL, IsNamedAsItsClass) {
    const URL url("a:b");
    const framework::Entity& entity = url;
    EXPECT_EQ(url.getName(), 630U);
    EXPECT_EQ(entity.getName(), 630U);
    EXPECT_EQ(url.getNameString(), pGSURL);
    EXPECT_EQ(entity.getNameString(), pGSURL);
    EXPECT_EQ(strings::GS.toToken("URL"), 630U);
    EXPECT_EQ(test::virtualSlot(&URL::getName), 2);
    EXPECT_EQ(test::virtualSlot(&URL::getNameString), 3);
    EXPECT_EQ(test::virtualSlot(&URL::GetValue), -1);
    EXPECT_EQ(test::virtualSlot(&URL::SetURL), -1);
}

TEST(URL, CanBeDeletedAsAnEntity) {
    const long before = framework::Memory::staticOutstanding();
    framework::Entity* const entity = new URL(("a://" + std::string(5000, 'h')).c_str());
    EXPECT_EQ(entity->clone(), nullptr);
    delete entity;
    EXPECT_EQ(framework::Memory::staticOutstanding(), before);
}

TEST(URL, LogsNothing) {
    const test::LogCapture log;
    URL url(("a%://b%4/" + std::string(1000, '%') + "?%zz%00").c_str());
    url.GetValue();
    URL copy(url);
    copy.clear();
    copy.SetURL(nullptr);
    EXPECT_EQ(log.count(), 0U);
}

// Comparison with the reference

TEST(URL, ShortTextTakesLittleMemory) {
    constexpr std::size_t runs = 1000; // as many as `heapGrowth` makes, and its first 20
    std::vector<std::unique_ptr<URL>> urls;
    urls.reserve(runs + 20);
    const auto makeOne = [&urls] {
        urls.push_back(std::make_unique<URL>("abc://node:8080/a/bc"));
    };
    EXPECT_LT(test::heapGrowth(makeOne), runs * 512);
}

TEST(URL, RandomTextsAreSplitLikeTheReference) {
    test::RandomRun random;
    URL url(nullptr);
    Parts before;
    while (random.steps(50000)) {
        const std::string text = random.text(16, "aZ1+:://??%%4f.# \x80");
        ASSERT_EQ(partsOf(text), test::referenceURL(text)) << text;
        URL single(text.c_str());
        ASSERT_EQ(valueOf(single), test::referenceURL(text).value()) << text;
        if (random.below(50) == 0) {
            url.clear();
            before = {};
        }
        before = test::referenceURL(text, before);
        url.SetURL(text.c_str());
        ASSERT_EQ(partsOf(url), before) << text;
        ASSERT_EQ(valueOf(url), before.value()) << text;
    }
}

TEST(URL, RandomTextsWithoutEscapesAndEmptyPartsRoundTrip) {
    test::RandomRun random;
    while (random.steps(30000)) {
        const std::string scheme = "s" + random.text(4, "aB1+-.");
        const std::string authority = random.text(5, "h:@1[]#");
        const std::string path = random.text(6, "p/:.+#");
        const std::string query = random.text(6, "q=&/?:+");
        std::string text = random.below(2) ? scheme + ":" : "";
        const bool hasScheme = !text.empty();
        if (!authority.empty())
            text += "//" + authority + (path.empty() ? "" : "/");
        else if (!hasScheme || path.compare(0, 2, "//") == 0)
            text += "/.";
        text += path;
        if (!query.empty())
            text += "?" + query;
        URL url(text.c_str());
        ASSERT_EQ(valueOf(url), text.empty() ? none : Part(text));
        ASSERT_EQ(partsOf(URL(url.GetValue())), partsOf(url)) << text;
    }
}

TEST(URL, PartIsNullOrCompleteIfMemoryIsExhausted) {
    const std::string large(3000, 'x');
    const std::string text = "a://" + large + "/%41?" + large + "%42";
    const Parts whole = {"a", large, "/A", large + "B"};
    const long outstanding = framework::Memory::staticOutstanding();
    unsigned long failures = 1;
    for (unsigned long nth = 1; failures > 0; ++nth) {
        ASSERT_LE(nth, 100U);
        test::FailingAllocation failing(nth);
        URL url(text.c_str());
        char* const value = url.GetValue();
        URL copy(url);
        copy = url;
        failing.stop();
        failures = failing.failures();
        for (const URL* each : {&url, &copy}) {
            const Parts parts = partsOf(*each);
            EXPECT_TRUE(!parts.scheme || parts.scheme == whole.scheme) << nth;
            EXPECT_TRUE(!parts.authority || parts.authority == whole.authority) << nth;
            EXPECT_TRUE(!parts.path || parts.path == whole.path) << nth;
            EXPECT_TRUE(!parts.query || parts.query == whole.query) << nth;
            if (failures == 0) {
                EXPECT_EQ(parts, whole);
            }
        }
        EXPECT_TRUE(!value || partOf(value) == partsOf(url).value()) << nth;
        EXPECT_EQ(valueOf(url), partsOf(url).value()) << nth;
        url.clear();
        url.SetURL("b:c");
        EXPECT_EQ(valueOf(url), Part("b:c")) << nth;
    }
    EXPECT_EQ(framework::Memory::staticOutstanding(), outstanding);
}

} // namespace
