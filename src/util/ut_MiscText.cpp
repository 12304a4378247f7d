#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "fw_Logger.h"
#include "ut_Misc.h"

namespace utility {

namespace {

using framework::Logger;

constexpr unsigned char FIRST_PRINTABLE = 32;
constexpr unsigned char LAST_PRINTABLE = 126;

bool isPrintableAscii(unsigned char c) {
    return c >= FIRST_PRINTABLE && c <= LAST_PRINTABLE;
}

/// The ASCII characters that a text may contain, one bit each.
class AsciiSet {
public:
    AsciiSet(const char* disallowed, const char* allowedControls) {
        remove(disallowed);
        add(allowedControls);
    }

    bool contains(unsigned char c) const {
        return (m_bits[c >> 6] >> (c & 63) & 1) != 0;
    }

    bool containsAllPrintable() const {
        return (m_bits[0] & ALL_PRINTABLE[0]) == ALL_PRINTABLE[0] && (m_bits[1] & ALL_PRINTABLE[1]) == ALL_PRINTABLE[1];
    }

private:
    static constexpr uint64_t ALL_PRINTABLE[2] = {~uint64_t{0} << FIRST_PRINTABLE, ~uint64_t{0} >> 1};

    void remove(const char* disallowed) {
        for (; disallowed != nullptr && *disallowed != 0; ++disallowed) {
            const unsigned char c = static_cast<unsigned char>(*disallowed);
            if (isPrintableAscii(c))
                m_bits[c >> 6] &= ~(uint64_t{1} << (c & 63));
        }
    }

    void add(const char* allowedControls) {
        for (; allowedControls != nullptr && *allowedControls != 0; ++allowedControls) {
            const unsigned char c = static_cast<unsigned char>(*allowedControls);
            if (c < 128 && !isPrintableAscii(c))
                m_bits[c >> 6] |= uint64_t{1} << (c & 63);
        }
    }

