#pragma once

// How numbers and identifiers of a fixed number of bytes are read and written as hexadecimal text. Not for callers of
// the library.

namespace utility {

/// Reads two digits of either case for each of `count` bytes, the high one first; null is all zero. False when another
/// character, or the end, comes before the last digit: the digits before it are stored. What follows is not looked at.
bool readHexText(const char* text, unsigned char* bytes, unsigned int count);

/// A text in a caller's array, which takes what still fits and drops the rest.
class BoundedText {
public:
    BoundedText(char* text, unsigned int size) : m_text(text), m_room(text != nullptr ? size : 0) {}

    /// Puts the two digits of `byte`, out of the sixteen characters of `digits`.
    void putByte(unsigned char byte, const char* digits) {
        put(digits[byte >> 4]);
        put(digits[byte & 15]);
    }
    /// Puts one character; also a terminator, which a text that fills the array goes without.
    void put(char c) {
        if (m_room == 0)
            return;
        *m_text++ = c;
        --m_room;
    }

private:
    char* m_text;
    unsigned int m_room;
};

} // namespace utility
