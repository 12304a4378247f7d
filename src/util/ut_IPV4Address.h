#pragma once

#include "ut_Export.h"

namespace utility {

class PutStream;

/// One IPv4 address, as four bytes in network order.
///
/// A plain value that may be copied and owns no resources. Not thread-safe. Only `toBuffer` and `toPutStream` throw;
/// `fromString` returns false if its text is not an address.
///
///     utility::IPV4Address address("10.0.0.1");
///     char text[16];
///     address.toBuffer(text, sizeof text);   // "10.0.0.1"
class VXUT_EXPORT IPV4Address {
public:
    /// Creates the address 0.0.0.0.
    IPV4Address();
    /// Copies a word in network order, as in `in_addr.s_addr`: its bytes in memory are the address on every host.
    explicit IPV4Address(unsigned int word);
    /// Copies four bytes in network order from `bytes`, which must not be null.
    explicit IPV4Address(unsigned char* bytes);
    /// Parses `text` as `fromString` does. If `text` is not an address, the value is deliberately indeterminate:
    /// callers that cannot guarantee a valid text must call `fromString` and check its result.
    explicit IPV4Address(const char* text);

    /// Parses a dotted address of four decimal components, exactly as the platform's `inet_pton` does. Returns false
    /// and leaves the value unchanged if `text` is null or not an address.
    bool fromString(const char* text);

    /// Writes the NUL-terminated dotted text to `buf` and returns `buf`. Throws code 1239 if the text does not fit or
    /// `buf` is null.
    /// - `size`: size of `buf` in bytes, at most 2,147,483,647; 16 bytes hold any address
    char* toBuffer(char* buf, unsigned int size) const;
    /// Writes the dotted text. If it does not fit, fails as `PutStream::PutF` does.
    void toPutStream(PutStream& out) const;
    /// Copies the four bytes to `out`, which must not be null.
    void toArray(unsigned char* out);

    /// Returns whether the first byte is not zero. Callers rely on all of 0.0.0.0/8 being invalid.
    bool isValid() const;
    /// Returns whether all four bytes are zero.
    bool isZero() const;

    /// Returns the address as a word in network order, as in `in_addr.s_addr`.
    unsigned int getValue() const;
    /// Copies a word in network order, as the constructor does.
    void set(unsigned int word);
    /// Sets the four dotted components, `a` being the first (most significant) one.
    void set(unsigned char a, unsigned char b, unsigned char c, unsigned char d);

    /// Returns whether all four bytes are equal.
    bool operator==(const IPV4Address& other) const;
    /// Returns whether any of the four bytes differ.
    bool operator!=(const IPV4Address& other) const;

private:
    unsigned char m_bytes[4];
};

} // namespace utility
