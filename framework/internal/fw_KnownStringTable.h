#pragma once

#include "fw_StringToken.h"

namespace strings {

/// Returns the fixed number of `text`, or 0 if it has none.
stringtoken knownToken(const char* text);

/// Returns the text with the fixed number `token`, or null.
const char* knownText(stringtoken token);

} // namespace strings
