#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// A World Wide Name: the eight bytes that name a Fibre Channel node or port, most significant first.
///
/// A plain value: it owns nothing and is copied freely. One thread at a time. Nothing here throws, except what printing
/// onto a stream throws; a text that is no name is answered with false.
///
///     utility::WWN name("500A09818D5F1234");
///     char text[17];
///     name.toBuffer(text, sizeof text);   // "500a09818d5f1234"
class VXUT_EXPORT WWN {
public:
    /// All zero.
    WWN();
    /// Reads `text` as `fromString` does, from all zero.
    explicit WWN(const char* text);
    /// Copies eight bytes from `bytes`, which must not be null.
    explicit WWN(unsigned char* bytes);

    /// Copies eight bytes from `bytes`, which must not be null.
    void fromBinary(unsigned char* bytes);
    /// Reads sixteen hexadecimal digits of either case, without prefix or separators. A null text is all zero and gives
    /// true. What follows the last digit is not looked at: callers pass texts that go on. False for a text that ends
    /// early or has any other character; the digits before it are stored then, and the other bytes left as they were.
    bool fromString(const char* text);

    /// Writes sixteen lower-case digits and a terminator to `buf` of `size` bytes and returns `buf`. 17 bytes hold
    /// them; with 16 there is no terminator, and with fewer the digits are cut. A null `buf` takes nothing.
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the sixteen digits. What does not fit fails as `PutStream::PutC` does.
    void toPutStream(PutStream& out) const;

    /// Compare the eight bytes in order.
    bool operator==(const WWN& other) const;
    bool operator!=(const WWN& other) const;
    bool operator>(const WWN& other) const;
    bool operator<(const WWN& other) const;
    /// Negative, zero or positive as this name is less than, equal to or greater than `other`.
    int compare(const WWN& other) const;

    /// The sum of the eight bytes, and `mask`, which is the size of a hash table less one.
    unsigned int hash(unsigned int mask) const;

    /// Whether `text` is exactly sixteen hexadecimal digits of either case; false for null.
    static bool isWWN(const char* text);

private:
    static const char m_hexChar[17];

    unsigned char m_bytes[8];
};

} // namespace utility
