#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// The sixteen bytes that identify one storage array.
///
/// A well-formed number begins with the bytes 00 C0 FF and ends with 00 00 00. Bytes 3 to 12 distinguish arrays. A
/// plain value, which owns nothing and may be copied. One thread at a time. Only `toPutStream` and `toShortPutStream`
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
    /// on it.
    /// Returns false if `text` ends early or has any other character; the digits before it are stored, and the other
    /// bytes are unchanged.
    bool fromString(const char* text);

    /// Writes 32 lower-case digits and a terminator to `buf` and returns `buf`. Does nothing if `buf` is null.
    /// - `size`: size of `buf` in bytes: 33 bytes hold digits and terminator; with 32 bytes there is no terminator,
    ///   and with fewer the digits are truncated too
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the 32 digits. If they do not fit, fails as `PutStream::PutC` does.
    void toPutStream(PutStream& out) const;
    /// Writes the short form to `buf` and returns `buf`: the sixteen lower-case digits of bytes 3 to 5 and 8 to 12, and
    /// a terminator. Truncates as `toBuffer` does; 17 bytes hold digits and terminator.
    char* toShortBuffer(char* buf, unsigned int size) const;
    /// Writes the sixteen digits of the short form. If they do not fit, fails as `PutStream::PutC` does.
    void toShortPutStream(PutStream& out) const;

    /// Whether the number is well-formed.
    bool isValid() const;

    /// Whether all sixteen bytes are equal.
    bool operator==(const SerialNumber& other) const;
    /// Whether any of the sixteen bytes differ.
    bool operator!=(const SerialNumber& other) const;
    /// Whether this number is greater, byte by byte.
    bool operator>(const SerialNumber& other) const;
    /// Whether this number is less, byte by byte.
    bool operator<(const SerialNumber& other) const;
    /// Whether this number is greater, byte by byte, or equal.
    bool operator>=(const SerialNumber& other) const;
    /// Whether this number is less, byte by byte, or equal.
    bool operator<=(const SerialNumber& other) const;
    /// Negative, zero or positive as this number is less than, equal to or greater than `other`.
    int compare(const SerialNumber& other) const;

    /// The bitwise AND of `mask` and the sum of bytes 8 to 12. `mask` is the size of a hash table minus one.
    unsigned int hash(unsigned int mask) const;

    /// Whether `text` is 32 digits of a well-formed number; false for null. Callers pass numbers in lower case and rely
    /// on two quirks: after the prefix, `Misc::isHexChar` decides what a digit is, and characters 14 and 15 are not
    /// checked.
    static bool isSerialNumber(const char* text);

private:
    static const char m_hexChar[17];

    unsigned char m_bytes[16];
};

} // namespace utility
