#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "fw_KnownTokens.h"
#include "ut_IPV4Address.h"
#include "ut_IPV6Address.h"
#include "ut_PortAddress.h"

namespace utility {

// The destructor is not virtual, as in `PortAddress`.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The address of an iSCSI host port: an IP address, a TCP port and an iSCSI name.
///
/// A plain value that contains a copy of the name and may itself be copied. Not thread-safe. Only `clone` and
/// `operator==` throw, as in `PortAddress`.
///
///     utility::IPV4Address address("10.1.2.3");
///     utility::ISCSIPortAddress port(address, 3260, "tgt1");
///     char text[64];
///     port.toBuffer(text, sizeof text);   // "10.1.2.3:3260[tgt1]"
class VXUT_EXPORT ISCSIPortAddress : public PortAddress {
public:
    /// The IP version of an address.
    enum IPType : uint32_t { IP_V4 = strings::TOKEN_IPV4, IP_V6 = strings::TOKEN_IPV6 };

    /// Copies an IPv4 address, a port and a name.
    /// - `port`: TCP port; 0: no port
    /// - `name`: iSCSI name, truncated to 223 characters; null: empty
    ISCSIPortAddress(IPV4Address& address, unsigned int port, const char* name);
    /// Copies an IPv6 address, and `port` and `name` as the constructor with an IPv4 address does.
    ISCSIPortAddress(IPV6Address& address, unsigned int port, const char* name);
    /// Copies the address, port and name of `other`.
    ISCSIPortAddress(const ISCSIPortAddress& other);

    /// Returns a new copy, which the caller owns. Throws `std::bad_alloc` if memory is exhausted.
    PortAddress* clone() const override;
    /// Returns `PORT_ISCSI`.
    PortType getType() const override;
    /// Writes a NUL-terminated text to `buf` and returns `buf`: the IP address, ":" and the port unless it is 0, and
    /// the name in brackets unless it is empty. Does nothing if `buf` is null.
    /// - A text that does not fit is truncated and logged; an IPv6 address that does not fit is omitted.
    /// - IPv6 addresses have no brackets.
    /// - Ports above 2,147,483,647 are written as negative numbers.
    /// - `size`: size of `buf` in bytes, at most 2,147,483,647
    char* toBuffer(char* buf, unsigned int size) const override;
    /// Not supported: logs an error (level 0), leaves the address unchanged and returns false.
    bool fromString(const char* text) override;
    /// Returns whether `other` is an iSCSI address with the same IP version, IP address, port and name. The comparison
    /// of names is case-sensitive.
    bool operator==(const PortAddress& other) const override;
    /// Copies the address, port and name of `other`.
    virtual ISCSIPortAddress& operator=(const ISCSIPortAddress& other);

    /// Returns the version of the IP address.
    IPType getIPType() const {
        return m_ipType;
    }
    /// Returns the IPv4 address, which is all zero unless `getIPType()` is `IP_V4`.
    const IPV4Address& getIPV4() const {
        return m_ipv4;
    }
    /// Returns the IPv6 address, which is all zero unless `getIPType()` is `IP_V6`.
    const IPV6Address& getIPV6() const {
        return m_ipv6;
    }
    /// Returns the TCP port, or 0 if there is none.
    unsigned int getPort() const {
        return m_port;
    }
    /// Returns the name, which this object owns; never null.
    const char* getName() const {
        return m_name;
    }

private:
    VXUT_HIDDEN void setName(const char* name);

    IPType m_ipType;
    IPV4Address m_ipv4;
    IPV6Address m_ipv6;
    uint32_t m_port;
    char m_name[224];
};

#pragma GCC diagnostic pop

} // namespace utility
