#include "internal/fw_StandardNumbers.h"

#include <atomic>

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

#include "internal/fw_ErrnoGuard.h"

namespace framework {

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

// A placeholder can be neither read nor written: a thread that uses the closed stream gets EBADF, as without it.
int openPlaceholder() {
    return openat(AT_FDCWD, "/", O_PATH | O_CLOEXEC);
}

} // namespace

StandardNumbers::StandardNumbers() {
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

StandardNumbers::~StandardNumbers() {
    const ErrnoGuard errnoGuard;
    const PlacesLock lock;
    if (openingThreads > 0)
        --openingThreads;
    if (openingThreads == 0)
        closePlaceholders();
}

} // namespace framework
