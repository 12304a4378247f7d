#pragma once

#include <cstdarg>
#include <cstring>

#include "fw_Export.h"

namespace framework {

/// A terminated copy of at most `limit` characters of `text`, in what `allocate` gives for a size; null for a null text
/// or when it gives null.
template<class Allocate>
char* copyText(const char* text, unsigned long limit, Allocate allocate) {
    if (!text)
        return nullptr;
    const unsigned long length = strnlen(text, limit);
    char* copy = static_cast<char*>(allocate(length + 1));
    if (!copy)
        return nullptr;
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

/// The limit for a copy of the whole text.
constexpr unsigned long wholeText = static_cast<unsigned long>(-1) / 2;

/// The formatted text, of any length, from `Memory::StaticAlloc`; null when it cannot be had.
char* formatText(const char* format, va_list arguments) VXFW_PRINTF(1, 0);

} // namespace framework
