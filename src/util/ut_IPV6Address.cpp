#include "ut_IPV6Address.h"

#include <cctype>
#include <cstdint>
#include <cstring>

#include <arpa/inet.h>

#include "fw_Memory.h"
#include "internal/ut_WriteHead.h"
#include "ut_BufferStream.h"

namespace utility {

namespace {

constexpr unsigned int groupCount = 8;
constexpr std::size_t longestText = 65534; // its size with the terminator fits in 16 bits

// Independent of the locale: `inet_pton` refuses all letters but those of ASCII.
char upperCase(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

char* upperCaseCopy(const char* text, uint16_t length) {
    char* const copy = static_cast<char*>(framework::Memory::StaticAlloc(length + 1ul));
    if (copy == nullptr)
        return nullptr;
    for (uint16_t index = 0; index < length; ++index)
        copy[index] = upperCase(text[index]);
    copy[length] = 0;
    return copy;
}

} // namespace

IPV6Address::IPV6Address() : m_groups() {}

IPV6Address::IPV6Address(unsigned short g0, unsigned short g1, unsigned short g2, unsigned short g3, unsigned short g4,
                         unsigned short g5, unsigned short g6, unsigned short g7)
    : m_groups{htons(g0), htons(g1), htons(g2), htons(g3), htons(g4), htons(g5), htons(g6), htons(g7)} {}

IPV6Address::IPV6Address(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4,
                         unsigned char b5, unsigned char b6, unsigned char b7, unsigned char b8, unsigned char b9,
                         unsigned char b10, unsigned char b11, unsigned char b12, unsigned char b13, unsigned char b14,
                         unsigned char b15) {
    unsigned char bytes[] = {b0, b1, b2, b3, b4, b5, b6, b7, b8, b9, b10, b11, b12, b13, b14, b15};
    set(bytes);
}

IPV6Address::IPV6Address(unsigned short* groups) {
    std::memcpy(m_groups, groups, sizeof m_groups);
}

IPV6Address::IPV6Address(unsigned char* bytes) {
    set(bytes);
}

IPV6Address::IPV6Address(const char* text) {
    fromString(text);
}

bool IPV6Address::fromString(const char* text) {
    std::memset(m_groups, 0, sizeof m_groups);
    if (text == nullptr)
        return true;
    const std::size_t length = std::strlen(text);
    if (length > longestText)
        return false;
    char* const copy = upperCaseCopy(text, static_cast<uint16_t>(length));
    if (copy == nullptr)
        return false;
    const bool parsed = inet_pton(AF_INET6, copy, m_groups) > 0;
    framework::Memory::StaticFree(copy);
    return parsed;
}

char* IPV6Address::toBuffer(char* buf, unsigned int size) const {
    BufferStream stream(buf, static_cast<int>(size), false);
    toPutStream(stream);
    return buf;
}

void IPV6Address::toPutStream(PutStream& out) const {
    WriteHead head(out);
    inet_ntop(AF_INET6, m_groups, head.start(), head.capacity());
    head.advance(head.start());
}

void IPV6Address::set(IPV6Address* other) {
    if (other == nullptr)
        return;
    std::memmove(m_groups, other->m_groups, sizeof m_groups);
}

void IPV6Address::set(unsigned char* bytes) {
    std::memcpy(m_groups, bytes, sizeof m_groups);
}

unsigned short IPV6Address::getHexChunk(unsigned char i) {
    if (i >= groupCount)
        return 0;
    return m_groups[i];
}

bool IPV6Address::operator==(const IPV6Address& other) const {
    return compare(other) == 0;
}

bool IPV6Address::operator!=(const IPV6Address& other) const {
    return compare(other) != 0;
}

bool IPV6Address::operator>(const IPV6Address& other) const {
    return compare(other) > 0;
}

bool IPV6Address::operator<(const IPV6Address& other) const {
    return compare(other) < 0;
}

int IPV6Address::compare(const IPV6Address& other) const {
    return std::memcmp(m_groups, other.m_groups, sizeof m_groups);
}

unsigned int IPV6Address::hash(unsigned int mask) const {
    unsigned int sum = 0;
    for (unsigned int i = 0; i < groupCount - 1; ++i)
        sum += m_groups[i];
    return sum & mask;
}

bool IPV6Address::areZero(unsigned int groups) const {
    for (unsigned int i = 0; i < groups; ++i) {
        if (m_groups[i] != 0)
            return false;
    }
    return true;
}

bool IPV6Address::isV4() {
    return areZero(groupCount - 2) && !isZero();
}

bool IPV6Address::isValid() const {
    return !isZero();
}

bool IPV6Address::isZero() const {
    return areZero(groupCount);
}

} // namespace utility
