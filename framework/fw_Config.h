#pragma once

#include "fw_Export.h"

namespace framework {

/// Builds file names from a format.
///
///     char* name = framework::Config::generateNameString("%s%s", root, "/etc/passwd");
///     framework::Memory::StaticFreeString(name);
class VXFW_EXPORT Config {
public:
    /// Returns the text formatted as `printf` does, of any length, or null if the allocation fails. The caller frees it
    /// with `Memory::StaticFreeString`.
    static char* generateNameString(const char* format, ...) VXFW_PRINTF(1, 2);
};

} // namespace framework
