#include "ut_SerialNumber.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "ExpectFailure.h"
#include "GuardedText.h"
#include "ut_BufferStream.h"
#include "ut_Misc.h"

namespace {

using utility::SerialNumber;

constexpr const char* goodText = "00c0ff112233aabb4455667788000000";
constexpr const char* zero = "00000000000000000000000000000000";

static_assert(sizeof(SerialNumber) == 16, "sixteen bytes and nothing else");
static_assert(std::is_trivially_copyable<SerialNumber>::value, "a plain value");
static_assert(std::is_trivially_destructible<SerialNumber>::value, "a plain value");
static_assert(!std::is_polymorphic<SerialNumber>::value, "a plain value");
static_assert(!std::is_default_constructible<SerialNumber>::value, "a number comes from somewhere");

std::string text(const SerialNumber& number) {
    char buf[33];
    return number.toBuffer(buf, sizeof buf);
}

std::string shortText(const SerialNumber& number) {
    char buf[17];
    return number.toShortBuffer(buf, sizeof buf);
}

std::string withCharacter(size_t index, char c) {
    std::string result = goodText;
    result[index] = c;
    return result;
}

TEST(SerialNumber, UsageExample) {
    utility::SerialNumber number("00c0ff112233aabb4455667788000000");
    char text[17];
    number.toShortBuffer(text, sizeof text);
    EXPECT_STREQ(text, "1122334455667788");
}

TEST(SerialNumber, CopiesBytesInWrittenOrder) {
    unsigned char bytes[] = {0, 0xC0, 0xFF, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 0, 0, 0};
    SerialNumber number(bytes);
    EXPECT_EQ(text(number), "00c0ff0102030405060708090a000000");
    unsigned char out[17] = {};
    out[16] = 77;
    number.toByteArray(out);
    EXPECT_EQ(std::memcmp(out, bytes, sizeof bytes), 0);
    EXPECT_EQ(out[16], 77);
    bytes[15] = 0xFE;
    number.set(bytes);
    EXPECT_EQ(text(number), "00c0ff0102030405060708090a0000fe");
}

TEST(SerialNumber, CanBeCopied) {
    SerialNumber number(goodText);
    const SerialNumber copy(number);
    number.fromString(nullptr);
    EXPECT_EQ(text(copy), goodText);
    number = copy;
    EXPECT_TRUE(number == copy);
}

TEST(SerialNumber, ParsesUpperAndLowerCase) {
    SerialNumber number(goodText);
    EXPECT_TRUE(number.fromString("0123456789ABCDEFfedcba9876543210"));
    EXPECT_EQ(text(number), "0123456789abcdeffedcba9876543210");
}

TEST(SerialNumber, NullTextIsZero) {
    SerialNumber number(goodText);
    EXPECT_TRUE(number.fromString(nullptr));
    EXPECT_EQ(text(number), zero);
    EXPECT_EQ(text(SerialNumber(static_cast<const char*>(nullptr))), zero);
}

TEST(SerialNumber, IgnoresTextAfterTheLastDigit) {
    SerialNumber number(zero);
    EXPECT_TRUE(number.fromString((std::string(goodText) + "XYZ").c_str()));
    EXPECT_EQ(text(number), goodText);
    EXPECT_TRUE(number.fromString((std::string(goodText) + std::string(100000, '\xFF')).c_str()));
}

TEST(SerialNumber, ShortTextReturnsFalseAndStoresItsDigits) {
    SerialNumber number("ffffffffffffffffffffffffffffffff");
    EXPECT_FALSE(number.fromString(""));
    EXPECT_EQ(text(number), "ffffffffffffffffffffffffffffffff");
    EXPECT_FALSE(number.fromString("00C0f"));
    EXPECT_EQ(text(number), "00c0f0ffffffffffffffffffffffffff");
    EXPECT_FALSE(number.fromString("00c0ff112233aabb445566778800000"));
    EXPECT_EQ(text(number), goodText);
    EXPECT_EQ(text(SerialNumber("00c0ff1")), "00c0ff10000000000000000000000000");
}

TEST(SerialNumber, OtherCharacterReturnsFalseAndStoresTheDigitsBeforeIt) {
    for (int c = 1; c < 256; ++c) {
        if (std::isxdigit(c) != 0)
            continue;
        SerialNumber number(zero);
        EXPECT_FALSE(number.fromString(withCharacter(7, static_cast<char>(c)).c_str())) << c;
        EXPECT_EQ(text(number), "00c0ff10000000000000000000000000") << c;
    }
    EXPECT_FALSE(SerialNumber(zero).fromString(std::string(100000, '-').c_str()));
}

TEST(SerialNumber, RoundTripsTheTextsOfThePlatform) {
    std::mt19937_64 random(43);
    for (int i = 0; i < 10000; ++i) {
        char expected[33];
        const unsigned long long high = random();
        const unsigned long long low = random();
        std::snprintf(expected, sizeof expected, "%016llx%016llx", high, low);
        SerialNumber number(zero);
        ASSERT_TRUE(number.fromString(expected));
        ASSERT_EQ(text(number), expected);
        const std::string whole = expected;
        ASSERT_EQ(shortText(number), whole.substr(6, 6) + whole.substr(16, 10));
    }
}

TEST(SerialNumber, ToBufferTerminatesIfThereIsSpace) {
    for (const unsigned int size : {33u, 34u, 100u}) {
        test::GuardedText buf(size);
        EXPECT_EQ(SerialNumber(goodText).toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), goodText);
        EXPECT_TRUE(buf.isTerminated());
        EXPECT_TRUE(buf.isGuardWhole());
    }
    for (const unsigned int size : {17u, 18u, 100u}) {
        test::GuardedText buf(size);
        EXPECT_EQ(SerialNumber(goodText).toShortBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), "1122334455667788");
        EXPECT_TRUE(buf.isTerminated());
        EXPECT_TRUE(buf.isGuardWhole());
    }
}

