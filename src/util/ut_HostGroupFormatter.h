#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// The number of ".*" marks in a host selector.
enum HostGroupLevel : uint32_t { HOST_GROUP_LEVEL_0 = 0, HOST_GROUP_LEVEL_1 = 1, HOST_GROUP_LEVEL_2 = 2 };

/// Splits a selector of hosts: a name, then up to two ".*" marks.
///
/// Stateless and thread-safe. Parsing returns false if the text is not a selector.
///
///     char name[32];
///     utility::HostGroupLevel level;
///     utility::HostGroupFormatter::getHostLevelAndName("host.*.*", name, sizeof name - 1, level);   // "host", level 2
class VXUT_EXPORT HostGroupFormatter {
public:
    /// Splits `text` as `DotStarFormatter::getLevelAndName` does, with the same parameters. `name` must have space for
    /// `size` + 1 bytes. Returns false and sets `level` to 0 if:
    /// - `text` is null,
    /// - `DotStarFormatter::getLevelAndName` returns false, or
    /// - `text` has more than two marks; `name` is written in this case.
    static bool getHostLevelAndName(const char* text, char* name, unsigned int size, HostGroupLevel& level);
};

} // namespace utility
