#pragma once

#include "fw_StringToken.h"

namespace strings {

/// The lowest number of a text made at run time.
constexpr stringtoken firstRunTimeToken = 6945;

/// Returns the number of a text without a fixed one, assigned on first use, or 0 if an allocation fails.
stringtoken runTimeToken(const char* text);

/// Returns the text with the run-time number `token`, or null.
const char* runTimeText(stringtoken token);

} // namespace strings