TEST(SerialNumber, BufferOfOnlyTheDigitsIsNotTerminated) {
    test::GuardedText whole(32);
    SerialNumber(goodText).toBuffer(whole.array(), 32);
    EXPECT_EQ(whole.text(), goodText);
    EXPECT_FALSE(whole.isTerminated());
    EXPECT_TRUE(whole.isGuardWhole());
    test::GuardedText part(16);
    SerialNumber(goodText).toShortBuffer(part.array(), 16);
    EXPECT_EQ(part.text(), "1122334455667788");
    EXPECT_FALSE(part.isTerminated());
    EXPECT_TRUE(part.isGuardWhole());
}

TEST(SerialNumber, SmallBuffersAreNeverOverrun) {
    for (unsigned int size = 0; size < 32; ++size) {
        test::GuardedText buf(size);
        EXPECT_EQ(SerialNumber(goodText).toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), std::string(goodText).substr(0, size));
        EXPECT_TRUE(buf.isGuardWhole());
    }
    for (unsigned int size = 0; size < 16; ++size) {
        test::GuardedText buf(size);
        EXPECT_EQ(SerialNumber(goodText).toShortBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), std::string("1122334455667788").substr(0, size));
        EXPECT_TRUE(buf.isGuardWhole());
    }
    EXPECT_EQ(SerialNumber(goodText).toBuffer(nullptr, 33), nullptr);
    EXPECT_EQ(SerialNumber(goodText).toShortBuffer(nullptr, 17), nullptr);
}

TEST(SerialNumber, FormatsBothForms) {
    utility::BufferStream stream(64);
    stream.PutS("<");
    SerialNumber(goodText).toPutStream(stream);
    stream.PutS("|");
    SerialNumber(goodText).toShortPutStream(stream);
    stream.PutS(">");
    EXPECT_STREQ(stream.pBuffer(), "<00c0ff112233aabb4455667788000000|1122334455667788>");
}

TEST(SerialNumber, ToPutStreamThrowsIfTheDigitsDoNotFitAndKeepsTheFirst) {
    const char* const putC = "void utility::PutStream::PutC(char)";
    utility::BufferStream whole(31);
    EXPECT_FAILURE(SerialNumber(goodText).toPutStream(whole), 1239, "ut_PutStream", putC, "");
    EXPECT_STREQ(whole.pBuffer(), "00c0ff112233aabb445566778800000");
    utility::BufferStream part(15);
    EXPECT_FAILURE(SerialNumber(goodText).toShortPutStream(part), 1239, "ut_PutStream", putC, "");
    EXPECT_STREQ(part.pBuffer(), "112233445566778");
}

TEST(SerialNumber, IsValidChecksOnlyPrefixAndSuffix) {
    EXPECT_TRUE(SerialNumber(goodText).isValid());
    EXPECT_TRUE(SerialNumber("00c0ffffffffffffffffffffff000000").isValid());
    EXPECT_TRUE(SerialNumber("00c0ff00000000000000000000000000").isValid());
    EXPECT_FALSE(SerialNumber(zero).isValid());
    unsigned char goodBytes[16];
    SerialNumber(goodText).toByteArray(goodBytes);
    for (unsigned int i = 0; i < 16; ++i) {
        unsigned char bytes[16];
        std::memcpy(bytes, goodBytes, sizeof bytes);
        bytes[i] ^= 0x01;
        EXPECT_EQ(SerialNumber(bytes).isValid(), i >= 3 && i <= 12) << i;
    }
}

