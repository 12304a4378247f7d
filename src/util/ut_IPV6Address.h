#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// One IPv6 address, as sixteen bytes in network order, seen as eight groups of two.
///
/// A plain value: it owns nothing and is copied freely. One thread at a time. Nothing here throws by itself; a text
/// that is no address is answered with false.
///
///     utility::IPV6Address address("FE80::1");
///     char text[46];
///     address.toBuffer(text, sizeof text);   // "fe80::1"
class VXUT_EXPORT IPV6Address {
public:
    /// The unspecified address, `::`.
    IPV6Address();
    /// Takes the groups as they are written, as numbers of the host: 0x2001 is stored as the bytes 20 01.
    IPV6Address(unsigned short g0, unsigned short g1, unsigned short g2, unsigned short g3, unsigned short g4,
                unsigned short g5, unsigned short g6, unsigned short g7);
    /// Takes the bytes as they are written.
    IPV6Address(unsigned char b0, unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4,
                unsigned char b5, unsigned char b6, unsigned char b7, unsigned char b8, unsigned char b9,
                unsigned char b10, unsigned char b11, unsigned char b12, unsigned char b13, unsigned char b14,
                unsigned char b15);
    /// Copies sixteen bytes from `groups`, which must not be null. They are not converted, unlike those of the eight
    /// arguments: callers hand over groups that are in network order already.
    explicit IPV6Address(unsigned short* groups);
    /// Copies sixteen bytes in network order from `bytes`, which must not be null.
    explicit IPV6Address(unsigned char* bytes);
    /// Parses `text` as `fromString` does; a text that is no address gives `::`.
    explicit IPV6Address(const char* text);

    /// Parses an address as the platform's `inet_pton` does, in either case. A null text is the unspecified address and
    /// gives true: callers pass null for "none", unlike `IPV4Address`. A text that is no address, or is longer than
    /// 65,534 characters, or for which no memory can be had, gives false; the value was cleared before.
    bool fromString(const char* text);

    /// Writes the text and a terminator to `buf` of `size` bytes (at most 2,147,483,647) and returns `buf`. 41 bytes
    /// hold any address. A text that does not fit with a byte to spare leaves the empty text; a null `buf` takes
    /// nothing.
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the text in the platform's form: lower case, no leading zeros, the longest run of zero groups as "::",
    /// and a dotted tail for IPv4-compatible and IPv4-mapped addresses. A text that does not fit with its terminator is
    /// not written; the write position then moves over whatever text already stood there.
    void toPutStream(PutStream& out) const;

    /// Copies the address of `other`; null changes nothing.
    void set(IPV6Address* other);
    /// Copies sixteen bytes in network order from `bytes`, which must not be null.
    void set(unsigned char* bytes);

    /// Group `i`, 0 to 7, as it is stored and not converted: callers on a little-endian host see the group 2001 as
    /// 0x0120, though the eight arguments are given the other way round. There are no groups beyond 7: 0.
    unsigned short getHexChunk(unsigned char i);

    /// Compare the sixteen bytes in order, that is, the addresses as 128-bit numbers.
    bool operator==(const IPV6Address& other) const;
    bool operator!=(const IPV6Address& other) const;
    bool operator>(const IPV6Address& other) const;
    bool operator<(const IPV6Address& other) const;
    /// Negative, zero or positive as this address is less than, equal to or greater than `other`.
    int compare(const IPV6Address& other) const;

    /// The sum of the first seven groups as they are stored, and `mask`, which is the size of a hash table less one.
    /// The last group takes no part: callers find neighbours in one network in the same bucket.
    unsigned int hash(unsigned int mask) const;

    /// Whether the address is IPv4-compatible: the first six groups zero, and the last two not both. Callers do not see
    /// the IPv4-mapped form, whose sixth group is FFFF, as IPv4.
    bool isV4();
    /// Whether any group is not zero.
    bool isValid() const;
    /// Whether all groups are zero.
    bool isZero() const;

private:
    bool areZero(unsigned int groups) const;

    unsigned short m_groups[8];
};

} // namespace utility
