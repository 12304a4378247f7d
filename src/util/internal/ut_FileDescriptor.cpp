#include "internal/ut_FileDescriptor.h"

#include <atomic>
#include <cerrno>

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include "internal/fw_ErrnoGuard.h"

namespace utility {

namespace {

// Shared by all threads that are opening a file, and guarded by `placesFlag`. A flag rather than a mutex, because
// signal handlers open files too.
std::atomic_flag placesFlag = ATOMIC_FLAG_INIT;
int openingThreads = 0;
bool isPlaceholder[STDERR_FILENO + 1] = {};

void closePlaceholders() {
    for (int fd = 0; fd <= STDERR_FILENO; ++fd) {
        if (isPlaceholder[fd])
            close(fd);
        isPlaceholder[fd] = false;
    }
}

// The thread that held the flag, and those that were opening files, do not exist in a forked child.
void renewInChild() {
    placesFlag.clear();
    openingThreads = 0;
    closePlaceholders();
}

__attribute__((constructor)) void watchForks() {
    pthread_atfork(nullptr, nullptr, renewInChild);
}

// Blocks all signals while the flag is held, so that no handler that opens a file waits for its own thread. Sleeps
// rather than yields while it waits: the holder may have a lower real-time priority.
class PlacesLock {
public:
    PlacesLock() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_signals);
        const timespec pause = {0, 10000};
        while (placesFlag.test_and_set(std::memory_order_acquire))
            nanosleep(&pause, nullptr);
    }
    PlacesLock(const PlacesLock&) = delete;
    PlacesLock& operator=(const PlacesLock&) = delete;
    ~PlacesLock() {
        placesFlag.clear(std::memory_order_release);
        pthread_sigmask(SIG_SETMASK, &m_signals, nullptr);
    }

private:
    sigset_t m_signals;
};

// Occupies the numbers of closed standard streams while a file is opened. A placeholder can be neither read nor
// written: a thread that uses the closed stream gets EBADF, as without it.
class StandardNumbers {
public:
    StandardNumbers() {
        const PlacesLock lock;
        ++openingThreads;
        int fd = openPlaceholder();
        while (fd >= 0 && fd <= STDERR_FILENO) {
            isPlaceholder[fd] = true;
            fd = openPlaceholder();
        }
        if (fd >= 0)
            close(fd);
    }
    StandardNumbers(const StandardNumbers&) = delete;
    StandardNumbers& operator=(const StandardNumbers&) = delete;
    ~StandardNumbers() {
        const framework::ErrnoGuard errnoGuard;
        const PlacesLock lock;
        if (openingThreads > 0)
            --openingThreads;
        if (openingThreads == 0)
            closePlaceholders();
    }

private:
    static int openPlaceholder() {
        return openat(AT_FDCWD, "/", O_PATH | O_CLOEXEC);
    }
};

} // namespace

int openFile(const char* path, int flags, unsigned int mode) {
    if (path == nullptr) {
        errno = ENOENT;
        return -1;
    }
    const StandardNumbers occupied;
    const int fd = open(path, flags | O_CLOEXEC, mode);
    if (fd < 0)
        return -1;
    // Without a placeholder, for want of descriptors, the number may still be a low one.
    if (fd <= STDERR_FILENO) {
        const int moved = fcntl(fd, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
        closeKeepingErrno(fd);
        return moved;
    }
    const int descriptorFlags = fcntl(fd, F_GETFD);
    if (descriptorFlags >= 0)
        fcntl(fd, F_SETFD, descriptorFlags | FD_CLOEXEC);
    return fd;
}

DIR* openDirectory(const char* path) {
    const int fd = openFile(path, O_RDONLY | O_DIRECTORY | O_NONBLOCK);
    DIR* directory = fd >= 0 ? fdopendir(fd) : nullptr;
    if (directory == nullptr && fd >= 0)
        closeKeepingErrno(fd);
    return directory;
}

void closeKeepingErrno(int fd) {
    const framework::ErrnoGuard errnoGuard;
    close(fd);
}

} // namespace utility
