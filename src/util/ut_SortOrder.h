#pragma once

#include "ut_Export.h"

namespace utility {

/// The direction of iteration over a list. Any number is valid: every value except 0 iterates from the last element to
/// the first.
enum SortOrder : int { FIRST_TO_LAST = 0, LAST_TO_FIRST = 1 };

} // namespace utility
