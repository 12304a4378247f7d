// Misc: checksums and digests.

#include "ut_Misc.h"

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "internal/ut_HexText.h"
#include "ut_BufferStream.h"
#include "ut_md5.h"

namespace utility {

// clang-format off
constexpr unsigned char Misc::m_crc_array[256] = {
    0x00, 0x5e, 0xbc, 0xe2, 0x61, 0x3f, 0xdd, 0x83, 0xc2, 0x9c, 0x7e, 0x20, 0xa3, 0xfd, 0x1f, 0x41,
    0x9d, 0xc3, 0x21, 0x7f, 0xfc, 0xa2, 0x40, 0x1e, 0x5f, 0x01, 0xe3, 0xbd, 0x3e, 0x60, 0x82, 0xdc,
    0x23, 0x7d, 0x9f, 0xc1, 0x42, 0x1c, 0xfe, 0xa0, 0xe1, 0xbf, 0x5d, 0x03, 0x80, 0xde, 0x3c, 0x62,
    0xbe, 0xe0, 0x02, 0x5c, 0xdf, 0x81, 0x63, 0x3d, 0x7c, 0x22, 0xc0, 0x9e, 0x1d, 0x43, 0xa1, 0xff,
    0x46, 0x18, 0xfa, 0xa4, 0x27, 0x79, 0x9b, 0xc5, 0x84, 0xda, 0x38, 0x66, 0xe5, 0xbb, 0x59, 0x07,
    0xdb, 0x85, 0x67, 0x39, 0xba, 0xe4, 0x06, 0x58, 0x19, 0x47, 0xa5, 0xfb, 0x78, 0x26, 0xc4, 0x9a,
    0x65, 0x3b, 0xd9, 0x87, 0x04, 0x5a, 0xb8, 0xe6, 0xa7, 0xf9, 0x1b, 0x45, 0xc6, 0x98, 0x7a, 0x24,
    0xf8, 0xa6, 0x44, 0x1a, 0x99, 0xc7, 0x25, 0x7b, 0x3a, 0x64, 0x86, 0xd8, 0x5b, 0x05, 0xe7, 0xb9,
    0x8c, 0xd2, 0x30, 0x6e, 0xed, 0xb3, 0x51, 0x0f, 0x4e, 0x10, 0xf2, 0xac, 0x2f, 0x71, 0x93, 0xcd,
    0x11, 0x4f, 0xad, 0xf3, 0x70, 0x2e, 0xcc, 0x92, 0xd3, 0x8d, 0x6f, 0x31, 0xb2, 0xec, 0x0e, 0x50,
    0xaf, 0xf1, 0x13, 0x4d, 0xce, 0x90, 0x72, 0x2c, 0x6d, 0x33, 0xd1, 0x8f, 0x0c, 0x52, 0xb0, 0xee,
    0x32, 0x6c, 0x8e, 0xd0, 0x53, 0x0d, 0xef, 0xb1, 0xf0, 0xae, 0x4c, 0x12, 0x91, 0xcf, 0x2d, 0x73,
    0xca, 0x94, 0x76, 0x28, 0xab, 0xf5, 0x17, 0x49, 0x08, 0x56, 0xb4, 0xea, 0x69, 0x37, 0xd5, 0x8b,
    0x57, 0x09, 0xeb, 0xb5, 0x36, 0x68, 0x8a, 0xd4, 0x95, 0xcb, 0x29, 0x77, 0xf4, 0xaa, 0x48, 0x16,
    0xe9, 0xb7, 0x55, 0x0b, 0x88, 0xd6, 0x34, 0x6a, 0x2b, 0x75, 0x97, 0xc9, 0x4a, 0x14, 0xf6, 0xa8,
    0x74, 0x2a, 0xc8, 0x96, 0x15, 0x4b, 0xa9, 0xf7, 0xb6, 0xe8, 0x0a, 0x54, 0xd7, 0x89, 0x6b, 0x35,
};
// clang-format on

namespace {

constexpr std::size_t crcStride = 8;

// Slicing-by-8: `entries[n][i]` is the remainder of `i` followed by `n` zero bytes.
struct CrcTables {
    unsigned char entries[crcStride][256] = {};

