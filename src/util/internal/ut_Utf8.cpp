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
constexpr unsigned int shortText = 2 * blockSize;
// SWAR: a word is a vector of eight bytes. The top bit of each byte is the result for that byte.
using Words = uint64_t __attribute__((vector_size(16)));
constexpr uint64_t eachByte = 0x0101010101010101U;
constexpr uint64_t topBits = eachByte << 7;

uint64_t loadWord(const unsigned char* bytes) {
    uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

Words load(const unsigned char* bytes) {
    Words words;
    std::memcpy(&words, bytes, sizeof words);
    return words;
}

bool isClear(Words marks) {
    return ((marks[0] | marks[1]) & topBits) == 0;
}

// Marks some byte, in its top bit, if any is not printable ASCII. `Vector` is one word or several.
template<typename Vector>
Vector unprintable(Vector bytes) {
    return (bytes - eachByte * firstPrintable) | (bytes + eachByte) | bytes;
}

// Whether the text before `at`, which is known to be valid, ends with a complete character.
bool isAfterCharacter(const unsigned char* at) {
    return at[-1] < 0xC0 && at[-2] < 0xE0 && at[-3] < 0xF0;
}

bool isPrintableBlock(const unsigned char* block) {
    if (!isAfterCharacter(block))
        return false;
    Words found = {};
#pragma GCC unroll 4
    for (std::size_t i = 0; i < blockSize; i += sizeof(Words))
        found |= unprintable(load(block + i));
    return isClear(found);
}

// Marks the lead bytes of characters with at least `count` continuation bytes, in the top bit of each byte. A left
// shift moves another bit of the same byte to the top.
Words leadBytes(Words bytes, int count) {
    Words ones = bytes;
    for (int bit = 1; bit <= count; ++bit)
        ones &= bytes << bit;
    return ones;
}

// Marks unexpected and missing continuation bytes. Marks also lead bytes of characters of more than four bytes, among
// the bytes from the third before `at` on.
Words misplaced(const unsigned char* at) {
    const Words bytes = load(at);
    const Words third = load(at - 3);
    const Words continuation = bytes & ~(bytes << 1);
    const Words thirdLead = leadBytes(third, 3);
    const Words expected = leadBytes(load(at - 1), 1) | leadBytes(load(at - 2), 2) | thirdLead;
    return (continuation ^ expected) | (thirdLead & (third << 4));
}

// Whether all control characters of the `size` bytes at `at` are among the first three of `allowedControls`.
bool hasAllowedControls(const unsigned char* at, std::size_t size, const char* allowedControls) {
    uint64_t allowed[3] = {eachByte * firstPrintable, eachByte * firstPrintable, eachByte * firstPrintable};
    std::size_t count = 0;
    for (; allowedControls != nullptr && *allowedControls != 0 && count < 3; ++allowedControls) {
        const unsigned char c = static_cast<unsigned char>(*allowedControls);
        if (c < 128)
            allowed[count++] = eachByte * c;
    }
    Words found = {};
    for (std::size_t i = 0; i < size; i += sizeof(Words)) {
        const Words bytes = load(at + i);
        const Words low = bytes & ~topBits;
        // No carry leaves a byte.
        Words controls = ~(low + eachByte * (128 - firstPrintable)) | (low + eachByte);
        for (const uint64_t one : allowed)
            controls &= (low ^ one) + eachByte * 0x7F;
        found |= controls & ~bytes;
    }
    return isClear(found);
}

// Whether the `size` bytes at `at`, a multiple of the size of `Words`, are known to be valid. Reads three bytes before
// them. The text before them must be valid; both may end inside a character, which may then have more than four bytes.
// Never accepts invalid bytes, but may reject valid ones.
bool isValidBlock(const unsigned char* at, std::size_t size, const char* allowedControls) {
    Words rejected = {};
    Words controls = {};
#pragma GCC unroll 4
    for (std::size_t i = 0; i < size; i += sizeof(Words)) {
        const Words bytes = load(at + i);
        rejected |= misplaced(at + i);
        // A carry marks a second byte, but leaves none unmarked.
        controls |= ((bytes - eachByte * firstPrintable) | (bytes + eachByte)) & ~bytes;
    }
    return isClear(rejected) && (isClear(controls) || hasAllowedControls(at, size, allowedControls));
}

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

// The length of the text before its first disallowed character: the part that can be validated by blocks.
unsigned int cleanLength(const unsigned char* text, unsigned int end, const char* disallowed) {
    if (disallowed == nullptr || *disallowed == 0)
        return end;
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
    const auto isValid = [text, allowedControls](unsigned int at) {
        return isPrintableBlock(text + at) || isValidBlock(text + at, blockSize, allowedControls);
    };
    const unsigned int begin = i;
    while (end - i >= blockSize && isValid(i))
        i += blockSize;
    if (i == begin)
        return i;
    // The last block overlaps the one before it.
    if (i < end && end - i < blockSize && isValid(end - blockSize))
        i = end;
    --i;
    while (isContinuation(text[i]))
        --i;
    return i;
}

// Whether a text that is shorter than `shortText` is known to be valid.
bool isValidShortText(const unsigned char* text, unsigned int length, const char* allowedControls) {
    // Blanks before the text stand for the end of another, and those after it show an incomplete character.
    unsigned char padded[sizeof(Words) + shortText + sizeof(Words)];
    std::memset(padded, ' ', sizeof padded);
    unsigned char* const start = padded + sizeof(Words);
    std::memcpy(start, text, length);
    const std::size_t size = (length + longestLookBack + sizeof(Words) - 1) / sizeof(Words) * sizeof(Words);
    return isValidBlock(start, size, allowedControls);
}

} // namespace

bool isPrintableUtf8(const char* s, unsigned int len, const char* disallowed, const char* allowedControls) {
    if (s == nullptr)
        return len == 0;
    const unsigned char* text = reinterpret_cast<const unsigned char*>(s);
    // Do not read past a NUL: words are loaded only before it.
    const unsigned int end = static_cast<unsigned int>(strnlen(s, len));
    const unsigned int clean = cleanLength(text, end, disallowed);
    if (clean == end && end < shortText && isValidShortText(text, end, allowedControls))
        return true;
    const AsciiSet accepted(disallowed, allowedControls);
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
        while (i < skipFrom && i < clean && clean - i >= 8 && (unprintable(loadWord(text + i)) & topBits) == 0)
            i += 8;
    }
    return true;
}

} // namespace utility
