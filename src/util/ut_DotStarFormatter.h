#pragma once

#include "ut_Export.h"

namespace utility {

/// Splits a group selector: a name with zero or more ".*" marks behind it.
///
/// Holds no state, keeps nothing, may be used from any thread. A text that is no selector is answered with false.
///
///     char name[32];
///     unsigned int level;
///     utility::DotStarFormatter::getLevelAndName("host.*.*", name, sizeof name - 1, level);   // "host", level 2
class VXUT_EXPORT DotStarFormatter {
public:
    /// Copies the part of `text` before its first ".*" to `name` and counts the marks in `level`. At most `size`
    /// characters are copied, and the terminator may stand at `name[size]`: the caller's array holds `size` + 1 bytes.
    /// A null `text` is an empty name, a null `name` takes nothing. False, with level 0 and `name` as it was, when the
    /// text begins with "." or when a pair of characters behind the first mark does not begin with "."; such a pair
    /// that is no mark is passed over.
    static bool getLevelAndName(const char* text, char* name, unsigned int size, unsigned int& level);
};

} // namespace utility
