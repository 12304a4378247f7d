#include "ut_Failure.h"

#include "fw_Exception.h"

namespace utility {

void throwFailure(unsigned int code, const char* file, int line, const char* function, const char* message, bool flag) {
    throw new framework::Exception(code, file, line, function, message, flag);
}

} // namespace utility
