#pragma once

#include <cstdarg>

#include "fw_Logger.h"

namespace framework {

/// Formats a message and passes it to the sink: implements every log call. `function` may be null.
void logFormatted(Logger::LogType type, const char* function, int line, const char* format, va_list arguments)
    VXFW_PRINTF(4, 0);

} // namespace framework
