#include "ut_PortAddress.h"

#include <strings.h>

#include "fw_KnownStrings.h"
#include "internal/ut_Trace.h"
#include "internal/ut_WriteHead.h"
#include "ut_PutStream.h"

namespace utility {

PortAddress::PortType PortAddress::getType() const {
    return PORT_UNDEFINED;
}

bool PortAddress::operator!=(const PortAddress& other) const {
    return !(*this == other);
}

void PortAddress::toPutStream(PutStream& out) const {
    WriteHead head(out);
    head.advance(toBuffer(head.start(), head.capacity()));
}

PortAddress::PortType PortAddress::StrToPortType(const char* text) {
    if (text == nullptr)
        return PORT_UNDEFINED;
    if (strcasecmp(text, pGSFC) == 0)
        return PORT_FC;
    if (strcasecmp(text, pGSiSCSI) == 0)
        return PORT_ISCSI;
    return PORT_UNDEFINED;
}

unsigned int PortAddress::PortTypeToNumeric(PortType type) {
    switch (type) {
    case PORT_FC:
        return 6;
    case PORT_ISCSI:
        return 9;
    default:
        return 0;
    }
}

PortAddress::PortType PortAddress::PortTypeFromLinkType(uint8_t linkType) {
    VXUT_TRACE(TOKEN_PORT_ADDRESS, "link-type[%d]", linkType);
    switch (linkType) {
    case 1:
    case 64:
    case 128:
        VXUT_TRACE(TOKEN_PORT_ADDRESS, "iSCSI");
        return PORT_ISCSI;
    case 2:
    case 8:
    case 16:
        VXUT_TRACE(TOKEN_PORT_ADDRESS, "FC");
        return PORT_FC;
    default:
        VXUT_TRACE(TOKEN_PORT_ADDRESS, "Undefined!");
        return PORT_UNDEFINED;
    }
}

void* PortAddress::operator new(std::size_t size) {
    return ::operator new(size);
}

void* PortAddress::operator new(std::size_t size, const std::nothrow_t& tag) noexcept {
    return ::operator new(size, tag);
}

void* PortAddress::operator new(std::size_t, void* place) noexcept {
    return place;
}

void PortAddress::operator delete(void* address) noexcept {
    ::operator delete(address);
}

} // namespace utility
