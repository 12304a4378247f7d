#include "ut_URL.h"

#include <climits>
#include <cstring>

#include "ut_Debug.h"

namespace utility {

namespace {

constexpr unsigned int poolBlockSize = 2048;
constexpr unsigned int poolBlockCount = 20;

bool isLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool isSchemeMark(char c) {
    return c == '+' || c == '-' || c == '.' || (c >= '0' && c <= '9');
}

// The index of the first "?" or NUL from `start` on.
unsigned int endOfPath(const char* text, unsigned int start) {
    return start + static_cast<unsigned int>(std::strcspn(text + start, "?"));
}

unsigned int endOfAuthority(const char* text, unsigned int start) {
    unsigned int end = start;
    while (text[end] != 0 && text[end] != '?' && text[end] != '/')
        ++end;
    return end;
}

// The byte of an escape. A character that is not a hexadecimal digit has the value 255.
char byteOfDigits(char high, char low) {
    const unsigned int value = static_cast<unsigned char>(Debug::hexFromChar(high)) * 16U |
                               static_cast<unsigned char>(Debug::hexFromChar(low));
    return static_cast<char>(value & 0xFF);
}

// Decodes `text` up to `end` into `out`, which is at least as long. An escape is "%" and two digits; one that is
// truncated ends the text. Returns the number of decoded bytes.
unsigned int decode(const char* text, const char* end, char* out) {
    char* at = out;
    while (true) {
        const std::size_t left = static_cast<std::size_t>(end - text);
        const char* const escape = static_cast<const char*>(std::memchr(text, '%', left));
        const std::size_t plain = escape != nullptr ? static_cast<std::size_t>(escape - text) : left;
        std::memcpy(at, text, plain);
        at += plain;
        if (left - plain < 3)
            break;
        *at++ = byteOfDigits(escape[1], escape[2]);
        text = escape + 3;
    }
    return static_cast<unsigned int>(at - out);
}

std::size_t lengthOf(const char* part) {
    return part != nullptr ? std::strlen(part) : 0;
}

} // namespace

URL::URL(const char* scheme, const char* authority, const char* path, const char* query)
    : m_pool(poolBlockSize, poolBlockCount),
      m_scheme(nullptr),
      m_authority(nullptr),
      m_path(nullptr),
      m_query(nullptr),
      m_value(nullptr) {
    SetScheme(scheme);
    SetAuthority(authority);
    SetPath(path);
    SetQuery(query);
}

URL::URL(const char* text) : URL(nullptr, nullptr, nullptr, nullptr) {
    SetURL(text);
}

URL::URL(const URL& other)
    : framework::Entity(other),
      framework::Item(other),
      m_pool(poolBlockSize, poolBlockCount),
      m_scheme(nullptr),
      m_authority(nullptr),
      m_path(nullptr),
      m_query(nullptr),
      m_value(nullptr) {
    *this = other;
}

URL& URL::operator=(const URL& other) {
    if (this == &other)
        return *this;
    clear();
    SetScheme(other.m_scheme);
    SetAuthority(other.m_authority);
    SetPath(other.m_path);
    SetQuery(other.m_query);
    m_value = nullptr;
    return *this;
}

URL::~URL() = default;

void URL::clear() {
    m_pool.reset();
    m_scheme = nullptr;
    m_authority = nullptr;
    m_path = nullptr;
    m_query = nullptr;
}

void URL::SetScheme(const char* scheme) {
    if (scheme != nullptr)
        m_scheme = m_pool.AllocString(scheme);
}

void URL::SetAuthority(const char* authority) {
    if (authority != nullptr)
        m_authority = m_pool.AllocString(authority);
}

void URL::SetPath(const char* path) {
    if (path != nullptr)
        m_path = m_pool.AllocString(path);
}

void URL::SetQuery(const char* query) {
    if (query != nullptr)
        m_query = m_pool.AllocString(query);
}

// Sets the scheme, if there is one, and returns the index after its ':'; else 0.
unsigned int URL::parseScheme(const char* text, unsigned int length) {
    for (unsigned int i = 0; i < length; ++i) {
        if (isLetter(text[i]) || (i > 0 && isSchemeMark(text[i])))
            continue;
        if (text[i] != ':' || i == 0)
            return 0;
        m_scheme = decodeAndAlloc(text, i);
        return i + 1;
    }
    return 0;
}

void URL::SetURL(const char* text) {
    if (text == nullptr)
        return;
    const unsigned int length = static_cast<unsigned int>(std::strlen(text));
    unsigned int at = parseScheme(text, length);
    if (text[at] == '/') {
        if (text[at + 1] == '/') {
            const unsigned int start = at + 2;
            at = endOfAuthority(text, start);
            m_authority = decodeAndAlloc(text + start, at - start);
        }
        if (text[at] == '/') {
            const unsigned int start = at;
            at = endOfPath(text, start);
            m_path = decodeAndAlloc(text + start, at - start);
        }
    }
    if (at >= length)
        return;
    const unsigned int end = endOfPath(text, at);
    if (end > at)
        m_path = decodeAndAlloc(text + at, end - at);
    if (text[end] == '?')
        m_query = decodeAndAlloc(text + end + 1, length - end - 1);
}

char* URL::decodeAndAlloc(const char* text, unsigned int length) {
    if (text == nullptr || length == 0 || length >= INT_MAX)
        return nullptr;
    char block[256];
    char* const work = length < sizeof block ? block : static_cast<char*>(Alloc(length + 1UL));
    if (work == nullptr)
        return nullptr;
    char* const copy = m_pool.AllocString(work, decode(text, text + length, work));
    if (work != block)
        Free(work);
    return copy;
}

char* URL::GetValue() {
    const std::size_t length = lengthOf(m_scheme) + lengthOf(m_authority) + lengthOf(m_path) + lengthOf(m_query);
    if (length == 0)
        return nullptr;
    const std::size_t size = length + 5;
    m_value = static_cast<char*>(m_pool.Alloc(size));
    if (m_value == nullptr)
        return nullptr;
    char* at = m_value;
    const auto put = [&at](const char* text) {
        at = stpcpy(at, text);
    };
    *at = 0;
    if (m_scheme != nullptr) {
        put(m_scheme);
        put(":");
    }
    if (m_authority != nullptr) {
        put("//");
        put(m_authority);
    }
    if (m_path != nullptr)
        put(m_path);
    if (m_query != nullptr) {
        put("?");
        put(m_query);
    }
    return m_value;
}

} // namespace utility
