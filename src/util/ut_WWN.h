#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// A World Wide Name: the eight bytes that name a Fibre Channel node or port, most significant first.
///
/// A plain value that may be copied and owns no resources. Not thread-safe. Only `toPutStream` throws; `fromString`
/// returns false if its text is not a name.
///
///     utility::WWN name("500A09818D5F1234");
///     char text[17];
///     name.toBuffer(text, sizeof text);   // "500a09818d5f1234"
class VXUT_EXPORT WWN {
public:
    /// Creates the name with all bytes zero.
    WWN();
    /// Sets all bytes to zero, then parses `text` as `fromString` does.
    explicit WWN(const char* text);
    /// Copies eight bytes from `bytes`, which must not be null.
    explicit WWN(unsigned char* bytes);

    /// Copies eight bytes from `bytes`, which must not be null.
    void fromBinary(unsigned char* bytes);
    /// Parses sixteen hexadecimal digits in upper or lower case, without prefix or separators. Null sets all bytes to
    /// zero and returns true. Ignores everything after the last digit: callers rely on it. Returns false if `text` ends
    /// early or contains any other character: the digits before that point are stored, an odd last one as the high half
    /// of a byte with low half zero, and the other bytes are unchanged.
    bool fromString(const char* text);

    /// Writes sixteen lower-case digits and a terminator to `buf` and returns `buf`. Does nothing if `buf` is null.
    /// - `size`: size of `buf` in bytes. 17 bytes are enough for the digits and the terminator; 16 bytes are not
    ///   terminated; fewer also truncate the digits
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the sixteen digits. If they do not fit, fails as `PutStream::PutC` does.
    void toPutStream(PutStream& out) const;

    /// Returns whether all eight bytes are equal.
    bool operator==(const WWN& other) const;
    /// Returns whether any of the eight bytes differ.
    bool operator!=(const WWN& other) const;
    /// Returns whether this name is greater, byte by byte.
    bool operator>(const WWN& other) const;
    /// Returns whether this name is less, byte by byte.
    bool operator<(const WWN& other) const;
    /// Returns a negative number, 0 or a positive number if this name is less than, equal to or greater than `other`.
    int compare(const WWN& other) const;

    /// Returns the bucket of this name in a hash table: the sum of the eight bytes, ANDed with `mask`, which is the
    /// size of the table minus one.
    unsigned int hash(unsigned int mask) const;

    /// Returns whether `text` is exactly sixteen hexadecimal digits in upper or lower case. Returns false for null.
    static bool isWWN(const char* text);

private:
    static const char m_hexChar[17];

    unsigned char m_bytes[8];
};

} // namespace utility
