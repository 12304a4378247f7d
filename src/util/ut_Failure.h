#pragma once

#include <cstddef>

// The failure convention in one place: a failure is thrown as a pointer to a new `framework::Exception` that carries
// the code, the bare name of the source file, the line, the signature text of the throwing operation and a message. The
// catcher owns the object. Not for callers of the library: it has no symbols outside it.

namespace utility {

/// The codes that the library throws.
enum FailureCode : unsigned int {
    FAILURE_INDEX = 1229,          ///< index out of range in an array
    FAILURE_ARRAY_STORAGE = 1230,  ///< no storage for an array
    FAILURE_BUFFER_STORAGE = 1238, ///< no storage for a buffer
    FAILURE_BUFFER = 1239,         ///< write or read past a buffer
    FAILURE_STREAM_INDEX = 1240,   ///< index outside what a stream holds
    FAILURE_DATE = 3591            ///< invalid date
};

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

/// Throws the failure `code` with `message` from here.
#define VXUT_THROW(code, message) VXUT_THROW_FLAGGED(code, message, true)

/// The same with the last word of the exception given: false only for invalid dates.
#define VXUT_THROW_FLAGGED(code, message, flag)                                                                        \
    do {                                                                                                               \
        static constexpr ::utility::SourceFileName sourceFileName(__FILE__);                                           \
        ::utility::throwFailure(code, sourceFileName.text, __LINE__, __PRETTY_FUNCTION__, message, flag);              \
    } while (false)
