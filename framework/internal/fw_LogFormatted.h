#pragma once

#include <cstdarg>

#include "fw_Logger.h"

namespace framework {

/// Implements every log call; `function` may be null.
void logFormatted(Logger::LogType type, const char* function, int line, const char* format, va_list arguments)
    VXFW_PRINTF(4, 0);

} // namespace framework
