// Debug: crash reports, back traces and context files, which signal handlers write.

#include "ut_Debug.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <execinfo.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fw_ApplicationArguments.h"
#include "fw_Container.h"
#include "fw_GenericServiceManager.h"
#include "fw_KnownTokens.h"
#include "fw_Logger.h"
#include "fw_ThreadInfo.h"
#include "internal/fw_ErrnoGuard.h"
#include "internal/ut_FileDescriptor.h"
#include "internal/ut_SymbolLookup.h"
#include "ut_BufferStream.h"
#include "ut_Environment.h"
#include "ut_FileOutputStream.h"
#include "ut_Locker.h"

#ifdef VXUT_DEMANGLE
// The demangler of libsupc++ in the form that does not allocate: a handler may have interrupted the allocator. It
// passes the name to the callback piece by piece and returns 0, or another value if `symbol` is not a mangled name. No
// header declares it, and only the static library contains it.
extern "C" int __gcclibcxx_demangle_callback( // NOLINT(bugprone-reserved-identifier)
    const char* symbol, void (*take)(const char* text, std::size_t length, void* context), void* context);
#else
// Demangles nothing: the reports of a build without the demangler contain mangled names, which c++filt translates.
static int __gcclibcxx_demangle_callback( // NOLINT(bugprone-reserved-identifier)
    const char* /*symbol*/, void (* /*take*/)(const char* text, std::size_t length, void* context), void* /*context*/) {
    return 1;
}
#endif

namespace utility {

namespace {

constexpr int contextSignal = 12; // SIGUSR2
constexpr unsigned int deepestBackTrace = 40;
constexpr unsigned int skippedFrames = 2;
constexpr int reportSize = 65535;
constexpr unsigned int longestReportSeconds = 10;
constexpr std::size_t longestDemangled = 2047;

std::atomic<int> crashSignal(0);

// The first `backtrace()` call loads libgcc, which is not async-signal-safe: make it at load time.
__attribute__((constructor)) void exerciseBackTrace() {
    void* address = nullptr;
    backtrace(&address, 1);
}

// Where the platform is out of memory, one report at a time is still written.
char reserve[reportSize];
std::atomic_flag isReserveTaken = ATOMIC_FLAG_INIT;

// Storage for a report: a signal stack may be too small, and the allocator may be what crashed.
class ReportMemory {
public:
    ReportMemory() : m_text(map()), m_isMapped(m_text != nullptr) {
        if (!m_isMapped && !isReserveTaken.test_and_set(std::memory_order_acquire))
            m_text = reserve;
    }
    ReportMemory(const ReportMemory&) = delete;
    ReportMemory& operator=(const ReportMemory&) = delete;
    ~ReportMemory() {
        if (m_isMapped)
            munmap(m_text, reportSize);
        else if (m_text != nullptr)
            isReserveTaken.clear(std::memory_order_release);
    }

    // `reportSize` bytes; null if there is no memory and the reserve is in use.
    char* text() const {
        return m_text;
    }

private:
    static char* map() {
        void* const memory = mmap(nullptr, reportSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        return memory != MAP_FAILED ? static_cast<char*>(memory) : nullptr;
    }

    char* m_text;
    bool m_isMapped;
};

// The demangled name of a symbol, or the symbol itself if it cannot be demangled; "--" for null.
class ReadableName {
public:
    explicit ReadableName(const char* symbol)
        : m_symbol(symbol != nullptr ? symbol : "--"), m_text(m_symbol), m_length(0) {
        const bool isDemangled =
            symbol != nullptr && m_memory.text() != nullptr && __gcclibcxx_demangle_callback(symbol, append, this) == 0;
        if (isDemangled && m_length < reportSize)
            m_text = m_memory.text();
    }

