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

} // namespace utility
