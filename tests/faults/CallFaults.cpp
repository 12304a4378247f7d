#include "CallFaults.h"

#include <cstdio>
#include <cstdlib>
#include <iterator>

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <pwd.h>
#include <signal.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <time.h>

namespace test {

namespace {

constexpr int isShort = 0;

// Every function that is replaced, and how it can fail.
const std::map<std::string, std::vector<int>>& faults() {
    // Never destroyed: a scenario may end the process by `exit` while its calls are watched.
    static const auto& table = *new std::map<std::string, std::vector<int>>{
        {"open64", {EACCES, EMFILE, EINTR, ENOSPC}},
        {"close", {EIO, EINTR}},
        {"read", {EIO, EINTR, isShort}},
        {"write", {ENOSPC, EIO, EINTR, EPIPE, isShort}},
        {"writev", {EIO, EINTR, isShort}},
        {"lseek64", {ESPIPE, EINVAL}},
        {"fcntl64", {EBADF, EMFILE}},
        {"fstat64", {EIO, ENOMEM}},
        {"stat64", {EACCES, ENOENT}},
        {"lstat64", {EACCES, EIO}},
        {"mkdir", {EACCES, ENOSPC, EEXIST}},
        {"fdopendir", {ENOMEM, ENOTDIR}},
        {"readdir64", {EIO, ENOENT}},
        {"closedir", {EBADF}},
        {"poll", {ENOMEM, EINTR}},
        {"pipe2", {EMFILE, ENFILE}},
        {"posix_spawnp", {EAGAIN, ENOENT, ENOMEM}},
        {"posix_spawn_file_actions_adddup2", {ENOMEM}},
        {"posix_spawn_file_actions_addopen", {ENOMEM}},
        {"posix_spawnattr_setsigmask", {EINVAL}},
        {"posix_spawnattr_setsigdefault", {EINVAL}},
        {"posix_spawnattr_setflags", {EINVAL}},
        {"waitpid", {ECHILD, EINTR}},
        {"sigtimedwait", {EINTR}},
        {"mmap64", {ENOMEM}},
        {"fchmod", {EPERM, EIO}},
        {"ftruncate64", {EIO, EINTR}},
        {"unlink", {EACCES, EIO}},
        {"fsync", {EIO, ENOSPC, EINTR}},
        {"syncfs", {EIO, ENOSPC}},
        {"fdopen", {ENOMEM}},
        {"fclose", {EIO, ENOSPC}},
        {"fgetpwent_r", {ERANGE}},
        {"putpwent", {EINVAL}},
        {"clock_gettime", {EINVAL, EPERM}},
        {"sigaction", {EINVAL}},
        {"signal", {EINVAL}},
        {"setrlimit64", {EPERM, EINVAL}},
        {"ioctl", {ENOTTY, EIO, EINTR}},
        {"pthread_mutex_init", {ENOMEM, EAGAIN}},
        {"pthread_mutex_lock", {EINVAL, EDEADLK}},
        {"pthread_mutex_trylock", {EBUSY, EINVAL}},
        {"pthread_mutex_unlock", {EPERM}},
        {"pthread_mutex_destroy", {EBUSY}},
        {"pthread_cond_init", {ENOMEM, EAGAIN}},
        {"pthread_cond_wait", {EINVAL, EPERM}},
        {"pthread_cond_timedwait", {EINVAL, EPERM, ETIMEDOUT}},
        {"pthread_cond_signal", {EINVAL}},
        {"pthread_cond_broadcast", {EINVAL}},
        {"pthread_cond_destroy", {EBUSY}},
        {"pthread_rwlock_init", {ENOMEM, EAGAIN}},
        {"pthread_rwlock_rdlock", {EAGAIN}},
        {"pthread_rwlock_wrlock", {EAGAIN}},
        {"pthread_rwlock_unlock", {EPERM}},
        {"pthread_rwlock_destroy", {EBUSY}},
        {"pthread_key_create", {EAGAIN, ENOMEM}},
        {"pthread_setspecific", {ENOMEM}},
        {"pthread_kill", {ESRCH, EAGAIN}},
        {"pthread_getname_np", {ERANGE, ENOENT}},
        {"__register_atfork", {ENOMEM}},
    };
    return table;
}

// In memory that a child process shares, so that its calls are known even if a signal ends it.
struct Record {
    unsigned counts[128];
    bool isMet;
};
Record* record = nullptr;
CallFault chosen = {"", 0, 0};
std::string replacedFile;
std::string replacement;
__attribute__((tls_model("initial-exec"))) thread_local bool isWatched = false;

// Whether this call of `name` is the one that fails.
bool fails(const char* name) {
    if (!isWatched)
        return false;
    isWatched = false;
    const auto index = std::distance(faults().begin(), faults().find(name));
    const unsigned nth = ++record->counts[index];
    const bool isChosen = chosen.nth == nth && chosen.call == name;
    record->isMet = record->isMet || isChosen;
    isWatched = true;
    return isChosen;
}

const char* insteadOf(const char* path) {
    return isWatched && replacedFile == path ? replacement.c_str() : path;
}

std::size_t halfOf(std::size_t size) {
    return (size + 1) / 2;
}

} // namespace

const std::vector<int>& faultsOf(const std::string& call) {
    return faults().at(call);
}

void setFault(const CallFault& fault) {
    chosen = fault;
    if (record == nullptr)
        record = static_cast<Record*>(
            mmap(nullptr, sizeof(Record), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    if (record == MAP_FAILED)
        std::abort();
    *record = Record();
}

void replaceFile(const std::string& path, const std::string& with) {
    replacedFile = path;
    replacement = with;
}

bool wasFaultMet() {
    return record->isMet;
}

std::map<std::string, unsigned> callCounts() {
    std::map<std::string, unsigned> counts;
    const unsigned* count = record->counts;
    for (const auto& call : faults()) {
        if (*count != 0)
            counts[call.first] = *count;
        ++count;
    }
    return counts;
}

Watch::Watch() {
    isWatched = true;
}

Watch::~Watch() {
    isWatched = false;
}

} // namespace test

// Each definition has the platform's name as its symbol alone, so that it need not repeat the attributes of the
// headers.
#define PLATFORM(result, symbol, parameters)                                                                           \
    static auto* const platform = reinterpret_cast<result(*) parameters>(dlsym(RTLD_NEXT, #symbol))
#define DECLARE(result, symbol, parameters) extern "C" result faulty_##symbol parameters __asm__(#symbol)

// Fails with errno and the result `failure`; where `isCarriedOut`, after the platform has done its part.
#define FAILS_WITH_ERRNO(result, symbol, parameters, arguments, failure, isCarriedOut)                                 \
    DECLARE(result, symbol, parameters);                                                                               \
    result faulty_##symbol parameters {                                                                                \
        PLATFORM(result, symbol, parameters);                                                                          \
        if (!test::fails(#symbol))                                                                                     \
            return platform arguments;                                                                                 \
        if (isCarriedOut)                                                                                              \
            platform arguments;                                                                                        \
        errno = test::chosen.error;                                                                                    \
        return failure;                                                                                                \
    }

// Returns the error.
#define FAILS_WITH_NUMBER(symbol, parameters, arguments, isCarriedOut)                                                 \
    DECLARE(int, symbol, parameters);                                                                                  \
    int faulty_##symbol parameters {                                                                                   \
        PLATFORM(int, symbol, parameters);                                                                             \
        if (!test::fails(#symbol))                                                                                     \
            return platform arguments;                                                                                 \
        if (isCarriedOut)                                                                                              \
            platform arguments;                                                                                        \
        return test::chosen.error;                                                                                     \
    }

// May transfer half of what was asked for instead; `arguments` has the size `size`.
#define FAILS_OR_IS_SHORT(symbol, parameters, arguments)                                                               \
    DECLARE(ssize_t, symbol, parameters);                                                                              \
    ssize_t faulty_##symbol parameters {                                                                               \
        PLATFORM(ssize_t, symbol, parameters);                                                                         \
        if (test::fails(#symbol)) {                                                                                    \
            if (test::chosen.error != test::isShort) {                                                                 \
                errno = test::chosen.error;                                                                            \
                return -1;                                                                                             \
            }                                                                                                          \
            size = test::halfOf(size);                                                                                 \
        }                                                                                                              \
        return platform arguments;                                                                                     \
    }

// The third argument of the first and the last of these is the rest of a variable list.
FAILS_WITH_ERRNO(int, open64, (const char* path, int flags, long mode), (test::insteadOf(path), flags, mode), -1, false)
FAILS_WITH_ERRNO(int, fcntl64, (int fd, int order, long argument), (fd, order, argument), -1, false)
FAILS_WITH_ERRNO(int, ioctl, (int fd, unsigned long order, void* argument), (fd, order, argument), -1, false)
// The descriptor is closed even if the call fails.
FAILS_WITH_ERRNO(int, close, (int fd), (fd), -1, true)
FAILS_WITH_ERRNO(int, fclose, (std::FILE * file), (file), EOF, true)
FAILS_WITH_ERRNO(int, closedir, (DIR * directory), (directory), -1, true)
FAILS_OR_IS_SHORT(read, (int fd, void* buffer, std::size_t size), (fd, buffer, size))
FAILS_OR_IS_SHORT(write, (int fd, const void* data, std::size_t size), (fd, data, size))
FAILS_WITH_ERRNO(off64_t, lseek64, (int fd, off64_t offset, int whence), (fd, offset, whence), -1, false)
FAILS_WITH_ERRNO(int, fstat64, (int fd, struct stat64* status), (fd, status), -1, false)
FAILS_WITH_ERRNO(int, stat64, (const char* path, struct stat64* status), (path, status), -1, false)
FAILS_WITH_ERRNO(int, lstat64, (const char* path, struct stat64* status), (path, status), -1, false)
FAILS_WITH_ERRNO(int, mkdir, (const char* path, mode_t mode), (path, mode), -1, false)
FAILS_WITH_ERRNO(DIR*, fdopendir, (int fd), (fd), nullptr, false)
FAILS_WITH_ERRNO(struct dirent64*, readdir64, (DIR * directory), (directory), nullptr, false)
FAILS_WITH_ERRNO(int, poll, (pollfd * requests, nfds_t count, int time), (requests, count, time), -1, false)
FAILS_WITH_ERRNO(int, pipe2, (int* ends, int flags), (ends, flags), -1, false)
// No child is left where another thread was faster.
FAILS_WITH_ERRNO(pid_t, waitpid, (pid_t id, int* status, int options), (id, status, options), -1,
                 test::chosen.error == ECHILD)
FAILS_WITH_ERRNO(int, sigtimedwait, (const sigset_t* set, siginfo_t* info, const timespec* time), (set, info, time), -1,
                 false)
FAILS_WITH_ERRNO(void*, mmap64, (void* start, std::size_t size, int access, int flags, int fd, off64_t offset),
                 (start, size, access, flags, fd, offset), MAP_FAILED, false)
FAILS_WITH_ERRNO(int, fchmod, (int fd, mode_t mode), (fd, mode), -1, false)
FAILS_WITH_ERRNO(int, ftruncate64, (int fd, off64_t size), (fd, size), -1, false)
FAILS_WITH_ERRNO(int, unlink, (const char* path), (path), -1, false)
FAILS_WITH_ERRNO(int, fsync, (int fd), (fd), -1, false)
FAILS_WITH_ERRNO(int, syncfs, (int fd), (fd), -1, false)
FAILS_WITH_ERRNO(std::FILE*, fdopen, (int fd, const char* mode), (fd, mode), nullptr, false)
FAILS_WITH_ERRNO(int, putpwent, (const passwd* user, std::FILE* file), (user, file), -1, false)
FAILS_WITH_ERRNO(int, clock_gettime, (clockid_t clock, timespec* time), (clock, time), -1, false)
FAILS_WITH_ERRNO(int, sigaction, (int sig, const struct sigaction* action, struct sigaction* former),
                 (sig, action, former), -1, false)
FAILS_WITH_ERRNO(sighandler_t, signal, (int sig, sighandler_t handler), (sig, handler), SIG_ERR, false)
FAILS_WITH_NUMBER(fgetpwent_r, (std::FILE * file, passwd* user, char* text, std::size_t size, passwd** result),
                  (file, user, text, size, result), false)
FAILS_WITH_NUMBER(posix_spawnp,
                  (pid_t * id, const char* file, const posix_spawn_file_actions_t* actions,
                   const posix_spawnattr_t* attributes, char* const* words, char* const* environment),
                  (id, file, actions, attributes, words, environment), false)
FAILS_WITH_NUMBER(posix_spawn_file_actions_adddup2, (posix_spawn_file_actions_t * actions, int from, int to),
                  (actions, from, to), false)
FAILS_WITH_NUMBER(posix_spawn_file_actions_addopen,
                  (posix_spawn_file_actions_t * actions, int fd, const char* path, int flags, mode_t mode),
                  (actions, fd, path, flags, mode), false)
FAILS_WITH_NUMBER(posix_spawnattr_setsigmask, (posix_spawnattr_t * attributes, const sigset_t* set), (attributes, set),
                  false)
FAILS_WITH_NUMBER(posix_spawnattr_setsigdefault, (posix_spawnattr_t * attributes, const sigset_t* set),
                  (attributes, set), false)
FAILS_WITH_NUMBER(posix_spawnattr_setflags, (posix_spawnattr_t * attributes, short flags), (attributes, flags), false)
FAILS_WITH_NUMBER(pthread_mutex_init, (pthread_mutex_t * mutex, const pthread_mutexattr_t* attributes),
                  (mutex, attributes), false)
FAILS_WITH_NUMBER(pthread_mutex_lock, (pthread_mutex_t * mutex), (mutex), false)
FAILS_WITH_NUMBER(pthread_mutex_trylock, (pthread_mutex_t * mutex), (mutex), false)
// Unlock nevertheless, so that the trial continues.
FAILS_WITH_NUMBER(pthread_mutex_unlock, (pthread_mutex_t * mutex), (mutex), true)
FAILS_WITH_NUMBER(pthread_mutex_destroy, (pthread_mutex_t * mutex), (mutex), false)
FAILS_WITH_NUMBER(pthread_cond_init, (pthread_cond_t * condition, const pthread_condattr_t* attributes),
                  (condition, attributes), false)
FAILS_WITH_NUMBER(pthread_cond_wait, (pthread_cond_t * condition, pthread_mutex_t* mutex), (condition, mutex), false)
FAILS_WITH_NUMBER(pthread_cond_timedwait, (pthread_cond_t * condition, pthread_mutex_t* mutex, const timespec* time),
                  (condition, mutex, time), false)
FAILS_WITH_NUMBER(pthread_cond_signal, (pthread_cond_t * condition), (condition), false)
FAILS_WITH_NUMBER(pthread_cond_broadcast, (pthread_cond_t * condition), (condition), false)
FAILS_WITH_NUMBER(pthread_cond_destroy, (pthread_cond_t * condition), (condition), false)
FAILS_WITH_NUMBER(pthread_rwlock_init, (pthread_rwlock_t * lock, const pthread_rwlockattr_t* attributes),
                  (lock, attributes), false)
FAILS_WITH_NUMBER(pthread_rwlock_rdlock, (pthread_rwlock_t * lock), (lock), false)
FAILS_WITH_NUMBER(pthread_rwlock_wrlock, (pthread_rwlock_t * lock), (lock), false)
FAILS_WITH_NUMBER(pthread_rwlock_unlock, (pthread_rwlock_t * lock), (lock), true)
FAILS_WITH_NUMBER(pthread_rwlock_destroy, (pthread_rwlock_t * lock), (lock), false)
FAILS_WITH_NUMBER(pthread_key_create, (pthread_key_t * key, void (*remove)(void*)), (key, remove), false)
FAILS_WITH_NUMBER(pthread_setspecific, (pthread_key_t key, const void* value), (key, value), false)
FAILS_WITH_NUMBER(pthread_kill, (pthread_t thread, int sig), (thread, sig), false)
FAILS_WITH_NUMBER(pthread_getname_np, (pthread_t thread, char* name, std::size_t size), (thread, name, size), false)
FAILS_WITH_NUMBER(__register_atfork, (void (*before)(), void (*after)(), void (*inChild)(), void* object),
                  (before, after, inChild, object), false)

// Never carried out: not everybody may raise limits.
DECLARE(int, setrlimit64, (int resource, const rlimit64* limit));
int faulty_setrlimit64(int resource, const rlimit64* limit) {
    PLATFORM(int, setrlimit64, (int resource, const rlimit64* limit));
    if (!test::isWatched)
        return platform(resource, limit);
    if (!test::fails("setrlimit64"))
        return 0;
    errno = test::chosen.error;
    return -1;
}

DECLARE(ssize_t, writev, (int fd, const iovec* pieces, int count));
ssize_t faulty_writev(int fd, const iovec* pieces, int count) {
    PLATFORM(ssize_t, writev, (int fd, const iovec* pieces, int count));
    if (!test::fails("writev"))
        return platform(fd, pieces, count);
    if (test::chosen.error == test::isShort) {
        const iovec first = {pieces[0].iov_base, test::halfOf(pieces[0].iov_len)};
        return platform(fd, &first, 1);
    }
    errno = test::chosen.error;
    return -1;
}
