#pragma once

#include "fw_StringToken.h"

namespace strings {

/// The fixed number of `text`, or 0.
stringtoken knownToken(const char* text);

/// The text with the fixed number `token`, or null.
const char* knownText(stringtoken token);

} // namespace strings
