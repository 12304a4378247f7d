#include "internal/ut_HexText.h"

#include <cstring>

namespace utility {

namespace {

int digitValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

// The two digits of each byte.
struct DigitPairs {
    char pairs[256][2] = {};

    constexpr DigitPairs() {
        const char digits[] = "0123456789abcdef";
        for (int byte = 0; byte < 256; ++byte) {
            pairs[byte][0] = digits[byte >> 4];
            pairs[byte][1] = digits[byte & 15];
        }
    }
};

constexpr DigitPairs digitPairs;

} // namespace

bool readHexText(const char* text, unsigned char* bytes, unsigned int count) {
    if (text == nullptr) {
        std::memset(bytes, 0, count);
        return true;
    }
    for (unsigned int digit = 0; digit < 2 * count; ++digit) {
        const int value = digitValue(text[digit]);
        if (value < 0)
            return false;
        unsigned char& byte = bytes[digit / 2];
        byte = static_cast<unsigned char>(digit % 2 == 0 ? value << 4 : byte | value);
    }
    return true;
}

void writeHexText(const unsigned char* bytes, std::size_t count, char* text) {
    for (std::size_t i = 0; i < count; ++i)
        std::memcpy(text + 2 * i, digitPairs.pairs[bytes[i]], 2);
}

} // namespace utility
