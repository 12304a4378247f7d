#pragma once

#include <cstddef>

#include "fw_Exception.h"

// Throws failures. Internal: not exported, and not for callers of the library.
//
// A failure is thrown as a pointer to a new `framework::Exception`, which contains the code, the source file's name
// without directory and extension, the line, the signature text of the throwing operation and a message. The catcher
// deletes the object.

namespace utility {

/// The last component of a source path without its extension, truncated to 63 characters, computed at compile time.
struct SourceFileName {
    /// The NUL-terminated name.
    char text[64] = {};

    /// Extracts the name from `path`, which must not be null.
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

/// Throws a pointer to a new `framework::Exception` with these values; the catcher deletes it.
[[noreturn]] void throwFailure(unsigned int code, const char* file, int line, const char* function, const char* message,
                               bool flag);

} // namespace utility

/// Throws a failure with `message` and flag true from the current line. `code` is an enumerator of
/// `framework::Exception`, such as FAILURE_INDEX.
#define VXUT_THROW(code, message) VXUT_THROW_FLAGGED(code, message, true)

/// Does the same as `VXUT_THROW`, with the given flag, which is false only for invalid dates.
#define VXUT_THROW_FLAGGED(code, message, flag) VXUT_THROW_FLAGGED_AS(__PRETTY_FUNCTION__, code, message, flag)

/// Does what `VXUT_THROW` does, with the signature text `function`, for helpers that throw on behalf of a public
/// operation.
#define VXUT_THROW_AS(function, code, message) VXUT_THROW_FLAGGED_AS(function, code, message, true)

/// Does what `VXUT_THROW_AS` does, with the given flag.
#define VXUT_THROW_FLAGGED_AS(function, code, message, flag)                                                           \
    do {                                                                                                               \
        static constexpr ::utility::SourceFileName sourceFileName(__FILE__);                                           \
        ::utility::throwFailure(::framework::Exception::code, sourceFileName.text, __LINE__, function, message, flag); \
    } while (false)

/// Throws FAILURE_INDEX from the current line unless `condition`, such as `index < m_length`, is true.
#define VXUT_CHECK_INDEX(condition)                                                                                    \
    do {                                                                                                               \
        if (!(condition))                                                                                              \
            VXUT_THROW(FAILURE_INDEX, "");                                                                             \
    } while (false)
