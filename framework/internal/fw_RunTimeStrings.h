#pragma once

#include "fw_StringToken.h"

namespace strings {

/// The lowest number that is assigned at run time.
constexpr stringtoken firstRunTimeToken = 6945;

/// Returns the number of `text`, which has no fixed number, and assigns one on first use. Returns 0 if an allocation
/// fails.
stringtoken runTimeToken(const char* text);

/// Returns the text with the run-time number `token`, or null if there is none. The library owns the text.
const char* runTimeText(stringtoken token);

} // namespace strings
