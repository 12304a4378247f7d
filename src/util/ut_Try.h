#pragma once

#include "ut_Export.h"

#include <optional>
#include <type_traits>
#include <utility>

#include <cxxabi.h>

namespace utility {

/// Returns the name of a failure code, such as "FAILURE_INDEX" for 1229, or null if the code is not one of
/// `framework::Exception::FailureCode`.
VXUT_EXPORT const char* failureName(unsigned int code);

/// A failure as a value. It contains its texts and can be copied.
class VXUT_EXPORT Failure {
public:
    /// What was thrown.
    enum Kind {
        KIND_NONE,     ///< nothing
        KIND_LIBRARY,  ///< a pointer to a `framework::Exception`, or an object of the class
        KIND_MEMORY,   ///< `std::bad_alloc` or a class derived from it
        KIND_STANDARD, ///< another `std::exception`
        KIND_OTHER     ///< any other value
    };

    /// Creates a failure of `KIND_NONE`.
    Failure();

    /// Returns the failure that the current handler (`catch`) has caught, or one of `KIND_NONE` outside a handler. If
    /// `isOwner`, deletes an exception that was thrown as a pointer to a `framework::Exception`; the handler must not
    /// use it again.
    static Failure current(bool isOwner);

    /// Returns what was thrown.
    Kind kind() const {
        return m_kind;
    }
    /// Returns the code of a `framework::Exception`; 0 for the other kinds.
    unsigned int code() const {
        return m_code;
    }
    /// Returns the name of the code, or the name of the exception's class, such as "std::out_of_range"; never null. It
    /// is empty for a code without a name, and without a failure. A class name is truncated to 127 bytes.
    const char* name() const {
        return m_name;
    }
    /// Returns the message of the exception; never null, empty if there is none. Truncated to 255 bytes.
    const char* message() const {
        return m_message;
    }
    /// Returns the name of the source file that threw, without folder and extension; never null, empty for the kinds
    /// other than `KIND_LIBRARY`. Truncated to 63 bytes.
    const char* file() const {
        return m_file;
    }
    /// Returns the number of the source line that threw; 0 for the kinds other than `KIND_LIBRARY`.
    int line() const {
        return m_line;
    }
    /// Returns the signature text of the operation that threw; never null, empty for the kinds other than
    /// `KIND_LIBRARY`.
    const char* function() const {
        return m_function;
    }

private:
    Kind m_kind;
    unsigned int m_code;
    int m_line;
    char m_name[128];
    char m_file[64];
    char m_function[256];
    char m_message[256];
};

/// The result of `tryCall`: the value that the callable returned, or the failure that it threw.
template<typename T>
class Try {
public:
    /// A success with `value`.
    explicit Try(T value) : m_value(std::move(value)) {}
    /// A failure.
    explicit Try(const Failure& failure) : m_failure(failure) {}

    /// Returns whether the callable returned.
    explicit operator bool() const {
        return m_value.has_value();
    }
    /// Returns the value. Call it only if the callable returned; otherwise `std::bad_optional_access` is thrown.
    T& value() {
        return m_value.value();
    }
    /// Returns the value in the same way.
    const T& value() const {
        return m_value.value();
    }
    /// Returns the value, or `other` if the callable threw.
    T valueOr(T other) const {
        return m_value.has_value() ? *m_value : std::move(other);
    }
    /// Returns the failure; of `KIND_NONE` if the callable returned.
    const Failure& failure() const {
        return m_failure;
    }

private:
    std::optional<T> m_value;
    Failure m_failure;
};

/// The result of `tryCall` for a callable that returns nothing.
template<>
class Try<void> {
public:
    Try() = default;
    /// Stores the failure of a callable that threw.
    explicit Try(const Failure& failure) : m_failure(failure) {}

    /// Returns whether the callable returned.
    explicit operator bool() const {
        return m_failure.kind() == Failure::KIND_NONE;
    }
    /// Returns the failure; of `KIND_NONE` if the callable returned.
    const Failure& failure() const {
        return m_failure;
    }

private:
    Failure m_failure;
};

/// Runs `callable` and returns its result, or what it threw:
///
/// - a pointer to a `framework::Exception`: its code, place and texts; the exception is deleted;
/// - a `framework::Exception` thrown by value: the same;
/// - `std::bad_alloc`: `KIND_MEMORY`; another `std::exception`: `KIND_STANDARD` with `what()` as the message;
/// - any other value, a null pointer included: `KIND_OTHER`, with the name of its type. A pointer to something else is
///   not deleted, since its owner is not known.
///
/// Nothing that `callable` throws passes, except the unwinding of a thread that is canceled or calls `pthread_exit`.
/// The result is a value: for a callable that returns a reference, return a pointer instead. Any thread may call it.
///
///     const auto port = utility::tryCall([&] { return ports[7]; });
///     if (!port) report(port.failure().name(), port.failure().message());   // "FAILURE_INDEX"
// Such an unwinding has no exception object, which the undefined-behavior sanitizer reports as a null reference.
template<typename Callable>
__attribute__((no_sanitize("undefined"))) auto tryCall(Callable&& callable)
    -> Try<decltype(std::forward<Callable>(callable)())> {
    using Result = decltype(std::forward<Callable>(callable)());
    static_assert(!std::is_reference<Result>::value, "the callable returns a reference: return a pointer instead");
    try {
        if constexpr (std::is_void<Result>::value) {
            std::forward<Callable>(callable)();
            return Try<Result>();
        } else {
            return Try<Result>(std::forward<Callable>(callable)());
        }
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (...) {
        return Try<Result>(Failure::current(true));
    }
}

/// Makes a failure that nothing catches tell what it is: before the process aborts, its code, name, place, function and
/// message are written to standard error in one line. The former terminate handler is called after that, and the
/// process aborts if it returns.
///
/// Call it once, early; more calls have no effect while the handler is installed. The exception is not deleted: a core
/// file contains it.
///
///     utility::installTerminateHandler();
///     // uncaught failure 1229 FAILURE_INDEX at ut_IntArray:61 in int& utility::IntArray::operator[](...)
VXUT_EXPORT void installTerminateHandler();

} // namespace utility