TEST(SerialNumber, ComparesByteByByte) {
    const char* const ascending[] = {zero,
                                     "00000000000000000000000000000001",
                                     "000000000000000000000000000000ff",
                                     "00000000000000000100000000000000",
                                     goodText,
                                     "7fffffffffffffffffffffffffffffff",
                                     "80000000000000000000000000000000",
                                     "ffffffffffffffffffffffffffffffff"};
    const int count = sizeof ascending / sizeof *ascending;
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < count; ++j) {
            const SerialNumber a(ascending[i]);
            const SerialNumber b(ascending[j]);
            EXPECT_EQ(a == b, i == j);
            EXPECT_EQ(a != b, i != j);
            EXPECT_EQ(a < b, i < j);
            EXPECT_EQ(a > b, i > j);
            EXPECT_EQ(a <= b, i <= j);
            EXPECT_EQ(a >= b, i >= j);
            EXPECT_EQ(a.compare(b) < 0, i < j);
            EXPECT_EQ(a.compare(b) > 0, i > j);
        }
    }
}

TEST(SerialNumber, HashIsTheMaskedSumOfBytes8To12) {
    const SerialNumber number("ffffffffffffffff0102030405ffffff");
    EXPECT_EQ(number.hash(0xFFFFFFFF), 15u);
    EXPECT_EQ(number.hash(7), 7u);
    EXPECT_EQ(number.hash(0), 0u);
    EXPECT_EQ(SerialNumber("0000000000000000ffffffffff000000").hash(0xFFFFFFFF), 5u * 255);
}

TEST(SerialNumber, NumbersThatDifferInBytes3To7HashEqually) {
    const SerialNumber a("00c0ff00000000004455667788000000");
    const SerialNumber b("00c0ffffffffffff4455667788000000");
    for (unsigned int bits = 0; bits <= 32; ++bits) {
        const unsigned int mask = bits < 32 ? (1u << bits) - 1 : 0xFFFFFFFF;
        EXPECT_EQ(a.hash(mask), b.hash(mask));
    }
}

TEST(SerialNumber, IsSerialNumberAcceptsWellFormedNumbersInLowerCase) {
    EXPECT_TRUE(SerialNumber::isSerialNumber(goodText));
    EXPECT_TRUE(SerialNumber::isSerialNumber("00C0FF112233aabb4455667788000000"));
    EXPECT_TRUE(SerialNumber::isSerialNumber("00c0Ff112233aabb4455667788000000"));
    EXPECT_FALSE(SerialNumber::isSerialNumber(nullptr));
    EXPECT_FALSE(SerialNumber::isSerialNumber(""));
    EXPECT_FALSE(SerialNumber::isSerialNumber("00c0ff112233aabb445566778800000"));
    EXPECT_FALSE(SerialNumber::isSerialNumber("00c0ff112233aabb44556677880000000"));
    EXPECT_FALSE(SerialNumber::isSerialNumber(std::string(100000, '0').c_str()));
    EXPECT_FALSE(SerialNumber::isSerialNumber(zero));
}

TEST(SerialNumber, IsSerialNumberIgnoresCharacters14And15) {
    EXPECT_TRUE(SerialNumber::isSerialNumber("00c0ff0a1b2c3dzz4e5f607182000000"));
    EXPECT_FALSE(SerialNumber::isSerialNumber("00c0ff0a1b2c3z004e5f607182000000"));
    EXPECT_FALSE(SerialNumber::isSerialNumber("00c0ff0a1b2c3d004e5f60718B000000"));
}

TEST(SerialNumber, IsSerialNumberChecksEachCharacterByItsOwnRule) {
    for (size_t index = 0; index < 32; ++index) {
        for (int value = 1; value < 256; ++value) {
            const char c = static_cast<char>(value);
            bool expected = false;
            if (index == 14 || index == 15)
                expected = true;
            else if (index == 2)
                expected = c == 'C' || c == 'c';
            else if (index == 4 || index == 5)
                expected = c == 'F' || c == 'f';
            else if (index < 6 || index >= 26)
                expected = c == '0';
            else
                expected = utility::Misc::isHexChar(c);
            ASSERT_EQ(SerialNumber::isSerialNumber(withCharacter(index, c).c_str()), expected) << index << ' ' << value;
        }
    }
    EXPECT_TRUE(SerialNumber::isSerialNumber(withCharacter(6, ' ').c_str()));
    EXPECT_TRUE(SerialNumber::isSerialNumber(withCharacter(25, 'A').c_str()));
    EXPECT_FALSE(SerialNumber::isSerialNumber(withCharacter(6, 'B').c_str()));
    EXPECT_FALSE(SerialNumber::isSerialNumber(withCharacter(25, 'g').c_str()));
}

} // namespace
