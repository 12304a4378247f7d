#include "ut_Debug.h"

#include <cctype>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BytePattern.h"
#include "ChildProcess.h"
#include "ExpectFailure.h"
#include "FailingOperation.h"
#include "GuardedText.h"
#include "HeldBytes.h"
#include "LogCapture.h"
#include "PointerText.h"
#include "fw_Container.h"
#include "fw_Memory.h"
#include "fw_StableStringRepository.h"
#include "ut_BufferStream.h"
#include "ut_StringArray.h"

namespace {

using framework::Logger;
using test::bytePattern;
using utility::Debug;

constexpr unsigned int switches = 8192;

// Every test begins and ends with all switches off.
class DebugTest : public testing::Test {
protected:
    DebugTest() {
        allOff();
    }
    ~DebugTest() override {
        allOff();
    }

    static void allOff() {
        for (unsigned int n = 0; n < switches; ++n)
            Debug::setDebugOff(n);
    }
    static std::vector<unsigned int> switchesOn() {
        std::vector<unsigned int> on;
        for (unsigned int n = 0; n < switches; ++n) {
            if (Debug::isDebugOn(n))
                on.push_back(n);
        }
        return on;
    }
    static std::string state() {
        static char text[200000];
        utility::BufferStream out(text, sizeof text, false);
        Debug::debugState(&out);
        return test::heldBytes(out);
    }
};

using Numbers = std::vector<unsigned int>;

std::string decimal(unsigned long long value, int width) {
    char text[64];
    std::snprintf(text, sizeof text, "%0*llu", width, value);
    return text;
}

std::string hexadecimal(unsigned long long value, int width) {
    char text[64];
    std::snprintf(text, sizeof text, "%0*llx", width, value);
    return text;
}

std::string hexByte(char byte) {
    return hexadecimal(static_cast<unsigned char>(byte), 2);
}

TEST_F(DebugTest, UsageExample) {
    utility::Debug::setDebugOn("Waiter");
    EXPECT_TRUE(utility::Debug::isDebugOn(2301));
}

// Switches

TEST(Debug, AllSwitchesAreOffAtTheStartOfAProcess) {
    const test::ChildResult child = test::runInChild([] {
        for (unsigned int n = 0; n < switches; ++n) {
            if (Debug::isDebugOn(n))
                return 1;
        }
        return 0;
    });
    EXPECT_EQ(child.status, 0);
}

TEST_F(DebugTest, EachSwitchIsTurnedOnAndOffAlone) {
    for (const unsigned int n : {0u, 1u, 31u, 32u, 63u, 64u, 2301u, 8190u, 8191u}) {
        Debug::setDebugOn(n);
        EXPECT_TRUE(Debug::isDebugOn(n));
        EXPECT_EQ(switchesOn(), Numbers{n});
        Debug::setDebugOn(n);
        EXPECT_EQ(switchesOn(), Numbers{n});
        Debug::setDebugOff(n);
        EXPECT_EQ(switchesOn(), Numbers{});
        Debug::setDebugOff(n);
        EXPECT_EQ(switchesOn(), Numbers{});
    }
}

TEST_F(DebugTest, TurningOneSwitchOffLeavesItsNeighboursOn) {
    for (const unsigned int n : {299u, 300u, 301u})
        Debug::setDebugOn(n);
    Debug::setDebugOff(300u);
    EXPECT_EQ(switchesOn(), (Numbers{299, 301}));
}

TEST_F(DebugTest, NumbersAboveTheLastAreOffAndChangeNothing) {
    for (const unsigned int n : {8192u, 8193u, 16384u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu}) {
        Debug::setDebugOn(n);
        EXPECT_FALSE(Debug::isDebugOn(n));
        EXPECT_EQ(switchesOn(), Numbers{}) << n;
    }
    for (unsigned int n = 0; n < switches; ++n)
        Debug::setDebugOn(n);
    for (const unsigned int n : {8192u, 8193u, 16384u, 0x80000000u, 0xFFFFFFFFu})
        Debug::setDebugOff(n);
    EXPECT_EQ(switchesOn().size(), switches);
}

TEST_F(DebugTest, NamedSwitchIsTheOneOfItsToken) {
    Debug::setDebugOn("Array");
    EXPECT_EQ(switchesOn(), Numbers{292});
    EXPECT_TRUE(Debug::isDebugOn("Array"));
    EXPECT_TRUE(Debug::isDebugOn(strings::GS.toToken("Array")));
    EXPECT_FALSE(Debug::isDebugOn("array"));
}

TEST_F(DebugTest, SwitchesOfTheLibraryHaveTheirNumbersAndNames) {
    const unsigned int numbers[] = {292, 350, 353, 368,  441,  442,  444,  489,  566,  624,  625,
                                    628, 629, 634, 1198, 1199, 2301, 4500, 4618, 4679, 5154, 5859};
    for (const unsigned int number : numbers) {
        const char* name = strings::StringRepository::toString(number);
        ASSERT_NE(name, nullptr) << number;
        Debug::setDebugOn(name);
        EXPECT_EQ(switchesOn(), Numbers{number});
        Debug::setDebugOff(number);
    }
}

TEST_F(DebugTest, NameMadeAtRunTimeIsASwitch) {
    const char* const name = "a switch made by DebugTest";
    EXPECT_FALSE(Debug::isDebugOn(name));
    Debug::setDebugOn(name);
    EXPECT_TRUE(Debug::isDebugOn(name));
    EXPECT_EQ(switchesOn(), Numbers{strings::GS.toToken(name)});
}

TEST_F(DebugTest, SetDebugOffOfANameTurnsItOn) {
    Debug::setDebugOff("Array");
    EXPECT_EQ(switchesOn(), Numbers{292});
    Debug::setDebugOff("Array");
    EXPECT_TRUE(Debug::isDebugOn("Array"));
}

TEST_F(DebugTest, SetDebugOffOfANameThatIsOnLeavesItOn) {
    Debug::setDebugOn("Array");
    Debug::setDebugOff("Array");
    EXPECT_TRUE(Debug::isDebugOn("Array"));
    Debug::setDebugValue("Array", false);
    EXPECT_FALSE(Debug::isDebugOn("Array"));
}

TEST_F(DebugTest, SetDebugValueTurnsANameOnAndReallyOff) {
    Debug::setDebugValue("Array", true);
    Debug::setDebugValue("Debug", true);
    EXPECT_EQ(switchesOn(), (Numbers{292, 350}));
    Debug::setDebugValue("Array", false);
    EXPECT_EQ(switchesOn(), Numbers{350});
    Debug::setDebugValue("Array", false);
    EXPECT_EQ(switchesOn(), Numbers{350});
}

TEST_F(DebugTest, NullNamesAreOffAndChangeNothing) {
    const char* const none = nullptr;
    EXPECT_FALSE(Debug::isDebugOn(none));
    Debug::setDebugOn(none);
    Debug::setDebugOff(none);
    Debug::setDebugValue(none, true);
    EXPECT_EQ(switchesOn(), Numbers{});
    EXPECT_FALSE(Debug::isDebugOn(none));
    Debug::setDebugOn(0u);
    Debug::setDebugValue(none, false);
    EXPECT_EQ(switchesOn(), Numbers{0});
}

TEST_F(DebugTest, EveryNameOfAnArrayIsTurnedOn) {
    utility::StringArray names(0);
    names.Append("Array");
    names.Append(nullptr);
    names.Append("Debug");
    Debug::setDebugOn(&names);
    EXPECT_EQ(switchesOn(), (Numbers{292, 350}));
}

TEST_F(DebugTest, SetDebugOffOfAnArrayTurnsEveryNameOn) {
    utility::StringArray names(0);
    names.Append("Array");
    names.Append("Debug");
    Debug::setDebugOn("Array");
    Debug::setDebugOff(&names);
    EXPECT_EQ(switchesOn(), (Numbers{292, 350}));
}

TEST_F(DebugTest, NamesOfAnArrayAreTakenInIndexOrder) {
    utility::StringArray names(0);
    names.Append("third name by alphabet, taken first");
    names.Append("second name by alphabet");
    names.Append("another name by alphabet, taken last");
    Debug::setDebugOn(&names);
    EXPECT_LT(strings::GS.toToken(names.ElementAt(0)), strings::GS.toToken(names.ElementAt(1)));
    EXPECT_LT(strings::GS.toToken(names.ElementAt(1)), strings::GS.toToken(names.ElementAt(2)));
    EXPECT_EQ(switchesOn().size(), 3u);
}

TEST_F(DebugTest, NullAndEmptyArraysChangeNothing) {
    const utility::StringArray* const none = nullptr;
    const utility::StringArray empty(0);
    Debug::setDebugOn(none);
    Debug::setDebugOff(none);
    Debug::setDebugOn(&empty);
    Debug::setDebugOff(&empty);
    EXPECT_EQ(switchesOn(), Numbers{});
}

TEST_F(DebugTest, StateOfNoSwitchIsNothing) {
    EXPECT_EQ(state(), "");
}

TEST_F(DebugTest, StateNamesEverySwitchThatIsOnByNumberWithABlankBehindEach) {
    Debug::setDebugOn(2301u);
    Debug::setDebugOn(350u);
    Debug::setDebugOn(292u);
    EXPECT_EQ(state(), "Array Debug Waiter ");
    Debug::setDebugOff(350u);
    EXPECT_EQ(state(), "Array Waiter ");
}

TEST_F(DebugTest, StateShowsNamesMadeAtRunTimeBehindTheOthers) {
    Debug::setDebugOn("zz");
    Debug::setDebugOn("aa");
    Debug::setDebugOn(4679u);
    EXPECT_EQ(state(), "PagingVirtualPutStream zz aa ");
}

TEST_F(DebugTest, StatePassesOverNumbersWithoutAName) {
    ASSERT_EQ(strings::StringRepository::toString(0), nullptr);
    ASSERT_EQ(strings::StringRepository::toString(8191), nullptr);
    Debug::setDebugOn(0u);
    Debug::setDebugOn(292u);
    Debug::setDebugOn(8191u);
    EXPECT_EQ(state(), "Array ");
}

TEST_F(DebugTest, StateOfAllSwitchesNamesAllThatHaveAName) {
    std::string expected;
    for (unsigned int n = 0; n < switches; ++n) {
        Debug::setDebugOn(n);
        const char* name = strings::StringRepository::toString(n);
        if (name != nullptr)
            expected += std::string(name) + " ";
    }
    EXPECT_EQ(state(), expected);
}

TEST_F(DebugTest, StateWithoutAStreamIsNothing) {
    Debug::setDebugOn(292u);
    Debug::debugState(nullptr);
}

TEST_F(DebugTest, StateThatDoesNotFitIsTheStreamsFailure) {
    Debug::setDebugOn(292u);
    char text[4];
    utility::PutStream out(text, sizeof text);
    const auto failure = CATCH_FAILURE(Debug::debugState(&out));
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->code(), 1239u);
}

