#include "ut_WWN.h"

#include <cstring>

#include "internal/ut_HexText.h"
#include "internal/ut_WholeText.h"
#include "ut_PutStream.h"

namespace utility {

const char WWN::m_hexChar[17] = "0123456789abcdef";

WWN::WWN() : m_bytes() {}

WWN::WWN(const char* text) : m_bytes() {
    fromString(text);
}

WWN::WWN(unsigned char* bytes) {
    fromBinary(bytes);
}

void WWN::fromBinary(unsigned char* bytes) {
    std::memcpy(m_bytes, bytes, sizeof m_bytes);
}

bool WWN::fromString(const char* text) {
    return readHexText(text, m_bytes, sizeof m_bytes);
}

char* WWN::toBuffer(char* buf, unsigned int size) const {
    BoundedText text(buf, size);
    for (const unsigned char byte : m_bytes)
        text.putByte(byte, m_hexChar);
    text.put(0);
    return buf;
}

void WWN::toPutStream(PutStream& out) const {
    char text[2 * sizeof m_bytes];
    writeHexText(m_bytes, sizeof m_bytes, text);
    putCharacters(out, text, sizeof text);
}

bool WWN::operator==(const WWN& other) const {
    return compare(other) == 0;
}

bool WWN::operator!=(const WWN& other) const {
    return compare(other) != 0;
}

bool WWN::operator>(const WWN& other) const {
    return compare(other) > 0;
}

bool WWN::operator<(const WWN& other) const {
    return compare(other) < 0;
}

int WWN::compare(const WWN& other) const {
    return std::memcmp(m_bytes, other.m_bytes, sizeof m_bytes);
}

unsigned int WWN::hash(unsigned int mask) const {
    unsigned int sum = 0;
    for (const unsigned char byte : m_bytes)
        sum += byte;
    return sum & mask;
}

bool WWN::isWWN(const char* text) {
    WWN name;
    return text != nullptr && name.fromString(text) && text[2 * sizeof name.m_bytes] == 0;
}

} // namespace utility
