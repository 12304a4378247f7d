#include "ut_Options.h"

#include <cstdlib>
#include <cstring>

#include <strings.h>

#include "fw_KnownTokens.h"
#include "fw_StableStringRepository.h"
#include "ut_PutStream.h"

namespace utility {

namespace {

constexpr unsigned int poolBlockSize = 2048;
constexpr unsigned int poolBlockCount = 20;
constexpr stringtoken continuationKey = strings::TOKEN_UNDEFINED;
constexpr char noValue[1] = {0};

// Terminates `text` at the first `separator` and returns the text after it; null if there is no separator.
char* splitAt(char* text, char separator) {
    char* at = std::strchr(text, separator);
    if (at == nullptr)
        return nullptr;
    *at = 0;
    return at + 1;
}

} // namespace

Options::Options() : m_pool(poolBlockSize, poolBlockCount), m_count(0), m_keys(), m_values() {}

Options::~Options() = default;

void Options::clear() {
    m_count = 0;
    m_pool.reset();
}

void Options::set(char* text) {
    if (text == nullptr || *text == 0)
        return;
    for (char* item = m_pool.AllocString(text); item != nullptr;) {
        char* next = splitAt(item, '&');
        setItem(item);
        item = next;
    }
}

void Options::setItem(char* item) {
    char* value = splitAt(item, '=');
    const stringtoken key = strings::GS.toToken(item);
    if (value == nullptr)
        addOption(key, nullptr);
    while (value != nullptr) {
        char* next = splitAt(value, ',');
        addOption(key, value);
        value = next;
    }
}

void Options::addOption(unsigned int key, const char* value) {
    if (m_count >= largestCount)
        return;
    m_keys[m_count] = key;
    m_values[m_count] = m_pool.AllocString(value);
    ++m_count;
}

void Options::setOption(unsigned int key, const char* value, unsigned int index) {
    const unsigned int i = indexOf(key, index);
    if (i < m_count) {
        m_values[i] = m_pool.AllocString(value);
    } else {
        addOption(key, value);
    }
}

void Options::deleteOption(unsigned int key) {
    for (unsigned int i = m_count; i-- > 0;) {
        if (m_keys[i] == key)
            removeAt(i);
    }
}

void Options::deleteOption(unsigned int key, const char* value) {
    if (value == nullptr)
        return;
    for (unsigned int i = m_count; i-- > 0;) {
        if (m_keys[i] == key && m_values[i] != nullptr && std::strcmp(m_values[i], value) == 0)
            removeAt(i);
    }
}

void Options::removeAt(unsigned int i) {
    --m_count;
    for (; i < m_count; ++i) {
        m_keys[i] = m_keys[i + 1];
        m_values[i] = m_values[i + 1];
    }
}

unsigned int Options::indexOf(unsigned int key, unsigned int index) const {
    for (unsigned int i = 0; i < m_count; ++i) {
        if (m_keys[i] == key && index-- == 0)
            return i;
    }
    return m_count;
}

const char* Options::getAsString(unsigned int key, unsigned int index) const {
    const unsigned int i = indexOf(key, index);
    if (i >= m_count)
        return nullptr;
    return m_values[i] != nullptr ? m_values[i] : noValue;
}

char* Options::getAsString(unsigned int key, unsigned int index) {
    // The empty text is shared and read-only: a caller that writes to it crashes instead of changing it for others.
    return const_cast<char*>(static_cast<const Options*>(this)->getAsString(key, index));
}

int Options::getAsInt(unsigned int key, unsigned int index) const {
    const unsigned int i = indexOf(key, index);
    if (i >= m_count || m_values[i] == nullptr)
        return -1;
    return static_cast<int>(std::strtol(m_values[i], nullptr, 10));
}

bool Options::isOption(unsigned int key) const {
    return indexOf(key, 0) < m_count;
}

bool Options::isOption(unsigned int key, const char* value) const {
    for (unsigned int i = 0; value != nullptr && i < m_count; ++i) {
        if (m_keys[i] == key && m_values[i] != nullptr && std::strcmp(m_values[i], value) == 0)
            return true;
    }
    return false;
}

bool Options::isOptionCase(unsigned int key, const char* value) const {
    for (unsigned int i = 0; value != nullptr && i < m_count; ++i) {
        if (m_keys[i] == key && m_values[i] != nullptr && strcasecmp(m_values[i], value) == 0)
            return true;
    }
    return false;
}

void Options::toStream(PutStream& out) const {
    bool valueWritten = false;
    for (unsigned int i = 0; i < m_count; ++i) {
        const bool continues = m_keys[i] == continuationKey;
        if (!continues) {
            valueWritten = false;
            if (i > 0)
                out.PutC('&');
            out.PutS(strings::StringRepository::toString(m_keys[i]));
        }
        if (m_values[i] == nullptr)
            continue;
        out.PutF(continues && valueWritten ? ",%s" : "=%s", m_values[i]);
        valueWritten = true;
    }
}

} // namespace utility
