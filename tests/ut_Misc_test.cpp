#include "ut_Misc.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <cstring>
#include <functional>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <signal.h>
#include <sys/time.h>

#include "ExpectFailure.h"
#include "RandomRun.h"
#include "ut_BufferStream.h"

using utility::Misc;

namespace {

constexpr const char* putCName = "void utility::PutStream::PutC(char)";
constexpr const char* putFName = "void utility::PutStream::PutF(const char*, ...)";

// A buffer with guard bytes around it, filled with '#'.
class WatchedBuffer {
public:
    explicit WatchedBuffer(int size)
        : m_bytes(static_cast<std::size_t>(size) + 2 * margin, '#'), m_size(static_cast<std::size_t>(size)) {}

    char* data() {
        return m_bytes.data() + margin;
    }
    int size() const {
        return static_cast<int>(m_size);
    }
    std::string content() const {
        return std::string(m_bytes.data() + margin, m_size);
    }
    bool surroundingsIntact() const {
        const std::string expected(margin, '#');
        return std::string(m_bytes.data(), margin) == expected &&
               std::string(m_bytes.data() + margin + m_size, margin) == expected;
    }

private:
    static constexpr std::size_t margin = 64;
    std::vector<char> m_bytes;
    std::size_t m_size;
};

using Writer = std::function<char*(char* buf, int size)>;

// Expects the complete `text` if it fits with its terminator, else a truncated text without a terminator.
void expectCutByHand(const Writer& write, const std::string& text) {
    const std::string whole = text + '\0';
    for (const int size : {0, 1, 2, static_cast<int>(text.size()), static_cast<int>(text.size()) + 1,
                           static_cast<int>(text.size()) + 2, static_cast<int>(text.size()) + 20}) {
        WatchedBuffer buffer(size);
        EXPECT_EQ(write(buffer.data(), size), buffer.data());
        const std::size_t used = std::min(whole.size(), static_cast<std::size_t>(size));
        EXPECT_EQ(buffer.content(), whole.substr(0, used) + std::string(static_cast<std::size_t>(size) - used, '#'))
            << text << " in " << size;
        EXPECT_TRUE(buffer.surroundingsIntact()) << text << " in " << size;
    }
    WatchedBuffer buffer(0);
    EXPECT_EQ(write(buffer.data(), -1), buffer.data());
    EXPECT_EQ(write(buffer.data(), INT_MIN), buffer.data());
    EXPECT_TRUE(buffer.surroundingsIntact());
    EXPECT_EQ(write(nullptr, 20), nullptr);
}

std::string hex(unsigned long long v, bool leadingZeros) {
    char text[17];
    return Misc::toHexString(v, leadingZeros, text, sizeof text);
}

std::string hex(unsigned int v, bool leadingZeros) {
    char text[9];
    return Misc::toHexString(v, leadingZeros, text, sizeof text);
}

std::string hex(unsigned short v, bool leadingZeros) {
    char text[5];
    return Misc::toHexString(v, leadingZeros, text, sizeof text);
}

std::string hex(unsigned char v, bool leadingZeros) {
    char text[3];
    return Misc::toHexString(v, leadingZeros, text, sizeof text);
}

template<typename Value>
std::string decimal(Value v) {
    char text[40];
    return Misc::toDecimal(v, text, sizeof text);
}

template<typename Value>
std::string capacity(Value v, int digits) {
    char text[40];
    return Misc::toDSdecimal(v, digits, text, sizeof text);
}

std::string plainDigits(long long v) {
    std::string text = std::to_string(v);
    return v < 0 ? text.substr(1) : text;
}

std::string referenceDecimal(long long v) {
    std::string text = plainDigits(v);
    for (std::size_t i = 3; i < plainDigits(v).size(); i += 3)
        text.insert(plainDigits(v).size() - i, 1, ',');
    return (v < 0 ? "-" : "") + text;
}

// An independent implementation: truncates the digits, then adds a separator after every group.
std::string referenceCapacity(long long v, int digits) {
    const std::string all = plainDigits(v);
    const std::size_t shown = std::min(all.size(), static_cast<std::size_t>(std::max(digits, 3)));
    std::string text;
    std::size_t unit = (all.size() - 1) / 3;
    for (std::size_t i = 0; i < shown; ++i) {
        const std::size_t remaining = all.size() - i;
        if (i > 0 && remaining % 3 == 0) {
            const bool wholeGroupFollows = static_cast<std::size_t>(std::max(digits, 3)) - i >= 3;
            text += wholeGroupFollows ? ',' : '.';
            if (wholeGroupFollows)
                --unit;
        }
        text += all[i];
    }
    const char* const units[] = {"", " kB", " MB", " GB", " TB", " PB", " EB"};
    return (v < 0 ? "-" : "") + text + units[v == 0 ? 0 : unit];
}

long long randomNumber(std::mt19937_64& random) {
    return static_cast<long long>(random() >> (random() % 64)) * (random() % 2 == 0 ? 1 : -1);
}

TEST(Misc, UsageExample) {
    char text[32];
    utility::Misc::toDSdecimal(1234567L, 3, text, sizeof text);
    EXPECT_STREQ(text, "1.23 MB");
    EXPECT_TRUE(utility::Misc::isStringPrintableUtf8("caf\xC3\xA9", 5, "", ""));
}

TEST(Misc, MakePowerOf2RoundsUp) {
    EXPECT_EQ(Misc::makePowerOf2(1), 1U);
    EXPECT_EQ(Misc::makePowerOf2(2), 2U);
    EXPECT_EQ(Misc::makePowerOf2(3), 4U);
    EXPECT_EQ(Misc::makePowerOf2(5), 8U);
    EXPECT_EQ(Misc::makePowerOf2(4096), 4096U);
    EXPECT_EQ(Misc::makePowerOf2(4097), 8192U);
    EXPECT_EQ(Misc::makePowerOf2(0x80000000U), 0x80000000U);
}

TEST(Misc, MakePowerOf2OfZeroAndAboveTwoToThe31IsZero) {
    EXPECT_EQ(Misc::makePowerOf2(0), 0U);
    EXPECT_EQ(Misc::makePowerOf2(0x80000001U), 0U);
    EXPECT_EQ(Misc::makePowerOf2(UINT_MAX), 0U);
}

TEST(Misc, ToHexStringPadsOnlyWithLeadingZeros) {
    EXPECT_EQ(hex(0xBEEFU, true), "0000beef");
    EXPECT_EQ(hex(0xBEEFU, false), "beef");
    EXPECT_EQ(hex(0x10203ULL, true), "0000000000010203");
    EXPECT_EQ(hex(0x10203ULL, false), "10203");
    EXPECT_EQ(hex(static_cast<unsigned short>(0x0a), true), "000a");
    EXPECT_EQ(hex(static_cast<unsigned short>(0x0a), false), "a");
    EXPECT_EQ(hex(ULLONG_MAX, false), "ffffffffffffffff");
    EXPECT_EQ(hex(UINT_MAX, false), "ffffffff");
    EXPECT_EQ(hex(static_cast<unsigned short>(0xffff), false), "ffff");
}

TEST(Misc, ToHexStringOfZeroIsOneDigitEvenWithLeadingZeros) {
    for (const bool leadingZeros : {false, true}) {
        EXPECT_EQ(hex(0ULL, leadingZeros), "0");
        EXPECT_EQ(hex(0U, leadingZeros), "0");
        EXPECT_EQ(hex(static_cast<unsigned short>(0), leadingZeros), "0");
    }
}

TEST(Misc, ToHexStringOfAByteHasOneDigitOrTwo) {
    EXPECT_EQ(hex(static_cast<unsigned char>(0x0a), false), "a");
    EXPECT_EQ(hex(static_cast<unsigned char>(0x0a), true), "0a");
    EXPECT_EQ(hex(static_cast<unsigned char>(0), false), "0");
    EXPECT_EQ(hex(static_cast<unsigned char>(0), true), "00");
    EXPECT_EQ(hex(static_cast<unsigned char>(15), false), "f");
    EXPECT_EQ(hex(static_cast<unsigned char>(16), false), "10");
    EXPECT_EQ(hex(static_cast<unsigned char>(0xff), true), "ff");
}

TEST(Misc, ToHexStringTruncatesAtTheEndOfTheBuffer) {
    for (const bool zeros : {false, true}) {
        expectCutByHand([&](char* buf, int size) { return Misc::toHexString(0x123456789abcdef0ULL, zeros, buf, size); },
                        "123456789abcdef0");
        expectCutByHand([&](char* buf, int size) { return Misc::toHexString(0x89abcdefU, zeros, buf, size); },
                        "89abcdef");
        expectCutByHand(
            [&](char* buf, int size) {
                return Misc::toHexString(static_cast<unsigned short>(0xbeef), zeros, buf, size);
            },
            "beef");
        expectCutByHand(
            [&](char* buf, int size) { return Misc::toHexString(static_cast<unsigned char>(0xa5), zeros, buf, size); },
            "a5");
        expectCutByHand([&](char* buf, int size) { return Misc::toHexString(0ULL, zeros, buf, size); }, "0");
    }
}

TEST(Misc, ToHexStringOfBytesWritesTwoDigitsEach) {
    unsigned char bytes[] = {0x00, 0x0f, 0xA5, 0xff};
    char text[9];
    EXPECT_EQ(Misc::toHexString(bytes, 4, text, sizeof text), text);
    EXPECT_STREQ(text, "000fa5ff");
    EXPECT_EQ(Misc::toHexString(bytes, 0, text, sizeof text), text);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(Misc::toHexString(bytes, -1, text, sizeof text), text);
    EXPECT_STREQ(text, "");
    EXPECT_EQ(Misc::toHexString(nullptr, 4, text, sizeof text), text);
    EXPECT_STREQ(text, "");
}

TEST(Misc, ToHexStringOfBytesIsNullIfTheTextDoesNotFit) {
    unsigned char bytes[] = {0x12, 0x34};
    for (const int size : {-1, 0, 1, 2, 3, 4}) {
        WatchedBuffer buffer(std::max(size, 0));
        EXPECT_EQ(Misc::toHexString(bytes, 2, buffer.data(), size), nullptr) << size;
        EXPECT_TRUE(buffer.surroundingsIntact()) << size;
    }
    WatchedBuffer exact(5);
    EXPECT_EQ(Misc::toHexString(bytes, 2, exact.data(), 5), exact.data());
    EXPECT_EQ(exact.content(), std::string("1234\0", 5));
    EXPECT_EQ(Misc::toHexString(bytes, 2, nullptr, 20), nullptr);
}

TEST(Misc, ToHexStringOfBytesAgreesWithFormattingEachByte) {
    test::RandomRun random;
    while (random.steps(3000)) {
        const int count = static_cast<int>(random.below(20)) - 2;
        const int size = static_cast<int>(random.below(45)) - 2;
        std::vector<unsigned char> bytes(20);
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(random.below(256));
        WatchedBuffer buffer(std::max(size, 0));
        WatchedBuffer plain(std::max(size, 0));
        const auto failure = test::failureOf([&] {
            utility::PutStream out(plain.data(), size);
            for (int i = 0; i < count; ++i)
                out.PutF("%02x", bytes[static_cast<std::size_t>(i)]);
        });
        EXPECT_EQ(Misc::toHexString(bytes.data(), count, buffer.data(), size),
                  failure == nullptr ? buffer.data() : nullptr);
        EXPECT_EQ(buffer.content(), plain.content()) << count << " bytes in " << size;
        EXPECT_TRUE(buffer.surroundingsIntact());
    }
}

TEST(Misc, IsHexCharAcceptsEverythingUpToCapitalAAndLowerCaseDigits) {
    for (int c = 0; c < 256; ++c) {
        const bool expected = c <= 0x41 || (c >= 'a' && c <= 'f');
        EXPECT_EQ(Misc::isHexChar(static_cast<char>(c)), expected) << c;
    }
    EXPECT_FALSE(Misc::isHexChar('B'));
    EXPECT_TRUE(Misc::isHexChar(':'));
}

TEST(Misc, IsValidHexNumberAcceptsAPrefixAndLowerCaseDigits) {
    EXPECT_TRUE(Misc::isValidHexNumber("0xab"));
    EXPECT_TRUE(Misc::isValidHexNumber("0X12"));
    EXPECT_TRUE(Misc::isValidHexNumber("ab"));
    EXPECT_TRUE(Misc::isValidHexNumber("0x"));
    EXPECT_TRUE(Misc::isValidHexNumber(""));
    EXPECT_TRUE(Misc::isValidHexNumber("0"));
    EXPECT_TRUE(Misc::isValidHexNumber("A :-"));
    EXPECT_TRUE(Misc::isValidHexNumber(std::string(100000, 'e').c_str()));
}

TEST(Misc, IsValidHexNumberRefusesWhatIsHexCharRefuses) {
    EXPECT_FALSE(Misc::isValidHexNumber("0xAB"));
    EXPECT_FALSE(Misc::isValidHexNumber("x"));
    EXPECT_FALSE(Misc::isValidHexNumber("0x0x"));
    EXPECT_FALSE(Misc::isValidHexNumber("12g"));
    EXPECT_FALSE(Misc::isValidHexNumber("\xC3\xA9"));
    EXPECT_FALSE(Misc::isValidHexNumber(nullptr));
    EXPECT_FALSE(Misc::isValidHexNumber((std::string(100000, 'e') + 'g').c_str()));
}

TEST(Misc, FromHexStringKeepsTheLastDigits) {
    EXPECT_EQ(Misc::uint8FromHexString("1ff"), 0xff);
    EXPECT_EQ(Misc::uint16FromHexString("123456"), 0x3456);
    EXPECT_EQ(Misc::uint32FromHexString("123456789aBcDeF"), 0x89abcdefU);
    EXPECT_EQ(Misc::uint64FromHexString("f123456789abcdef0"), 0x123456789abcdef0ULL);
    EXPECT_EQ(Misc::uint64FromHexString(std::string(100000, '7').c_str()), 0x7777777777777777ULL);
}

TEST(Misc, FromHexStringOrs255ForAnyOtherCharacter) {
    EXPECT_EQ(Misc::uint8FromHexString("g"), 0xff);
    EXPECT_EQ(Misc::uint16FromHexString("g"), 0xff);
    EXPECT_EQ(Misc::uint32FromHexString("g"), 0xffU);
    EXPECT_EQ(Misc::uint64FromHexString("g"), 0xffULL);
    EXPECT_EQ(Misc::uint32FromHexString("1g2"), 0xff2U);
    EXPECT_EQ(Misc::uint32FromHexString("0x10"), 0xff10U);
    EXPECT_EQ(Misc::uint32FromHexString("\xff"), 0xffU);
}

TEST(Misc, FromHexStringOfNullOrEmptyTextIsZero) {
    EXPECT_EQ(Misc::uint8FromHexString(nullptr), 0);
    EXPECT_EQ(Misc::uint16FromHexString(nullptr), 0);
    EXPECT_EQ(Misc::uint32FromHexString(nullptr), 0U);
    EXPECT_EQ(Misc::uint64FromHexString(nullptr), 0ULL);
    EXPECT_EQ(Misc::uint64FromHexString(""), 0ULL);
}

TEST(Misc, HexadecimalTextsRoundTrip) {
    std::mt19937_64 random(1);
    for (int i = 0; i < 10000; ++i) {
        const unsigned long long v = random() >> (random() % 64);
        for (const bool leadingZeros : {false, true}) {
            EXPECT_EQ(Misc::uint64FromHexString(hex(v, leadingZeros).c_str()), v);
            EXPECT_EQ(Misc::uint32FromHexString(hex(static_cast<unsigned int>(v), leadingZeros).c_str()),
                      static_cast<unsigned int>(v));
            EXPECT_EQ(Misc::uint16FromHexString(hex(static_cast<unsigned short>(v), leadingZeros).c_str()),
                      static_cast<uint16_t>(v));
            EXPECT_EQ(Misc::uint8FromHexString(hex(static_cast<unsigned char>(v), leadingZeros).c_str()),
                      static_cast<uint8_t>(v));
        }
    }
}

TEST(Misc, ToDecimalGroupsByThree) {
    EXPECT_EQ(decimal(1234567L), "1,234,567");
    EXPECT_EQ(decimal(-1000L), "-1,000");
    EXPECT_EQ(decimal(999L), "999");
    EXPECT_EQ(decimal(1000LL), "1,000");
    EXPECT_EQ(decimal(-7LL), "-7");
    EXPECT_EQ(decimal(0L), "0");
    EXPECT_EQ(decimal(0LL), "0");
    EXPECT_EQ(decimal(1000000000000000000LL), "1,000,000,000,000,000,000");
}

TEST(Misc, ToDecimalWritesTheExtremes) {
    EXPECT_EQ(decimal(LLONG_MAX), "9,223,372,036,854,775,807");
    EXPECT_EQ(decimal(LLONG_MIN), "-9,223,372,036,854,775,808");
    EXPECT_EQ(decimal(static_cast<long>(INT_MAX)), "2,147,483,647");
    EXPECT_EQ(decimal(static_cast<long>(INT_MIN)), "-2,147,483,648");
    EXPECT_EQ(decimal(LONG_MIN), referenceDecimal(LONG_MIN));
    EXPECT_EQ(decimal(LONG_MAX), referenceDecimal(LONG_MAX));
}

TEST(Misc, ToDecimalAgreesWithThePlatformsDigits) {
    std::mt19937_64 random(2);
    for (int i = 0; i < 10000; ++i) {
        const long long v = randomNumber(random);
        EXPECT_EQ(decimal(v), referenceDecimal(v));
        EXPECT_EQ(decimal(static_cast<long>(v)), referenceDecimal(static_cast<long>(v)));
    }
}

TEST(Misc, ToDecimalNeedsTwoBytesMoreThanTheText) {
    WatchedBuffer enough(8);
    EXPECT_EQ(Misc::toDecimal(-1000L, enough.data(), 8), enough.data());
    EXPECT_EQ(enough.content(), std::string("-1,000\0\0", 8));
    EXPECT_TRUE(enough.surroundingsIntact());

    // The digits that fit are written and terminated although the call throws.
    for (const int size : {1, 2, 6, 7}) {
        WatchedBuffer buffer(size);
        EXPECT_FAILURE(Misc::toDecimal(-1000L, buffer.data(), size), 1239, "ut_PutStream", putCName, "");
        EXPECT_EQ(std::string(buffer.data()), std::string("-1,000").substr(0, static_cast<std::size_t>(size) - 1));
        EXPECT_TRUE(buffer.surroundingsIntact()) << size;
    }
    for (const int size : {INT_MIN, -1, 0}) {
        WatchedBuffer buffer(0);
        EXPECT_FAILURE(Misc::toDecimal(-1000LL, buffer.data(), size), 1239, "ut_PutStream", putCName, "");
        EXPECT_TRUE(buffer.surroundingsIntact()) << size;
    }
    EXPECT_FAILURE(Misc::toDecimal(7L, nullptr, 20), 1239, "ut_PutStream", putCName, "");
}

TEST(Misc, ToDecimalOfZeroNeedsOneByteMoreThanTheText) {
    WatchedBuffer enough(2);
    EXPECT_EQ(Misc::toDecimal(0LL, enough.data(), 2), enough.data());
    EXPECT_EQ(enough.content(), std::string("0\0", 2));
    WatchedBuffer one(1);
    EXPECT_FAILURE(Misc::toDecimal(0LL, one.data(), 1), 1239, "ut_PutStream", putCName, "");
    EXPECT_TRUE(one.surroundingsIntact());
}

TEST(Misc, ToDSdecimalWritesThreeDigitsAndTheUnit) {
    EXPECT_EQ(capacity(1234567L, 3), "1.23 MB");
    EXPECT_EQ(capacity(1234567890L, 3), "1.23 GB");
    EXPECT_EQ(capacity(999L, 3), "999");
    EXPECT_EQ(capacity(1000L, 3), "1.00 kB");
    EXPECT_EQ(capacity(5L, 3), "5");
    EXPECT_EQ(capacity(-1500L, 3), "-1.50 kB");
    EXPECT_EQ(capacity(123456LL, 3), "123 kB");
    EXPECT_EQ(capacity(1234567890123LL, 3), "1.23 TB");
    EXPECT_EQ(capacity(12345678901234567LL, 3), "12.3 PB");
    EXPECT_EQ(capacity(1234567890123456789LL, 3), "1.23 EB");
}

TEST(Misc, ToDSdecimalWritesMoreDigitsOnRequest) {
    EXPECT_EQ(capacity(123456L, 4), "123.4 kB");
    EXPECT_EQ(capacity(12345678L, 4), "12.34 MB");
    EXPECT_EQ(capacity(1234567L, 4), "1,234 kB");
    EXPECT_EQ(capacity(1234567L, 5), "1,234.5 kB");
    EXPECT_EQ(capacity(1234567L, 7), "1,234,567");
    EXPECT_EQ(capacity(1234567L, INT_MAX), "1,234,567");
    EXPECT_EQ(capacity(1234567LL, 19), "1,234,567");
}

TEST(Misc, ToDSdecimalOfZeroHasNoUnit) {
    EXPECT_EQ(capacity(0L, 3), "0");
    EXPECT_EQ(capacity(0LL, 3), "0");
    EXPECT_EQ(capacity(0LL, 10), "0");
}

TEST(Misc, ToDSdecimalTruncatesAndNeverRounds) {
    EXPECT_EQ(capacity(1999999L, 3), "1.99 MB");
    EXPECT_EQ(capacity(999999L, 3), "999 kB");
    EXPECT_EQ(capacity(-999999999LL, 3), "-999 MB");
}

TEST(Misc, ToDSdecimalWritesAtLeastThreeDigits) {
    for (const int digits : {INT_MIN, -1, 0, 1, 2})
        EXPECT_EQ(capacity(1234567L, digits), "1.23 MB") << digits;
}

TEST(Misc, ToDSdecimalWritesTheExtremes) {
    EXPECT_EQ(capacity(LLONG_MAX, 3), "9.22 EB");
    EXPECT_EQ(capacity(LLONG_MIN, 3), "-9.22 EB");
    EXPECT_EQ(capacity(LLONG_MIN, 19), "-9,223,372,036,854,775,808");
    EXPECT_EQ(capacity(static_cast<long>(INT_MIN), 3), "-2.14 GB");
    EXPECT_EQ(capacity(static_cast<long>(INT_MIN), 10), "-2,147,483,648");
    EXPECT_EQ(capacity(LONG_MIN, 25), referenceCapacity(LONG_MIN, 25));
}

TEST(Misc, ToDSdecimalAgreesWithTruncatedDigits) {
    std::mt19937_64 random(3);
    for (int i = 0; i < 10000; ++i) {
        const long long v = randomNumber(random);
        const int digits = static_cast<int>(random() % 22);
        EXPECT_EQ(capacity(v, digits), referenceCapacity(v, digits)) << v << " " << digits;
        EXPECT_EQ(capacity(static_cast<long>(v), digits), referenceCapacity(static_cast<long>(v), digits)) << v;
    }
}

TEST(Misc, ToDSdecimalThrowsIfTheTextDoesNotFit) {
    WatchedBuffer exact(9);
    EXPECT_EQ(Misc::toDSdecimal(-1500L, 3, exact.data(), 9), exact.data());
    EXPECT_EQ(exact.content(), std::string("-1.50 kB\0", 9));
    EXPECT_TRUE(exact.surroundingsIntact());

    WatchedBuffer unitCut(8);
    EXPECT_FAILURE(Misc::toDSdecimal(-1500L, 3, unitCut.data(), 8), 1239, "ut_PutStream", putFName,
                   "Didn't fit. wrote=3 remaining=2 msg='%s'");
    EXPECT_TRUE(unitCut.surroundingsIntact());
    for (const int size : {1, 2, 5}) {
        WatchedBuffer buffer(size);
        EXPECT_FAILURE(Misc::toDSdecimal(-1500L, 3, buffer.data(), size), 1239, "ut_PutStream", putCName, "");
        EXPECT_TRUE(buffer.surroundingsIntact()) << size;
    }
    for (const int size : {INT_MIN, -1, 0}) {
        WatchedBuffer buffer(0);
        EXPECT_FAILURE(Misc::toDSdecimal(0LL, 3, buffer.data(), size), 1239, "ut_PutStream", putCName, "");
        EXPECT_TRUE(buffer.surroundingsIntact()) << size;
    }
}

// Every character and the unit are written to the stream one after the other: a text that does not fit is kept up to
// the first one that does not.
TEST(Misc, ToDecimalAndToDSdecimalWriteArraysOfEverySizeAsAStreamDoes) {
    std::mt19937_64 random(6);
    for (int i = 0; i < 3000 && !HasFailure(); ++i) {
        const long long v = i % 50 == 0 ? 0 : randomNumber(random);
        const int size = static_cast<int>(random() % 32);
        const int digits = i % 2 == 0 ? 0 : static_cast<int>(random() % 9);
        const std::string text = i % 2 == 0 ? referenceDecimal(v) : referenceCapacity(v, digits);
        const std::size_t unit = std::min(text.find(' '), text.size());
        WatchedBuffer buffer(size);
        WatchedBuffer plain(size);
        const auto expected = test::failureOf([&] {
            utility::BufferStream out(plain.data(), size, false);
            for (const char c : text.substr(0, unit))
                out.PutC(c);
            if (i % 2 != 0)
                out.PutF("%s", text.substr(unit).c_str());
            else if (v != 0)
                out.PutC(0);
        });
        const auto failure = test::failureOf([&] {
            if (i % 2 == 0)
                Misc::toDecimal(v, buffer.data(), size);
            else
                Misc::toDSdecimal(v, digits, buffer.data(), size);
        });
        EXPECT_EQ(buffer.content(), plain.content()) << v << " in " << size;
        ASSERT_EQ(failure == nullptr, expected == nullptr) << v << " in " << size;
        if (failure != nullptr) {
            EXPECT_STREQ(failure->function(), expected->function());
            EXPECT_STREQ(failure->message(), expected->message());
        }
    }
}

TEST(Misc, ToIPV4StringBeginsWithTheLowestByte) {
    char text[16];
    EXPECT_EQ(Misc::toIPV4String(0x0100007FU, text, sizeof text), text);
    EXPECT_STREQ(text, "127.0.0.1");
    Misc::toIPV4String(0, text, sizeof text);
    EXPECT_STREQ(text, "0.0.0.0");
    Misc::toIPV4String(0xffffffffU, text, sizeof text);
    EXPECT_STREQ(text, "255.255.255.255");
}

TEST(Misc, ToIPV4StringAgreesWithInetNtop) {
    std::mt19937_64 random(4);
    for (int i = 0; i < 10000; ++i) {
        const unsigned int v = static_cast<unsigned int>(random());
        in_addr address = {};
        address.s_addr = v;
        char expected[INET_ADDRSTRLEN];
        ASSERT_NE(inet_ntop(AF_INET, &address, expected, sizeof expected), nullptr);
        char text[16];
        EXPECT_STREQ(Misc::toIPV4String(v, text, sizeof text), expected);
    }
}

TEST(Misc, ToIPV4StringIsNullIfTheTextDoesNotFit) {
    for (const int size : {-1, 0, 1, 14, 15}) {
        WatchedBuffer buffer(std::max(size, 0));
        EXPECT_EQ(Misc::toIPV4String(0xffffffffU, buffer.data(), size), nullptr) << size;
        EXPECT_TRUE(buffer.surroundingsIntact()) << size;
    }
    WatchedBuffer exact(16);
    EXPECT_STREQ(Misc::toIPV4String(0xffffffffU, exact.data(), 16), "255.255.255.255");
    EXPECT_TRUE(exact.surroundingsIntact());
    EXPECT_EQ(Misc::toIPV4String(1, nullptr, 16), nullptr);
}

TEST(Misc, ToMacAddressWritesTheLow48Bits) {
    char text[18];
    EXPECT_EQ(Misc::toMacAddress(0x00c0ff123456ULL, text, sizeof text), text);
    EXPECT_STREQ(text, "00:c0:ff:12:34:56");
    EXPECT_STREQ(Misc::toMacAddress(0xdead00c0ff123456ULL, text, sizeof text), "00:c0:ff:12:34:56");
    EXPECT_STREQ(Misc::toMacAddress(0, text, sizeof text), "00:00:00:00:00:00");
    EXPECT_STREQ(Misc::toMacAddress(ULLONG_MAX, text, sizeof text), "ff:ff:ff:ff:ff:ff");
}

TEST(Misc, ToMacAddressTruncatesAtTheEndOfTheBuffer) {
    expectCutByHand([](char* buf, int size) { return Misc::toMacAddress(0xabcdef012345ULL, buf, size); },
                    "ab:cd:ef:01:23:45");
}

TEST(Misc, Uint64FromMACAddressIsBigEndian) {
    unsigned char mac[] = {0x00, 0xc0, 0xff, 0x12, 0x34, 0x56};
    EXPECT_EQ(Misc::uint64FromMACAddress(mac), 0x00c0ff123456ULL);
    unsigned char high[] = {0xff, 0, 0, 0, 0, 0x80};
    EXPECT_EQ(Misc::uint64FromMACAddress(high), 0xff0000000080ULL);
    EXPECT_EQ(Misc::uint64FromMACAddress(nullptr), 0ULL);
}

TEST(Misc, SleepsTakeAtLeastTheirTime) {
    const auto begun = std::chrono::steady_clock::now();
    Misc::sleepMicroseconds(20000);
    EXPECT_GE(std::chrono::steady_clock::now() - begun, std::chrono::microseconds(20000));
    Misc::sleepMicroseconds(0);
    Misc::sleepSeconds(0);
    const auto middle = std::chrono::steady_clock::now();
    Misc::sleepSeconds(1);
    EXPECT_GE(std::chrono::steady_clock::now() - middle, std::chrono::seconds(1));
    const auto last = std::chrono::steady_clock::now();
    Misc::sleepMicroseconds(1000001);
    EXPECT_GE(std::chrono::steady_clock::now() - last, std::chrono::microseconds(1000001));
}

TEST(Misc, SleepMicrosecondsEndsEarlyAtAHandledSignal) {
    struct sigaction action = {};
    action.sa_handler = [](int) {
    };
    struct sigaction previous = {};
    ASSERT_EQ(sigaction(SIGALRM, &action, &previous), 0);
    itimerval timer = {};
    timer.it_value.tv_usec = 100000;
    timer.it_interval.tv_usec = 100000;
    ASSERT_EQ(setitimer(ITIMER_REAL, &timer, nullptr), 0);
    const auto begun = std::chrono::steady_clock::now();
    // More seconds than a 32-bit `time_t` can represent.
    Misc::sleepMicroseconds(ULLONG_MAX);
    Misc::sleepMicroseconds(600000000);
    EXPECT_LT(std::chrono::steady_clock::now() - begun, std::chrono::seconds(60));
    timer = {};
    setitimer(ITIMER_REAL, &timer, nullptr);
    sigaction(SIGALRM, &previous, nullptr);
}

TEST(Misc, GetErrnoMsgWritesTheTextOfThePlatform) {
    char text[256];
    for (const int error : {ENOENT, EACCES, ENOSPC, 12345}) {
        errno = error;
        EXPECT_EQ(Misc::getErrnoMsg(text, sizeof text), error);
        EXPECT_EQ(errno, error);
        EXPECT_STREQ(text, std::strerror(error));
    }
}

TEST(Misc, GetErrnoMsgWithoutAnErrorIsEmpty) {
    char text[16] = "before";
    errno = 0;
    EXPECT_EQ(Misc::getErrnoMsg(text, sizeof text), 0);
    EXPECT_STREQ(text, "");
}

TEST(Misc, GetErrnoMsgIsTruncatedToTheBuffer) {
    const std::string whole = std::strerror(ENOENT);
    const unsigned int exact = static_cast<unsigned int>(whole.size()) + 1;
    for (const unsigned int size : {1U, 2U, exact - 1, exact, exact + 1}) {
        WatchedBuffer buffer(static_cast<int>(size));
        errno = ENOENT;
        EXPECT_EQ(Misc::getErrnoMsg(buffer.data(), size), ENOENT);
        EXPECT_EQ(std::string(buffer.data()), whole.substr(0, size - 1));
        EXPECT_TRUE(buffer.surroundingsIntact()) << size;
    }
    WatchedBuffer none(0);
    errno = ENOENT;
    EXPECT_EQ(Misc::getErrnoMsg(none.data(), 0), ENOENT);
    EXPECT_TRUE(none.surroundingsIntact());
    EXPECT_EQ(Misc::getErrnoMsg(nullptr, 10), ENOENT);
}

} // namespace