TEST_F(DebugTest, SwitchesLogNothing) {
    test::LogCapture log;
    Debug::setDebugOn("Debug");
    Debug::setDebugOff("Debug");
    Debug::setDebugValue("Debug", false);
    state();
    EXPECT_EQ(log.count(), 0u);
}

// Digits

TEST(Debug, HexCharIsTheLowerCaseDigitAndNoughtForAnythingElse) {
    const std::string digits = "0123456789abcdef";
    for (int v = 0; v < 256; ++v) {
        const char expected = v < 16 ? digits[static_cast<std::size_t>(v)] : '0';
        EXPECT_EQ(Debug::hexChar(static_cast<char>(v)), expected) << v;
    }
}

TEST(Debug, HexFromCharTakesBothCasesAnd255IsAnythingElse) {
    for (int c = 0; c < 256; ++c) {
        int expected = 255;
        if (c >= '0' && c <= '9')
            expected = c - '0';
        else if (c >= 'a' && c <= 'f')
            expected = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F')
            expected = c - 'A' + 10;
        EXPECT_EQ(static_cast<unsigned char>(Debug::hexFromChar(static_cast<char>(c))), expected) << c;
    }
}

// Readable strings

std::string readable(const std::string& bytes) {
    utility::BufferStream out(static_cast<int>(bytes.size() * 4 + 1));
    Debug::readableString(bytes.data(), &out, static_cast<int>(bytes.size()));
    return test::heldBytes(out);
}

