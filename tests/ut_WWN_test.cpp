#include "ut_WWN.h"

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

namespace {

using utility::WWN;

static_assert(sizeof(WWN) == 8, "eight bytes and nothing else");
static_assert(std::is_trivially_copyable<WWN>::value, "a plain value");
static_assert(std::is_trivially_destructible<WWN>::value, "a plain value");
static_assert(!std::is_polymorphic<WWN>::value, "a plain value");

std::string text(const WWN& name) {
    char buf[17];
    return name.toBuffer(buf, sizeof buf);
}

TEST(WWN, UsageExample) {
    utility::WWN name("500A09818D5F1234");
    char text[17];
    name.toBuffer(text, sizeof text);
    EXPECT_STREQ(text, "500a09818d5f1234");
}

TEST(WWN, IsInitiallyZero) {
    EXPECT_EQ(text(WWN()), "0000000000000000");
}

TEST(WWN, CopiesBytesInWrittenOrder) {
    unsigned char bytes[] = {0x50, 0x0A, 0x09, 0x81, 0x8D, 0x5F, 0x12, 0x34};
    WWN name(bytes);
    EXPECT_EQ(text(name), "500a09818d5f1234");
    unsigned char others[] = {0xFF, 0xFE, 0xFD, 0xFC, 0, 1, 2, 3};
    name.fromBinary(others);
    EXPECT_EQ(text(name), "fffefdfc00010203");
    EXPECT_EQ(std::memcmp(&name, others, sizeof others), 0);
}

TEST(WWN, CanBeCopied) {
    WWN name("500a09818d5f1234");
    const WWN copy(name);
    name.fromString(nullptr);
    EXPECT_EQ(text(copy), "500a09818d5f1234");
    name = copy;
    EXPECT_TRUE(name == copy);
}

TEST(WWN, ParsesUpperAndLowerCase) {
    WWN name;
    EXPECT_TRUE(name.fromString("0123456789ABCDEF"));
    EXPECT_EQ(text(name), "0123456789abcdef");
    EXPECT_TRUE(name.fromString("fedcba9876543210"));
    EXPECT_EQ(text(name), "fedcba9876543210");
}

TEST(WWN, NullTextIsZero) {
    WWN name("500a09818d5f1234");
    EXPECT_TRUE(name.fromString(nullptr));
    EXPECT_EQ(text(name), "0000000000000000");
    EXPECT_EQ(text(WWN(static_cast<const char*>(nullptr))), "0000000000000000");
}

TEST(WWN, IgnoresTextAfterTheLastDigit) {
    WWN name;
    EXPECT_TRUE(name.fromString("500A09818D5F1234XYZ"));
    EXPECT_EQ(text(name), "500a09818d5f1234");
    EXPECT_TRUE(name.fromString("500A09818D5F12345"));
    EXPECT_TRUE(name.fromString(("500A09818D5F1234" + std::string(100000, '\xFF')).c_str()));
    EXPECT_EQ(text(name), "500a09818d5f1234");
}

TEST(WWN, ShortTextReturnsFalseAndStoresItsDigits) {
    WWN name("ffffffffffffffff");
    EXPECT_FALSE(name.fromString(""));
    EXPECT_EQ(text(name), "ffffffffffffffff");
    EXPECT_FALSE(name.fromString("500A"));
    EXPECT_EQ(text(name), "500affffffffffff");
    EXPECT_FALSE(name.fromString("500a09818d5f123"));
    EXPECT_EQ(text(name), "500a09818d5f1230");
    EXPECT_EQ(text(WWN("500A0")), "500a000000000000");
}

TEST(WWN, OtherCharacterReturnsFalseAndStoresTheDigitsBeforeIt) {
    for (int c = 1; c < 256; ++c) {
        if (std::isxdigit(c) != 0)
            continue;
        WWN name("ffffffffffffffff");
        std::string bad = "500a09818d5f1234";
        bad[5] = static_cast<char>(c);
        EXPECT_FALSE(name.fromString(bad.c_str())) << c;
        EXPECT_EQ(text(name), "500a00ffffffffff") << c;
        bad[0] = static_cast<char>(c);
        EXPECT_FALSE(name.fromString(bad.c_str())) << c;
        EXPECT_EQ(text(name), "500a00ffffffffff") << c;
    }
}

TEST(WWN, SeparatorsPrefixesAndBlanksAreRefused) {
    for (const char* bad : {"50:0a:09:81:8d:5f:12:34", "50-0a-09-81-8d-5f-12-34", "0x500a09818d5f1234",
                            " 500a09818d5f1234", "500a0981 8d5f1234", "500a0981\n8d5f1234"})
        EXPECT_FALSE(WWN().fromString(bad)) << bad;
    EXPECT_FALSE(WWN().fromString(std::string(100000, ':').c_str()));
    EXPECT_TRUE(WWN().fromString(std::string(100000, 'a').c_str()));
}

TEST(WWN, RoundTripsTheTextsOfThePlatform) {
    std::mt19937_64 random(42);
    for (int i = 0; i < 10000; ++i) {
        const unsigned long long value = random();
        char expected[17];
        std::snprintf(expected, sizeof expected, "%016llx", value);
        WWN name;
        ASSERT_TRUE(name.fromString(expected));
        ASSERT_EQ(text(name), expected);
        ASSERT_TRUE(WWN::isWWN(expected));
    }
}

TEST(WWN, ToBufferTerminatesIfThereIsSpace) {
    for (const unsigned int size : {17u, 18u, 100u}) {
        test::GuardedText buf(size);
        EXPECT_EQ(WWN("500a09818d5f1234").toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), "500a09818d5f1234");
        EXPECT_TRUE(buf.isTerminated());
        EXPECT_TRUE(buf.isGuardWhole());
    }
}

