#pragma once

// Checks UTF-8 texts. Internal.

namespace utility {

constexpr unsigned char firstPrintable = 32;
constexpr unsigned char lastPrintable = 126;

/// Returns whether `c` is a printable ASCII character.
constexpr bool isPrintableAscii(unsigned char c) {
    return c >= firstPrintable && c <= lastPrintable;
}

/// Implements `Misc::isStringPrintableUtf8`.
bool isPrintableUtf8(const char* s, unsigned int len, const char* disallowed, const char* allowedControls);

} // namespace utility
