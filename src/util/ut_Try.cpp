#include "ut_Try.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <new>
#include <typeinfo>

#include <unistd.h>

#include "fw_Exception.h"

namespace utility {

namespace {

struct FailureCodeName {
    unsigned int code;
    const char* name;
};

#define VXUT_FAILURE_NAME(code)                                                                                        \
    { framework::Exception::code, #code }
constexpr FailureCodeName failureNames[] = {
    VXUT_FAILURE_NAME(FAILURE_INDEX),          VXUT_FAILURE_NAME(FAILURE_ARRAY_STORAGE),
    VXUT_FAILURE_NAME(FAILURE_BUFFER_STORAGE), VXUT_FAILURE_NAME(FAILURE_BUFFER),
    VXUT_FAILURE_NAME(FAILURE_STREAM_INDEX),   VXUT_FAILURE_NAME(FAILURE_DATE),
};
#undef VXUT_FAILURE_NAME

template<std::size_t size>
void copyTruncated(char (&target)[size], const char* text) {
    if (text != nullptr)
        std::memcpy(target, text, strnlen(text, size - 1));
}

// Copies the name of the type, or its mangled name if there is no memory.
template<std::size_t size>
void copyTypeName(char (&target)[size], const std::type_info* type) {
    if (type == nullptr)
        return;
    int status = 0;
    char* const readable = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
    copyTruncated(target, readable != nullptr ? readable : type->name());
    std::free(readable);
}

std::atomic<std::terminate_handler> formerHandler(nullptr);

// In one write, so that the lines of two threads do not mix.
void writeFailure(const Failure& failure) {
    char code[16] = "";
    if (failure.code() != 0)
        std::snprintf(code, sizeof code, " %u", failure.code());
    char place[384] = "";
    if (failure.kind() == Failure::KIND_LIBRARY)
        std::snprintf(place, sizeof place, " at %s:%d in %s", failure.file(), failure.line(), failure.function());
    const char* const beforeName = failure.name()[0] != 0 ? " " : "";
    const char* const beforeMessage = failure.message()[0] != 0 ? ": " : "";
    char line[1024];
    const int length = std::snprintf(line, sizeof line, "uncaught failure%s%s%s%s%s%s\n", code, beforeName,
                                     failure.name(), place, beforeMessage, failure.message());
    const ssize_t written = write(STDERR_FILENO, line, static_cast<std::size_t>(length));
    static_cast<void>(written);
}

[[noreturn]] void reportAndAbort() {
    const Failure failure = Failure::current(false);
    // Without a failure, a thread was not joined, for example: only the former handler can tell.
    if (failure.kind() != Failure::KIND_NONE)
        writeFailure(failure);
    const std::terminate_handler former = formerHandler;
    if (former != nullptr)
        former();
    std::abort();
}

} // namespace

const char* failureName(unsigned int code) {
    for (const FailureCodeName& each : failureNames) {
        if (each.code == code)
            return each.name;
    }
    return nullptr;
}

Failure::Failure() : m_kind(KIND_NONE), m_code(0), m_line(0), m_name{}, m_file{}, m_function{}, m_message{} {}

Failure Failure::current(bool isOwner) {
    Failure failure;
    if (std::current_exception() == nullptr)
        return failure;
    const auto copy = [&](const framework::Exception& exception) {
        failure.m_kind = KIND_LIBRARY;
        failure.m_code = exception.code();
        failure.m_line = exception.line();
        copyTruncated(failure.m_name, failureName(exception.code()));
        copyTruncated(failure.m_file, exception.file());
        copyTruncated(failure.m_function, exception.function());
        copyTruncated(failure.m_message, exception.message());
    };
    try {
        throw;
    } catch (const framework::Exception* exception) {
        if (exception == nullptr) {
            failure.m_kind = KIND_OTHER;
            copyTypeName(failure.m_name, abi::__cxa_current_exception_type());
        } else {
            copy(*exception);
            if (isOwner)
                delete exception;
        }
    } catch (const framework::Exception& exception) {
        copy(exception);
    } catch (const std::exception& exception) {
        failure.m_kind = dynamic_cast<const std::bad_alloc*>(&exception) != nullptr ? KIND_MEMORY : KIND_STANDARD;
        copyTypeName(failure.m_name, &typeid(exception));
        copyTruncated(failure.m_message, exception.what());
    } catch (...) {
        failure.m_kind = KIND_OTHER;
        copyTypeName(failure.m_name, abi::__cxa_current_exception_type());
    }
    return failure;
}

void installTerminateHandler() {
    const std::terminate_handler former = std::set_terminate(reportAndAbort);
    if (former != reportAndAbort)
        formerHandler = former;
}

} // namespace utility
