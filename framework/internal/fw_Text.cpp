#include "internal/fw_Text.h"

#include <cstdio>

namespace framework {

char* formatText(const char* format, va_list arguments, void* (*allocate)(unsigned long size)) {
    if (format == nullptr)
        return nullptr;
    va_list measured;
    va_copy(measured, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, measured);
    va_end(measured);
    if (length < 0)
        return nullptr;
    const std::size_t size = static_cast<std::size_t>(length) + 1;
    char* text = static_cast<char*>(allocate(size));
    if (text != nullptr)
        std::vsnprintf(text, size, format, arguments);
    return text;
}

} // namespace framework
