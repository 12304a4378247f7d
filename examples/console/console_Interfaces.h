#pragma once

#include <string>
#include <vector>

namespace console {

/// A network interface of a machine, with the texts of its addresses.
struct Interface {
    std::string name;              ///< empty for addresses of which the interface is not known
    std::string mac;               ///< empty if the interface does not have a MAC address
    std::vector<std::string> ipv4; ///< as `utility::IPV4Address` writes them
    std::vector<std::string> ipv6; ///< as `utility::IPV6Address` writes them
};

/// Returns the network interfaces of this machine in alphabetical order, as the platform reports them. Needs neither
/// /sys nor /proc.
/// - `failure`: set to the reason if the platform does not report them
std::vector<Interface> interfacesOfThisMachine(std::string* failure);

/// Returns the network interfaces that the files under `root`/sys and `root`/proc describe, in alphabetical order.
///
/// Those files name the interface of an IPv6 address, but not of an IPv4 address: it belongs to the interface with the
/// narrowest direct route that contains it; addresses that begin with 127 belong to "lo". Other addresses are in an
/// entry without a name, which is the first.
/// - `failure`: set to the path and the reason if a file exists but cannot be read
std::vector<Interface> interfacesUnder(const std::string& root, std::string* failure);

} // namespace console