TEST(Debug, ReadableStringEscapesAsInC) {
    EXPECT_EQ(readable("\x41\x0A\x22\x5C\xFF"), "A\\n\\\"\\\\\\xff");
    EXPECT_EQ(readable("\a\b\t\n\v\f\r"), "\\a\\b\\t\\n\\v\\f\\r");
    EXPECT_EQ(readable(std::string("\0\x06\x0E\x1F\x20\x7E\x7F\x80", 8)), "\\x00\\x06\\x0e\\x1f ~\\x7f\\x80");
    EXPECT_EQ(readable("it's"), "it's");
}

TEST(Debug, ReadableStringOfEveryByte) {
    const std::string letters = "abtnvfr";
    for (int c = 0; c < 256; ++c) {
        const char byte = static_cast<char>(c);
        std::string expected = "\\x" + hexByte(byte);
        if (c >= 7 && c <= 13)
            expected = std::string("\\") + letters[static_cast<std::size_t>(c - 7)];
        else if (c == '"' || c == '\\')
            expected = std::string("\\") + byte;
        else if (c >= 32 && c <= 126)
            expected = std::string(1, byte);
        EXPECT_EQ(readable(std::string(1, byte)), expected) << c;
    }
}

TEST(Debug, ReadableStringTakesJustTheBytesGiven) {
    utility::BufferStream out(64);
    const std::vector<char> bytes = {'a', 'b', 'c'};
    Debug::readableString(bytes.data(), &out, 2);
    EXPECT_EQ(out.ReadAvailable(), 2);
    Debug::readableString(bytes.data(), &out, 3);
    EXPECT_EQ(std::string(out.pTail(), 5), "ababc");
}

