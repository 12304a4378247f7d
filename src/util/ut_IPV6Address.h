#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// One IPv6 address, as eight groups of two bytes, all sixteen in network order.
///
/// A plain value that may be copied and owns no resources. Not thread-safe. This class itself does not throw;
/// `fromString` returns false if its text is not an address.
///
///     utility::IPV6Address address("FE80::1");
///     char text[46];
///     address.toBuffer(text, sizeof text);   // "fe80::1"
class VXUT_EXPORT IPV6Address {
public:
    /// Creates the unspecified address, `::`.
    IPV6Address();
    /// Sets the eight groups, `g0` being the first in the text form, from numbers in host order: 0x2001 is stored as
    /// the bytes 20 01.
    IPV6Address(unsigned short g0, unsigned short g1, unsigned short g2, unsigned short g3, unsigned short g4,
                unsigned short g5, unsigned short g6, unsigned short g7);
    /// Sets the sixteen bytes in network order.
    IPV6Address(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4,
                unsigned char b5, unsigned char b6, unsigned char b7, unsigned char b8, unsigned char b9,
                unsigned char b10, unsigned char b11, unsigned char b12, unsigned char b13, unsigned char b14,
                unsigned char b15);
    /// Copies sixteen bytes from `groups`, which must not be null. Unlike the constructor with eight arguments, this
    /// one does not convert the groups: they must already be in network order.
    explicit IPV6Address(unsigned short* groups);
    /// Copies sixteen bytes in network order from `bytes`, which must not be null.
    explicit IPV6Address(unsigned char* bytes);
    /// Parses `text` as `fromString` does. The value is `::` if `text` is not an address.
    explicit IPV6Address(const char* text);

    /// Parses an address in upper or lower case, as the platform's `inet_pton` does. Unlike `IPV4Address::fromString`,
    /// accepts null: it sets the value to `::` and returns true, because callers pass null for "none". Returns false
    /// and sets the value to `::` if:
    /// - `text` is not an address,
    /// - `text` is longer than 65,534 characters, or
    /// - memory is exhausted.
    bool fromString(const char* text);

    /// Writes the NUL-terminated text to `buf` and returns `buf`. Writes an empty text unless `buf` has at least one
    /// byte more than the text and its terminator need. Does nothing if `buf` is null.
    /// - `size`: size of `buf` in bytes, at most 2,147,483,647; 41 bytes hold any address
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the text in the platform's form: lower case, no leading zeros, the longest run of zero groups as "::",
    /// and the last two groups in dotted decimal for IPv4-compatible and IPv4-mapped addresses. If the text and its
    /// terminator do not fit, writes nothing, but still advances the write position: past the bytes that are already in
    /// the buffer there, up to the first NUL or the end of the space.
    void toPutStream(PutStream& out) const;

    /// Copies the address of `other`. Does nothing if `other` is null.
    void set(IPV6Address* other);
    /// Copies sixteen bytes in network order from `bytes`, which must not be null.
    void set(unsigned char* bytes);

    /// Returns group `i`, 0 to 7, in network order, or 0 if `i` is out of range. Unlike the constructor with eight
    /// arguments, it does not convert to host order, and callers rely on that: on a little-endian host, the group 2001
    /// is returned as 0x0120.
    unsigned short getHexChunk(unsigned char i);

    /// Returns whether all sixteen bytes are equal.
    bool operator==(const IPV6Address& other) const;
    /// Returns whether any of the sixteen bytes differ.
    bool operator!=(const IPV6Address& other) const;
    /// Returns whether this address is greater, as a 128-bit number.
    bool operator>(const IPV6Address& other) const;
    /// Returns whether this address is less, as a 128-bit number.
    bool operator<(const IPV6Address& other) const;
    /// Returns a negative number, 0 or a positive number if this address is less than, equal to or greater than
    /// `other`.
    int compare(const IPV6Address& other) const;

    /// Returns the bucket of this address in a hash table: the sum of the first seven groups in network order, ANDed
    /// with `mask`, which is the size of the table minus one. The last group is deliberately left out: callers rely on
    /// addresses that differ only there sharing a bucket.
    unsigned int hash(unsigned int mask) const;

    /// Returns whether the address is IPv4-compatible: the first six groups are zero, and the last two are not both
    /// zero. Returns false for an IPv4-mapped address, where the sixth group is FFFF: callers rely on it.
    bool isV4();
    /// Returns whether any group is not zero.
    bool isValid() const;
    /// Returns whether all groups are zero.
    bool isZero() const;

private:
    VXUT_HIDDEN bool areZero(unsigned int groups) const;

    unsigned short m_groups[8];
};

} // namespace utility
