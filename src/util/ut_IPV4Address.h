#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// One IPv4 address, as four bytes in network order.
///
/// A plain value: it owns nothing and is copied freely. One thread at a time. Nothing here throws, except what printing
/// onto a stream throws; a text that is no address is answered with false.
///
///     utility::IPV4Address address("10.0.0.1");
///     char text[16];
///     address.toBuffer(text, sizeof text);   // "10.0.0.1"
class VXUT_EXPORT IPV4Address {
public:
    /// 0.0.0.0
    IPV4Address();
    /// Takes the word as `in_addr.s_addr` holds it: its bytes in memory are the address, whatever the byte order.
    explicit IPV4Address(unsigned int word);
    /// Copies four bytes in network order from `bytes`, which must not be null.
    explicit IPV4Address(unsigned char* bytes);
    /// Parses `text` as `fromString` does. A text that is no address leaves the value indeterminate, deliberately:
    /// callers that cannot vouch for their text use `fromString` and its answer.
    explicit IPV4Address(const char* text);

    /// Parses a dotted address of four decimal components, exactly as the platform's `inet_pton` does. A null text or
    /// one that is no address gives false and leaves the value as it was.
    bool fromString(const char* text);

    /// Writes the dotted text and a terminator to `buf` of `size` bytes (at most 2,147,483,647; 16 hold any address)
    /// and returns `buf`. A text that does not fit throws code 1239; nothing fits a null `buf`.
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the dotted text. A text that does not fit fails as `PutStream::PutF` does.
    void toPutStream(PutStream& out) const;
    /// Copies the four bytes to `out`, which must not be null.
    void toArray(unsigned char* out);

    /// Whether the first byte is not zero: callers count all of 0.0.0.0/8 as invalid.
    bool isValid() const;
    /// Whether all four bytes are zero.
    bool isZero() const;

    /// The address as a word in network order, as `in_addr.s_addr` holds it.
    unsigned int getValue() const;
    /// Takes a word in network order, as the constructor does.
    void set(unsigned int word);
    /// Takes the bytes as they are written: `a` is the first dotted component.
    void set(unsigned char a, unsigned char b, unsigned char c, unsigned char d);

    bool operator==(const IPV4Address& other) const;
    bool operator!=(const IPV4Address& other) const;

private:
    unsigned char m_bytes[4];
};

} // namespace utility