TEST(Debug, ReadableStringOfNothingWritesNothing) {
    utility::BufferStream out(64);
    Debug::readableString(nullptr, &out, 5);
    Debug::readableString("abc", &out, 0);
    Debug::readableString("abc", &out, -1);
    Debug::readableString("abc", &out, INT_MIN);
    EXPECT_EQ(out.ReadAvailable(), 0);
    Debug::readableString("abc", nullptr, 3);
}

TEST(Debug, ReadableStringThatDoesNotFitIsTheStreamsFailure) {
    test::GuardedText text(4);
    utility::BufferStream out(text.array(), 4, false);
    const auto failure = CATCH_FAILURE(Debug::readableString("abcdef", &out, 6));
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->code(), 1239u);
    EXPECT_TRUE(text.isGuardWhole());
}

TEST(Debug, ReadableStringThatDoesNotFitAQuietStreamIsCut) {
    test::GuardedText text(4);
    test::LogCapture log;
    utility::BufferStream out(text.array(), 4, true);
    Debug::readableString("abcdef", &out, 6);
    EXPECT_EQ(text.text(), "abc");
    EXPECT_TRUE(text.isGuardWhole());
}

// hexDump

std::string dumpOf(const char* data, std::size_t size) {
    std::string dump = "hexDump of [" + test::pointerText(data) + "], size " + std::to_string(size) + "\n\r";
    for (std::size_t start = 0; start < size; start += 64) {
        const std::string bytes(data + start, std::min<std::size_t>(64, size - start));
        dump += decimal(start, 4) + ": ";
        for (const char c : bytes)
            dump += hexByte(c) + " ";
        dump += "\n      ";
        for (const char c : bytes)
            dump += c >= 33 && c <= 126 ? std::string(1, c) + "  " : "   ";
        dump += "\n";
    }
    return dump;
}

