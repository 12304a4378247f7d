#pragma once

#include <string>
#include <vector>

namespace console {

/// The World Wide Names of a Fibre Channel host; an unknown name is empty.
struct FibreChannelHost {
    std::string name;
    std::string node;
    std::string port;
};

/// The World Wide Name and the serial number of a disk; what is not known is empty.
struct DiskIdentity {
    std::string name;
    std::string wwn;
    std::string serial;
};

/// Returns the hosts of `root`/sys/class/fc_host in alphabetical order.
/// - `failure`: set to the path and the reason if a file exists but cannot be read
std::vector<FibreChannelHost> fibreChannelHostsUnder(const std::string& root, std::string* failure);

/// Returns the disks of `root`/sys/block in alphabetical order, without block devices that no hardware belongs to, such
/// as loop devices.
/// - `failure`: set to the path and the reason if a file exists but cannot be read
std::vector<DiskIdentity> disksUnder(const std::string& root, std::string* failure);

/// Returns `text`, such as "0x500A09818D5F1234" or "naa.500a09818d5f1234", as `utility::WWN` or `utility::SerialNumber`
/// writes it, or `text` itself if it has neither form.
///
///     console::identifierText("0x500A09818D5F1234")   // "500a09818d5f1234"
std::string identifierText(const std::string& text);

} // namespace console
