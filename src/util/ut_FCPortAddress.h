#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_PortAddress.h"
#include "ut_WWN.h"

namespace utility {

// The destructor is not virtual, as in `PortAddress`.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The address of a Fibre Channel host port: its World Wide Name, and what kind of name that is.
///
/// A plain value: it owns nothing and is copied freely. One thread at a time. Nothing here throws, except `clone`
/// without memory and a comparison with an object that says it is of this class and is not.
///
///     utility::FCPortAddress port(utility::FCPortAddress::WWN_TYPE_0, "500A09818D5F1234");
///     char text[17];
///     port.toBuffer(text, sizeof text);   // "500a09818d5f1234"
class VXUT_EXPORT FCPortAddress : public PortAddress {
public:
    /// Only stored and compared here: what the numbers mean is up to the callers, who may use others too.
    enum WWNType : uint32_t { WWN_TYPE_0 = 0, WWN_TYPE_1 = 1 };

    /// Reads the name as `WWN::fromString` does, from all zero.
    FCPortAddress(WWNType type, const char* text);
    FCPortAddress(WWNType type, WWN& wwn);
    /// Copies eight bytes from `bytes`, which must not be null.
    FCPortAddress(WWNType type, unsigned char* bytes);
    FCPortAddress(const FCPortAddress& other);

    PortAddress* clone() const override;
    PortType getType() const override;
    /// Writes sixteen lower-case digits, bounded as `WWN::toBuffer`: 17 bytes hold them and their terminator.
    char* toBuffer(char* buf, unsigned int size) const override;
    /// Reads the name as `WWN::fromString` does; its kind stays as it is.
    bool fromString(const char* text) override;
    /// Whether `other` is a Fibre Channel address with the same name and the same kind of name.
    bool operator==(const PortAddress& other) const override;
    virtual FCPortAddress& operator=(const FCPortAddress& other);

    const WWN& getWWN() const {
        return m_wwn;
    }
    WWNType getWWNType() const {
        return m_wwnType;
    }

private:
    WWN m_wwn;
    WWNType m_wwnType;
};

#pragma GCC diagnostic pop

} // namespace utility
