#pragma once

#include <cstdarg>

#include "ut_PutStream.h"

namespace test {

/// Calls `PutV` with these arguments.
void putV(utility::PutStream& out, const char* format, ...) VXUT_PRINTF(2, 3);

inline void putV(utility::PutStream& out, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    try {
        out.PutV(format, arguments);
    } catch (...) {
        va_end(arguments);
        throw;
    }
    va_end(arguments);
}

} // namespace test
