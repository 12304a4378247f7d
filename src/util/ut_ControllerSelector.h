#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// Which controller of an array is meant. Other numbers may occur too.
enum ControllerSelector : uint32_t { CONTROLLER_B = 0, CONTROLLER_A = 1, CONTROLLER_ANY = 2, CONTROLLER_UNKNOWN = 3 };

/// The character that shows `selector`: 'B', 'A', '*' or '?', in the order of the numbers, and '-' for any other.
/// Selector 0 is controller B, deliberately: callers rely on the first two being crossed. Any thread, never fails.
///
///     utility::decodeControllerSelector(utility::CONTROLLER_B);   // 'B'
VXUT_EXPORT char decodeControllerSelector(ControllerSelector selector);

} // namespace utility
