#pragma once

#include "ut_Export.h"

#include <cstdint>

namespace utility {

/// Selects a controller of a storage array. Values other than these enumerators may occur.
enum ControllerSelector : uint32_t { CONTROLLER_B = 0, CONTROLLER_A = 1, CONTROLLER_ANY = 2, CONTROLLER_UNKNOWN = 3 };

/// Returns the character for `selector`: 'B', 'A', '*' and '?' for 0 to 3, and '-' for any other number. Selector 0 is
/// deliberately controller B, not A: callers rely on it. Never fails. Thread-safe.
///
///     utility::decodeControllerSelector(utility::CONTROLLER_B);   // 'B'
VXUT_EXPORT char decodeControllerSelector(ControllerSelector selector);

} // namespace utility
