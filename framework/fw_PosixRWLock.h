#pragma once

#include "fw_Export.h"

#include <atomic>

#include <pthread.h>

#include "fw_RWLockIF.h"

namespace framework {
namespace thread {

/// A read-write lock on top of `pthread_rwlock_t`.
///
/// The thread that holds the write lock may lock again, for reading or writing; each call needs its own `unlock`. A
/// thread that holds the read lock must not call `writeLock`. A failing POSIX call is logged at level 0. EAGAIN (too
/// many readers) is logged once, and the call is repeated every millisecond until it succeeds.
///
///     framework::thread::PosixRWLock lock;
///     lock.writeLock();
///     lock.unlock();
class VXFW_EXPORT PosixRWLock : public RWLockIF {
public:
    /// Creates a lock that no thread holds.
    PosixRWLock();
    PosixRWLock(const PosixRWLock&) = delete;
    PosixRWLock& operator=(const PosixRWLock&) = delete;
    /// Destroys the lock, which no thread may hold.
    ~PosixRWLock() override;

    void readLock() VXFW_THREADS(acquire_shared_capability()) override;
    void writeLock() VXFW_THREADS(acquire_capability()) override;
    void unlock() VXFW_THREADS(release_generic_capability()) override;

private:
    VXFW_HIDDEN bool isMine() const;

    pthread_rwlock_t m_lock;
    std::atomic<const void*> m_writer; // identifies the writing thread; null when nobody writes
    unsigned int m_depth;              // how often the writer holds the lock
};

} // namespace thread
} // namespace framework
