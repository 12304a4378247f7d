#pragma once

#include "fw_StringToken.h"

namespace strings {

/// The lowest number that a text made at run time can get.
constexpr stringtoken firstRunTimeToken = 6945;

/// The number of a text without a fixed one, made on first use; 0 when no memory was left.
stringtoken runTimeToken(const char* text);

/// The text with the number `token` of run time, or null.
const char* runTimeText(stringtoken token);

} // namespace strings
