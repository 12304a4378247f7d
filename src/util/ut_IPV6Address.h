#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// One IPv6 address, as eight groups of two bytes, all sixteen in network order.
///
/// A plain value, which owns nothing and may be copied. One thread at a time. This class throws nothing itself;
/// `fromString` returns false if its text is not an address.
///
///     utility::IPV6Address address("FE80::1");
///     char text[46];
///     address.toBuffer(text, sizeof text);   // "fe80::1"
class VXUT_EXPORT IPV6Address {
public:
    /// The unspecified address, `::`.
    IPV6Address();
    /// Sets the groups in written order, from numbers in host order: 0x2001 is stored as the bytes 20 01.
    IPV6Address(unsigned short g0, unsigned short g1, unsigned short g2, unsigned short g3, unsigned short g4,
                unsigned short g5, unsigned short g6, unsigned short g7);
    /// Sets the bytes in written order.
    IPV6Address(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4,
                unsigned char b5, unsigned char b6, unsigned char b7, unsigned char b8, unsigned char b9,
                unsigned char b10, unsigned char b11, unsigned char b12, unsigned char b13, unsigned char b14,
                unsigned char b15);
    /// Copies sixteen bytes from `groups`, which must not be null. Unlike the eight arguments, the groups are not
    /// converted: they must be in network order already.
    explicit IPV6Address(unsigned short* groups);
    /// Copies sixteen bytes in network order from `bytes`, which must not be null.
    explicit IPV6Address(unsigned char* bytes);
    /// Parses `text` as `fromString` does. The value is `::` if `text` is not an address.
    explicit IPV6Address(const char* text);

    /// Parses an address in upper or lower case, as the platform's `inet_pton` does. Unlike `IPV4Address`, null is the
    /// unspecified address and returns true: callers pass null for "none". Returns false and sets the value to `::` if:
    /// - `text` is not an address,
    /// - `text` is longer than 65,534 characters, or
    /// - memory is exhausted.
    bool fromString(const char* text);

    /// Writes the NUL-terminated text to `buf` and returns `buf`. Writes the empty text if the text and its terminator
    /// would not leave one byte of `buf` unused. Does nothing if `buf` is null.
    /// - `size`: size of `buf` in bytes, at most 2,147,483,647; 41 bytes hold any address
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the text in the platform's form: lower case, no leading zeros, the longest run of zero groups as "::",
    /// and a dotted tail for IPv4-compatible and IPv4-mapped addresses. If the text and its terminator do not fit,
    /// writes nothing, and advances the write position past the text that is already there.
    void toPutStream(PutStream& out) const;

    /// Copies the address of `other`. Does nothing if `other` is null.
    void set(IPV6Address* other);
    /// Copies sixteen bytes in network order from `bytes`, which must not be null.
    void set(unsigned char* bytes);

    /// Group `i`, 0 to 7, in network order; 0 if `i` is out of range. Callers rely on it not being converted: on a
    /// little-endian host the group 2001 is 0x0120, although the constructor with eight arguments converts.
    unsigned short getHexChunk(unsigned char i);

    /// Whether all sixteen bytes are equal.
    bool operator==(const IPV6Address& other) const;
    /// Whether any of the sixteen bytes differ.
    bool operator!=(const IPV6Address& other) const;
    /// Whether this address is greater, as a 128-bit number.
    bool operator>(const IPV6Address& other) const;
    /// Whether this address is less, as a 128-bit number.
    bool operator<(const IPV6Address& other) const;
    /// Negative, zero or positive as this address is less than, equal to or greater than `other`.
    int compare(const IPV6Address& other) const;

    /// The bitwise AND of `mask` and the sum of the first seven groups in network order. `mask` is the size of a hash
    /// table minus one. The last group does not count, so neighbors in one network share a bucket: callers rely on it.
    unsigned int hash(unsigned int mask) const;

    /// Whether the address is IPv4-compatible: the first six groups are zero, and the last two are not both zero. False
    /// for an IPv4-mapped address, where the sixth group is FFFF: callers rely on it.
    bool isV4();
    /// Whether any group is not zero.
    bool isValid() const;
    /// Whether all groups are zero.
    bool isZero() const;

private:
    VXUT_HIDDEN bool areZero(unsigned int groups) const;

    unsigned short m_groups[8];
};

} // namespace utility
