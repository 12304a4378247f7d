#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// How many ".*" marks a volume selector has.
enum VolumeLevel : uint32_t { VOLUME_LEVEL_0 = 0, VOLUME_LEVEL_1 = 1 };

/// Splits the selector of volumes: a name with at most one ".*" mark behind it.
///
/// Holds no state, keeps nothing, may be used from any thread. A text that is no selector is answered with false.
///
///     char name[32];
///     utility::VolumeLevel level;
///     utility::VolumeGroupFormatter::getVolumeLevelAndName("vg.*", name, sizeof name - 1, level);   // "vg", level 1
class VXUT_EXPORT VolumeGroupFormatter {
public:
    /// Splits `text` as `DotStarFormatter::getLevelAndName` does; `name` holds `size` + 1 bytes. False, with level 0,
    /// for a null text, for what that refuses and for more than one mark; in the last case `name` is filled all the
    /// same.
    static bool getVolumeLevelAndName(const char* text, char* name, unsigned int size, VolumeLevel& level);
};

} // namespace utility
