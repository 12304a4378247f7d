#pragma once

#include "fw_Export.h"

#include <cstdint>
#include <cstring>
#include <exception>

#include "fw_StringToken.h"

namespace framework {

/// The exception that both libraries throw.
///
/// It is thrown as a pointer to a newly allocated object. The code that catches the pointer owns the object and deletes
/// it. The object contains its texts, so a copy is independent. A text longer than 255 bytes is truncated.
///
///     try {
///         stream.PutC('x');
///     } catch (framework::Exception* failure) {
///         if (failure->code() == framework::Exception::FAILURE_BUFFER)    // 1239
///             report(failure->file(), failure->line());   // "ut_PutStream", ...
///         delete failure;
///     }
class VXFW_EXPORT Exception : public std::exception {
public:
    /// The values of `code()`. They never change.
    enum FailureCode : unsigned int {
        FAILURE_INDEX = 1229,          ///< index out of range in an array, a token set or the environment
        FAILURE_ARRAY_STORAGE = 1230,  ///< no memory for an array
        FAILURE_BUFFER_STORAGE = 1238, ///< no memory for a buffer
        FAILURE_BUFFER = 1239,         ///< write or read past the end of a buffer
        FAILURE_STREAM_INDEX = 1240,   ///< index outside the readable range of a stream
        FAILURE_DATE = 3591            ///< invalid date
    };

    /// Copies the texts; a null text counts as empty. `file` is the name of the source file without folder and
    /// extension, `function` the full signature text (`__PRETTY_FUNCTION__`). The other arguments are what the
    /// operations of the same names return.
    Exception(unsigned int code, const char* file, int line, const char* function, const char* message, bool flag);

    // Both are emitted by every library that includes this header: the utility library exports them as well.
    /// Copies code, location, texts and flag.
    [[gnu::used]] Exception(const Exception& other) : std::exception(other) {
        std::memcpy(m_words, other.m_words, sizeof m_words);
        std::memcpy(m_function, other.m_function, sizeof m_function);
        std::memcpy(m_message, other.m_message, sizeof m_message);
    }
    /// The texts that the operations returned are invalid afterwards.
    // With `= default` it would not be emitted. NOLINTNEXTLINE(modernize-use-equals-default)
    [[gnu::used]] ~Exception() override {}

    Exception& operator=(const Exception&) = delete;

    /// Returns the message; never null.
    const char* what() const noexcept override;

    /// Returns a `FailureCode`, or another number if client code threw the exception.
    unsigned int code() const {
        return m_words[0];
    }
    /// Returns the name of the source file that threw, without folder and extension; never null, empty if it is not
    /// known.
    const char* file() const;
    /// Returns the number of the source line that threw.
    int line() const {
        return static_cast<int>(m_words[2]);
    }
    /// Returns the signature text of the operation that threw; never null.
    const char* function() const {
        return m_function;
    }
    /// Returns the message; never null, often empty.
    const char* message() const {
        return m_message;
    }
    /// Returns false for a failure caused by the user's input (an invalid date), true for all others.
    bool flag() const {
        return m_words[3] != 0;
    }

private:
    std::uint32_t m_words[4]; // code, token of the file name, line, flag
    char m_function[256];
    char m_message[256];
};

} // namespace framework
