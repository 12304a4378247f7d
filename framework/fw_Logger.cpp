#include "fw_Logger.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>

#include <cxxabi.h>
#include <pthread.h>
#include <sched.h>
#include <sys/uio.h>
#include <unistd.h>

#include "fw_Exception.h"
#include "internal/fw_ErrnoGuard.h"
#include "internal/fw_LogFormatted.h"

namespace framework {

namespace {

// Prefer writers: a process that logs constantly must not starve `setSink`.
pthread_rwlock_t sinkLock = PTHREAD_RWLOCK_WRITER_NONRECURSIVE_INITIALIZER_NP;
Logger::Sink currentSink = nullptr;
void* currentContext = nullptr;

// Set while the thread takes, holds or releases the lock, so that a signal handler that interrupts it there does not
// take the lock again. The TLS model ensures access without an allocation.
__attribute__((tls_model("initial-exec"))) thread_local bool busy = false;
// Set while the thread is inside the sink, and therefore holds the read lock.
__attribute__((tls_model("initial-exec"))) thread_local bool inside = false;

// In a forked child, threads that were inside the sink no longer exist and would never release the lock.
void renewLockInChild() {
    if (busy && !inside)
        return;
    sinkLock = PTHREAD_RWLOCK_WRITER_NONRECURSIVE_INITIALIZER_NP;
    if (inside)
        pthread_rwlock_rdlock(&sinkLock);
}

__attribute__((constructor)) void watchForks() {
    pthread_atfork(nullptr, nullptr, renewLockInChild);
}

class Section {
public:
    explicit Section(bool& flag) : m_flag(flag) {
        m_flag = true;
    }
    Section(const Section&) = delete;
    Section& operator=(const Section&) = delete;
    ~Section() {
        m_flag = false;
    }

private:
    bool& m_flag;
};

class SinkLockGuard {
public:
    // EAGAIN: the maximum number of read locks is reached, for as long as so many threads are inside the sink.
    explicit SinkLockGuard(int (*take)(pthread_rwlock_t*)) {
        int error = take(&sinkLock);
        while (error == EAGAIN) {
            sched_yield();
            error = take(&sinkLock);
        }
        m_isHeld = error == 0;
    }
    SinkLockGuard(const SinkLockGuard&) = delete;
    SinkLockGuard& operator=(const SinkLockGuard&) = delete;
    ~SinkLockGuard() {
        if (m_isHeld)
            pthread_rwlock_unlock(&sinkLock);
    }

    // Without the lock, the sink must be neither read nor replaced.
    bool isHeld() const {
        return m_isHeld;
    }

private:
    bool m_isHeld;
};

const char* nameOf(Logger::LogType type) {
    switch (type) {
    case Logger::LOG_ERROR:
        return "ERROR ";
    case Logger::LOG_WARNING:
        return "WARNING ";
    case Logger::LOG_NOTICE:
        return "NOTICE ";
    case Logger::LOG_DEBUG:
        return "DEBUG ";
    case Logger::LOG_ENTER:
        return "ENTER ";
    }
    return "LOG ";
}

bool isLineEnd(char character) {
    return character == '\n' || character == '\r';
}

iovec piece(const char* text, std::size_t length) {
    return {const_cast<char*>(text), length};
}

iovec piece(const char* text) {
    return piece(text, std::strlen(text));
}

void writeAll(iovec* pieces, int count) {
    while (count > 0) {
        const ssize_t written = writev(STDERR_FILENO, pieces, count);
        if (written < 0 && errno == EINTR)
            continue;
        // 0 is not an error by itself, but would be returned again.
        if (written <= 0)
            return;
        std::size_t taken = static_cast<std::size_t>(written);
        while (count > 0 && taken >= pieces->iov_len) {
            taken -= pieces->iov_len;
            ++pieces;
            --count;
        }
        if (count > 0) {
            pieces->iov_base = static_cast<char*>(pieces->iov_base) + taken;
            pieces->iov_len -= taken;
        }
    }
}

// One system call for the whole message, so that the lines of several threads and processes do not mix.
void writeToStandardError(Logger::LogType type, const char* function, int line, const char* text) {
    while (isLineEnd(*text))
        ++text;
    std::size_t length = std::strlen(text);
    while (length > 0 && isLineEnd(text[length - 1]))
        --length;
    char place[16] = "";
    if (function != nullptr)
        std::snprintf(place, sizeof place, ":%d: ", line);
    iovec pieces[] = {piece(nameOf(type)), piece(function != nullptr ? function : ""), piece(place),
                      piece(text, length), piece("\n")};
    writeAll(pieces, sizeof pieces / sizeof *pieces);
}

// Returns true if the sink returned normally. An exception is caught here: a diagnostic must not fail its caller.
// Thread cancellation unwinds with an exception without an object, which the sanitizer reports as a null reference.
__attribute__((no_sanitize("undefined"))) bool callSink(Logger::Sink sink, void* context, Logger::LogType type,
                                                        const char* function, int line, const char* text) {
    try {
        const Section section(inside);
        sink(context, type, function, line, text);
        return true;
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (Exception* failure) {
        delete failure;
    } catch (...) {
    }
    return false;
}

void deliver(Logger::LogType type, const char* function, int line, const char* text) {
    if (busy) {
        writeToStandardError(type, function, line, text);
        return;
    }
    const Section section(busy);
    const SinkLockGuard guard(pthread_rwlock_rdlock);
    if (!guard.isHeld() || currentSink == nullptr || !callSink(currentSink, currentContext, type, function, line, text))
        writeToStandardError(type, function, line, text);
}

} // namespace

void logFormatted(Logger::LogType type, const char* function, int line, const char* format, va_list arguments) {
    const ErrnoGuard errnoGuard;
    if (format == nullptr)
        format = "";
    char text[1024];
    va_list copy;
    va_copy(copy, arguments);
    const int length = std::vsnprintf(text, sizeof text, format, copy);
    va_end(copy);
    if (length < 0) {
        deliver(type, function, line, format);
        return;
    }
    const std::size_t size = static_cast<std::size_t>(length) + 1;
    char* longText = size > sizeof text ? static_cast<char*>(::operator new(size, std::nothrow)) : nullptr;
    if (longText != nullptr) {
        errno = errnoGuard.value();
        std::vsnprintf(longText, size, format, arguments);
    }
    deliver(type, function, line, longText != nullptr ? longText : text);
    ::operator delete(longText);
}

void Logger::setSink(Sink sink, void* context) {
    if (busy)
        return;
    const Section section(busy);
    const SinkLockGuard guard(pthread_rwlock_wrlock);
    if (!guard.isHeld())
        return;
    currentSink = sink;
    currentContext = context;
}

void Logger::StaticLog(LogType type, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    logFormatted(type, nullptr, 0, format, arguments);
    va_end(arguments);
}

void Logger::StaticLogMethod(LogType type, const char* function, int line, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    logFormatted(type, function, line, format, arguments);
    va_end(arguments);
}

void Logger::StaticLogS(LogType type, const char* text) {
    const ErrnoGuard errnoGuard;
    deliver(type, nullptr, 0, text != nullptr ? text : "");
}

} // namespace framework
