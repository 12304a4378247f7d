#pragma once

#include "ut_Export.h"

namespace utility {

/// Splits a group selector: a name, then zero or more ".*" marks.
///
/// Stateless and thread-safe. Parsing returns false if the text is not a selector.
///
///     char name[32];
///     unsigned int level;
///     utility::DotStarFormatter::getLevelAndName("host.*.*", name, sizeof name - 1, level);   // "host", level 2
class VXUT_EXPORT DotStarFormatter {
public:
    /// Copies the part of `text` before its first ".*" to `name` and counts the ".*" marks. From the first mark on,
    /// `text` is read in pairs of characters, and each pair must begin with "."; a pair other than ".*" is ignored.
    /// Returns false, sets `level` to 0 and leaves `name` unchanged if `text` begins with "." or if a later pair does
    /// not begin with ".".
    /// - `text`: the selector; null: empty
    /// - `name`: receives the NUL-terminated name, in an array of at least `size` + 1 bytes; null: not written
    /// - `size`: maximum length of the name, without its terminator; a longer name is truncated
    /// - `level`: receives the number of marks
    static bool getLevelAndName(const char* text, char* name, unsigned int size, unsigned int& level);
};

} // namespace utility
