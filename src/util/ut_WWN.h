#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// A World Wide Name: the eight bytes that name a Fibre Channel node or port, most significant first.
///
/// A plain value, which owns nothing and may be copied. One thread at a time. Only `toPutStream` throws; `fromString`
/// returns false if its text is not a name.
///
///     utility::WWN name("500A09818D5F1234");
///     char text[17];
///     name.toBuffer(text, sizeof text);   // "500a09818d5f1234"
class VXUT_EXPORT WWN {
public:
    /// All zero.
    WWN();
    /// Sets all bytes to zero, then parses `text` as `fromString` does.
    explicit WWN(const char* text);
    /// Copies eight bytes from `bytes`, which must not be null.
    explicit WWN(unsigned char* bytes);

    /// Copies eight bytes from `bytes`, which must not be null.
    void fromBinary(unsigned char* bytes);
    /// Parses sixteen hexadecimal digits in upper or lower case, without prefix or separators. Null sets all bytes to
    /// zero and returns true. Ignores everything after the last digit: callers rely on it.
    /// Returns false if `text` ends early or has any other character; the digits before it are stored, and the other
    /// bytes are unchanged.
    bool fromString(const char* text);

    /// Writes sixteen lower-case digits and a terminator to `buf` and returns `buf`. Does nothing if `buf` is null.
    /// - `size`: size of `buf` in bytes: 17 bytes hold digits and terminator; with 16 bytes there is no terminator,
    ///   and with fewer the digits are truncated too
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the sixteen digits. If they do not fit, fails as `PutStream::PutC` does.
    void toPutStream(PutStream& out) const;

    /// Whether all eight bytes are equal.
    bool operator==(const WWN& other) const;
    /// Whether any of the eight bytes differ.
    bool operator!=(const WWN& other) const;
    /// Whether this name is greater, byte by byte.
    bool operator>(const WWN& other) const;
    /// Whether this name is less, byte by byte.
    bool operator<(const WWN& other) const;
    /// Negative, zero or positive as this name is less than, equal to or greater than `other`.
    int compare(const WWN& other) const;

    /// The bitwise AND of `mask` and the sum of the eight bytes. `mask` is the size of a hash table minus one.
    unsigned int hash(unsigned int mask) const;

    /// Whether `text` is exactly sixteen hexadecimal digits in upper or lower case; false for null.
    static bool isWWN(const char* text);

private:
    static const char m_hexChar[17];

    unsigned char m_bytes[8];
};

} // namespace utility
