#include "ut_ISCSIPortAddress.h"

#include <cstring>
#include <type_traits>

#include "fw_Logger.h"
#include "ut_BufferStream.h"

namespace utility {

static_assert(std::is_trivially_destructible<ISCSIPortAddress>::value,
              "is deleted through a base class without a virtual destructor");

ISCSIPortAddress::ISCSIPortAddress(IPV4Address& address, unsigned int port, const char* name)
    : m_ipType(IP_V4), m_ipv4(address), m_port(port), m_name() {
    setName(name);
}

ISCSIPortAddress::ISCSIPortAddress(IPV6Address& address, unsigned int port, const char* name)
    : m_ipType(IP_V6), m_ipv6(address), m_port(port), m_name() {
    setName(name);
}

ISCSIPortAddress::ISCSIPortAddress(const ISCSIPortAddress& other) = default;

void ISCSIPortAddress::setName(const char* name) {
    if (name == nullptr)
        return;
    memccpy(m_name, name, 0, sizeof m_name);
    m_name[sizeof m_name - 1] = 0;
}

PortAddress* ISCSIPortAddress::clone() const {
    return new ISCSIPortAddress(*this);
}

PortAddress::PortType ISCSIPortAddress::getType() const {
    return PORT_ISCSI;
}

char* ISCSIPortAddress::toBuffer(char* buf, unsigned int size) const {
    BufferStream stream(buf, static_cast<int>(size), true);
    if (m_ipType == IP_V4)
        m_ipv4.toPutStream(stream);
    else
        m_ipv6.toPutStream(stream);
    if (m_port != 0)
        stream.PutF(":%d", static_cast<int>(m_port));
    if (m_name[0] != 0)
        stream.PutF("[%s]", m_name);
    return buf;
}

bool ISCSIPortAddress::fromString(const char*) {
    framework::Logger::StaticLog(framework::Logger::LOG_ERROR, "this isn't implemented");
    return false;
}

bool ISCSIPortAddress::operator==(const PortAddress& other) const {
    if (other.getType() != PORT_ISCSI)
        return false;
    const ISCSIPortAddress& address = dynamic_cast<const ISCSIPortAddress&>(other);
    if (m_ipType != address.m_ipType)
        return false;
    const bool sameAddress = m_ipType == IP_V4 ? m_ipv4 == address.m_ipv4 : m_ipv6 == address.m_ipv6;
    return sameAddress && m_port == address.m_port && std::strcmp(m_name, address.m_name) == 0;
}

ISCSIPortAddress& ISCSIPortAddress::operator=(const ISCSIPortAddress& other) {
    if (this == &other)
        return *this;
    m_ipType = other.m_ipType;
    m_ipv4 = other.m_ipv4;
    m_ipv6 = other.m_ipv6;
    m_port = other.m_port;
    std::memcpy(m_name, other.m_name, sizeof m_name);
    return *this;
}

} // namespace utility
