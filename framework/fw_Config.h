#pragma once

#include "fw_Export.h"

namespace framework {

/// Builds the names of the files that the stack reads and writes.
///
///     char* name = framework::Config::generateNameString("%s%s", root, "/etc/passwd");
///     framework::Memory::StaticFreeString(name);
class VXFW_EXPORT Config {
public:
    /// Returns the formatted text, of any length, or null if an allocation fails. The caller releases it with
    /// `Memory::StaticFreeString`.
    static char* generateNameString(const char* format, ...) VXFW_PRINTF(1, 2);
};

} // namespace framework
