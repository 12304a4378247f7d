// Compares the texts of both kinds of port addresses, alone and in an array, with texts made by the standard library.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include <arpa/inet.h>
#include <strings.h>

#include "Bytes.h"
#include "ut_BufferStream.h"
#include "ut_ControllerSelector.h"
#include "ut_FCPortAddress.h"
#include "ut_IPV4Address.h"
#include "ut_IPV6Address.h"
#include "ut_ISCSIPortAddress.h"
#include "ut_PortAddressArray.h"

namespace {

using fuzz::Bytes;
using fuzz::require;
using utility::FCPortAddress;
using utility::ISCSIPortAddress;
using utility::PortAddress;

// The destructor is not virtual, but the classes are trivially destructible: release only the memory.
struct AddressDeleter {
    void operator()(PortAddress* address) const {
        PortAddress::operator delete(address);
    }
};
typedef std::unique_ptr<PortAddress, AddressDeleter> OwnedAddress;

// An address and its expected text.
struct Expected {
    PortAddress* address;
    PortAddress::PortType type;
    std::string text;
    unsigned int other; // compared but not printed
};

void fill(Bytes& in, std::uint8_t* bytes, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = in.byte();
}

Expected makeFC(Bytes& in) {
    std::uint8_t bytes[8];
    char text[17];
    fill(in, bytes, sizeof bytes);
    for (std::size_t i = 0; i < sizeof bytes; ++i)
        std::snprintf(text + 2 * i, 3, "%02x", bytes[i]);
    const unsigned int type = in.below(2);
    const FCPortAddress::WWNType wwnType = static_cast<FCPortAddress::WWNType>(type);
    PortAddress* address = nullptr;
    if (in.flag()) {
        address = new FCPortAddress(wwnType, bytes);
    } else {
        address = new FCPortAddress(wwnType, text);
    }
    return {address, PortAddress::PORT_FC, text, type};
}

Expected makeISCSI(Bytes& in) {
    char text[INET6_ADDRSTRLEN];
    const unsigned int port = in.flag() ? in.number<std::uint16_t>() : 0;
    const std::string given = in.text(256);
    const std::string name = given.substr(0, 223);
    const std::unique_ptr<char[]> exact = fuzz::exactCopy(given + '\0');
    PortAddress* address = nullptr;
    const bool isV4 = in.flag();
    if (isV4) {
        in_addr bytes = {in.number<std::uint32_t>()};
        utility::IPV4Address value(bytes.s_addr);
        inet_ntop(AF_INET, &bytes, text, sizeof text);
        address = new ISCSIPortAddress(value, port, exact.get());
    } else {
        in6_addr bytes = {};
        fill(in, bytes.s6_addr, sizeof bytes.s6_addr);
        inet_ntop(AF_INET6, &bytes, text, sizeof text);
        utility::IPV6Address value(text);
        address = new ISCSIPortAddress(value, port, exact.get());
    }
    const std::string whole =
        std::string(text) + (port != 0 ? ':' + std::to_string(port) : "") + (name.empty() ? "" : '[' + name + ']');
    return {address, PortAddress::PORT_ISCSI, whole, isV4 ? 4U : 6U};
}

void checkText(const Expected& expected, std::size_t size) {
    // An array that is too small truncates the text; that of an FC address is then not terminated.
    std::vector<char> text(size + 1, '#');
    require(expected.address->toBuffer(text.data(), static_cast<unsigned int>(size)) == text.data());
    require(text[size] == '#');
    // Writing a single address needs one more byte than its text.
    if (size > expected.text.size() + 1)
        require(text.data() == expected.text);
    utility::BufferStream out(static_cast<int>(expected.text.size()) + 2);
    expected.address->toPutStream(out);
    require(std::string(out.pTail(), static_cast<std::size_t>(out.ReadAvailable())) == expected.text);
}

void checkCopy(const Expected& expected) {
    const OwnedAddress copy(expected.address->clone());
    require(*copy == *expected.address && !(*copy != *expected.address));
    require(copy->getType() == expected.type);
    const Expected same = {copy.get(), expected.type, expected.text, expected.other};
    checkText(same, expected.text.size() + 2);
}

// Checks whether a copy of the FC address `expected` accepts `text`, and its value afterwards.
void checkReading(const Expected& expected, const std::string& text) {
    const OwnedAddress copy(expected.address->clone());
    const std::size_t digits = std::min(text.find_first_not_of("0123456789abcdefABCDEF"), text.size());
    const bool isTaken = copy->fromString(text.c_str());
    require(isTaken == (expected.type == PortAddress::PORT_FC && digits >= 16));
    require(expected.type == PortAddress::PORT_FC || *copy == *expected.address);
    if (!isTaken)
        return;
    char printed[17];
    copy->toBuffer(printed, sizeof printed);
    require(strncasecmp(printed, text.c_str(), 16) == 0);
}

void checkArray(const std::vector<Expected>& all) {
    utility::PortAddressArray array(1);
    std::string text;
    for (const Expected& expected : all) {
        text += (text.empty() && array.length() == 0 ? "" : ",") + expected.text;
        array.Append(expected.address);
        require(array.Find(expected.address) == array.length() - 1);
    }
    utility::PortAddressArray copy(0);
    copy = array;
    require(copy.length() == array.length());
    utility::BufferStream out(static_cast<int>(text.size()) + 2);
    copy.toPutStream(out);
    require(std::string(out.pTail(), static_cast<std::size_t>(out.ReadAvailable())) == text);
    for (unsigned int i = 0; i < copy.length(); ++i)
        require(copy[i] != array[i] && *copy[i] == *array[i]);
}

void checkTypes(Bytes& in) {
    const std::uint8_t linkType = in.byte();
    const PortAddress::PortType type = PortAddress::PortTypeFromLinkType(linkType);
    const bool isISCSI = linkType == 1 || linkType == 64 || linkType == 128;
    const bool isFC = linkType == 2 || linkType == 8 || linkType == 16;
    require(type == (isISCSI ? PortAddress::PORT_ISCSI : isFC ? PortAddress::PORT_FC : PortAddress::PORT_UNDEFINED));
    require(PortAddress::PortTypeToNumeric(type) == (isISCSI ? 9U : isFC ? 6U : 0U));
    const std::string word = in.text(8);
    const PortAddress::PortType named = PortAddress::StrToPortType(word.c_str());
    require((named == PortAddress::PORT_FC) == (strcasecmp(word.c_str(), "FC") == 0));
    require((named == PortAddress::PORT_ISCSI) == (strcasecmp(word.c_str(), "iSCSI") == 0));
    const unsigned int selector = in.below(8);
    require(utility::decodeControllerSelector(static_cast<utility::ControllerSelector>(selector)) ==
            "BA*?----"[selector]);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::SilentLog silence;
    Bytes in(data, size);
    checkTypes(in);
    std::vector<Expected> all;
    while (!in.isAtEnd() && all.size() < 20) {
        all.push_back(in.flag() ? makeFC(in) : makeISCSI(in));
        const Expected& latest = all.back();
        require(latest.address->getType() == latest.type);
        checkText(latest, in.byte());
        checkCopy(latest);
        checkReading(latest, in.text(40));
        for (const Expected& other : all) {
            const bool isEqual = latest.type == other.type && latest.text == other.text && latest.other == other.other;
            require((*latest.address == *other.address) == isEqual);
        }
    }
    checkArray(all);
    return 0;
}
