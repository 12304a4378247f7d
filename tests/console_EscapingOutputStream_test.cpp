#include "console_EscapingOutputStream.h"

#include <cstring>
#include <cwchar>
#include <string>

#include <locale.h>

#include <gtest/gtest.h>

#include "support/RecordingOutput.h"

namespace {

std::string hexOf(const std::string& bytes) {
    std::string text;
    for (const char byte : bytes) {
        char escaped[5];
        std::snprintf(escaped, sizeof escaped, "\\x%02x", static_cast<unsigned char>(byte));
        text += escaped;
    }
    return text;
}

// Returns the output of a stream that receives `text` in sends of `piece` bytes.
std::string shown(const std::string& text, std::size_t piece = std::string::npos) {
    test::RecordingOutput target;
    console::EscapingOutputStream out(target);
    EXPECT_TRUE(out.StartOutputStream());
    for (std::size_t at = 0; at < text.size(); at += std::min(piece, text.size() - at)) {
        const std::string part = text.substr(at, piece);
        EXPECT_TRUE(out.SendOutputStream(part.data(), static_cast<unsigned int>(part.size())));
    }
    out.EndOutputStream();
    EXPECT_EQ(target.calls.front(), "start");
    EXPECT_EQ(target.calls.back(), "end");
    return target.text();
}

std::string utf8(unsigned int character) {
    const auto byte = [](unsigned int value) {
        return static_cast<char>(value);
    };
    if (character < 0x80)
        return {byte(character)};
    if (character < 0x800)
        return {byte(0xC0 | character >> 6), byte(0x80 | (character & 63))};
    if (character < 0x10000)
        return {byte(0xE0 | character >> 12), byte(0x80 | (character >> 6 & 63)), byte(0x80 | (character & 63))};
    return {byte(0xF0 | character >> 18), byte(0x80 | (character >> 12 & 63)), byte(0x80 | (character >> 6 & 63)),
            byte(0x80 | (character & 63))};
}

// Returns two bytes as they must be shown, according to the platform's UTF-8 decoder.
std::string expectedOf(const std::string& pair) {
    static const locale_t utf8Locale = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    const locale_t former = uselocale(utf8Locale);
    std::string expected;
    for (std::size_t at = 0; at < pair.size();) {
        wchar_t character = 0;
        mbstate_t state = {};
        const std::size_t length = std::mbrtowc(&character, &pair[at], pair.size() - at, &state);
        const bool safe = length <= 2 && (character == L'\t' || character == L'\n' ||
                                          (character >= 0x20 && (character < 0x7F || character > 0x9F)));
        const std::size_t taken = safe && length > 0 ? length : 1;
        expected += safe ? pair.substr(at, taken) : hexOf(pair.substr(at, 1));
        at += taken;
    }
    uselocale(former);
    return expected;
}

TEST(ConsoleEscaping, UsageExample) {
    test::RecordingOutput terminal;
    console::EscapingOutputStream out(terminal);
    out.SendOutputStream("\033[2J", 4);
    EXPECT_EQ(terminal.text(), "\\x1b[2J");
}

TEST(ConsoleEscaping, EveryOtherCharacterIsUnchanged) {
    std::string text;
    for (unsigned int character = 0; character <= 0x10FFFF; ++character) {
        const bool isControl = character < 0x20 || (character >= 0x7F && character <= 0x9F);
        const bool isSurrogate = character >= 0xD800 && character <= 0xDFFF;
        if (character == '\t' || character == '\n' || (!isControl && !isSurrogate))
            text += utf8(character);
    }
    EXPECT_TRUE(shown(text) == text);
    EXPECT_TRUE(shown(text, 4093) == text);
}

TEST(ConsoleEscaping, EveryPairOfBytesIsEscapedAsThePlatformDecodesIt) {
    // A separator after each pair completes any partial character.
    for (int first = 0; first < 256; ++first) {
        std::string pairs;
        std::string expected;
        for (int second = 0; second < 256; ++second) {
            const std::string pair = {static_cast<char>(first), static_cast<char>(second)};
            pairs += pair + ' ';
            expected += expectedOf(pair) + ' ';
        }
        ASSERT_EQ(shown(pairs), expected) << first;
        ASSERT_EQ(shown(pairs, 1), expected) << first;
    }
}

TEST(ConsoleEscaping, InvalidUtf8IsEscapedByteByByte) {
    for (const char* bad : {"\x1b",
                            "\x7f",
                            "\r",
                            "\b",
                            "\a",
                            "\v",
                            "\f",
                            "\x80",
                            "\x9b",
                            "\xbf",
                            "\xc2\x80",
                            "\xc2\x9b",
                            "\xc2\x9f",
                            "\xc0\x9b",
                            "\xc1\xbf",
                            "\xe0\x80\x9b",
                            "\xe0\x9f\xbf",
                            "\xed\xa0\x80",
                            "\xed\xbf\xbf",
                            "\xf0\x80\x80\x9b",
                            "\xf0\x8f\xbf\xbf",
                            "\xf4\x90\x80\x80",
                            "\xf5\x80\x80\x80",
                            "\xf8\x88\x80\x80\x80",
                            "\xfe",
                            "\xff"}) {
        EXPECT_EQ(shown(bad), hexOf(bad));
        EXPECT_EQ(shown(std::string("a") + bad + "b"), "a" + hexOf(bad) + "b");
        EXPECT_EQ(shown(std::string("a") + bad + "b", 1), "a" + hexOf(bad) + "b");
    }
    EXPECT_EQ(shown(std::string(1, 0)), "\\x00");
}

TEST(ConsoleEscaping, AnIncompleteCharacterIsEscapedAsSoonAsItIsInvalid) {
    for (const char* cut : {"\xc3", "\xe2\x82", "\xf0\x9f\x99"}) {
        test::RecordingOutput target;
        console::EscapingOutputStream out(target);
        EXPECT_TRUE(out.SendOutputStream(cut, static_cast<unsigned int>(std::strlen(cut))));
        EXPECT_EQ(target.text(), "");
        EXPECT_TRUE(out.SendOutputStream("a", 1));
        EXPECT_EQ(target.text(), hexOf(cut) + "a");
        EXPECT_EQ(shown(cut), hexOf(cut));
        // A start discards bytes held from an earlier use.
        EXPECT_TRUE(out.SendOutputStream(cut, 1));
        EXPECT_TRUE(out.StartOutputStream());
        EXPECT_TRUE(out.SendOutputStream("b", 1));
        EXPECT_EQ(target.text(), hexOf(cut) + "ab");
    }
}

TEST(ConsoleEscaping, ReportsTheStateOfItsTarget) {
    test::RecordingOutput target;
    console::EscapingOutputStream out(target);
    EXPECT_TRUE(out.isOutputStreamOpen());
    EXPECT_FALSE(out.isOutputStreamInError());
    EXPECT_FALSE(out.isOutputStreamAtEnd());
    target.open = false;
    target.error = true;
    target.atEnd = true;
    target.refusals = 1;
    target.starts = false;
    EXPECT_FALSE(out.isOutputStreamOpen());
    EXPECT_TRUE(out.isOutputStreamInError());
    EXPECT_TRUE(out.isOutputStreamAtEnd());
    EXPECT_FALSE(out.SendOutputStream("a", 1));
    EXPECT_FALSE(out.StartOutputStream());
}

TEST(ConsoleEscaping, ALineContainsNoControlCharacters) {
    EXPECT_EQ(console::escapedLine("gr\xc3\xbcn\ta\nb\xc2\x9b"), "gr\xc3\xbcn\\x09"
                                                                 "a\\x0a"
                                                                 "b\\xc2\\x9b");
    EXPECT_EQ(console::escapedLine(""), "");
}

} // namespace
