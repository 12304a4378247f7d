#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// The number of ".*" marks in a volume selector.
enum VolumeLevel : uint32_t { VOLUME_LEVEL_0 = 0, VOLUME_LEVEL_1 = 1 };

/// Splits a selector of volumes: a name, then at most one ".*" mark.
///
/// Stateless and thread-safe. Parsing returns false if the text is not a selector.
///
///     char name[32];
///     utility::VolumeLevel level;
///     utility::VolumeGroupFormatter::getVolumeLevelAndName("vg.*", name, sizeof name - 1, level);   // "vg", level 1
class VXUT_EXPORT VolumeGroupFormatter {
public:
    /// Splits `text` as `DotStarFormatter::getLevelAndName` does, with the same parameters. `name` must have space for
    /// `size` + 1 bytes. Returns false and sets `level` to 0 if:
    /// - `text` is null,
    /// - `DotStarFormatter::getLevelAndName` returns false, or
    /// - `text` has more than one mark; `name` is written in this case.
    static bool getVolumeLevelAndName(const char* text, char* name, unsigned int size, VolumeLevel& level);
};

} // namespace utility
