#pragma once

#include <cstddef>

#include "fw_Exception.h"

// Throws failures for the library's sources; not for callers of the library, and not exported.
//
// A failure is thrown as a pointer to a new `framework::Exception`, which contains the code, the source file's name
// without directory and extension, the line, the signature text of the throwing operation and a message. The catcher
// deletes the object.

namespace utility {

/// The last component of a source path without its extension, truncated to 63 characters, computed at compile time.
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

/// Throws a new `framework::Exception` with these values.
[[noreturn]] void throwFailure(unsigned int code, const char* file, int line, const char* function, const char* message,
                               bool flag);

} // namespace utility

/// Throws a failure from the current line, with `message`. `code` is an enumerator of `framework::Exception`, such as
/// FAILURE_INDEX; the flag is true.
#define VXUT_THROW(code, message) VXUT_THROW_FLAGGED(code, message, true)

/// Does what `VXUT_THROW` does, with the exception's flag given; it is false only for invalid dates.
#define VXUT_THROW_FLAGGED(code, message, flag)                                                                        \
    do {                                                                                                               \
        static constexpr ::utility::SourceFileName sourceFileName(__FILE__);                                           \
        ::utility::throwFailure(::framework::Exception::code, sourceFileName.text, __LINE__, __PRETTY_FUNCTION__,      \
                                message, flag);                                                                        \
    } while (false)

/// Throws FAILURE_INDEX from here unless `condition`, such as `index < m_length`, is true.
#define VXUT_CHECK_INDEX(condition)                                                                                    \
    do {                                                                                                               \
        if (!(condition))                                                                                              \
            VXUT_THROW(FAILURE_INDEX, "");                                                                             \
    } while (false)
