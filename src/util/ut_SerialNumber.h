#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// The sixteen bytes that identify one storage array.
///
/// A well-formed number begins with the bytes 00 C0 FF and ends with 00 00 00. Bytes 3 to 12 distinguish arrays. A
/// plain value that may be copied and owns no resources. Not thread-safe. Only `toPutStream` and `toShortPutStream`
/// throw; `fromString` returns false if its text is not a number.
///
///     utility::SerialNumber number("00c0ff112233aabb4455667788000000");
///     char text[17];
///     number.toShortBuffer(text, sizeof text);   // "1122334455667788"
class VXUT_EXPORT SerialNumber {
public:
    /// Sets all bytes to zero, then parses `text` as `fromString` does.
    explicit SerialNumber(const char* text);
    /// Copies sixteen bytes from `bytes`, which must not be null.
    explicit SerialNumber(unsigned char* bytes);

    /// Copies sixteen bytes from `bytes`, which must not be null.
    void set(unsigned char* bytes);
    /// Copies the sixteen bytes to `out`, which must not be null.
    void toByteArray(unsigned char* out) const;
    /// Parses 32 hexadecimal digits in upper or lower case, without prefix or separators. The number need not be
    /// well-formed. Null sets all bytes to zero and returns true. Ignores everything after the last digit: callers rely
    /// on it. Returns false if `text` ends early or contains any other character: the digits before that point are
    /// stored, an odd last one as the high half of a byte with low half zero, and the other bytes are unchanged.
    bool fromString(const char* text);

    /// Writes 32 lower-case digits and a terminator to `buf` and returns `buf`. Does nothing if `buf` is null.
    /// - `size`: size of `buf` in bytes. 33 bytes are enough for the digits and the terminator; 32 bytes are not
    ///   terminated; fewer also truncate the digits
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the 32 digits. If they do not fit, fails as `PutStream::PutC` does.
    void toPutStream(PutStream& out) const;
    /// Writes the short form to `buf` and returns `buf`: the sixteen lower-case digits of bytes 3 to 5 and 8 to 12, and
    /// a terminator. Truncates as `toBuffer` does; 17 bytes are enough for the digits and the terminator.
    char* toShortBuffer(char* buf, unsigned int size) const;
    /// Writes the sixteen digits of the short form. If they do not fit, fails as `PutStream::PutC` does.
    void toShortPutStream(PutStream& out) const;

    /// Returns whether the number is well-formed.
    bool isValid() const;

    /// Returns whether all sixteen bytes are equal.
    bool operator==(const SerialNumber& other) const;
    /// Returns whether any of the sixteen bytes differ.
    bool operator!=(const SerialNumber& other) const;
    /// Returns whether this number is greater, byte by byte.
    bool operator>(const SerialNumber& other) const;
    /// Returns whether this number is less, byte by byte.
    bool operator<(const SerialNumber& other) const;
    /// Returns whether this number is greater, byte by byte, or equal.
    bool operator>=(const SerialNumber& other) const;
    /// Returns whether this number is less, byte by byte, or equal.
    bool operator<=(const SerialNumber& other) const;
    /// Returns a negative number, 0 or a positive number if this number is less than, equal to or greater than `other`.
    int compare(const SerialNumber& other) const;

    /// Returns the bucket of this number in a hash table: the sum of bytes 8 to 12, ANDed with `mask`, which is the
    /// size of the table minus one.
    unsigned int hash(unsigned int mask) const;

    /// Returns whether `text` is the 32 digits of a well-formed number; false for null. Callers pass numbers in lower
    /// case and rely on two quirks: after the prefix, any character that `Misc::isHexChar` accepts is a digit, and
    /// characters 14 and 15 are not checked.
    static bool isSerialNumber(const char* text);

private:
    static const char m_hexChar[17];

    unsigned char m_bytes[16];
};

} // namespace utility
