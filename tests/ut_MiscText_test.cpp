#include "ut_Misc.h"

#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "LogCapture.h"
#include "PageEnd.h"
#include "ReferenceUtf8.h"

using framework::Logger;
using utility::Misc;

namespace {

constexpr const char* textControls = "\t\n\r";

// A copy of these bytes at the end of a page that an inaccessible page follows. Each call replaces the previous copy.
const char* atPageEnd(const std::string& bytes) {
    static const test::PageEnd storage(4 << 20);
    return storage.place(bytes);
}

bool isPrintable(const std::string& bytes, const char* disallowed = "", const char* allowedControls = "") {
    const char* const text = atPageEnd(bytes);
    return Misc::isStringPrintableUtf8(text, static_cast<unsigned int>(bytes.size()), disallowed, allowedControls);
}

// Expects a refusal that logs exactly this line at level 0.
void expectRefused(const std::string& bytes, const std::string& line, const char* disallowed = "",
                   const char* allowedControls = "") {
    test::LogCapture log;
    EXPECT_FALSE(isPrintable(bytes, disallowed, allowedControls)) << line;
    ASSERT_EQ(log.count(), 1U) << line;
    const test::LogEntry entry = log.entries()[0];
    EXPECT_EQ(entry.type, Logger::LOG_ERROR);
    EXPECT_EQ(entry.function, "");
    EXPECT_EQ(entry.line, 0);
    EXPECT_EQ(entry.text, line);
}

void expectAsReference(const std::string& bytes, const char* disallowed, const char* allowedControls) {
    const char* const text = atPageEnd(bytes);
    const unsigned int len = static_cast<unsigned int>(bytes.size());
    const test::Utf8Verdict expected =
        test::referenceUtf8(reinterpret_cast<const unsigned char*>(bytes.data()), len, disallowed, allowedControls);
    test::LogCapture log;
    ASSERT_EQ(Misc::isStringPrintableUtf8(text, len, disallowed, allowedControls), expected.printable);
    const std::vector<std::string> lines = log.texts();
    ASSERT_EQ(lines.size(), expected.printable ? 0U : 1U);
    if (expected.printable)
        return;
    ASSERT_EQ(lines[0], expected.log);
}

std::string truncated(const std::string& text, bool expected) {
    std::vector<char> copy(text.begin(), text.end());
    copy.push_back(0);
    EXPECT_EQ(Misc::truncateUtf8(copy.data()), expected);
    return copy.data();
}

std::string escaped(const char* in) {
    std::vector<char> out(2 * std::strlen(in) + 1, '#');
    EXPECT_EQ(Misc::escapeDoubleQuotes(out.data(), in), out.data());
    return out.data();
}

TEST(MiscText, IsStringPrintableAsciiAccepts32To126) {
    EXPECT_TRUE(Misc::isStringPrintableAscii(""));
    EXPECT_TRUE(Misc::isStringPrintableAscii(" ~Az09"));
    EXPECT_TRUE(Misc::isStringPrintableAscii(std::string(100000, 'x').c_str()));
    EXPECT_FALSE(Misc::isStringPrintableAscii(nullptr));
    for (int c = 1; c < 256; ++c) {
        const std::string text = std::string("ab") + static_cast<char>(c);
        EXPECT_EQ(Misc::isStringPrintableAscii(text.c_str()), c >= 32 && c <= 126) << c;
    }
}

TEST(MiscText, Utf8AcceptsCompleteCharactersOfUpToSixBytes) {
    test::LogCapture log;
    EXPECT_TRUE(isPrintable("\xC3\xA9"));
    EXPECT_TRUE(isPrintable("caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"));
    EXPECT_TRUE(isPrintable("\xF8\x88\x80\x80\x80"));
    EXPECT_TRUE(isPrintable("\xFC\x84\x80\x80\x80\x80"));
    EXPECT_TRUE(isPrintable(""));
    EXPECT_EQ(log.count(), 0U);
}

TEST(MiscText, Utf8DoesNotRefuseOverlongFormsAndSurrogates) {
    test::LogCapture log;
    EXPECT_TRUE(isPrintable("\xC0\x80"));
    EXPECT_TRUE(isPrintable("\xE0\x80\xAF"));
    EXPECT_TRUE(isPrintable("\xED\xA0\x80"));
    EXPECT_TRUE(isPrintable("\xF7\xBF\xBF\xBF"));
    EXPECT_TRUE(utility::Misc::isStringPrintableUtf8("\xC0\xAF", 2, "/", nullptr));
    EXPECT_EQ(log.count(), 0U);
}

TEST(MiscText, Utf8RefusesAPartialCharacterAtTheEnd) {
    expectRefused("\xC3", "isStringPrintableUtf8: partial UTF-8 character at end of string with i=0, utfLen=1: "
                          "0xc3 00 00 00 00\n");
    expectRefused("ab\xE2\x82", "isStringPrintableUtf8: partial UTF-8 character at end of string with i=2, utfLen=2: "
                                "0xe2 82 00 00 00\n");
    expectRefused("\xF0\x9F\x98", "isStringPrintableUtf8: partial UTF-8 character at end of string with i=0, utfLen=3: "
                                  "0xf0 9f 98 00 00\n");
    expectRefused("\xF8\x88\x80\x80", "isStringPrintableUtf8: partial UTF-8 character at end of string with i=0, "
                                      "utfLen=4: 0xf8 88 80 80 00\n");
    expectRefused("\xFC\x84\x80\x80\x80", "isStringPrintableUtf8: partial UTF-8 character at end of string with i=0, "
                                          "utfLen=5: 0xfc 84 80 80 80\n");
    // The log line shows the bytes after the lead byte, whatever they are.
    expectRefused("\xFC"
                  "ab\n",
                  "isStringPrintableUtf8: partial UTF-8 character at end of string with i=0, utfLen=5: "
                  "0xfc 61 62 0a 00\n");
}

TEST(MiscText, Utf8RefusesAByteThatIsNotALeadByte) {
    for (const int lead : {0x80, 0xA9, 0xBF, 0xFE, 0xFF}) {
        char line[100];
        std::snprintf(line, sizeof line, "isStringPrintableUtf8: found illegal UTF-8 first byte 0x%02x\n",
                      static_cast<unsigned int>(lead));
        expectRefused(std::string("abc") + static_cast<char>(lead) + "\x80\x80\x80\x80\x80\x80", line);
        expectRefused(std::string("0123456789abc") + static_cast<char>(lead), line);
    }
}

TEST(MiscText, Utf8RefusesAWrongContinuationByteAndLogsItsPosition) {
    expectRefused("ab\xE2\x82"
                  "c",
                  "isStringPrintableUtf8: found illegal UTF-8 byte 0x63 at position i=2 j=1\n");
    expectRefused("\xC3\xC3\xA9", "isStringPrintableUtf8: found illegal UTF-8 byte 0xc3 at position i=0 j=0\n");
    expectRefused("0123456789\xFC\x84\x80\x80\x80\x7f",
                  "isStringPrintableUtf8: found illegal UTF-8 byte 0x7f at position i=10 j=4\n");
    expectRefused(std::string("\xE2\x00\x82zz", 5),
                  "isStringPrintableUtf8: found illegal UTF-8 byte 0x00 at position i=0 j=0\n");
}

TEST(MiscText, Utf8RefusesDisallowedCharacters) {
    expectRefused("name,value", "isStringPrintableUtf8: found disallowed character ',' = 0x2c\n", "<>,");
    expectRefused("\xC3\xA9\"", "isStringPrintableUtf8: found disallowed character '\"' = 0x22\n", "\"");
    expectRefused("abcdefghijklmnop ", "isStringPrintableUtf8: found disallowed character ' ' = 0x20\n", "~ ");
    expectRefused("abcdefghijklmnop~", "isStringPrintableUtf8: found disallowed character '~' = 0x7e\n", "~ ");
    test::LogCapture log;
    EXPECT_TRUE(isPrintable("name value", "<>,"));
    // Only printable ASCII can be disallowed.
    EXPECT_TRUE(isPrintable("\xC3\xA9\t", "\xC3\xA9\t", "\t"));
    EXPECT_EQ(log.count(), 0U);
}

TEST(MiscText, Utf8AcceptsOnlyTheAllowedControls) {
    test::LogCapture log;
    EXPECT_TRUE(isPrintable("\t", "", textControls));
    EXPECT_TRUE(isPrintable("a\tb\r\n", "", textControls));
    EXPECT_TRUE(isPrintable("\x7f", "", "\x7f"));
    EXPECT_EQ(log.count(), 0U);
    expectRefused("\t", "isStringPrintableUtf8: found non-printable ASCII character 0x09\n");
    expectRefused("abcdefgh\x1f", "isStringPrintableUtf8: found non-printable ASCII character 0x1f\n", "",
                  textControls);
    expectRefused("abcdefgh\x7f", "isStringPrintableUtf8: found non-printable ASCII character 0x7f\n", "",
                  textControls);
    // `disallowed` does not affect control characters.
    expectRefused("a\x01", "isStringPrintableUtf8: found non-printable ASCII character 0x01\n", "b\x01");
}

TEST(MiscText, Utf8IgnoresPrintableCharactersAndLeadBytesAmongTheControls) {
    expectRefused("a,", "isStringPrintableUtf8: found disallowed character ',' = 0x2c\n", ",", ",");
    expectRefused("\x80", "isStringPrintableUtf8: found illegal UTF-8 first byte 0x80\n", "", "\x80");
    expectRefused(std::string(200, 'x') + "\t" + std::string(200, 'x'),
                  "isStringPrintableUtf8: found non-printable ASCII character 0x09\n", "", "\x89");
}

TEST(MiscText, Utf8ValidatesEveryByteAtEveryPositionOfAWord) {
    for (unsigned int place = 0; place < 150; ++place) {
        for (int c = 0; c < 256; ++c) {
            std::string bytes(150, 'x');
            bytes[place] = static_cast<char>(c);
            expectAsReference(bytes, "", c % 2 == 0 ? "" : textControls);
            if (HasFatalFailure())
                FAIL() << c << " at " << place;
        }
    }
}

TEST(MiscText, Utf8ValidatesEveryPairOfBytesInALongText) {
    // The text around the pair moves it into the blocks that are validated as a whole, and across their boundaries.
    for (const unsigned int place : {70U, 126U, 127U, 128U}) {
        for (int first = 0x7f; first < 256; ++first) {
            for (int second = 0x7f; second < 256; second += first < 0xc0 ? 16 : 1) {
                std::string bytes(260, 'x');
                bytes[place] = static_cast<char>(first);
                bytes[place + 1] = static_cast<char>(second);
                bytes[place + 2] = '\x80';
                expectAsReference(bytes, "", "");
                if (HasFatalFailure())
                    FAIL() << first << " " << second << " at " << place;
            }
        }
    }
}

TEST(MiscText, Utf8AcceptsCharactersAcrossBlockBoundaries) {
    for (const char* character :
         {"\xC3\xA9", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xF8\x88\x80\x80\x80", "\xFC\x84\x80\x80\x80\x80"}) {
        const std::string whole = character;
        for (std::size_t before = 0; before < 140; ++before) {
            std::string bytes = std::string(before, 'x') + whole + std::string(140, 'y');
            expectAsReference(bytes, "", "");
            // The same character truncated by an ASCII character, by another multibyte character, and by the end.
            for (std::size_t truncated = 1; truncated < whole.size(); ++truncated) {
                std::string corrupted = bytes;
                corrupted[before + truncated] = 'z';
                expectAsReference(corrupted, "", "");
                corrupted[before + truncated] = '\xC3';
                expectAsReference(corrupted, "", "");
                expectAsReference(bytes.substr(0, before + truncated), "", "");
            }
            expectAsReference(std::string(before, 'x') + whole + "\x80" + std::string(140, 'y'), "", "");
            if (HasFatalFailure())
                FAIL() << whole << " after " << before;
        }
    }
}

TEST(MiscText, Utf8RefusesACharacterTruncatedAtABlockBoundary) {
    // Characters of two bytes, because another code path skips plain ASCII.
    std::string start;
    for (int i = 0; i < 30; ++i)
        start += "\xC3\xA9";
    for (std::size_t before = 0; before < 140; ++before) {
        for (const char* truncated : {"\xC3", "\xE2", "\xE2\x82", "\xF0", "\xF0\x9F", "\xF0\x9F\x98"}) {
            for (const char* following : {"x", "\xC3\xA9"}) {
                std::string bytes = start + std::string(before, 'x') + truncated;
                while (bytes.size() < 400)
                    bytes += following;
                expectAsReference(bytes, "", "");
                bytes = std::string(before, 'x') + start + start + truncated;
                while (bytes.size() < 400)
                    bytes += following;
                expectAsReference(bytes, "", "");
                if (HasFatalFailure())
                    FAIL() << truncated << " after " << before;
            }
        }
    }
}

TEST(MiscText, Utf8ValidatesControlsBetweenMultibyteCharacters) {
    // This text is validated by blocks; another code path skips plain ASCII.
    for (std::size_t place = 0; place < 260; place += 2) {
        std::string bytes;
        while (bytes.size() < 260)
            bytes += "\xC3\xA9";
        for (const char* two : {"\x01x", "x\x01", "\tx", "x\t", "x\x7F"}) {
            bytes.replace(place, 2, two);
            expectAsReference(bytes, "", "");
            expectAsReference(bytes, "", textControls);
        }
        if (HasFatalFailure())
            FAIL() << "at " << place;
    }
}

TEST(MiscText, Utf8ReadsNothingPastTheEnd) {
    for (std::size_t before = 0; before < 8; ++before) {
        std::string bytes(before, 'x');
        for (int i = 0; i < 200; ++i) {
            bytes += "\xC3\xA9";
            EXPECT_TRUE(isPrintable(bytes)) << before << " " << i;
        }
    }
}

TEST(MiscText, Utf8AcceptsEveryAllowedControl) {
    const char* const controls = "\x01\x02\x03\x1b\x7f\t";
    test::LogCapture log;
    for (const char* c = controls; *c != 0; ++c)
        EXPECT_TRUE(isPrintable(std::string(100, 'x') + *c + std::string(200, 'x'), "", controls));
    EXPECT_EQ(log.count(), 0U);
    EXPECT_FALSE(isPrintable(std::string(100, 'x') + "\x04" + std::string(200, 'x'), "", controls));
}

TEST(MiscText, Utf8StopsAtANul) {
    test::LogCapture log;
    EXPECT_TRUE(isPrintable(std::string("ab\0\xFF\x01", 5)));
    EXPECT_TRUE(isPrintable(std::string("\0\xFF", 2)));
    EXPECT_TRUE(isPrintable(std::string("0123456789abcdef\0\xFF", 18)));
    EXPECT_EQ(log.count(), 0U);
}

TEST(MiscText, Utf8ReadsNothingPastANul) {
    const char* const text = atPageEnd(std::string("0123456789\xC3\xA9\0", 13));
    EXPECT_TRUE(Misc::isStringPrintableUtf8(text, 1000000, "", ""));
    EXPECT_TRUE(Misc::isStringPrintableUtf8(text, 0xffffffffU, "", ""));
    const char* const broken = atPageEnd(std::string("0123456789\xE2\x82\0", 13));
    test::LogCapture log;
    EXPECT_FALSE(Misc::isStringPrintableUtf8(broken, 0xffffffffU, "", ""));
    EXPECT_EQ(log.texts(), std::vector<std::string>(
                               {"isStringPrintableUtf8: found illegal UTF-8 byte 0x00 at position i=10 j=1\n"}));
}

TEST(MiscText, Utf8LogsNothingPastTheNulOfAPartialCharacter) {
    const char* const text = atPageEnd(std::string("\xFC\x84\0", 3));
    test::LogCapture log;
    EXPECT_FALSE(Misc::isStringPrintableUtf8(text, 5, "", ""));
    EXPECT_EQ(log.texts(), std::vector<std::string>({"isStringPrintableUtf8: partial UTF-8 character at end of string "
                                                     "with i=0, utfLen=5: 0xfc 84 00 00 00\n"}));
}

TEST(MiscText, Utf8OfNullTextsAndSets) {
    test::LogCapture log;
    EXPECT_TRUE(Misc::isStringPrintableUtf8(nullptr, 0, "", ""));
    EXPECT_FALSE(Misc::isStringPrintableUtf8(nullptr, 1, "", ""));
    EXPECT_EQ(log.count(), 0U);
    EXPECT_TRUE(Misc::isStringPrintableUtf8("a,b", 3, nullptr, nullptr));
    EXPECT_FALSE(Misc::isStringPrintableUtf8("\t", 1, nullptr, nullptr));
    EXPECT_EQ(log.count(), 1U);
}

TEST(MiscText, Utf8OfLongTexts) {
    std::string text;
    while (text.size() < 100000)
        text += "plain text and caf\xC3\xA9s, 10\xE2\x82\xAC\n";
    const unsigned int size = static_cast<unsigned int>(text.size());
    test::LogCapture log;
    EXPECT_TRUE(isPrintable(text, "", "\n"));
    EXPECT_EQ(log.count(), 0U);
    text += '\xC3';
    expectRefused(text,
                  "isStringPrintableUtf8: partial UTF-8 character at end of string with i=" + std::to_string(size) +
                      ", utfLen=1: 0xc3 00 00 00 00\n",
                  "", "\n");
}

TEST(MiscText, Utf8AgreesWithAByteByByteReference) {
    std::mt19937 random(5);
    const auto below = [&random](unsigned int n) {
        return static_cast<unsigned int>(random() % n);
    };
    const std::vector<std::string> pieces = {"a",
                                             "plain",
                                             "01234567",
                                             "\t",
                                             "\xC3\xA9",
                                             "\xE2\x82\xAC",
                                             "\xF0\x9F\x98\x80",
                                             "\xF8\x88\x80\x80\x80",
                                             "\xFC\x84\x80\x80\x80\x80",
                                             ","};
    for (int i = 0; i < 30000; ++i) {
        std::string bytes;
        for (unsigned int n = below(i % 2 == 0 ? 12 : 150); n > 0; --n)
            bytes += pieces[below(static_cast<unsigned int>(pieces.size()))];
        // Then corrupt a byte, or truncate the text.
        if (!bytes.empty() && below(3) == 0)
            bytes[below(static_cast<unsigned int>(bytes.size()))] = static_cast<char>(random());
        if (below(3) == 0)
            bytes.resize(below(static_cast<unsigned int>(bytes.size()) + 1));
        expectAsReference(bytes, below(4) == 0 ? "," : "", below(2) == 0 ? textControls : "");
        if (HasFatalFailure())
            FAIL() << "text " << i;
    }
}

TEST(MiscText, Utf8ValidatesLongCharactersAtEveryPositionOfTextsOfEveryLength) {
    for (const std::string& character :
         {std::string("\xF8\x88\x80\x80\x80"), std::string("\xF8\x88\x80\x80"), std::string("\xF0\x90\x80\x80\x80"),
          std::string("\xF0\x90\x80\x80"), std::string("\xF0\x90\x80"), std::string("\t\x1F"), std::string("\t\n\r")}) {
        for (std::size_t length = character.size(); length < 200; length += 3 + length / 8) {
            for (std::size_t at = 0; at + character.size() <= length; ++at) {
                std::string text(length, 'a');
                text.replace(at, character.size(), character);
                expectAsReference(text, "", textControls);
                if (HasFatalFailure())
                    FAIL() << "length " << length << ", character at " << at;
            }
        }
    }
}

TEST(MiscText, TruncateUtf8RemovesAPartialCharacter) {
    test::LogCapture log;
    EXPECT_EQ(truncated("price \xE2\x82", true), "price ");
    EXPECT_EQ(truncated("price \xE2", true), "price ");
    EXPECT_EQ(truncated("price \xF0\x9F\x98", true), "price ");
    EXPECT_EQ(truncated("\xC3", true), "");
    EXPECT_EQ(truncated("\xF0\x9F\x98", true), "");
    EXPECT_FALSE(log.contains(Logger::LOG_ERROR, "truncateUtf8: String is not a printable UTF-8 string: ''"));
}

TEST(MiscText, TruncateUtf8KeepsValidTexts) {
    test::LogCapture log;
    EXPECT_EQ(truncated("price \xE2\x82\xAC", true), "price \xE2\x82\xAC");
    EXPECT_EQ(truncated("two\tcolumns\r\n", true), "two\tcolumns\r\n");
    EXPECT_EQ(truncated("", true), "");
    EXPECT_EQ(log.count(), 0U);
}

TEST(MiscText, TruncateUtf8RemovesAtMostThreeBytes) {
    test::LogCapture log;
    EXPECT_EQ(truncated("abc\x01xy", true), "abc");
    log.clear();
    EXPECT_EQ(truncated("ab\xF8\x88\x80\x80", false), "ab\xF8\x88\x80\x80");
    ASSERT_EQ(log.count(), 5U);
    EXPECT_EQ(log.texts()[4], "truncateUtf8: String is not a printable UTF-8 string: 'ab\xF8\x88\x80\x80'");
    EXPECT_EQ(log.entries()[4].type, Logger::LOG_ERROR);
    EXPECT_EQ(log.entries()[4].function, "");
}

TEST(MiscText, TruncateUtf8LogsTheFirst200Bytes) {
    test::LogCapture log;
    const std::string text = "\x01" + std::string(100000, 'x');
    EXPECT_EQ(truncated(text, false), text);
    EXPECT_TRUE(log.contains(Logger::LOG_ERROR,
                             "truncateUtf8: String is not a printable UTF-8 string: '" + text.substr(0, 200) + "'"));
}

TEST(MiscText, TruncateUtf8OfNullIsFalse) {
    test::LogCapture log;
    EXPECT_FALSE(Misc::truncateUtf8(nullptr));
    EXPECT_EQ(log.count(), 0U);
}

TEST(MiscText, EscapeDoubleQuotesPutsABackslashBeforeEach) {
    EXPECT_EQ(escaped("say \"yes\""), "say \\\"yes\\\"");
    EXPECT_EQ(escaped("\"\"\""), "\\\"\\\"\\\"");
    EXPECT_EQ(escaped("plain \\ text"), "plain \\ text");
    EXPECT_EQ(escaped(""), "");
    EXPECT_EQ(escaped(std::string(100000, '"').c_str()).size(), 200000U);
}

TEST(MiscText, EscapeDoubleQuotesWorksInPlace) {
    for (const std::string text : {"say \"yes\"", "\"", "\"\"\"", "plain", "", "\"a", "a\""}) {
        for (const std::size_t offset : {0u, 1u, 2u, 5u}) {
            // The text is inside the space of the result, at its start or at an offset.
            std::vector<char> space(2 * text.size() + 8 + offset, '#');
            std::memcpy(space.data() + offset, text.c_str(), text.size() + 1);
            EXPECT_EQ(Misc::escapeDoubleQuotes(space.data(), space.data() + offset), space.data());
            EXPECT_STREQ(space.data(), escaped(text.c_str()).c_str()) << offset;
            EXPECT_EQ(space.back(), '#');
        }
    }
}

TEST(MiscText, EscapeDoubleQuotesLogsNullTexts) {
    test::LogCapture log;
    EXPECT_EQ(Misc::escapeDoubleQuotes(nullptr, "text"), nullptr);
    char out[4] = "xyz";
    EXPECT_EQ(Misc::escapeDoubleQuotes(out, nullptr), out);
    EXPECT_STREQ(out, "");
    ASSERT_EQ(log.count(), 2U);
    EXPECT_EQ(log.entries()[0].type, Logger::LOG_ERROR);
    EXPECT_EQ(log.entries()[0].text, "escapeDoubleQuotes: pOutString is NULL");
    EXPECT_EQ(log.entries()[0].function, "");
    EXPECT_EQ(log.entries()[1].type, Logger::LOG_WARNING);
    EXPECT_EQ(log.entries()[1].text, "escapeDoubleQuotes: pInString is NULL");
    EXPECT_EQ(Misc::escapeDoubleQuotes(nullptr, nullptr), nullptr);
    EXPECT_EQ(log.texts()[2], "escapeDoubleQuotes: pOutString is NULL");
    EXPECT_EQ(log.count(), 3U);
}

TEST(MiscText, StringToLowerWorksInPlace) {
    char text[] = "Port A-7 \xC3\x89";
    EXPECT_EQ(Misc::stringToLower(text), text);
    EXPECT_STREQ(text, "port a-7 \xC3\x89");
    char empty[] = "";
    EXPECT_EQ(Misc::stringToLower(empty), empty);
    EXPECT_EQ(Misc::stringToLower(nullptr), nullptr);
}

TEST(MiscText, ParseTokensCountsOneLessWhenTheLimitStopsIt) {
    char text[] = "a b c d";
    char* tokens[3] = {};
    EXPECT_EQ(Misc::parseTokens(tokens, 3, text, " "), 2);
    EXPECT_STREQ(tokens[0], "a");
    EXPECT_STREQ(tokens[1], "b");
    EXPECT_STREQ(tokens[2], "c");
    // The text after the last token is not split.
    EXPECT_EQ(std::string(text + 6), "d");

    char exact[] = "a b c";
    EXPECT_EQ(Misc::parseTokens(tokens, 3, exact, " "), 2);
    EXPECT_STREQ(tokens[2], "c");
}

TEST(MiscText, ParseTokensCountsTheTokensWhenTheTextRunsOut) {
    char untouched[] = "x";
    char* tokens[3] = {untouched, untouched, untouched};
    char text[] = "a";
    EXPECT_EQ(Misc::parseTokens(tokens, 3, text, " "), 1);
    EXPECT_STREQ(tokens[0], "a");
    EXPECT_EQ(tokens[1], nullptr);
    EXPECT_EQ(tokens[2], untouched);

    char two[] = ",,a;;b;";
    EXPECT_EQ(Misc::parseTokens(tokens, 3, two, ",;"), 2);
    EXPECT_STREQ(tokens[0], "a");
    EXPECT_STREQ(tokens[1], "b");
    EXPECT_EQ(tokens[2], nullptr);

    char empty[] = " ";
    EXPECT_EQ(Misc::parseTokens(tokens, 3, empty, " "), 0);
    EXPECT_EQ(tokens[0], nullptr);
}

TEST(MiscText, ParseTokensWithOneEntryStoresATokenAndReturnsZero) {
    char text[] = "a b";
    char* tokens[1] = {};
    EXPECT_EQ(Misc::parseTokens(tokens, 1, text, " "), 0);
    EXPECT_STREQ(tokens[0], "a");
}

TEST(MiscText, ParseTokensHandlesInvalidArguments) {
    char text[] = "a b";
    char* tokens[2] = {text, text};
    EXPECT_EQ(Misc::parseTokens(tokens, 0, text, " "), 0);
    EXPECT_EQ(Misc::parseTokens(tokens, -1, text, " "), 0);
    EXPECT_EQ(tokens[0], text);
    EXPECT_STREQ(text, "a b");
    EXPECT_EQ(Misc::parseTokens(nullptr, 2, text, " "), 0);
    EXPECT_EQ(Misc::parseTokens(tokens, 2, nullptr, " "), 0);
    EXPECT_EQ(tokens[0], nullptr);
    EXPECT_EQ(tokens[1], text);
    EXPECT_EQ(Misc::parseTokens(tokens, 2, text, nullptr), 1);
    EXPECT_STREQ(tokens[0], "a b");
}

TEST(MiscText, ParseTokensOfALongText) {
    std::string text;
    for (int i = 0; i < 50000; ++i)
        text += "t ";
    std::vector<char*> tokens(60000);
    EXPECT_EQ(Misc::parseTokens(tokens.data(), 60000, text.data(), " "), 50000);
    EXPECT_EQ(tokens[50000], nullptr);
    EXPECT_STREQ(tokens[49999], "t");
}

} // namespace
