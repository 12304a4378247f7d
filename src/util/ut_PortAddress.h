#pragma once

#include "ut_Export.h"

#include <cstddef>
#include <cstdint>
#include <new>

#include "fw_KnownTokens.h"

namespace utility {

class PutStream;

// The destructor is not virtual: clients share the virtual table, which has no slot for it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The address of a host port: the base of `FCPortAddress` and `ISCSIPortAddress`.
///
/// A `PortAddressArray` owns addresses of both kinds and deletes them through this class. Because the destructor is not
/// virtual, every subclass must be trivially destructible, so that such a deletion releases all of its memory. Not
/// thread-safe. The subclasses document their failures.
///
///     utility::FCPortAddress port(utility::FCPortAddress::WWN_TYPE_0, "500a09818d5f1234");
///     utility::PortAddress& address = port;
///     utility::PortAddress::PortTypeToNumeric(address.getType());   // 6
class VXUT_EXPORT PortAddress {
public:
    /// The kinds of addresses. Callers store and exchange the numbers.
    enum PortType : uint32_t {
        PORT_UNDEFINED = strings::TOKEN_UNDEFINED,
        PORT_FC = strings::TOKEN_FC,
        PORT_ISCSI = strings::TOKEN_ISCSI
    };

    /// Returns a new copy, which the caller owns. Throws `std::bad_alloc` if memory is exhausted.
    virtual PortAddress* clone() const = 0;
    /// Returns the kind of this address: `PORT_UNDEFINED` unless the subclass overrides this operation.
    virtual PortType getType() const;
    /// Writes the NUL-terminated text of the address to `buf` of `size` bytes and returns `buf`. The subclass says how
    /// a text that does not fit is truncated. Does nothing if `buf` is null.
    virtual char* toBuffer(char* buf, unsigned int size) const = 0;
    /// Parses `text`. Returns false if it is not an address, or if the subclass does not support parsing.
    virtual bool fromString(const char* text) = 0;
    /// Returns whether both are the same address. Addresses of different kinds are not equal. Throws `std::bad_cast` if
    /// the `getType` of `other` returns the same kind, but `other` is not an object of that class.
    virtual bool operator==(const PortAddress& other) const = 0;

    /// Returns the opposite of `operator==`, with the same failure.
    bool operator!=(const PortAddress& other) const;
    /// Writes the address with `toBuffer` to the space left in `out`, so a text that does not fit is truncated in the
    /// same way.
    void toPutStream(PutStream& out) const;

    /// Returns the kind that `text` names, "FC" or "iSCSI" in upper or lower case, or `PORT_UNDEFINED` for null and any
    /// other text.
    static PortType StrToPortType(const char* text);
    /// Returns the number that represents `type` in messages: 6 for Fibre Channel, 9 for iSCSI, 0 otherwise.
    static unsigned int PortTypeToNumeric(PortType type);
    /// Returns the kind of a link: iSCSI for 1, 64 and 128; Fibre Channel for 2, 8 and 16; `PORT_UNDEFINED` for any
    /// other number, including a combination of these bits.
    static PortType PortTypeFromLinkType(uint8_t linkType);

    /// Calls the global `operator new`.
    static void* operator new(std::size_t size);
    /// Calls the global nothrow `operator new`: returns null if memory is exhausted.
    static void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept;
    /// Placement new: returns `place`.
    static void* operator new(std::size_t size, void* place) noexcept;
    /// Calls the global `operator delete` without a size, because a deletion through this class does not know the size
    /// of the subclass.
    static void operator delete(void* address) noexcept;
};

#pragma GCC diagnostic pop

} // namespace utility
