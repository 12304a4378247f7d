#pragma once

#include "fw_Export.h"

#include <pthread.h>

#include <atomic>

#include "fw_RWLockIF.h"

namespace framework {
namespace thread {

/// A read-write lock over the platform's own.
///
/// The thread that holds it for writing may take it again, for reading or writing; each taking needs its `unlock`. A
/// thread that holds it for reading must not ask to write. A failing POSIX call is logged at level 0. A lock refused
/// with EAGAIN (too many readers) is logged once and tried again every millisecond until the thread holds it.
///
///     framework::thread::PosixRWLock lock;
///     lock.writeLock();
///     lock.unlock();
class VXFW_EXPORT PosixRWLock : public RWLockIF {
public:
    PosixRWLock();
    PosixRWLock(const PosixRWLock&) = delete;
    PosixRWLock& operator=(const PosixRWLock&) = delete;
    ~PosixRWLock() override;

    void readLock() override;
    void writeLock() override;
    void unlock() override;

private:
    bool isMine() const;

    pthread_rwlock_t m_lock;
    std::atomic<const void*> m_writer; // identifies the writing thread; null when nobody writes
    unsigned int m_depth;              // how often the writer holds the lock
};

} // namespace thread
} // namespace framework
