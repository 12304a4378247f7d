#pragma once

#include <cstddef>

// Internal: parses and formats numbers and fixed-size identifiers as hexadecimal text.

namespace utility {

/// Parses two digits in upper or lower case for each of `count` bytes, the high digit first. Null sets all bytes to
/// zero and returns true. Returns false if `text` ends early or contains any other character; the digits before that
/// point are stored. Ignores everything after the last digit.
bool readHexText(const char* text, unsigned char* bytes, unsigned int count);

/// Writes the two lower-case digits of each of `count` bytes to `text`, without a NUL.
void writeHexText(const unsigned char* bytes, std::size_t count, char* text);

/// Writes to a caller's array and discards what does not fit.
class BoundedText {
public:
    /// Starts at the beginning of `text`, an array of `size` bytes. Discards everything if `text` is null.
    BoundedText(char* text, unsigned int size) : m_text(text), m_space(text != nullptr ? size : 0) {}

    /// Writes the two digits of `byte`, taken from the sixteen characters of `digits`.
    void putByte(unsigned char byte, const char* digits) {
        put(digits[byte >> 4]);
        put(digits[byte & 15]);
    }
    /// Writes one character. This includes a terminator, which is discarded if the text fills the array.
    void put(char c) {
        if (m_space == 0)
            return;
        *m_text++ = c;
        --m_space;
    }

private:
    char* m_text;
    unsigned int m_space;
};

} // namespace utility
