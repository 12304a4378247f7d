#pragma once

// Checks UTF-8 texts. Internal.

namespace utility {

/// The first printable ASCII character, the blank.
constexpr unsigned char firstPrintable = 32;
/// The last printable ASCII character, '~'.
constexpr unsigned char lastPrintable = 126;

/// Returns whether `c` is a printable ASCII character.
constexpr bool isPrintableAscii(unsigned char c) {
    return c >= firstPrintable && c <= lastPrintable;
}

/// Implements `Misc::isStringPrintableUtf8`, which documents the parameters.
bool isPrintableUtf8(const char* s, unsigned int len, const char* disallowed, const char* allowedControls);

} // namespace utility
