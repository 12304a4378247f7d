#include "ut_IPV4Address.h"

#include <charconv>
#include <cstring>
#include <iterator>

#include <arpa/inet.h>

#include "internal/ut_WholeText.h"
#include "ut_BufferStream.h"

namespace utility {

static_assert(sizeof(unsigned int) == 4, "an address is one word");

IPV4Address::IPV4Address() {
    set(0);
}

IPV4Address::IPV4Address(unsigned int word) {
    set(word);
}

IPV4Address::IPV4Address(unsigned char* bytes) {
    std::memcpy(m_bytes, bytes, sizeof m_bytes);
}

IPV4Address::IPV4Address(const char* text) {
    fromString(text);
}

bool IPV4Address::fromString(const char* text) {
    return text != nullptr && inet_pton(AF_INET, text, m_bytes) >= 1;
}

char* IPV4Address::toBuffer(char* buf, unsigned int size) const {
    BufferStream stream(buf, static_cast<int>(size), false);
    toPutStream(stream);
    return buf;
}

void IPV4Address::toPutStream(PutStream& out) const {
    char text[sizeof "255.255.255.255"];
    char* end = text;
    for (const unsigned char byte : m_bytes) {
        end = std::to_chars(end, std::end(text), byte).ptr;
        *end++ = '.';
    }
    const std::size_t length = static_cast<std::size_t>(end - text) - 1; // without the last '.'
    if (!putWhole(out, text, length))
        out.PutF("%d.%d.%d.%d", m_bytes[0], m_bytes[1], m_bytes[2], m_bytes[3]);
}

void IPV4Address::toArray(unsigned char* out) {
    std::memcpy(out, m_bytes, sizeof m_bytes);
}

bool IPV4Address::isValid() const {
    return m_bytes[0] != 0;
}

bool IPV4Address::isZero() const {
    return getValue() == 0;
}

unsigned int IPV4Address::getValue() const {
    unsigned int word;
    std::memcpy(&word, m_bytes, sizeof word);
    return word;
}

void IPV4Address::set(unsigned int word) {
    std::memcpy(m_bytes, &word, sizeof m_bytes);
}

void IPV4Address::set(unsigned char a, unsigned char b, unsigned char c, unsigned char d) {
    m_bytes[0] = a;
    m_bytes[1] = b;
    m_bytes[2] = c;
    m_bytes[3] = d;
}

bool IPV4Address::operator==(const IPV4Address& other) const {
    return std::memcmp(m_bytes, other.m_bytes, sizeof m_bytes) == 0;
}

bool IPV4Address::operator!=(const IPV4Address& other) const {
    return !(*this == other);
}

} // namespace utility
