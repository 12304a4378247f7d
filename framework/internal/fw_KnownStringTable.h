#pragma once

#include "fw_StringToken.h"

namespace strings {

/// Returns the fixed number of `text`, or 0 if `text` is not in the table.
stringtoken knownToken(const char* text);

/// Returns the text with the fixed number `token`, or null if there is none. The library owns the text.
const char* knownText(stringtoken token);

} // namespace strings
