// Misc: numbers as text and back, addresses, sleeping. Checksums are in ut_MiscChecksum.cpp, texts in ut_MiscText.cpp.

#include "ut_Misc.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <iterator>
#include <limits>

#include <unistd.h>

#include "fw_Exception.h"
#include "internal/ut_HexText.h"
#include "internal/ut_WholeText.h"
#include "ut_BufferStream.h"
#include "ut_Debug.h"

namespace utility {

namespace {

unsigned int capacityOf(int size) {
    return static_cast<unsigned int>(std::max(size, 0));
}

void putHexDigit(BoundedText& text, unsigned long long v) {
    text.put(Debug::hexChar(static_cast<char>(v & 15)));
}

char* writeHex(unsigned long long v, int digits, bool leadingZeros, char* buf, int size) {
    BoundedText text(buf, capacityOf(size));
    bool started = leadingZeros && v != 0;
    for (int i = digits - 1; i >= 0; --i) {
        const unsigned long long digit = v >> (4 * i) & 15;
        started = started || digit != 0 || i == 0;
        if (started)
            putHexDigit(text, digit);
    }
    text.put(0);
    return buf;
}

template<typename Value>
Value fromHexString(const char* text) {
    Value value = 0;
    for (; text != nullptr && *text != 0; ++text) {
        const unsigned char digit = static_cast<unsigned char>(Debug::hexFromChar(*text));
        value = static_cast<Value>(value << 4 | digit);
    }
    return value;
}

constexpr const char* capacityUnits[] = {" EB", " PB", " TB", " GB", " MB", " kB", ""};
constexpr int noUnit = 6;
constexpr int allDigits = std::numeric_limits<int>::max();

// The absolute value, also of the most negative number.
unsigned long long magnitude(long long v) {
    const unsigned long long bits = static_cast<unsigned long long>(v);
    return v < 0 ? 0 - bits : bits;
}

// The longest text: a sign, nineteen digits in seven groups, and a NUL.
constexpr std::size_t longestNumber = 32;

// Writes the first `digits` decimal digits of `v`, which is not 0, in groups of three, and moves `at` past them. Writes
// ',' before a group that is shown whole, and '.' before one that is not. Returns the index of the unit of what is
// before the '.'.
int writeDigits(char*& at, unsigned long long v, int digits) {
    char number[std::numeric_limits<unsigned long long>::digits10 + 1];
    const int length = static_cast<int>(std::to_chars(number, std::end(number), v).ptr - number);
    int unit = noUnit - (length - 1) / 3;
    for (int i = 0; i < std::min(digits, length); ++i) {
        const bool startsGroup = i > 0 && (length - i) % 3 == 0;
        const bool isWhole = digits - i >= 3;
        if (startsGroup)
            *at++ = isWhole ? ',' : '.';
        if (startsGroup && isWhole)
            ++unit;
        *at++ = number[i];
    }
    return unit;
}

} // namespace

unsigned int Misc::makePowerOf2(unsigned int n) {
    --n;
    n |= n >> 1;
    n |= n >> 2;
    n |= n >> 4;
    n |= n >> 8;
    n |= n >> 16;
    return n + 1;
}

char* Misc::toHexString(unsigned long long v, bool leadingZeros, char* buf, int size) {
    return writeHex(v, 16, leadingZeros, buf, size);
}

char* Misc::toHexString(unsigned int v, bool leadingZeros, char* buf, int size) {
    return writeHex(v, 8, leadingZeros, buf, size);
}

char* Misc::toHexString(unsigned short v, bool leadingZeros, char* buf, int size) {
    return writeHex(v, 4, leadingZeros, buf, size);
}

char* Misc::toHexString(unsigned char v, bool leadingZeros, char* buf, int size) {
    BoundedText text(buf, capacityOf(size));
    if (v > 15 || leadingZeros)
        putHexDigit(text, v >> 4);
    putHexDigit(text, v);
    text.put(0);
    return buf;
}

char* Misc::toHexString(unsigned char* bytes, int count, char* buf, int size) {
    if (bytes != nullptr && buf != nullptr && count > 0 && size > 0 && count <= (size - 1) / 2) {
        // The stream below also clears the last byte of the array.
        buf[size - 1] = 0;
        writeHexText(bytes, static_cast<std::size_t>(count), buf);
        buf[2 * count] = 0;
        return buf;
    }
    try {
        PutStream out(buf, size);
        for (int i = 0; bytes != nullptr && i < count; ++i)
            out.PutF("%02x", bytes[i]);
    } catch (framework::Exception* failure) {
        delete failure;
        return nullptr;
    }
    return buf;
}

bool Misc::isValidHexNumber(const char* text) {
    if (text == nullptr)
        return false;
    if (text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
        text += 2;
    while (isHexChar(*text) && *text != 0)
        ++text;
    return *text == 0;
}

bool Misc::isHexChar(char c) {
    const unsigned char value = static_cast<unsigned char>(c);
    return value <= 'A' || (value >= 'a' && value <= 'f');
}

uint8_t Misc::uint8FromHexString(const char* text) {
    return fromHexString<uint8_t>(text);
}

uint16_t Misc::uint16FromHexString(const char* text) {
    return fromHexString<uint16_t>(text);
}

unsigned int Misc::uint32FromHexString(const char* text) {
    return fromHexString<unsigned int>(text);
}

unsigned long long Misc::uint64FromHexString(const char* text) {
    return fromHexString<unsigned long long>(text);
}

char* Misc::toDecimal(long v, char* buf, int size) {
    return toDecimal(static_cast<long long>(v), buf, size);
}

char* Misc::toDecimal(long long v, char* buf, int size) {
    BufferStream out(buf, size, false);
    if (v == 0) {
        out.PutC('0');
        return buf;
    }
    char text[longestNumber];
    char* end = text;
    if (v < 0)
        *end++ = '-';
    writeDigits(end, magnitude(v), allDigits);
    *end++ = 0;
    putCharacters(out, text, static_cast<std::size_t>(end - text));
    return buf;
}

char* Misc::toDSdecimal(long v, int digits, char* buf, int size) {
    return toDSdecimal(static_cast<long long>(v), digits, buf, size);
}

char* Misc::toDSdecimal(long long v, int digits, char* buf, int size) {
    BufferStream out(buf, size, false);
    char text[longestNumber];
    char* end = text;
    int unit = noUnit;
    if (v == 0) {
        *end++ = '0';
    } else {
        if (v < 0)
            *end++ = '-';
        unit = writeDigits(end, magnitude(v), std::max(digits, 3));
    }
    putCharacters(out, text, static_cast<std::size_t>(end - text));
    const char* const suffix = capacityUnits[unit];
    if (!putWhole(out, suffix, std::strlen(suffix)))
        out.PutF("%s", suffix);
    return buf;
}

char* Misc::toIPV4String(unsigned int addr, char* buf, int size) {
    try {
        BufferStream out(buf, size, false);
        out.PutF("%u.%u.%u.%u", addr & 255, addr >> 8 & 255, addr >> 16 & 255, addr >> 24);
    } catch (framework::Exception* failure) {
        delete failure;
        return nullptr;
    }
    return buf;
}

char* Misc::toMacAddress(unsigned long long v, char* buf, int size) {
    BoundedText text(buf, capacityOf(size));
    for (int shift = 40; shift >= 0; shift -= 8) {
        putHexDigit(text, v >> (shift + 4));
        putHexDigit(text, v >> shift);
        text.put(shift > 0 ? ':' : '\0');
    }
    return buf;
}

unsigned long long Misc::uint64FromMACAddress(unsigned char* mac) {
    unsigned long long value = 0;
    for (int i = 0; mac != nullptr && i < 6; ++i)
        value = value << 8 | mac[i];
    return value;
}

void Misc::sleepSeconds(unsigned int s) {
    sleep(s);
}

void Misc::sleepMicroseconds(unsigned long long us) {
    const unsigned long long longest = static_cast<unsigned long long>(std::numeric_limits<time_t>::max());
    timespec span = {};
    span.tv_sec = static_cast<time_t>(std::min(us / 1000000, longest));
    span.tv_nsec = static_cast<long>(us % 1000000 * 1000);
    nanosleep(&span, nullptr);
}

int Misc::getErrnoMsg(char* buf, unsigned int size) {
    const int error = errno;
    if (buf == nullptr || size < 1)
        return error;
    buf[0] = 0;
    if (error == 0)
        return 0;
    // The GNU version may return a constant text and leave the buffer unused.
    const char* text = strerror_r(error, buf, size);
    if (text != buf)
        std::snprintf(buf, size, "%s", text);
    return error;
}

} // namespace utility
