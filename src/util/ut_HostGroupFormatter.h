#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// How many ".*" marks a host selector has.
enum HostGroupLevel : uint32_t { HOST_GROUP_LEVEL_0 = 0, HOST_GROUP_LEVEL_1 = 1, HOST_GROUP_LEVEL_2 = 2 };

/// Splits the selector of hosts: a name with up to two ".*" marks behind it.
///
/// Holds no state, keeps nothing, may be used from any thread. A text that is no selector is answered with false.
///
///     char name[32];
///     utility::HostGroupLevel level;
///     utility::HostGroupFormatter::getHostLevelAndName("host.*.*", name, sizeof name - 1, level);   // "host", level 2
class VXUT_EXPORT HostGroupFormatter {
public:
    /// Splits `text` as `DotStarFormatter::getLevelAndName` does; `name` holds `size` + 1 bytes. False, with level 0,
    /// for a null text, for what that refuses and for more than two marks; in the last case `name` is filled all the
    /// same.
    static bool getHostLevelAndName(const char* text, char* name, unsigned int size, HostGroupLevel& level);
};

} // namespace utility
