#include "ut_Misc.h"

#include <climits>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "ExpectFailure.h"
#include "RandomBytes.h"
#include "ut_md5.h"

using test::randomBytes;
using utility::Misc;

namespace {

unsigned char crcOf(const std::string& bytes) {
    // Allocates exactly this size, so that sanitizers detect a read past it.
    std::unique_ptr<char[]> copy(new char[bytes.size()]);
    std::memcpy(copy.get(), bytes.data(), bytes.size());
    return Misc::calc_crc(copy.get(), static_cast<int>(bytes.size()));
}

unsigned char crcByteByByte(const std::string& bytes, unsigned char crc) {
    for (const char byte : bytes)
        crc = Misc::crc_table(byte, crc);
    return crc;
}

std::string md5Of(const char* text) {
    char hex[33];
    Misc::calc_md5(text, hex, sizeof hex);
    return hex;
}

std::string password(const char* a, const char* b, const char* c, int size) {
    std::string out(static_cast<std::size_t>(size), '#');
    Misc::genpw(a, b, c, out.data(), size);
    return out;
}

constexpr const char* emptyMd5 = "d41d8cd98f00b204e9800998ecf8427e";

TEST(MiscChecksum, TableHasTheRemaindersOfThe1WirePolynomial) {
    for (unsigned int i = 0; i < 256; ++i) {
        unsigned int crc = i;
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0x8C : crc >> 1;
        EXPECT_EQ(Misc::m_crc_array[i], crc) << i;
    }
    EXPECT_EQ(sizeof Misc::m_crc_array, 256U);
    EXPECT_EQ(Misc::m_crc_array[1], 0x5E);
    EXPECT_EQ(Misc::m_crc_array[128], 0x8C);
}

TEST(MiscChecksum, CrcTableUsesTheLowByte) {
    EXPECT_EQ(Misc::crc_table(1, 0), 0x5E);
    EXPECT_EQ(Misc::crc_table(0x101, 0), 0x5E);
    EXPECT_EQ(Misc::crc_table(-1, 0xFF), 0);
    EXPECT_EQ(Misc::crc_table(INT_MIN, 1), 0x5E);
    EXPECT_EQ(crcByteByByte("123456789", 0), 0xA1);
}

TEST(MiscChecksum, CalcCrcStartsFromFF) {
    EXPECT_EQ(crcOf(""), 0xFF);
    EXPECT_EQ(crcOf(std::string(1, 0)), 0x35);
    EXPECT_EQ(crcOf("123456789"), 0x0B);
}

TEST(MiscChecksum, CalcCrcOfAnEmptyRangeIsFF) {
    char byte = 1;
    EXPECT_EQ(Misc::calc_crc(nullptr, 10), 0xFF);
    EXPECT_EQ(Misc::calc_crc(&byte, -1), 0xFF);
    EXPECT_EQ(Misc::calc_crc(&byte, INT_MIN), 0xFF);
}

TEST(MiscChecksum, CrcOfARecordWithItsCrcIsZero) {
    // The ROM code of a 1-Wire device: family 02, serial number 00000001B81C, CRC A2.
    const std::string device("\x02\x1C\xB8\x01\x00\x00\x00", 7);
    EXPECT_EQ(crcByteByByte(device, 0), 0xA2);
    EXPECT_EQ(crcByteByByte(device + '\xA2', 0), 0);

    std::mt19937 random(10);
    for (std::size_t size = 0; size < 100; ++size) {
        const std::string bytes = randomBytes(random, size);
        EXPECT_EQ(crcOf(bytes + static_cast<char>(crcOf(bytes))), 0) << size;
    }
}

TEST(MiscChecksum, CalcCrcAgreesWithOneLookupPerByte) {
    std::mt19937 random(6);
    for (std::size_t size = 0; size < 200; ++size) {
        for (int i = 0; i < 20; ++i) {
            const std::string bytes = randomBytes(random, size);
            ASSERT_EQ(crcOf(bytes), crcByteByByte(bytes, 0xFF)) << size;
        }
    }
    const std::string large = randomBytes(random, 100003);
    EXPECT_EQ(crcOf(large), crcByteByByte(large, 0xFF));
    for (std::size_t offset = 0; offset < 20; ++offset) {
        EXPECT_EQ(crcOf(large.substr(offset)), crcByteByByte(large.substr(offset), 0xFF)) << offset;
    }
}

TEST(MiscChecksum, CalcMd5WritesLowerCaseDigits) {
    EXPECT_EQ(md5Of(""), emptyMd5);
    EXPECT_EQ(md5Of("abc"), "900150983cd24fb0d6963f7d28e17f72");
    EXPECT_EQ(md5Of(nullptr), emptyMd5);
}

TEST(MiscChecksum, CalcMd5IsTruncatedToTheBuffer) {
    const std::string whole = emptyMd5;
    for (int size = 0; size <= 36; ++size) {
        std::string out(40, '#');
        EXPECT_EQ(Misc::calc_md5("", out.data(), size), 2) << size;
        const std::size_t digits = size == 0 ? 0 : std::min<std::size_t>(static_cast<std::size_t>(size) - 1, 32);
        std::string expected(40, '#');
        if (size > 0)
            expected.replace(0, digits + 1, whole.substr(0, digits) + '\0');
        EXPECT_EQ(out, expected) << size;
    }
}

TEST(MiscChecksum, CalcMd5WritesNothingWithoutABuffer) {
    char untouched = '#';
    EXPECT_EQ(Misc::calc_md5("abc", &untouched, 0), 2);
    EXPECT_EQ(Misc::calc_md5("abc", &untouched, -1), 2);
    EXPECT_EQ(Misc::calc_md5("abc", &untouched, INT_MIN), 2);
    EXPECT_EQ(Misc::calc_md5("abc", nullptr, 33), 2);
    EXPECT_EQ(untouched, '#');
}

TEST(MiscChecksum, CalcMd5HexCopiesRawBytesWithoutTerminator) {
    const std::string raw = "\x90\x01\x50\x98\x3c\xd2\x4f\xb0\xd6\x96\x3f\x7d\x28\xe1\x7f\x72";
    for (const int size : {0, 1, 8, 15, 16, 17, 33}) {
        std::string out(40, '#');
        EXPECT_EQ(Misc::calc_md5_hex("abc", 3, out.data(), size), out.data());
        const std::size_t copied = static_cast<std::size_t>(std::min(size, 16));
        EXPECT_EQ(out, raw.substr(0, copied) + std::string(40 - copied, '#')) << size;
    }
}

TEST(MiscChecksum, CalcMd5HexCountsBytesNotText) {
    char withNul[16];
    char truncated[16];
    Misc::calc_md5_hex("ab\0cd", 5, withNul, 16);
    Misc::calc_md5_hex("ab", 2, truncated, 16);
    EXPECT_NE(std::memcmp(withNul, truncated, 16), 0);
}

TEST(MiscChecksum, CalcMd5HexOfAnEmptyRangeIsThatOfTheEmptyText) {
    const std::string raw("\xd4\x1d\x8c\xd9\x8f\x00\xb2\x04\xe9\x80\x09\x98\xec\xf8\x42\x7e", 16);
    char out[17] = "################";
    for (const int length : {0, -1, INT_MIN}) {
        EXPECT_EQ(std::string(Misc::calc_md5_hex("abc", length, out, 16), 16), raw);
    }
    EXPECT_EQ(std::string(Misc::calc_md5_hex(nullptr, 3, out, 16), 16), raw);
    char untouched = '#';
    EXPECT_EQ(Misc::calc_md5_hex("abc", 3, &untouched, -1), &untouched);
    EXPECT_EQ(untouched, '#');
    EXPECT_EQ(Misc::calc_md5_hex("abc", 3, nullptr, 16), nullptr);
}

TEST(MiscChecksum, DigestsAgreeWithMd5Append) {
    std::mt19937 random(11);
    for (std::size_t size = 0; size < 2000; ++size) {
        const std::string bytes = randomBytes(random, size);
        const std::string text = bytes.c_str();
        for (const std::string& data : {bytes, text}) {
            md5_state_t state;
            unsigned char digest[16];
            char raw[16];
            md5_init(&state);
            md5_append(&state, reinterpret_cast<const unsigned char*>(data.data()), static_cast<int>(data.size()));
            md5_finish(&state, digest);
            Misc::calc_md5_hex(data.data(), static_cast<int>(data.size()), raw, sizeof raw);
            ASSERT_EQ(std::memcmp(raw, digest, sizeof digest), 0) << size;
            char hex[33];
            Misc::toHexString(digest, sizeof digest, hex, sizeof hex);
            ASSERT_EQ(md5Of(data.c_str()) == hex, data == text) << size;
        }
    }
}

TEST(MiscChecksum, GenpwSelectsEvenlySpacedDigits) {
    const std::string all = password("a", "b", "c", 33);
    ASSERT_EQ(all.size(), 33U);
    EXPECT_EQ(all[32], '\0');
    EXPECT_EQ(all.find_first_not_of("0123456789abcdef"), 32U);
    for (const int length : {1, 2, 4, 8, 16, 32}) {
        std::string expected;
        for (int i = 0; i < length; ++i)
            expected += all[static_cast<std::size_t>(i * 32 / length)];
        EXPECT_EQ(password("a", "b", "c", length + 1), expected + '\0') << length;
    }
}

TEST(MiscChecksum, GenpwFillsItsTemplateWithTheSecondThirdAndFirstText) {
    EXPECT_EQ(password("user", "serial", "day", 33).substr(0, 32), md5Of("hzserialwmdaygtuserk!"));
    EXPECT_NE(password("a", "b", "c", 33), password("b", "c", "a", 33));
    EXPECT_EQ(password("", "", "", 33).substr(0, 32), md5Of("hzwmgtk!"));
    EXPECT_EQ(password(nullptr, nullptr, nullptr, 33), password("", "", "", 33));
}

TEST(MiscChecksum, GenpwNeverOverrunsItsBuffer) {
    const std::string all = password("a", "b", "c", 33);
    for (int size = 0; size <= 70; ++size) {
        std::string out(80, '#');
        Misc::genpw("a", "b", "c", out.data(), size);
        EXPECT_EQ(out.substr(static_cast<std::size_t>(size)), std::string(80 - static_cast<std::size_t>(size), '#'))
            << size;
        if (size == 0)
            continue;
        const std::size_t length = std::strlen(out.c_str());
        EXPECT_EQ(length, std::min<std::size_t>(static_cast<std::size_t>(size) - 1, 32)) << size;
        const std::size_t step = size > 1 && size <= 33 ? 32 / (static_cast<std::size_t>(size) - 1) : 1;
        for (std::size_t i = 0; i < length; ++i)
            EXPECT_EQ(out[i], all[i * step]) << size << " " << i;
    }
    char untouched = '#';
    Misc::genpw("a", "b", "c", &untouched, -1);
    Misc::genpw("a", "b", "c", &untouched, INT_MIN);
    EXPECT_EQ(untouched, '#');
    Misc::genpw("a", "b", "c", nullptr, 9);
    Misc::genpw("a", "b", "c", &untouched, 1);
    EXPECT_EQ(untouched, '\0');
}

TEST(MiscChecksum, GenpwAcceptsTextsOf247CharactersInTotal) {
    const std::string most(245, 'x');
    char out[9] = "########";
    Misc::genpw("a", most.c_str(), "c", out, sizeof out);
    EXPECT_EQ(std::strlen(out), 8U);

    const std::string more(246, 'x');
    char untouched[9] = "########";
    EXPECT_FAILURE(Misc::genpw("a", more.c_str(), "c", untouched, sizeof untouched), 1239, "ut_PutStream",
                   "void utility::PutStream::PutF(const char*, ...)",
                   "Didn't fit. wrote=256 remaining=255 msg='hz%swm%sgt%sk!'");
    EXPECT_STREQ(untouched, "########");
    EXPECT_FAILURE(Misc::genpw(std::string(100000, 'x').c_str(), "b", "c", untouched, sizeof untouched), 1239,
                   "ut_PutStream", "void utility::PutStream::PutF(const char*, ...)",
                   "Didn't fit. wrote=100010 remaining=255 msg='hz%swm%sgt%sk!'");
}

} // namespace
