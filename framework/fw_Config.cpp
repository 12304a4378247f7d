#include "fw_Config.h"

#include <cstdarg>

#include "fw_Memory.h"
#include "internal/fw_Text.h"

namespace framework {

char* Config::generateNameString(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    char* name = formatText(format, arguments, Memory::StaticAlloc);
    va_end(arguments);
    return name;
}

} // namespace framework
