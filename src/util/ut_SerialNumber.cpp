#include "ut_SerialNumber.h"

#include <algorithm>
#include <cstring>

#include "internal/ut_HexText.h"
#include "internal/ut_WholeText.h"
#include "ut_Misc.h"
#include "ut_PutStream.h"

namespace utility {

namespace {

constexpr unsigned char shortForm[] = {3, 4, 5, 8, 9, 10, 11, 12};

bool hasPrefix(const char* text) {
    return text[0] == '0' && text[1] == '0' && (text[2] == 'C' || text[2] == 'c') && text[3] == '0' &&
           (text[4] == 'F' || text[4] == 'f') && (text[5] == 'F' || text[5] == 'f');
}

} // namespace

const char SerialNumber::m_hexChar[17] = "0123456789abcdef";

SerialNumber::SerialNumber(const char* text) : m_bytes() {
    fromString(text);
}

SerialNumber::SerialNumber(unsigned char* bytes) {
    set(bytes);
}

void SerialNumber::set(unsigned char* bytes) {
    std::memcpy(m_bytes, bytes, sizeof m_bytes);
}

void SerialNumber::toByteArray(unsigned char* out) const {
    std::memcpy(out, m_bytes, sizeof m_bytes);
}

bool SerialNumber::fromString(const char* text) {
    return readHexText(text, m_bytes, sizeof m_bytes);
}

char* SerialNumber::toBuffer(char* buf, unsigned int size) const {
    BoundedText text(buf, size);
    for (const unsigned char byte : m_bytes)
        text.putByte(byte, m_hexChar);
    text.put(0);
    return buf;
}

void SerialNumber::toPutStream(PutStream& out) const {
    char text[2 * sizeof m_bytes];
    writeHexText(m_bytes, sizeof m_bytes, text);
    putCharacters(out, text, sizeof text);
}

char* SerialNumber::toShortBuffer(char* buf, unsigned int size) const {
    BoundedText text(buf, size);
    for (const unsigned char index : shortForm)
        text.putByte(m_bytes[index], m_hexChar);
    text.put(0);
    return buf;
}

void SerialNumber::toShortPutStream(PutStream& out) const {
    char text[2 * sizeof shortForm];
    BoundedText bounded(text, sizeof text);
    for (const unsigned char index : shortForm)
        bounded.putByte(m_bytes[index], m_hexChar);
    putCharacters(out, text, sizeof text);
}

bool SerialNumber::isValid() const {
    return m_bytes[0] == 0x00 && m_bytes[1] == 0xC0 && m_bytes[2] == 0xFF && m_bytes[13] == 0x00 &&
           m_bytes[14] == 0x00 && m_bytes[15] == 0x00;
}

bool SerialNumber::operator==(const SerialNumber& other) const {
    return compare(other) == 0;
}

bool SerialNumber::operator!=(const SerialNumber& other) const {
    return compare(other) != 0;
}

bool SerialNumber::operator>(const SerialNumber& other) const {
    return compare(other) > 0;
}

bool SerialNumber::operator<(const SerialNumber& other) const {
    return compare(other) < 0;
}

bool SerialNumber::operator>=(const SerialNumber& other) const {
    return compare(other) >= 0;
}

bool SerialNumber::operator<=(const SerialNumber& other) const {
    return compare(other) <= 0;
}

int SerialNumber::compare(const SerialNumber& other) const {
    return std::memcmp(m_bytes, other.m_bytes, sizeof m_bytes);
}

unsigned int SerialNumber::hash(unsigned int mask) const {
    unsigned int sum = 0;
    for (unsigned int i = 8; i <= 12; ++i)
        sum += m_bytes[i];
    return sum & mask;
}

bool SerialNumber::isSerialNumber(const char* text) {
    if (text == nullptr || strnlen(text, 33) != 32 || !hasPrefix(text))
        return false;
    // Callers rely on characters 14 and 15 not being checked.
    return std::all_of(text + 6, text + 14, Misc::isHexChar) && std::all_of(text + 16, text + 26, Misc::isHexChar) &&
           std::all_of(text + 26, text + 32, [](char c) { return c == '0'; });
}

} // namespace utility