    constexpr explicit CrcTables(const unsigned char (&first)[256]) {
        for (std::size_t i = 0; i < 256; ++i) {
            unsigned char crc = first[i];
            for (std::size_t n = 0; n < crcStride; ++n) {
                entries[n][i] = crc;
                crc = first[crc];
            }
        }
    }
};

constexpr CrcTables crcTables(Misc::m_crc_array);

// Whether appending `bytes` zero bytes leaves every remainder unchanged.
constexpr bool isCrcPeriod(const unsigned char (&table)[256], std::size_t bytes) {
    for (unsigned int i = 0; i < 256; ++i) {
        unsigned int crc = i;
        for (std::size_t n = 0; n < bytes; ++n)
            crc = table[crc];
        if (crc != i)
            return false;
    }
    return true;
}

// Bytes at a distance of a multiple of the period have the same effect on the remainder, so they can be combined by
// exclusive or. The same holds for strides, so long data is folded into one block of `crcPeriod` strides.
constexpr std::size_t crcPeriod = 127;
static_assert(isCrcPeriod(Misc::m_crc_array, crcPeriod), "long data may not be folded");

// Unrolled, because most callers have short records.
inline unsigned char crcOfFewBytes(const unsigned char* bytes, int length, unsigned char crc) {
    const unsigned char* const table = crcTables.entries[0];
    if (length < 1)
        return crc;
    crc = table[crc ^ bytes[0]];
    if (length < 2)
        return crc;
    crc = table[crc ^ bytes[1]];
    if (length < 3)
        return crc;
    crc = table[crc ^ bytes[2]];
    return length < 4 ? crc : table[crc ^ bytes[3]];
}

// The remainder of the first `length` % 8 bytes, which leaves whole strides. Advances `b` past them.
inline unsigned char crcOfSingleBytes(const unsigned char*& b, std::size_t length, unsigned char crc) {
    const auto& t = crcTables.entries;
    if ((length & 1) != 0) {
        crc = t[0][crc ^ b[0]];
        b += 1;
    }
    if ((length & 2) != 0) {
        crc = static_cast<unsigned char>(t[1][crc ^ b[0]] ^ t[0][b[1]]);
        b += 2;
    }
    if ((length & 4) != 0) {
        crc = static_cast<unsigned char>(t[3][crc ^ b[0]] ^ t[2][b[1]] ^ t[1][b[2]] ^ t[0][b[3]]);
        b += 4;
    }
    return crc;
}

[[gnu::noinline]] unsigned char crcOfStrides(const unsigned char* b, std::size_t strides, unsigned char crc) {
    const auto& t = crcTables.entries;
    for (; strides > 0; --strides, b += crcStride) {
        // Only one lookup depends on the previous remainder.
        const int others = t[6][b[1]] ^ t[5][b[2]] ^ t[4][b[3]] ^ t[3][b[4]] ^ t[2][b[5]] ^ t[1][b[6]] ^ t[0][b[7]];
        crc = static_cast<unsigned char>(t[7][crc ^ b[0]] ^ others);
    }
    return crc;
}

[[gnu::noinline]] unsigned char crcOfManyStrides(const unsigned char* bytes, std::size_t strides, unsigned char crc) {
    uint64_t folded[crcPeriod] = {};
    static_assert(sizeof folded[0] == crcStride);
    for (; strides >= crcPeriod; strides -= crcPeriod) {
        // Unrolled, because the speed of so short a loop depends on its alignment.
#pragma GCC unroll 8
        for (uint64_t& word : folded) {
            uint64_t next;
            std::memcpy(&next, bytes, sizeof next);
            word ^= next;
            bytes += crcStride;
        }
    }
    unsigned char block[sizeof folded];
    std::memcpy(block, folded, sizeof block);
    return crcOfStrides(bytes, strides, crcOfStrides(block, crcPeriod, crc));
}

void md5(const char* data, std::size_t length, unsigned char (&digest)[16]) {
    md5_state_t state;
    md5_init(&state);
    for (std::size_t done = 0; data != nullptr && done < length;) {
        const std::size_t piece = std::min<std::size_t>(length - done, INT_MAX);
        md5_append(&state, reinterpret_cast<const unsigned char*>(data) + done, static_cast<int>(piece));
        done += piece;
    }
    md5_finish(&state, digest);
}

const char* textOrEmpty(const char* text) {
    return text != nullptr ? text : "";
}

constexpr char passwordTemplate[] = "hz%swm%sgt%sk!";
constexpr int hexDigits = 32;

} // namespace

unsigned char Misc::crc_table(int byte, unsigned char crc) {
    return m_crc_array[(crc ^ byte) & 0xFF];
}

unsigned char Misc::calc_crc(char* data, int len) {
    const unsigned char begin = 0xFF;
    const unsigned char* bytes = reinterpret_cast<const unsigned char*>(data);
    if (data == nullptr)
        return begin;
    if (len <= 4)
        return crcOfFewBytes(bytes, len, begin);
    const std::size_t length = static_cast<std::size_t>(len);
    const std::size_t strides = length / crcStride;
    const unsigned char crc = crcOfSingleBytes(bytes, length, begin);
    if (strides == 0)
        return crc;
    return strides < 2 * crcPeriod ? crcOfStrides(bytes, strides, crc) : crcOfManyStrides(bytes, strides, crc);
}

int Misc::calc_md5(const char* text, char* out, int size) {
    unsigned char digest[16];
    md5(text, text != nullptr ? std::strlen(text) : 0, digest);
    if (out != nullptr && size > 0) {
        char hex[hexDigits];
        writeHexText(digest, sizeof digest, hex);
        const int length = std::min(size - 1, hexDigits);
        std::memcpy(out, hex, static_cast<std::size_t>(length));
        out[length] = 0;
    }
    return 2; // the length of one byte's text, which callers rely on
}

char* Misc::calc_md5_hex(const char* data, int len, char* out, int size) {
    unsigned char digest[16];
    md5(data, static_cast<std::size_t>(std::max(len, 0)), digest);
    if (out != nullptr && size > 0)
        std::memcpy(out, digest, std::min(static_cast<std::size_t>(size), sizeof digest));
    return out;
}

void Misc::genpw(const char* a, const char* b, const char* c, char* out, int size) {
    char text[256];
    BufferStream stream(text, sizeof text, false);
    stream.PutF(passwordTemplate, textOrEmpty(b), textOrEmpty(c), textOrEmpty(a));
    char hex[hexDigits + 1];
    calc_md5(text, hex, sizeof hex);

    if (out == nullptr || size < 1)
        return;
    const int length = size - 1;
    const int step = length > 0 ? std::max(hexDigits / length, 1) : hexDigits;
    int written = 0;
    for (int i = 0; i < hexDigits && written < length; i += step)
        out[written++] = hex[i];
    out[written] = 0;
}

} // namespace utility
