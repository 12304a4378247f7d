#pragma once

#include "ut_Export.h"

#include <cstdint>

#include "ut_IPV4Address.h"
#include "ut_IPV6Address.h"
#include "ut_PortAddress.h"

namespace utility {

// The destructor is not virtual, as in `PortAddress`.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The address of an iSCSI host port: an IP address, a TCP port and an iSCSI name.
///
/// A plain value: it owns nothing, copies the name and is copied freely. One thread at a time. Nothing here throws,
/// except `clone` without memory and a comparison with an object that says it is of this class and is not.
///
///     utility::IPV4Address address("10.1.2.3");
///     utility::ISCSIPortAddress port(address, 3260, "tgt1");
///     char text[64];
///     port.toBuffer(text, sizeof text);   // "10.1.2.3:3260[tgt1]"
class VXUT_EXPORT ISCSIPortAddress : public PortAddress {
public:
    enum IPType : uint32_t { IP_V4 = 1358, IP_V6 = 1359 };

    /// A `port` of 0 is not given. Of `name`, which is copied, the first 223 characters are kept; null is an empty
    /// name.
    ISCSIPortAddress(IPV4Address& address, unsigned int port, const char* name);
    ISCSIPortAddress(IPV6Address& address, unsigned int port, const char* name);
    ISCSIPortAddress(const ISCSIPortAddress& other);

    PortAddress* clone() const override;
    PortType getType() const override;
    /// Writes the address, ":" and the port where one is given, and the name in brackets where there is one, to `buf`
    /// of `size` bytes (at most 2,147,483,647), and returns `buf`. A text that does not fit is cut and the cut is
    /// logged, but an IPv6 address is left out whole. An IPv6 address is not bracketed. Ports above 2,147,483,647 show
    /// as negative. A null `buf` takes nothing.
    char* toBuffer(char* buf, unsigned int size) const override;
    /// Not supported: logs that at level 0, changes nothing and gives false.
    bool fromString(const char* text) override;
    /// Whether `other` is an iSCSI address with the same kind of IP address, the same address, port and name; case
    /// matters in the name.
    bool operator==(const PortAddress& other) const override;
    virtual ISCSIPortAddress& operator=(const ISCSIPortAddress& other);

    IPType getIPType() const {
        return m_ipType;
    }
    /// The address where it is of this kind, else all zero.
    const IPV4Address& getIPV4() const {
        return m_ipv4;
    }
    const IPV6Address& getIPV6() const {
        return m_ipv6;
    }
    /// The TCP port; 0 when none is given.
    unsigned int getPort() const {
        return m_port;
    }
    /// The name, which lives as long as the address; never null.
    const char* getName() const {
        return m_name;
    }

private:
    void setName(const char* name);

    IPType m_ipType;
    IPV4Address m_ipv4;
    IPV6Address m_ipv6;
    uint32_t m_port;
    char m_name[224];
};

#pragma GCC diagnostic pop

} // namespace utility
