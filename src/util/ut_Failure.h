#pragma once

#include <cstddef>

#include "fw_Exception.h"

// The failure convention in one place: a failure is thrown as a pointer to a new `framework::Exception` that carries
// the code, the bare name of the source file, the line, the signature text of the throwing operation and a message. The
// catcher owns the object. Not for callers of the library: it has no symbols outside it.

namespace utility {

/// The last component of a source path without its extension, cut out at compile time.
struct SourceFileName {
    char text[64] = {};

    constexpr explicit SourceFileName(const char* path) {
        const char* name = path;
        for (const char* at = path; *at != 0; ++at) {
            if (*at == '/')
                name = at + 1;
        }
        std::size_t length = 0;
        for (; name[length] != 0 && name[length] != '.' && length + 1 < sizeof text; ++length) {
            text[length] = name[length];
        }
    }
};

[[noreturn]] void throwFailure(unsigned int code, const char* file, int line, const char* function, const char* message,
                               bool flag);

} // namespace utility

/// Throws `framework::Exception::code`, such as FAILURE_INDEX, with `message` from here.
#define VXUT_THROW(code, message) VXUT_THROW_FLAGGED(code, message, true)

/// The same with the last word of the exception given: false only for invalid dates.
#define VXUT_THROW_FLAGGED(code, message, flag)                                                                        \
    do {                                                                                                               \
        static constexpr ::utility::SourceFileName sourceFileName(__FILE__);                                           \
        ::utility::throwFailure(::framework::Exception::code, sourceFileName.text, __LINE__, __PRETTY_FUNCTION__,      \
                                message, flag);                                                                        \
    } while (false)
