#pragma once

#include <cstdio>
#include <string>

namespace test {

/// Returns `pointer` as `%p` prints it.
inline std::string pointerText(const void* pointer) {
    char text[40];
    std::snprintf(text, sizeof text, "%p", pointer);
    return text;
}

} // namespace test
