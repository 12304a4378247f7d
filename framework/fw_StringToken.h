#pragma once

#include "fw_Export.h"

#include <cstdint>

namespace strings {

/// The number of an interned text; 0 is never the number of a text.
typedef std::uint32_t stringtoken;

} // namespace strings

using strings::stringtoken;
