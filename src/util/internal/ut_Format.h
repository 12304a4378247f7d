#pragma once

#include "ut_Export.h"

#include <cstdarg>
#include <cstddef>

namespace utility {

/// Does what `vsnprintf` does, with the same bytes and the same result, and is faster for formats of common
/// conversions:
/// `%s %c %d %i %u %x %X %p %%` with the flags `0` and `-`, a width, a precision of `%s` and the lengths `h hh l ll z`.
/// A format with anything else is passed to `vsnprintf` as a whole.
int formatText(char* destination, std::size_t size, const char* format, va_list arguments) VXUT_PRINTF(3, 0);

} // namespace utility