TEST(Debug, HexDumpShowsHexOverReadable) {
    const char data[] = {'A', ' ', '!', '~', '\x7F', '\0', '\xFF', '\n'};
    test::LogCapture log;
    Debug::hexDump(data, sizeof data);
    ASSERT_EQ(log.count(), 1u);
    EXPECT_EQ(log.texts()[0], "hexDump of [" + test::pointerText(data) +
                                  "], size 8\n\r"
                                  "0000: 41 20 21 7e 7f 00 ff 0a \n"
                                  "      A     !  ~              \n");
}

TEST(Debug, HexDumpIsOnePlainMessageAtLevelThreeWithoutASwitch) {
    test::LogCapture log;
    Debug::hexDump("ports", 5);
    ASSERT_EQ(log.count(), 1u);
    const test::LogEntry entry = log.entries()[0];
    EXPECT_EQ(entry.type, Logger::LOG_DEBUG);
    EXPECT_EQ(entry.function, "");
    EXPECT_EQ(entry.line, 0);
}

TEST(Debug, HexDumpHasLinesOf64Bytes) {
    const std::string data = bytePattern(11000);
    for (const std::size_t size : {1u, 63u, 64u, 65u, 128u, 129u, 9984u, 10049u, 11000u}) {
        test::LogCapture log;
        Debug::hexDump(data.data(), static_cast<int>(size));
        ASSERT_EQ(log.count(), 1u);
        EXPECT_EQ(log.texts()[0], dumpOf(data.data(), size)) << size;
    }
}

TEST(Debug, HexDumpOf65BytesHasASecondLineAt64) {
    const std::string data(65, 'p');
    test::LogCapture log;
    Debug::hexDump(data.data(), 65);
    ASSERT_EQ(log.count(), 1u);
    const std::string text = log.texts()[0];
    EXPECT_NE(text.find("\n\r0000: 70 70 "), std::string::npos);
    EXPECT_NE(text.find("\n0064: 70 \n      p  \n"), std::string::npos);
}

TEST(Debug, HexDumpOfNothingIsTheHeaderAlone) {
    test::LogCapture log;
    const char data[] = "ports";
    Debug::hexDump(data, 0);
    Debug::hexDump(data, -1);
    Debug::hexDump(data, INT_MIN);
    const std::string header = "hexDump of [" + test::pointerText(data) + "], size ";
    EXPECT_EQ(log.texts(), (std::vector<std::string>{header + "0\n\r", header + "-1\n\r", header + "-2147483648\n\r"}));
}

TEST(Debug, HexDumpOfNullShowsNoBytes) {
    test::LogCapture log;
    Debug::hexDump(nullptr, 5);
    EXPECT_EQ(log.texts(), std::vector<std::string>{"hexDump of [(nil)], size 5\n\r"});
}

TEST(Debug, HexDumpOfMoreThanAMessageHoldsGoesOnInFurtherOnes) {
    const std::string data = bytePattern(400000);
    test::LogCapture log;
    Debug::hexDump(data.data(), static_cast<int>(data.size()));
    std::string text;
    for (const test::LogEntry& entry : log.entries()) {
        EXPECT_EQ(entry.type, Logger::LOG_DEBUG);
        EXPECT_LE(entry.text.size(), 0x100000u);
        text += entry.text;
    }
    EXPECT_GT(log.count(), 1u);
    EXPECT_TRUE(text == dumpOf(data.data(), data.size()));
}

TEST(Debug, HexDumpThatJustFitsOneMessageIsOne) {
    const std::string data = bytePattern(170000);
    std::size_t size = 0;
    for (std::size_t step = 131072; step > 0; step /= 2) {
        if (size + step <= data.size() && dumpOf(data.data(), size + step).size() <= 0x100000)
            size += step;
    }
    ASSERT_GT(dumpOf(data.data(), size).size(), 0x100000u - 6);
    test::LogCapture log;
    Debug::hexDump(data.data(), static_cast<int>(size));
    ASSERT_EQ(log.count(), 1u);
    EXPECT_TRUE(log.texts()[0] == dumpOf(data.data(), size));
}

