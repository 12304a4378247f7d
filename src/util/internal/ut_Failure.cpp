#include "internal/ut_Failure.h"

namespace utility {

void throwFailure(unsigned int code, const char* file, int line, const char* function, const char* message, bool flag) {
    throw new framework::Exception(code, file, line, function, message, flag);
}

} // namespace utility
