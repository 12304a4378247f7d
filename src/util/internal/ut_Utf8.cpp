#include "internal/ut_Utf8.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "fw_Logger.h"

namespace utility {

namespace {

using framework::Logger;

// The ASCII characters that a text may contain: a set of 128 bits.
class AsciiSet {
public:
    AsciiSet(const char* disallowed, const char* allowedControls) {
        remove(disallowed);
        add(allowedControls);
    }

    bool contains(unsigned char c) const {
        return (m_bits[c >> 6] >> (c & 63) & 1) != 0;
    }

private:
    static constexpr uint64_t allPrintable[2] = {~uint64_t{0} << firstPrintable, ~uint64_t{0} >> 1};

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

    uint64_t m_bits[2] = {allPrintable[0], allPrintable[1]};
};

constexpr unsigned int blockSize = 64;
constexpr unsigned int longestLookBack = 3;
// SWAR: a word is a vector of eight bytes.
constexpr uint64_t eachByte = 0x0101010101010101U;
constexpr uint64_t topBits = eachByte << 7;

uint64_t loadWord(const unsigned char* bytes) {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

// Not 0 if any of the eight bytes is not printable ASCII.
uint64_t unprintable(uint64_t word) {
    return ((word - eachByte * firstPrintable) | (word + eachByte) | word) & topBits;
}

// Whether the text before `at`, which is known to be valid, ends with a complete character.
bool isAfterCharacter(const unsigned char* at) {
    return at[-1] < 0xC0 && at[-2] < 0xE0 && at[-3] < 0xF0;
}

bool isPrintableBlock(const unsigned char* block) {
    if (!isAfterCharacter(block))
        return false;
    uint64_t found = 0;
    for (std::size_t i = 0; i < blockSize; i += 8)
        found |= unprintable(loadWord(block + i));
    return found == 0;
}

// Validates blocks of text eight bytes at a time (SWAR). The top bit of each byte of a word is its result; a left
// shift moves another bit of the same byte to the top. Never accepts an invalid block, but may reject a valid one.
class BlockValidator {
public:
    // Uses the first three allowed control characters. Blocks with others are rejected.
    explicit BlockValidator(const char* allowedControls) {
        std::size_t count = 0;
        for (; allowedControls != nullptr && *allowedControls != 0 && count < 3; ++allowedControls) {
            const unsigned char c = static_cast<unsigned char>(*allowedControls);
            if (c < 128)
                m_allowed[count++] = eachByte * c;
        }
    }

    // Whether `block` is known to be valid. The text before it must be valid; both may end inside a character.
    bool accepts(const unsigned char* block) const {
        uint64_t rejected = 0;
        for (std::size_t i = 0; i < blockSize; i += 8)
            rejected |= misplaced(block + i) | control(loadWord(block + i));
        return (rejected & topBits) == 0;
    }

private:
    // Marks unexpected and missing continuation bytes, and lead bytes of characters of more than four bytes.
    static uint64_t misplaced(const unsigned char* at) {
        const uint64_t word = loadWord(at);
        const uint64_t continuation = word & ~(word << 1);
        const uint64_t expected =
            leadBytes(loadWord(at - 1), 1) | leadBytes(loadWord(at - 2), 2) | leadBytes(loadWord(at - 3), 3);
        return (continuation ^ expected) | leadBytes(word, 4);
    }

    // Marks the lead bytes of characters with at least `count` continuation bytes.
    static uint64_t leadBytes(uint64_t word, int count) {
        uint64_t ones = word;
        for (int bit = 1; bit <= count; ++bit)
            ones &= word << bit;
        return ones;
    }

    // Marks the control characters that are not allowed.
    uint64_t control(uint64_t word) const {
        const uint64_t low = word & ~topBits;
        uint64_t controls = ~(low + eachByte * (128 - firstPrintable)) | (low + eachByte);
        for (const uint64_t allowed : m_allowed)
            controls &= (low ^ allowed) + eachByte * 0x7F;
        return controls & ~word;
    }

    uint64_t m_allowed[3] = {eachByte * firstPrintable, eachByte* firstPrintable, eachByte* firstPrintable};
};

// The number of continuation bytes after the lead byte `lead`; 0 if it is not the lead byte of a multibyte character.
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

// Logs that `c` is not accepted. Returns 0, the length of a refused character.
unsigned int refuseAscii(unsigned char c) {
    if (isPrintableAscii(c)) {
        Logger::StaticLog(Logger::LOG_ERROR, "isStringPrintableUtf8: found disallowed character '%c' = 0x%2.2x\n", c,
                          static_cast<unsigned int>(c));
    } else {
        Logger::StaticLog(Logger::LOG_ERROR, "isStringPrintableUtf8: found non-printable ASCII character 0x%2.2x\n",
                          static_cast<unsigned int>(c));
    }
    return 0;
}

// Logs that `lead` is not a lead byte. Returns 0.
unsigned int refuseFirstByte(unsigned char lead) {
    Logger::StaticLog(Logger::LOG_ERROR, "isStringPrintableUtf8: found illegal UTF-8 first byte 0x%2.2x\n",
                      static_cast<unsigned int>(lead));
    return 0;
}

// Logs that the character at `i`, with `count` continuation bytes, exceeds `len`. Returns 0.
unsigned int refusePartial(const unsigned char* text, unsigned int len, unsigned int i, unsigned int count) {
    unsigned int shown[5] = {};
    // Do not read past a NUL.
    for (unsigned int j = 0; j < 5 && j < len - i && text[i + j] != 0; ++j)
        shown[j] = text[i + j];
    Logger::StaticLog(Logger::LOG_ERROR,
                      "isStringPrintableUtf8: partial UTF-8 character at end of "
                      "string with i=%u, utfLen=%u: "
                      "0x%2.2x %2.2x %2.2x %2.2x %2.2x\n",
                      i, count, shown[0], shown[1], shown[2], shown[3], shown[4]);
    return 0;
}

// Logs that `c`, number `j` after the lead byte at `i`, is not a continuation byte. Returns 0.
unsigned int refuseContinuation(unsigned char c, unsigned int i, unsigned int j) {
    Logger::StaticLog(Logger::LOG_ERROR,
                      "isStringPrintableUtf8: found illegal UTF-8 byte 0x%2.2x "
                      "at position i=%u j=%u\n",
                      static_cast<unsigned int>(c), i, j);
    return 0;
}

// The length of the character at `i`. Logs the reason and returns 0 if the character is refused.
unsigned int lengthOfCharacter(const unsigned char* text, unsigned int len, unsigned int i, const AsciiSet& accepted) {
    const unsigned char first = text[i];
    if (first < 128)
        return accepted.contains(first) ? 1 : refuseAscii(first);
    const unsigned int count = continuationCount(first);
    if (count == 0)
        return refuseFirstByte(first);
    if (len - i <= count)
        return refusePartial(text, len, i, count);
    // A NUL is not a continuation byte, so this does not read past it.
    for (unsigned int j = 0; j < count; ++j) {
        if (!isContinuation(text[i + 1 + j]))
            return refuseContinuation(text[i + 1 + j], i, j);
    }
    return 1 + count;
}

// The length of the text before its first disallowed character: the part that can be validated by blocks. May be 0
// if the text is shorter than a block.
unsigned int cleanLength(const unsigned char* text, unsigned int end, const char* disallowed) {
    if (disallowed == nullptr || *disallowed == 0)
        return end;
    if (end < blockSize)
        return 0;
    for (; *disallowed != 0; ++disallowed) {
        const void* found =
            isPrintableAscii(static_cast<unsigned char>(*disallowed)) ? std::memchr(text, *disallowed, end) : nullptr;
        if (found != nullptr)
            end = static_cast<unsigned int>(static_cast<const unsigned char*>(found) - text);
    }
    return end;
}

// Skips valid blocks from the character at `i` on. Returns the index of the last character in them, which may be
// incomplete; `i` if there are none.
unsigned int skipValidBlocks(const unsigned char* text, unsigned int i, unsigned int end, const char* allowedControls) {
    if (end - i < blockSize)
        return i;
    const BlockValidator validator(allowedControls);
    const unsigned int begin = i;
    while (end - i >= blockSize && (isPrintableBlock(text + i) || validator.accepts(text + i)))
        i += blockSize;
    if (i == begin)
        return i;
    --i;
    while (isContinuation(text[i]))
        --i;
    return i;
}

} // namespace

bool isPrintableUtf8(const char* s, unsigned int len, const char* disallowed, const char* allowedControls) {
    if (s == nullptr)
        return len == 0;
    const AsciiSet accepted(disallowed, allowedControls);
    const unsigned char* text = reinterpret_cast<const unsigned char*>(s);
    // Do not read past a NUL: words are loaded only before it.
    const unsigned int end = static_cast<unsigned int>(strnlen(s, len));
    const unsigned int clean = cleanLength(text, end, disallowed);
    unsigned int i = 0;
    unsigned int skipFrom = longestLookBack;
    while (i < end) {
        if (i >= skipFrom && i < clean) {
            i = skipValidBlocks(text, i, clean, allowedControls);
            skipFrom = i + blockSize;
        }
        const unsigned int length = lengthOfCharacter(text, len, i, accepted);
        if (length == 0)
            return false;
        i += length;
        while (i < clean && clean - i >= 8 && unprintable(loadWord(text + i)) == 0)
            i += 8;
    }
    return true;
}

} // namespace utility