TEST(Debug, HexDumpWithoutMemoryForItsStreamSaysSo) {
    for (const unsigned long nth : {1ul, 2ul}) {
        test::LogCapture log;
        const auto failure = test::failureOf([&] { test::failNth(nth, [] { Debug::hexDump("ports", 5); }); });
        EXPECT_EQ(failure, nullptr);
        ASSERT_EQ(log.count(), 1u) << nth;
        EXPECT_EQ(log.entries()[0].type, Logger::LOG_ERROR);
        EXPECT_EQ(log.entries()[0].text, "failure to allocate buffer");
    }
}

// Gives one piece and then no more.
class OnePieceMemory : public framework::Memory {
public:
    OnePieceMemory() {
        framework::Container::m_pMemory = this;
    }
    ~OnePieceMemory() override {
        framework::Container::m_pMemory = nullptr;
    }
    void* allocate(unsigned long size) override {
        if (m_given || size > sizeof m_piece)
            return nullptr;
        m_given = true;
        return m_piece;
    }
    void release(const void* /*piece*/) override {}

private:
    alignas(std::max_align_t) char m_piece[1024];
    bool m_given = false;
};

TEST(Debug, HexDumpWithoutMemoryForTheFailureEitherThrowsNothing) {
    test::LogCapture log;
    OnePieceMemory memory;
    bool thrown = false;
    {
        const test::FailingAllocation failing(test::failAll);
        try {
            Debug::hexDump("ports", 5);
        } catch (...) {
            thrown = true;
        }
    }
    EXPECT_FALSE(thrown);
}

// hexDumpFormatted

std::string lineOf(const char* data, std::size_t size, std::size_t start, std::size_t bytesPerLine) {
    std::string hex = "\n[" + decimal(start, 6) + "] ";
    std::string characters;
    for (std::size_t i = start; i < start + bytesPerLine; ++i) {
        if (i % 4 == 0 && i != start)
            hex += " ";
        const char c = i < size ? data[i] : ' ';
        hex += i < size ? hexByte(c) : "  ";
        characters += c >= 32 && c <= 126 ? std::string(1, c) : "-";
    }
    return hex + "  " + characters;
}

std::vector<std::string> pagesOf(const char* data, std::size_t size, std::size_t bytesPerLine) {
    std::vector<std::string> pages;
    for (std::size_t page = 0; page < size; page += 1024) {
        std::string text;
        if (page == 0)
            text = "\nHexDump of [" + test::pointerText(data) + "], size " + std::to_string(size);
        for (std::size_t start = page; start < page + 1024 && start < size; start += bytesPerLine)
            text += lineOf(data, size, start, bytesPerLine);
        pages.push_back(text + "\n\r");
    }
    return pages;
}

TEST(Debug, FormattedDumpShowsHexBesideReadable) {
    const char data[] = {'A', ' ', '!', '~', '\x7F', '\0', '\xFF', '\n', '\x1F', 'z'};
    test::LogCapture log;
    Debug::hexDumpFormatted(data, sizeof data, 8, 8);
    ASSERT_EQ(log.count(), 1u);
    EXPECT_EQ(log.texts()[0], "\nHexDump of [" + test::pointerText(data) +
                                  "], size 10"
                                  "\n[000000] 4120217e 7f00ff0a  A !~----"
                                  "\n[000008] 1f7a               -z      "
                                  "\n\r");
}

TEST(Debug, FormattedDumpIsPlainMessagesAtLevelThreeWithoutASwitch) {
    test::LogCapture log;
    Debug::hexDumpFormatted("ports", 5, 8, 16);
    ASSERT_EQ(log.count(), 1u);
    const test::LogEntry entry = log.entries()[0];
    EXPECT_EQ(entry.type, Logger::LOG_DEBUG);
    EXPECT_EQ(entry.function, "");
    EXPECT_EQ(entry.line, 0);
}

