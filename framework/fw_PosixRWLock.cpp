#include "fw_PosixRWLock.h"

#include <cerrno>
#include <ctime>

#include "fw_Logger.h"

#define LOG_FAILURE(format, error)                                                                                     \
    Logger::StaticLogMethod(Logger::LOG_ERROR, __PRETTY_FUNCTION__, __LINE__, format, error)

namespace framework {
namespace thread {

namespace {

// Its address identifies the thread.
__attribute__((tls_model("initial-exec"))) thread_local char self;

// EAGAIN: the maximum number of read locks is reached. Callers have no result to check, so returning without the lock
// would let them access the protected data.
int tryAgain(int (*take)(pthread_rwlock_t*), pthread_rwlock_t* lock) {
    const timespec pause = {0, 1000000};
    int error = EAGAIN;
    do {
        nanosleep(&pause, nullptr);
        error = take(lock);
    } while (error == EAGAIN);
    return error;
}

} // namespace

PosixRWLock::PosixRWLock() : m_writer(nullptr), m_depth(0) {
    if (const int error = pthread_rwlock_init(&m_lock, nullptr))
        LOG_FAILURE("initialising lock %d", error);
}

PosixRWLock::~PosixRWLock() {
    if (const int error = pthread_rwlock_destroy(&m_lock))
        LOG_FAILURE("destroying lock %d", error);
}

bool PosixRWLock::isMine() const {
    return m_writer.load(std::memory_order_relaxed) == &self;
}

void PosixRWLock::readLock() {
    if (isMine()) {
        ++m_depth;
        return;
    }
    int error = pthread_rwlock_rdlock(&m_lock);
    if (error == EAGAIN) {
        LOG_FAILURE("locking for reading %d", error);
        error = tryAgain(pthread_rwlock_rdlock, &m_lock);
    }
    if (error != 0)
        LOG_FAILURE("locking for reading %d", error);
}

void PosixRWLock::writeLock() {
    if (isMine()) {
        ++m_depth;
        return;
    }
    int error = pthread_rwlock_wrlock(&m_lock);
    if (error == EAGAIN) {
        LOG_FAILURE("locking for writing %d", error);
        error = tryAgain(pthread_rwlock_wrlock, &m_lock);
    }
    if (error != 0) {
        LOG_FAILURE("locking for writing %d", error);
        return;
    }
    m_writer.store(&self, std::memory_order_relaxed);
    m_depth = 1;
}

void PosixRWLock::unlock() {
    if (isMine()) {
        if (--m_depth > 0)
            return;
        m_writer.store(nullptr, std::memory_order_relaxed);
    }
    if (const int error = pthread_rwlock_unlock(&m_lock))
        LOG_FAILURE("unlocking %d", error);
}

} // namespace thread
} // namespace framework