    uint64_t m_bits[2] = {ALL_PRINTABLE[0], ALL_PRINTABLE[1]};
};

uint64_t loadLittleEndian(const unsigned char* bytes) {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    word = __builtin_bswap64(word);
#endif
    return word;
}

/// The top bit of the lowest byte that is not printable ASCII; bits above it mean nothing. 0 when all eight are.
uint64_t firstUnprintable(uint64_t word) {
    constexpr uint64_t EACH = 0x0101010101010101U;
    return ((word - EACH * FIRST_PRINTABLE) | (word + EACH) | word) & (EACH << 7);
}

/// How many bytes from `text` on are printable ASCII for certain; fewer than eight at the end may go uncounted.
std::size_t printableRun(const unsigned char* text, std::size_t length) {
    std::size_t i = 0;
    for (; length - i >= 8; i += 8) {
        const uint64_t found = firstUnprintable(loadLittleEndian(text + i));
        if (found != 0)
            return i + static_cast<std::size_t>(__builtin_ctzll(found)) / 8;
    }
    return i;
}

/// How many continuation bytes the first byte of a character announces; 0 for a byte that is no first byte.
unsigned int continuationCount(unsigned char lead) {
    if (lead < 0xC0)
        return 0;
    if (lead < 0xE0)
        return 1;
    if (lead < 0xF0)
        return 2;
    if (lead < 0xF8)
        return 3;
    if (lead < 0xFC)
        return 4;
    return lead < 0xFE ? 5 : 0;
}

bool isContinuation(unsigned char c) {
    return (c & 0xC0) == 0x80;
}

bool refuseAscii(unsigned char c) {
    if (isPrintableAscii(c)) {
        Logger::StaticLog(Logger::LOG_ERROR, "isStringPrintableUtf8: found disallowed character '%c' = 0x%2.2x\n", c,
                          static_cast<unsigned int>(c));
    } else {
        Logger::StaticLog(Logger::LOG_ERROR, "isStringPrintableUtf8: found non-printable ASCII character 0x%2.2x\n",
                          static_cast<unsigned int>(c));
    }
    return false;
}

bool refuseFirstByte(unsigned char lead) {
    Logger::StaticLog(Logger::LOG_ERROR, "isStringPrintableUtf8: found illegal UTF-8 first byte 0x%2.2x\n",
                      static_cast<unsigned int>(lead));
    return false;
}

bool refusePartial(const unsigned char* text, unsigned int len, unsigned int i, unsigned int count) {
    unsigned int shown[5] = {};
    for (unsigned int j = 0; j < 5 && j < len - i; ++j)
        shown[j] = text[i + j];
    Logger::StaticLog(Logger::LOG_ERROR,
                      "isStringPrintableUtf8: partial UTF-8 character at end of "
                      "string with i=%u, utfLen=%u: "
                      "0x%2.2x %2.2x %2.2x %2.2x %2.2x\n",
                      i, count, shown[0], shown[1], shown[2], shown[3], shown[4]);
    return false;
}

bool refuseContinuation(unsigned char c, unsigned int i, unsigned int j) {
    Logger::StaticLog(Logger::LOG_ERROR,
                      "isStringPrintableUtf8: found illegal UTF-8 byte 0x%2.2x "
                      "at position i=%u j=%u\n",
                      static_cast<unsigned int>(c), i, j);
    return false;
}

} // namespace

bool Misc::isStringPrintableAscii(const char* text) {
    if (text == nullptr)
        return false;
    while (isPrintableAscii(static_cast<unsigned char>(*text)))
        ++text;
    return *text == 0;
}

bool Misc::isStringPrintableUtf8(const char* s, unsigned int len, const char* disallowed, const char* allowedControls) {
    if (s == nullptr)
        return len == 0;
    const AsciiSet accepted(disallowed, allowedControls);
    const bool skipsPrintable = accepted.containsAllPrintable();
    const unsigned char* text = reinterpret_cast<const unsigned char*>(s);
    // What lies behind a NUL need not exist, so whole words are read only in
    // front of it.
    const unsigned int end = static_cast<unsigned int>(strnlen(s, len));
    unsigned int i = 0;
    while (i < end) {
        const unsigned char c = text[i];
        if (c < 128) {
            if (!accepted.contains(c))
                return refuseAscii(c);
            ++i;
            if (skipsPrintable)
                i += static_cast<unsigned int>(printableRun(text + i, end - i));
            continue;
        }
        const unsigned int count = continuationCount(c);
        if (count == 0)
            return refuseFirstByte(c);
        if (len - i <= count)
            return refusePartial(text, len, i, count);
        // A NUL is no continuation byte, so this stops in front of what may not
        // exist, too.
        for (unsigned int j = 0; j < count; ++j) {
            if (!isContinuation(text[i + 1 + j]))
                return refuseContinuation(text[i + 1 + j], i, j);
        }
        i += 1 + count;
    }
    return true;
}

bool Misc::truncateUtf8(char* s) {
    if (s == nullptr)
        return false;
    unsigned int length = static_cast<unsigned int>(std::strlen(s));
    // The empty text is printable, so the length is never counted below 0.
    for (int attempt = 0; attempt < 4; ++attempt, --length) {
        if (!isStringPrintableUtf8(s, length, "", "\t\n\r"))
            continue;
        s[length] = 0;
        return true;
    }
    Logger::StaticLog(Logger::LOG_ERROR, "truncateUtf8: String is not a printable UTF-8 string: '%.200s'", s);
    return false;
}

char* Misc::escapeDoubleQuotes(char* out, const char* in) {
    if (out == nullptr) {
        Logger::StaticLog(Logger::LOG_ERROR, "escapeDoubleQuotes: pOutString is NULL");
        return nullptr;
    }
    if (in == nullptr)
        Logger::StaticLog(Logger::LOG_WARNING, "escapeDoubleQuotes: pInString is NULL");
    char* at = out;
    for (; in != nullptr && *in != 0; ++in) {
        if (*in == '"')
            *at++ = '\\';
        *at++ = *in;
    }
    *at = 0;
    return out;
}

char* Misc::stringToLower(char* s) {
    for (char* at = s; at != nullptr && *at != 0; ++at) {
        *at = static_cast<char>(std::tolower(static_cast<unsigned char>(*at)));
    }
    return s;
}

int Misc::parseTokens(char** tokens, int max, char* text, const char* delimiters) {
    if (tokens == nullptr || max < 1)
        return 0;
    if (text == nullptr) {
        tokens[0] = nullptr;
        return 0;
    }
    if (delimiters == nullptr)
        delimiters = "";
    char* rest = nullptr;
    int i = 0;
    while (true) {
        tokens[i] = strtok_r(i == 0 ? text : nullptr, delimiters, &rest);
        if (tokens[i] == nullptr || i == max - 1)
            return i;
        ++i;
    }
}

} // namespace utility
