#pragma once

#include "ut_Export.h"

namespace utility {

/// The direction in which a list is walked. Any number is a valid order: all but 0 walk from the last to the first.
enum SortOrder : int { FIRST_TO_LAST = 0, LAST_TO_FIRST = 1 };

} // namespace utility