TEST(Debug, FormattedDumpOf2000BytesIsTwoMessagesAndOnlyTheFirstHasTheHeader) {
    const std::string data = bytePattern(2000);
    test::LogCapture log;
    Debug::hexDumpFormatted(data.data(), 2000, 8, 16);
    ASSERT_EQ(log.count(), 2u);
    EXPECT_EQ(log.texts()[0].find("\nHexDump of ["), 0u);
    EXPECT_EQ(log.texts()[1].find("\n[001024] "), 0u);
    EXPECT_EQ(log.texts()[1].find("HexDump"), std::string::npos);
}

TEST(Debug, FormattedDumpOfEverySizeAndWidth) {
    const std::string data = bytePattern(5000);
    for (const unsigned int size : {1u, 3u, 4u, 15u, 16u, 17u, 1023u, 1024u, 1025u, 2047u, 2048u, 2049u, 5000u}) {
        for (const unsigned int bytesPerLine : {1u, 2u, 4u, 8u, 16u, 32u, 64u, 1024u}) {
            // With an exact copy, a sanitizer reports each read past the end.
            const std::vector<char> bytes(data.begin(), data.begin() + size);
            test::LogCapture log;
            Debug::hexDumpFormatted(bytes.data(), size, 32, bytesPerLine);
            EXPECT_EQ(log.texts(), pagesOf(bytes.data(), size, bytesPerLine)) << size << " by " << bytesPerLine;
        }
    }
}

TEST(Debug, FormattedDumpWithLinesThatCrossAPageBeginsAfreshOnTheNextPage) {
    const std::vector<char> bytes(1500, 'p');
    for (const unsigned int bytesPerLine : {48u, 1000u, 1028u, 2000u}) {
        test::LogCapture log;
        Debug::hexDumpFormatted(bytes.data(), 1500, 32, bytesPerLine);
        EXPECT_EQ(log.texts(), pagesOf(bytes.data(), 1500, bytesPerLine)) << bytesPerLine;
    }
}

TEST(Debug, FormattedDumpWithOddLinesCountsTheGroupsOfFourInEachLine) {
    const char data[] = "0123456789";
    test::LogCapture log;
    Debug::hexDumpFormatted(data, 10, 8, 5);
    EXPECT_EQ(log.texts(), std::vector<std::string>{"\nHexDump of [" + test::pointerText(data) +
                                                    "], size 10"
                                                    "\n[000000] 30313233 34  01234"
                                                    "\n[000005] 35363738 39  56789"
                                                    "\n\r"});
}

TEST(Debug, FormattedDumpOfNothingLogsNothing) {
    test::LogCapture log;
    Debug::hexDumpFormatted("ports", 0, 8, 16);
    Debug::hexDumpFormatted(nullptr, 5, 8, 16);
    EXPECT_EQ(log.count(), 0u);
}

TEST(Debug, FormattedDumpWithNoBytesPerLineTakesSixteen) {
    const std::string data = bytePattern(40);
    test::LogCapture log;
    Debug::hexDumpFormatted(data.data(), 40, 8, 0);
    EXPECT_EQ(log.texts(), pagesOf(data.data(), 40, 16));
}

TEST(Debug, FormattedDumpWithTheLongestLinesIsRefusedForWantOfRoom) {
    test::LogCapture log;
    const auto failure = CATCH_FAILURE(Debug::hexDumpFormatted("ports", 5, 8, 0xFFFFFFFFu));
    ASSERT_NE(failure, nullptr);
    EXPECT_EQ(failure->code(), 1239u);
}

