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
/// A plain value, which owns nothing and may be copied. One thread at a time. Only `clone` and `operator==` throw, as
/// in `PortAddress`.
///
///     utility::FCPortAddress port(utility::FCPortAddress::WWN_TYPE_0, "500A09818D5F1234");
///     char text[17];
///     port.toBuffer(text, sizeof text);   // "500a09818d5f1234"
class VXUT_EXPORT FCPortAddress : public PortAddress {
public:
    /// The type of a name. This class only stores and compares it: callers define what the numbers mean and may use
    /// others.
    enum WWNType : uint32_t { WWN_TYPE_0 = 0, WWN_TYPE_1 = 1 };

    /// Parses the name as `WWN(text)` does.
    FCPortAddress(WWNType type, const char* text);
    /// Copies the name.
    FCPortAddress(WWNType type, WWN& wwn);
    /// Copies eight bytes from `bytes`, which must not be null.
    FCPortAddress(WWNType type, unsigned char* bytes);
    FCPortAddress(const FCPortAddress& other);

    PortAddress* clone() const override;
    PortType getType() const override;
    /// Writes the sixteen digits of the name, and truncates them, as `WWN::toBuffer` does: 17 bytes hold them and their
    /// terminator.
    char* toBuffer(char* buf, unsigned int size) const override;
    /// Parses the name as `WWN::fromString` does; its type is unchanged.
    bool fromString(const char* text) override;
    /// Whether `other` is a Fibre Channel address with the same name and the same type of name.
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
