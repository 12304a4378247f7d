#include "ut_FCPortAddress.h"

#include <type_traits>

namespace utility {

static_assert(std::is_trivially_destructible<FCPortAddress>::value,
              "is deleted through a base class without a virtual destructor");

FCPortAddress::FCPortAddress(WWNType type, const char* text) : m_wwn(text), m_wwnType(type) {}

FCPortAddress::FCPortAddress(WWNType type, WWN& wwn) : m_wwn(wwn), m_wwnType(type) {}

FCPortAddress::FCPortAddress(WWNType type, unsigned char* bytes) : m_wwn(bytes), m_wwnType(type) {}

FCPortAddress::FCPortAddress(const FCPortAddress& other) = default;

PortAddress* FCPortAddress::clone() const {
    return new FCPortAddress(*this);
}

PortAddress::PortType FCPortAddress::getType() const {
    return PORT_FC;
}

char* FCPortAddress::toBuffer(char* buf, unsigned int size) const {
    return m_wwn.toBuffer(buf, size);
}

bool FCPortAddress::fromString(const char* text) {
    return m_wwn.fromString(text);
}

bool FCPortAddress::operator==(const PortAddress& other) const {
    if (other.getType() != PORT_FC)
        return false;
    const FCPortAddress& address = dynamic_cast<const FCPortAddress&>(other);
    return m_wwnType == address.m_wwnType && m_wwn == address.m_wwn;
}

FCPortAddress& FCPortAddress::operator=(const FCPortAddress& other) {
    m_wwn = other.m_wwn;
    m_wwnType = other.m_wwnType;
    return *this;
}

} // namespace utility
