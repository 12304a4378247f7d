#pragma once

#include <cstring>
#include <string>

#include "ut_Debug.h"

namespace test {

/// The text that `Debug::SymbolName` writes for an address.
inline std::string symbolName(const void* address) {
    char text[8192];
    std::memset(text, 'x', sizeof text);
    utility::Debug::SymbolName(const_cast<void*>(address), text, sizeof text);
    return text;
}

/// The text that `Debug::SymbolPath` writes for an address.
inline std::string symbolPath(const void* address) {
    char text[8192];
    std::memset(text, 'x', sizeof text);
    utility::Debug::SymbolPath(const_cast<void*>(address), text, sizeof text);
    return text;
}

} // namespace test