    const char* text() const {
        return m_text;
    }
    // The same, but the symbol itself if the demangled name has more than `longest` bytes.
    const char* text(std::size_t longest) const {
        return std::strlen(m_text) <= longest ? m_text : m_symbol;
    }

private:
    static void append(const char* text, std::size_t length, void* name) {
        ReadableName* self = static_cast<ReadableName*>(name);
        if (self->m_length + length < reportSize)
            std::memcpy(self->m_memory.text() + self->m_length, text, length);
        self->m_length += length;
    }

    ReportMemory m_memory;
    const char* m_symbol;
    const char* m_text;
    std::size_t m_length;
};

// Returns the offset of `address` from its symbol, or from the start of its object if it has none.
long distanceFrom(const Dl_info& object, const void* address) {
    const void* start = object.dli_saddr != nullptr ? object.dli_saddr : object.dli_fbase;
    return static_cast<long>(reinterpret_cast<std::intptr_t>(address) - reinterpret_cast<std::intptr_t>(start));
}

void putFrame(BufferStream& out, const void* address) {
    Dl_info object = {};
    if (!findSymbol(address, object)) {
        out.PutF("[%-10p]\n", address);
        return;
    }
    const ReadableName name(object.dli_sname != nullptr ? object.dli_sname : "");
    out.PutF("%s: @%p\n", object.dli_fname, object.dli_fbase);
    out.PutF("    %s+0x%lX [%p]\n", name.text(), static_cast<unsigned long>(distanceFrom(object, address)), address);
}

const char* contextRoot() {
    const char* root = Environment::GetEnv("VX_MEM");
    return root != nullptr ? root : "";
}

const char* processName() {
    const Arguments* arguments = framework::ApplicationArguments::getArgs();
    const char* name = arguments != nullptr ? arguments->ArgValue(0) : nullptr;
    return name != nullptr ? name : "";
}

// Writes the back trace of the calling thread to `text`, which holds `reportSize` bytes, and returns its length. This
// function and `BackTrace` are the two skipped frames: the first one written is that of the caller.
__attribute__((noinline)) unsigned int renderContext(char* text) {
    BufferStream stream(text, reportSize, true);
    Debug::BackTrace(&stream, deepestBackTrace, skippedFrames, true);
    return static_cast<unsigned int>(stream.ReadAvailable());
}

bool isFileWithOneLink(const struct stat& status) {
    return S_ISREG(status.st_mode) && status.st_nlink == 1;
}

bool isSomethingElse(const char* name) {
    struct stat status = {};
    return lstat(name, &status) == 0 && !isFileWithOneLink(status);
}

// Replaces the content of the context file `name`. Returns false, and leaves it unchanged, if something else than a
// regular file with one link has that name: another user may have put it there to have a file overwritten or this
// thread blocked. A file that cannot be opened or written is not reported.
bool writeContext(const char* name, const char* text, unsigned int size) {
    // Look before opening: opening a device or a FIFO can already have an effect.
    if (isSomethingElse(name))
        return false;
    // Look again afterwards, before truncating: the name may belong to something else by now.
    const int fd = openFile(name, O_WRONLY | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY, 0666);
    if (fd < 0)
        return !isSomethingElse(name);
    struct stat status = {};
    const bool isKnown = fstat(fd, &status) == 0;
    const bool isContext = isKnown && isFileWithOneLink(status);
    if (isContext && ftruncate(fd, 0) == 0) {
        FileOutputStream file(fd);
        file.SendOutputStream(text, size);
    }
    close(fd);
    return isContext || !isKnown;
}

void endHungReport(int) {
    framework::Container::dumpApplication(crashSignal);
}

// Ends the process if a report hangs, because the crash happened while a lock was held that the report needs.
void limitReport(int sig) {
    crashSignal = sig;
    struct sigaction action = {};
    action.sa_handler = endHungReport;
    action.sa_flags = SA_NODEFER;
    sigaction(SIGALRM, &action, nullptr);
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
    alarm(longestReportSeconds);
}

// Holds a lock with all signals blocked, so that no handler that interrupts the thread waits for the lock or forks.
class SignalSafeLock {
public:
    explicit SignalSafeLock(const Locker& locker) : m_locker(locker) {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_former);
        m_locker.lock();
    }
    SignalSafeLock(const SignalSafeLock&) = delete;
    SignalSafeLock& operator=(const SignalSafeLock&) = delete;
    ~SignalSafeLock() {
        m_locker.unlock();
        pthread_sigmask(SIG_SETMASK, &m_former, nullptr);
    }

private:
    const Locker& m_locker;
    sigset_t m_former;
};

} // namespace

void Debug::SignalCrash(int sig) {
    limitReport(sig);
    framework::Logger::StaticLog(framework::Logger::LOG_ERROR, "\n%s: Received SIGNAL %s(%d)", __PRETTY_FUNCTION__,
                                 signalName(sig), sig);
    MaybeEnableCoreDump();
    ErrorContext();
    framework::Container::dumpApplication(sig);
}

void Debug::SignalExit(int sig) {
    framework::Logger::StaticLog(framework::Logger::LOG_NOTICE, "\n%s: Received SIGNAL %s(%d)", __PRETTY_FUNCTION__,
                                 signalName(sig), sig);
    ErrorContext();
    framework::Logger::StaticLog(framework::Logger::LOG_NOTICE, "proceeding with clean application shutdown ...\n");
    framework::Container::shutdownApplication(true);
}

void Debug::SignalNull(int sig) {
    if (!isDebugOn(strings::TOKEN_DEBUG))
        return;
    const framework::ErrnoGuard errnoGuard;
    framework::Logger::StaticLog(framework::Logger::LOG_DEBUG, "\n\r%s: Received SIGNAL %s(%d)\n\r",
                                 __PRETTY_FUNCTION__, signalName(sig), sig);
}

void Debug::SignalThreads(int) {
    const framework::ErrnoGuard errnoGuard;
    char directory[4096];
    const int length = std::snprintf(directory, sizeof directory, "%s/%sContext", contextRoot(), processName());
    if (length > 0 && static_cast<unsigned int>(length) < sizeof directory)
        mkdir(directory, 0770);
    framework::GenericServiceManager::SignalAllThreads(contextSignal);
}

void Debug::SignalContext(int) {
    const framework::ErrnoGuard errnoGuard;
    framework::ThreadInfo* myself = framework::ThreadInfo::MyThreadInfo();
    if (myself == nullptr)
        return;
    char name[128];
    const int length = std::snprintf(name, sizeof name, "%s/%sContext/%d%s", contextRoot(), processName(),
                                     myself->getNum(), myself->getThreadName());
    if (length <= 0 || static_cast<unsigned int>(length) >= sizeof name)
        return;
    // Render before locking, so that no thread waits for another one's back trace.
    const ReportMemory memory;
    const unsigned int size = renderContext(memory.text());
    bool isContext = false;
    {
        const SignalSafeLock lock(m_locker);
        isContext = writeContext(name, memory.text(), size);
    }
    if (!isContext)
        framework::Logger::StaticLog(framework::Logger::LOG_ERROR,
                                     "no context written: %s is not a regular file with one link, remove it", name);
}

const char* Debug::signalName(int sig) {
    switch (sig) {
    case 1:
        return "SIGHUP";
    case 2:
        return "SIGINT";
    case 3:
        return "SIGQUIT";
    case 4:
        return "SIGILL";
    case 5:
        return "SIGTRAP";
    case 6:
        return "SIGABRT";
    case 8:
        return "SIGFPE";
    case 9:
        return "SIGKILL";
    case 10:
        return "SIGUSR1";
    case 11:
        return "SIGSEGV";
    case 12:
        return "SIGUSR2";
    case 13:
        return "SIGPIPE";
    case 14:
        return "SIGALRM";
    case 15:
        return "SIGTERM";
    case 17:
        return "SIGCHLD";
    case 18:
        return "SIGCONT";
    case 19:
        return "SIGSTOP";
    case 20:
        return "SIGTSTP";
    case 21:
        return "SIGTTIN";
    case 22:
        return "SIGTTOU";
    case 42:
        return "SIGWBISTOP";
    case 43:
        return "SIGQUIESCEFLASH";
    case 44:
        return "SIGNONESSENTIALEVENT";
    case 45:
        return "SIGSVCEVENT";
    default:
        return "unknown";
    }
}

void Debug::ErrorContext() {
    const ReportMemory memory;
    BufferStream stream(memory.text(), reportSize, true);
    framework::Logger::StaticLog(framework::Logger::LOG_ERROR, "ErrorContext - for diagnostic purposes.");
    framework::ThreadInfo::MyThreadInfo();
    BackTrace(&stream, deepestBackTrace, skippedFrames, true);
    framework::Logger::StaticLogS(framework::Logger::LOG_ERROR, memory.text());
}

void Debug::ThreadErrorContext(framework::ThreadInfo*, FileOutputStream& file) {
    const ReportMemory memory;
    BufferStream stream(memory.text(), reportSize, true);
    BackTrace(&stream, deepestBackTrace, skippedFrames, true);
    file.SendOutputStream(stream.pTail(), static_cast<unsigned int>(stream.ReadAvailable()));
}

void Debug::BackTrace(BufferStream* out, unsigned int depth, unsigned int skip, bool) {
    if (out == nullptr)
        return;
    void* addresses[deepestBackTrace];
    const unsigned int count =
        static_cast<unsigned int>(backtrace(addresses, static_cast<int>(std::min(depth, deepestBackTrace))));
    out->PutF("Backtrace of %u stack frames\n", count > skip ? count - skip : 0);
    out->PutS("Backtrace Start>>>\n");
    for (unsigned int i = skip; i < count; ++i) {
        out->PutF("(%u) ", i);
        putFrame(*out, addresses[i]);
    }
    out->PutS("<<<Backtrace End\n");
}

void Debug::SymbolPath(void* address, char* buffer, unsigned int size) {
    if (buffer == nullptr || size == 0)
        return;
    Dl_info object = {};
    buffer[0] = 0;
    if (!findSymbol(address, object))
        return;
    const ReadableName name(object.dli_sname);
    std::snprintf(buffer, size, "[%s] %s+%ld", object.dli_fname, name.text(longestDemangled),
                  distanceFrom(object, address));
}

void Debug::SymbolName(void* address, char* buffer, unsigned int size) {
    if (buffer == nullptr || size == 0)
        return;
    Dl_info object = {};
    buffer[0] = 0;
    if (!findSymbol(address, object))
        return;
    const ReadableName name(object.dli_sname);
    std::snprintf(buffer, size, "%s", name.text(longestDemangled));
}

void Debug::MaybeEnableCoreDump() {
    char pattern[132] = "";
    const int fd = openFile("/proc/sys/kernel/core_pattern", O_RDONLY);
    if (fd >= 0) {
        const ssize_t count = read(fd, pattern, sizeof pattern - 1);
        pattern[std::max<ssize_t>(count, 0)] = 0;
        close(fd);
    }
    pattern[std::strcspn(pattern, "\n")] = 0;
    // A pattern that begins with '|' names a program that receives the core dump regardless of the limit.
    if (pattern[0] == '|' || std::strchr(pattern, '/') == nullptr)
        return;
    framework::Logger::StaticLog(framework::Logger::LOG_NOTICE, "Enabling Core Dump...\n");
    const rlimit unlimited = {RLIM_INFINITY, RLIM_INFINITY};
    if (setrlimit(RLIMIT_CORE, &unlimited) != 0)
        framework::Logger::StaticLog(framework::Logger::LOG_ERROR,
                                     "setrlimit: %s\nWarning: core dumps may be truncated or non-existent\n",
                                     std::strerror(errno));
}

} // namespace utility
