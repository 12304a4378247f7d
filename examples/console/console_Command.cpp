#include "console_Command.h"

#include <cstdarg>
#include <cstdio>

namespace console {

bool Invocation::fail(const char* format, ...) {
    char text[1024];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    m_failure = text;
    return false;
}

} // namespace console
