#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_PortAddress.h"
#include "ut_WWN.h"

namespace utility {

// The destructor is not virtual, as in `PortAddress`.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The address of a Fibre Channel host port: its World Wide Name and the type of that name.
///
/// A plain value that may be copied and owns no resources. Not thread-safe. Only `clone` and `operator==` throw, as in
/// `PortAddress`.
///
///     utility::FCPortAddress port(utility::FCPortAddress::WWN_TYPE_0, "500A09818D5F1234");
///     char text[17];
///     port.toBuffer(text, sizeof text);   // "500a09818d5f1234"
class VXUT_EXPORT FCPortAddress : public PortAddress {
public:
    /// The type of a name. This class only stores and compares it: callers define what the numbers mean, and may use
    /// numbers other than these.
    enum WWNType : uint32_t { WWN_TYPE_0 = 0, WWN_TYPE_1 = 1 };

    /// Stores `type` and parses the name as `WWN(text)` does.
    FCPortAddress(WWNType type, const char* text);
    /// Copies `type` and `wwn`.
    FCPortAddress(WWNType type, WWN& wwn);
    /// Stores `type` and copies the eight bytes of the name from `bytes`, which must not be null.
    FCPortAddress(WWNType type, unsigned char* bytes);
    /// Copies the name and its type.
    FCPortAddress(const FCPortAddress& other);

    /// Returns a new copy, which the caller owns. Throws `std::bad_alloc` if memory is exhausted.
    PortAddress* clone() const override;
    /// Returns `PORT_FC`.
    PortType getType() const override;
    /// Writes the sixteen digits of the name to `buf` of `size` bytes and returns `buf`, with the truncation of
    /// `WWN::toBuffer`: 17 bytes are enough for the digits and the terminator.
    char* toBuffer(char* buf, unsigned int size) const override;
    /// Parses the name as `WWN::fromString` does, with the same result. The type is unchanged.
    bool fromString(const char* text) override;
    /// Returns whether `other` is a Fibre Channel address with the same name and the same type of name.
    bool operator==(const PortAddress& other) const override;
    /// Copies the name and its type.
    virtual FCPortAddress& operator=(const FCPortAddress& other);

    /// Returns the name. The reference is valid for the lifetime of this object.
    const WWN& getWWN() const {
        return m_wwn;
    }
    /// Returns the type of the name.
    WWNType getWWNType() const {
        return m_wwnType;
    }

private:
    WWN m_wwn;
    WWNType m_wwnType;
};

#pragma GCC diagnostic pop

} // namespace utility
