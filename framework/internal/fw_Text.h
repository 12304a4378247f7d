#pragma once

#include "fw_Export.h"

#include <cstdarg>
#include <cstring>

namespace framework {

/// Returns a NUL-terminated copy of at most the first `limit` bytes of `text`, in storage from `allocate(size)`, or
/// null if `text` or that storage is null.
template<typename Allocate>
char* copyText(const char* text, unsigned long limit, Allocate allocate) {
    if (text == nullptr)
        return nullptr;
    const unsigned long length = strnlen(text, limit);
    char* copy = static_cast<char*>(allocate(length + 1));
    if (copy == nullptr)
        return nullptr;
    std::memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}

/// The `limit` of `copyText` for a copy of the whole text.
constexpr unsigned long wholeText = static_cast<unsigned long>(-1) / 2;

/// Returns the formatted text, of any length, in storage from `allocate(size)`, or null if formatting or the allocation
/// fails.
char* formatText(const char* format, va_list arguments, void* (*allocate)(unsigned long size)) VXFW_PRINTF(1, 0);

} // namespace framework
