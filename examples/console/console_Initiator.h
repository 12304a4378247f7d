#pragma once

#include <string>

namespace console {

/// The iSCSI initiator of a machine.
struct Initiator {
    std::string name;
    std::string alias; ///< empty if there is none
};

/// Reads the initiator from the file at `path`, such as /etc/iscsi/initiatorname.iscsi: lines "InitiatorName=NAME" and
/// "InitiatorAlias=ALIAS" among comments, which begin with '#'. The first line with a name counts.
/// - `failure`: set to the path and the reason if the file cannot be read or does not contain a name
Initiator readInitiator(const std::string& path, std::string* failure);

} // namespace console
