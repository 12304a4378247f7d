#include "console_Invocation.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace console {

bool Invocation::fail(const char* format, ...) {
    char* text = nullptr;
    va_list arguments;
    va_start(arguments, format);
    const bool formatted = vasprintf(&text, format, arguments) >= 0;
    va_end(arguments);
    m_failure = formatted ? text : format;
    if (formatted)
        std::free(text);
    return false;
}

} // namespace console