TEST(Debug, FormattedDumpWithTooSmallAMessageIsRefused) {
    const std::string data = bytePattern(1024);
    for (const unsigned int bufferKiB : {0u, 1u, 3u}) {
        test::LogCapture log;
        const auto failure = CATCH_FAILURE(Debug::hexDumpFormatted(data.data(), 1024, bufferKiB, 16));
        ASSERT_NE(failure, nullptr) << bufferKiB;
        EXPECT_EQ(failure->code(), 1239u) << bufferKiB;
        EXPECT_EQ(log.count(), 0u);
    }
    test::LogCapture log;
    EXPECT_EQ(CATCH_FAILURE(Debug::hexDumpFormatted(data.data(), 1024, 4, 16)), nullptr);
    EXPECT_EQ(log.texts(), pagesOf(data.data(), 1024, 16));
}

TEST(Debug, FormattedDumpWithAMessageOfMoreThanAnIntCountsAsksForStorageToo) {
    for (const unsigned int bufferKiB : {0x200000u, 0x3FFFFFu, 0x400000u, 0x400001u, 0xFFFFFFFFu}) {
        test::LogCapture log;
        EXPECT_FAILURE(test::failNth(1, [&] { Debug::hexDumpFormatted("ports", 5, bufferKiB, 16); }), 1238, "ut_Buffer",
                       "void utility::Buffer::allocBuffer()", "");
        EXPECT_EQ(log.count(), 0u);
    }
}

TEST(Debug, FormattedDumpWithoutMemoryIsRefused) {
    test::LogCapture log;
    EXPECT_FAILURE(test::failNth(1, [] { Debug::hexDumpFormatted("ports", 5, 8, 16); }), 1238, "ut_Buffer",
                   "void utility::Buffer::allocBuffer()", "");
    EXPECT_EQ(log.count(), 0u);
}

// reverseHexDump

std::string reverseDumpOf(const char* data, std::size_t size) {
    std::string dump = "hexDump of [" + test::pointerText(data) + "], size " + std::to_string(size) + "\n\r";
    while (size > 0) {
        const std::size_t length = std::min<std::size_t>(16, size);
        size -= length;
        dump += hexadecimal(reinterpret_cast<std::uintptr_t>(data + size), 8) + ": ";
        for (std::size_t i = 0; i < length; ++i)
            dump += hexByte(data[size + i]) + " ";
        dump += "\n\r      ";
    }
    return dump;
}

TEST(Debug, ReverseDumpPrintsTheLastBytesFirstInForwardOrder) {
    const std::string data = bytePattern(20);
    const test::ChildResult child = test::runInChild([&] { Debug::reverseHexDump(data.data(), 20); });
    EXPECT_TRUE(child.exited);
    EXPECT_EQ(child.err, "");
    const std::string first = hexadecimal(reinterpret_cast<std::uintptr_t>(data.data() + 4), 8) + ": ";
    const std::string second = hexadecimal(reinterpret_cast<std::uintptr_t>(data.data()), 8) + ": ";
    EXPECT_EQ(child.out, "hexDump of [" + test::pointerText(data.data()) + "], size 20\n\r" + first +
                             "1c 23 2a 31 38 3f 46 4d 54 5b 62 69 70 77 7e 85 \n\r      " + second +
                             "00 07 0e 15 \n\r      ");
}

TEST(Debug, ReverseDumpOfEverySizeIsInLinesOf16) {
    const std::string data = bytePattern(300);
    for (const int size : {0, 1, 15, 16, 17, 32, 33, 300}) {
        const test::ChildResult child = test::runInChild([&] { Debug::reverseHexDump(data.data(), size); });
        EXPECT_EQ(child.out, reverseDumpOf(data.data(), static_cast<std::size_t>(size))) << size;
    }
}

TEST(Debug, ReverseDumpOfANegativeSizeIsTheHeaderAlone) {
    const char data[] = "ports";
    const test::ChildResult child = test::runInChild([&] { Debug::reverseHexDump(data, -1); });
    EXPECT_EQ(child.out, "hexDump of [" + test::pointerText(data) + "], size -1\n\r");
}

TEST(Debug, ReverseDumpLogsNothing) {
    const test::ChildResult child = test::runInChild([] {
        test::LogCapture log;
        Debug::reverseHexDump("ports", 5);
        return log.count();
    });
    EXPECT_EQ(child.status, 0);
}

} // namespace
