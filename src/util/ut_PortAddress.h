#pragma once

#include "ut_Export.h"

#include <cstddef>
#include <cstdint>
#include <new>

namespace utility {

class PutStream;

// The destructor is not virtual: clients share the virtual table, which has no slot for it.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The address of a host port, of either kind: Fibre Channel or iSCSI.
///
/// Addresses of both kinds stand in one `PortAddressArray`, which owns and deletes them. The destructor is not virtual,
/// so every kind must be trivially destructible; then deleting one through this class gives its memory back all the
/// same. One thread at a time. Failures are those of the kinds.
///
///     utility::FCPortAddress port(utility::FCPortAddress::WWN_TYPE_0, "500a09818d5f1234");
///     utility::PortAddress& address = port;
///     utility::PortAddress::PortTypeToNumeric(address.getType());   // 6
class VXUT_EXPORT PortAddress {
public:
    /// The numbers are stored and exchanged as they are.
    enum PortType : uint32_t { PORT_UNDEFINED = 1153, PORT_FC = 1509, PORT_ISCSI = 2152 };

    /// A new copy, which the caller owns. Throws `std::bad_alloc` when there is no memory.
    virtual PortAddress* clone() const = 0;
    virtual PortType getType() const;
    /// Writes the text of the address and a terminator to `buf` of `size` bytes and returns `buf`. A text that does not
    /// fit is cut as the kind cuts it; a null `buf` takes nothing.
    virtual char* toBuffer(char* buf, unsigned int size) const = 0;
    /// Reads the address from `text`; false when it cannot be read.
    virtual bool fromString(const char* text) = 0;
    /// Addresses of different kinds are never equal. Throws `std::bad_cast` when `other` says that it is of the same
    /// kind and is not.
    virtual bool operator==(const PortAddress& other) const = 0;

    bool operator!=(const PortAddress& other) const;
    /// Writes what `toBuffer` gives for the room that `out` has left: a text that does not fit is cut as the kind cuts
    /// it.
    void toPutStream(PutStream& out) const;

    /// The kind that `text` names, in either case: "FC" or "iSCSI". Anything else, or null, is undefined.
    static PortType StrToPortType(const char* text);
    /// The number of `type` in messages: 6 for Fibre Channel, 9 for iSCSI, 0 otherwise.
    static unsigned int PortTypeToNumeric(PortType type);
    /// The kind of a link: iSCSI for 1, 64 and 128, Fibre Channel for 2, 8 and 16. Anything else, also a combination of
    /// these bits, is undefined.
    static PortType PortTypeFromLinkType(uint8_t linkType);

    /// Addresses come from the global operators. `delete` takes no size here, because through this class it does not
    /// know that of the kind.
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t size, const std::nothrow_t& tag) noexcept;
    static void* operator new(std::size_t size, void* place) noexcept;
    static void operator delete(void* address) noexcept;
};

#pragma GCC diagnostic pop

} // namespace utility
