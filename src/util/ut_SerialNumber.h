#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// The sixteen bytes that identify one storage array.
///
/// A well-formed number begins with 00C0FF and ends with 000000; the bytes between, 3 to 12, tell arrays apart. A plain
/// value: it owns nothing and is copied freely. One thread at a time. Nothing here throws, except what printing onto a
/// stream throws; a text that is no number is answered with false.
///
///     utility::SerialNumber number("00c0ff112233aabb4455667788000000");
///     char text[17];
///     number.toShortBuffer(text, sizeof text);   // "1122334455667788"
class VXUT_EXPORT SerialNumber {
public:
    /// Reads `text` as `fromString` does, from all zero.
    explicit SerialNumber(const char* text);
    /// Copies sixteen bytes from `bytes`, which must not be null.
    explicit SerialNumber(unsigned char* bytes);

    /// Copies sixteen bytes from `bytes`, which must not be null.
    void set(unsigned char* bytes);
    /// Copies the sixteen bytes to `out`, which must not be null.
    void toByteArray(unsigned char* out) const;
    /// Reads 32 hexadecimal digits of either case, without prefix or separators, well-formed or not. A null text is all
    /// zero and gives true. What follows the last digit is not looked at: callers pass texts that go on. False for a
    /// text that ends early or has any other character; the digits before it are stored then, and the other bytes left
    /// as they were.
    bool fromString(const char* text);

    /// Writes 32 lower-case digits and a terminator to `buf` of `size` bytes and returns `buf`. 33 bytes hold them;
    /// with 32 there is no terminator, and with fewer the digits are cut. A null `buf` takes nothing.
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the 32 digits. What does not fit fails as `PutStream::PutC` does.
    void toPutStream(PutStream& out) const;
    /// Writes the sixteen digits of bytes 3 to 5 and 8 to 12, bounded as `toBuffer`: 17 bytes hold them.
    char* toShortBuffer(char* buf, unsigned int size) const;
    /// Writes the sixteen digits of the short form. What does not fit fails as `PutStream::PutC` does.
    void toShortPutStream(PutStream& out) const;

    /// Whether the number is well-formed.
    bool isValid() const;

    /// Compare the sixteen bytes in order.
    bool operator==(const SerialNumber& other) const;
    bool operator!=(const SerialNumber& other) const;
    bool operator>(const SerialNumber& other) const;
    bool operator<(const SerialNumber& other) const;
    bool operator>=(const SerialNumber& other) const;
    bool operator<=(const SerialNumber& other) const;
    /// Negative, zero or positive as this number is less than, equal to or greater than `other`.
    int compare(const SerialNumber& other) const;

    /// The sum of bytes 8 to 12, and `mask`, which is the size of a hash table less one.
    unsigned int hash(unsigned int mask) const;

    /// Whether `text` is the 32 digits of a well-formed number; false for null. Behind the prefix, digits count as
    /// `Misc::isHexChar` counts them, and characters 14 and 15 are not examined: callers pass numbers in lower case,
    /// and rely on both.
    static bool isSerialNumber(const char* text);

private:
    static const char m_hexChar[17];

    unsigned char m_bytes[16];
};

} // namespace utility
