#include "ut_URL.h"

#include <climits>
#include <cstring>

#include "ut_BufferStream.h"
#include "ut_Debug.h"
#include "ut_GetStream.h"

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

unsigned int endOfPart(const char* text, unsigned int start, const char* delimiters) {
    return start + static_cast<unsigned int>(std::strcspn(text + start, delimiters));
}

// The byte of an escape. A character that is not a hexadecimal digit has the value 255.
char byteOfDigits(char high, char low) {
    const unsigned int value = static_cast<unsigned char>(Debug::hexFromChar(high)) * 16U |
                               static_cast<unsigned char>(Debug::hexFromChar(low));
    return static_cast<char>(value & 0xFF);
}

// Reads a character, or an escape ("%" and two digits) as the byte that it encodes. Returns false at the end of the
// text, including in the middle of an escape.
bool readDecoded(GetStream& in, char* c) {
    if (!in.GetC(c))
        return false;
    if (*c != '%')
        return true;
    char high = 0;
    char low = 0;
    if (!in.GetC(&high) || !in.GetC(&low))
        return false;
    *c = byteOfDigits(high, low);
    return true;
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
            at = endOfPart(text, start, "?/");
            m_authority = decodeAndAlloc(text + start, at - start);
        }
        if (text[at] == '/') {
            const unsigned int start = at;
            at = endOfPart(text, start, "?");
            m_path = decodeAndAlloc(text + start, at - start);
        }
    }
    if (at >= length)
        return;
    const unsigned int end = endOfPart(text, at, "?");
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
    GetStream in(text, static_cast<int>(length));
    in.WriteAdvance(static_cast<int>(length));
    BufferStream out(work, static_cast<int>(length + 1), false);
    for (char c = 0; readDecoded(in, &c);)
        out.PutC(c);
    char* const copy = m_pool.AllocString(work, static_cast<unsigned int>(out.ReadAvailable()));
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