TEST(WWN, ToBufferOfSixteenBytesIsNotTerminated) {
    test::GuardedText buf(16);
    WWN("500a09818d5f1234").toBuffer(buf.array(), 16);
    EXPECT_EQ(buf.text(), "500a09818d5f1234");
    EXPECT_FALSE(buf.isTerminated());
    EXPECT_TRUE(buf.isGuardWhole());
}

TEST(WWN, ToBufferNeverOverrunsASmallerArray) {
    for (unsigned int size = 0; size < 16; ++size) {
        test::GuardedText buf(size);
        EXPECT_EQ(WWN("500a09818d5f1234").toBuffer(buf.array(), size), buf.array());
        EXPECT_EQ(buf.text(), std::string("500a09818d5f1234").substr(0, size));
        EXPECT_TRUE(buf.isGuardWhole());
    }
    EXPECT_EQ(WWN().toBuffer(nullptr, 17), nullptr);
}

TEST(WWN, ToPutStreamWritesOnlyTheDigits) {
    utility::BufferStream stream(64);
    stream.PutS("<");
    WWN("500A09818D5F1234").toPutStream(stream);
    stream.PutS(">");
    EXPECT_STREQ(stream.pBuffer(), "<500a09818d5f1234>");
}

TEST(WWN, ToPutStreamFillsAStreamToTheLastByte) {
    utility::BufferStream exact(16);
    WWN("500A09818D5F1234").toPutStream(exact);
    EXPECT_STREQ(exact.pBuffer(), "500a09818d5f1234");
}

TEST(WWN, ToPutStreamThrowsIfTheDigitsDoNotFitAndKeepsTheFirst) {
    utility::BufferStream stream(15);
    EXPECT_FAILURE(WWN("500A09818D5F1234").toPutStream(stream), 1239, "ut_PutStream",
                   "void utility::PutStream::PutC(char)", "");
    EXPECT_STREQ(stream.pBuffer(), "500a09818d5f123");
}

TEST(WWN, ComparesByteByByte) {
    const char* const ascending[] = {"0000000000000000", "0000000000000001", "00000000000000ff",
                                     "0000000000000100", "1000000000000000", "5000000000000000",
                                     "7fffffffffffffff", "8000000000000000", "ffffffffffffffff"};
    const int count = sizeof ascending / sizeof *ascending;
    for (int i = 0; i < count; ++i) {
        for (int j = 0; j < count; ++j) {
            const WWN a(ascending[i]);
            const WWN b(ascending[j]);
            EXPECT_EQ(a == b, i == j);
            EXPECT_EQ(a != b, i != j);
            EXPECT_EQ(a < b, i < j);
            EXPECT_EQ(a > b, i > j);
            EXPECT_EQ(a.compare(b) < 0, i < j);
            EXPECT_EQ(a.compare(b) > 0, i > j);
        }
    }
}

TEST(WWN, HashIsTheMaskedSumOfAllBytes) {
    EXPECT_EQ(WWN("0102030405060708").hash(0xFFFFFFFF), 36u);
    EXPECT_EQ(WWN("0102030405060708").hash(31), 4u);
    EXPECT_EQ(WWN("0102030405060708").hash(0), 0u);
    EXPECT_EQ(WWN("ffffffffffffffff").hash(0xFFFFFFFF), 8u * 255);
    EXPECT_EQ(WWN("8000000000000000").hash(0xFFFFFFFF), 128u);
    EXPECT_EQ(WWN("0000000000000080").hash(0xFFFFFFFF), 128u);
}

TEST(WWN, IsWWNOnlyForExactlySixteenDigits) {
    EXPECT_TRUE(WWN::isWWN("500a09818d5f1234"));
    EXPECT_TRUE(WWN::isWWN("0123456789ABCDEF"));
    EXPECT_FALSE(WWN::isWWN(nullptr));
    EXPECT_FALSE(WWN::isWWN(""));
    EXPECT_FALSE(WWN::isWWN("500a0981:8d5f1234"));
    EXPECT_FALSE(WWN::isWWN("500a0981:d5f1234"));
    EXPECT_FALSE(WWN::isWWN("500a09818d5f123"));
    EXPECT_FALSE(WWN::isWWN("500a09818d5f12345"));
    EXPECT_FALSE(WWN::isWWN("0x0a09818d5f1234"));
    EXPECT_FALSE(WWN::isWWN(std::string(100000, 'a').c_str()));
    for (int c = 1; c < 256; ++c) {
        std::string name = "500a09818d5f1234";
        name.back() = static_cast<char>(c);
        EXPECT_EQ(WWN::isWWN(name.c_str()), std::isxdigit(c) != 0) << c;
    }
}

} // namespace
